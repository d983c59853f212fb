#pragma once

#include <quarry/QuarryError.h>
#include <quarry/quarry_export.h>

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>
#include <optional>

namespace quarry {

class CSysCfg;

/// Asks the operator for the conditions of a log query. Every operation shows
/// a fresh modal dialog, with no owner window, and blocks until it closes;
/// the condition it built (a WHERE clause with its own leading " Where " or
/// " where ", or for SEALRESULTSTAT a whole SELECT) is then in SQLStr().
///
/// How the call ended is in lastOutcome(), apart from the condition: a
/// cancelled dialog can leave a condition in SQLStr() (see SQLStr()), so
/// run the condition only when lastOutcome() is Outcome::Accepted.
///
/// The operations need a QApplication and must be called on its thread (the
/// GUI thread); otherwise they raise QuarryError::NoApplication or
/// QuarryError::NotGuiThread and show nothing. Errors raised while a dialog
/// is prepared or shown reach the caller as QuarryError, after the dialog
/// has closed.
class QUARRY_EXPORT CQuarry : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString SQLStr READ SQLStr)

public:
    /// How the last operation ended.
    enum class Outcome {
        NotCalled,    ///< No operation was called yet.
        Accepted,     ///< The operator confirmed the dialog: SQLStr() is its condition.
        Cancelled,    ///< The operator cancelled the dialog (Cancel, or its cancel keys).
        NothingAsked, ///< The log type asks for nothing; no dialog, SQLStr() unchanged.
        Failed,       ///< An error was raised, or a fault told in a box: see lastError().
    };
    Q_ENUM(Outcome)

    /// Reads the station's seal.ini (see CSysCfg).
    explicit CQuarry(QObject *parent = nullptr);
    ~CQuarry() override;

    /// The condition of the last dialog shown, as the dialog handed it back:
    /// empty before any dialog and, mostly, when the operator cancelled. A
    /// dialog that stores its clause before a check that then refuses it
    /// (the seal verification and teller logs' branch check) hands back that
    /// clause even when the operator then cancels: tell the cases apart by
    /// lastOutcome(), not by an empty text.
    QString SQLStr() const;
    /// How the last operation ended; Outcome::NotCalled before the first.
    Outcome lastOutcome() const;
    /// The fault of the last operation when it ended Outcome::Failed, else
    /// nothing: the error it raised, or the first fault that a dialog or the
    /// configuration told the operator in a box instead of raising it (no
    /// station, a missing LOCAL.db, an unreachable database server), with
    /// its number, source and the box's Chinese text. Such a call fails even
    /// when the operator then confirmed the dialog, which was prepared from
    /// a configuration it could not read; SQLStr() still holds what the
    /// dialog handed back.
    std::optional<QuarryError> lastError() const;
    /// The teller code pattern (frmClerk). Length parameters here and below
    /// are the text boxes' limits: 0 means no limit, a negative one raises
    /// QuarryError.
    Q_INVOKABLE void showClerk(qint32 lClerkLen);
    /// The seal-card number pattern (FrmYJK).
    Q_INVOKABLE void ShowYJK(qint32 YJKLEN);
    /// The account number pattern (frmAcc).
    Q_INVOKABLE void showAcc(qint32 lAccLen);
    /// The range of operation dates (FrmDate).
    Q_INVOKABLE void showDate();
    /// The dialog of log type szLogType (compared exactly), set up with the
    /// two code lists (codes, descriptions, how many are used), the lengths
    /// of the teller, account and cheque boxes, and whether it offers the
    /// branch, seal-card and operator-code fields. "YZXCLRZ" shows nothing
    /// and leaves SQLStr as it was; a count larger than its arrays raises
    /// QuarryError 9.
    Q_INVOKABLE void showComplex(const QString &szLogType, const QList<qint16> &arrTmpIdA,
                                 const QStringList &arrTmpDesA, const QList<qint16> &arrTmpIdB,
                                 const QStringList &arrTmpDesB, qint32 lTmpCountA,
                                 qint32 lTmpCountB, qint32 lClerkLen, qint32 lAccLen,
                                 qint32 lChequeLen, bool ShowWDH, bool ShowYJK, bool ShowOpCode);
    /// The branch number pattern (frmWdh).
    Q_INVOKABLE void showBranch(qint32 LWDHLen);
    /// The seal-request dialog for "YJREQLOG" in any case; any other log type
    /// does nothing. p2 to p4 are accepted and not used.
    Q_INVOKABLE void showComplexEx(const QString &logType, const QVariant &p2 = {},
                                   const QVariant &p3 = {}, const QVariant &p4 = {});

private:
    // Runs an operation: its preconditions, then show, which shows the
    // dialog, sets m_sqlStr and hands back how the dialog ended; records
    // the outcome and the fault.
    void run(const char *operation, const std::function<Outcome()> &show);

    std::unique_ptr<CSysCfg> m_config;
    QString m_sqlStr;
    Outcome m_outcome = Outcome::NotCalled;
    std::optional<QuarryError> m_error;
};

} // namespace quarry
