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

// Asks the operator for the conditions of a log query. Every operation shows
// a fresh modal dialog and blocks until it closes; the condition it built (a
// WHERE clause with its own leading " Where ") is then in SQLStr, empty when
// the operator cancelled. Errors raised while a dialog is prepared or shown
// reach the caller as QuarryError.
class QUARRY_EXPORT CQuarry : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString SQLStr READ SQLStr)

public:
    explicit CQuarry(QObject *parent = nullptr);
    ~CQuarry() override;

    QString SQLStr() const;
    // Text-box length parameters: 0 means no limit.
    Q_INVOKABLE void showClerk(qint32 lClerkLen);
    Q_INVOKABLE void ShowYJK(qint32 YJKLEN);
    Q_INVOKABLE void showAcc(qint32 lAccLen);
    Q_INVOKABLE void showDate();
    // The dialog of log type szLogType (compared exactly). "YZXCLRZ" shows
    // nothing and leaves SQLStr as it was.
    Q_INVOKABLE void showComplex(const QString &szLogType,
        const QList<qint16> &arrTmpIdA, const QStringList &arrTmpDesA,
        const QList<qint16> &arrTmpIdB, const QStringList &arrTmpDesB,
        qint32 lTmpCountA, qint32 lTmpCountB,
        qint32 lClerkLen, qint32 lAccLen, qint32 lChequeLen,
        bool ShowWDH, bool ShowYJK, bool ShowOpCode);
    Q_INVOKABLE void showBranch(qint32 LWDHLen);
    // The seal-request dialog for "YJREQLOG" in any case; any other log type
    // does nothing. p2 to p4 are accepted and not used.
    Q_INVOKABLE void showComplexEx(const QString &logType, const QVariant &p2 = {},
        const QVariant &p3 = {}, const QVariant &p4 = {});

private:
    std::unique_ptr<CSysCfg> m_config;
    QString m_sqlStr;
};

} // namespace quarry
