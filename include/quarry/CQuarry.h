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
/// " where ", the case being each dialog's, or for SEALRESULTSTAT a whole
/// SELECT) is then in SQLStr().
///
/// How the call ended is in lastOutcome(), apart from the condition: a
/// cancelled dialog can leave a condition in SQLStr() (see SQLStr()), so
/// run the condition only when lastOutcome() is Outcome::Accepted:
/// @code
/// quarry::CQuarry quarry;
/// quarry.showAcc(17);
/// if (quarry.lastOutcome() == quarry::CQuarry::Outcome::Accepted)
///     query.exec(u"SELECT * FROM YYLOG"_s + quarry.SQLStr());
/// @endcode
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

    /// Reads the station's seal.ini (see CSysCfg); a configuration that
    /// cannot be read is told in a "系统提示" box and raises nothing.
    /// @param parent the QObject parent, or none.
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
    /// @name Operations
    /// Each shows its dialog modally and returns when the operator closes
    /// it; the condition is then in SQLStr() and how the call ended in
    /// lastOutcome(). A length is a text box's limit, 0 for none.
    ///
    /// Each can raise QuarryError (and then ends Outcome::Failed):
    /// QuarryError::NoApplication or QuarryError::NotGuiThread before any
    /// dialog; QuarryError::DataError for a negative length or a data error
    /// inside the dialog; QuarryError::SubscriptOutOfRange for a code list
    /// whose count is larger than its arrays. Configuration faults are told
    /// in boxes and not raised: see lastError().
    ///@{

    /// The teller code pattern (dialog frmClerk).
    /// @param lClerkLen the teller code box's length limit, 0 for none.
    /// @throws QuarryError as the operations do.
    Q_INVOKABLE void showClerk(qint32 lClerkLen);
    /// The seal-card number pattern (dialog FrmYJK).
    /// @param YJKLEN the seal-card number box's length limit, 0 for none.
    /// @throws QuarryError as the operations do.
    Q_INVOKABLE void ShowYJK(qint32 YJKLEN);
    /// The account number pattern (dialog frmAcc).
    /// @param lAccLen the account number box's length limit, 0 for none.
    /// @throws QuarryError as the operations do.
    Q_INVOKABLE void showAcc(qint32 lAccLen);
    /// The range of operation dates (dialog FrmDate).
    /// @throws QuarryError as the operations do.
    Q_INVOKABLE void showDate();
    /// The query dialog of a log. A code list is three arguments: the codes,
    /// their descriptions (indexed alike) and how many of them are used.
    /// @param szLogType the log, compared exactly (case matters): "YWRZ",
    ///        "YYRZ", "HYRZ", "SJRZ", "ZGSQRZ", "ZPGLRZ", "PJSBRZ",
    ///        "SEALRESULTSTAT" (a whole SELECT); "YZXCLRZ" shows nothing
    ///        (Outcome::NothingAsked, SQLStr() unchanged); any other text
    ///        the compound query.
    /// @param arrTmpIdA the first code list's codes (operation, business,
    ///        voucher or authorisation types, by log).
    /// @param arrTmpDesA the first code list's descriptions.
    /// @param arrTmpIdB the second code list's codes (the seal verification
    ///        and bill recognition results).
    /// @param arrTmpDesB the second code list's descriptions.
    /// @param lTmpCountA how many entries of the first list are used.
    /// @param lTmpCountB how many entries of the second list are used.
    /// @param lClerkLen the teller code boxes' length limit, 0 for none.
    /// @param lAccLen the account number boxes' length limit (and, under
    ///        bank profile 38, the cheque series number's), 0 for none.
    /// @param lChequeLen the cheque number boxes' length limit, 0 for none.
    /// @param ShowWDH whether the dialog offers the branch number.
    /// @param ShowYJK whether it offers the seal-card number.
    /// @param ShowOpCode whether it offers the operator code.
    /// @throws QuarryError as the operations do.
    Q_INVOKABLE void showComplex(const QString &szLogType, const QList<qint16> &arrTmpIdA,
                                 const QStringList &arrTmpDesA, const QList<qint16> &arrTmpIdB,
                                 const QStringList &arrTmpDesB, qint32 lTmpCountA,
                                 qint32 lTmpCountB, qint32 lClerkLen, qint32 lAccLen,
                                 qint32 lChequeLen, bool ShowWDH, bool ShowYJK, bool ShowOpCode);
    /// The branch number pattern (dialog frmWdh).
    /// @param LWDHLen the branch number box's length limit, 0 for none.
    /// @throws QuarryError as the operations do.
    Q_INVOKABLE void showBranch(qint32 LWDHLen);
    /// The seal-request log (dialog frmYjReqLog).
    /// @param logType "YJREQLOG" in any case; any other log type shows
    ///        nothing (Outcome::NothingAsked, SQLStr() unchanged).
    /// @param p2 accepted and not used.
    /// @param p3 accepted and not used.
    /// @param p4 accepted and not used.
    /// @throws QuarryError as the operations do.
    Q_INVOKABLE void showComplexEx(const QString &logType, const QVariant &p2 = {},
                                   const QVariant &p3 = {}, const QVariant &p4 = {});
    ///@}

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
