#pragma once

#include <quarry/quarry_export.h>

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

namespace quarry {

class CSysCfg;

/// Asks the operator for the conditions of a log query. Every operation shows
/// a fresh modal dialog, with no owner window, on the caller's thread and
/// blocks until it closes; the condition it built (a WHERE clause with its
/// own leading " Where ", or for SEALRESULTSTAT a whole SELECT) is then in
/// SQLStr, empty when the operator cancelled. Errors raised while a dialog
/// is prepared or shown reach the caller as QuarryError, after the dialog
/// has closed.
class QUARRY_EXPORT CQuarry : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString SQLStr READ SQLStr)

public:
    /// Reads the station's seal.ini (see CSysCfg).
    explicit CQuarry(QObject *parent = nullptr);
    ~CQuarry() override;

    /// The condition of the last dialog shown: empty when the operator
    /// cancelled it, and before any dialog.
    QString SQLStr() const;
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
    std::unique_ptr<CSysCfg> m_config;
    QString m_sqlStr;
};

} // namespace quarry
