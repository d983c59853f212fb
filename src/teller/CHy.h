#pragma once

#include <quarry/quarry_export.h>

#include <QObject>
#include <QString>
#include <QVariantList>

#include <memory>
#include <optional>

namespace quarry {

class CSysCfg;
class DbConnection;
class DbRecordSet;

// The teller (行员) data of the seal database: one teller record and the
// lookups over the teller, teller-type and branch tables (HY, HYCONFIG,
// WDDZ). The connection is opened by the first lookup, so an object that is
// never asked anything needs no database. Database errors are written to the
// error log and raised again as QuarryError 2000.
class QUARRY_EXPORT CHy : public QObject
{
    Q_OBJECT

public:
    explicit CHy(QObject *parent = nullptr);
    ~CHy() override;

    // Appends the branch and all branches below it, depth first, to the
    // running list, each quoted as an SQL literal and followed by a comma.
    // Returns the quoted branch when it has no sub-branches, "" otherwise.
    // Branches that the table places under two parents, or in a cycle, are
    // listed once and reported in the error log.
    QString GetBelongedWDHS(const QString &wdh);
    // 1 when the branch exists, 0 when not, -1 on a database error.
    qint16 IsWdhExist(const QString &wdh);
    QString GetWdNameByWdh(const QString &wdh);
    // The branch of the teller's type (not the branch column of HY).
    QString GetHyWDH(const QString &hydh);
    // Whether this station's branch (DEPARTID) reports to the head office.
    bool isFenhang();
    bool isManager(const QString &hydh);
    bool isPowerGroup(const QString &name);
    // Fills the record; false when there is no such teller with a type.
    bool GetHyInfoByHydh(const QString &hydh);
    QString GetHynameByHydh(const QString &hydh);
    // The ancestor of the branch that reports to the head office (the head
    // office itself for the head office).
    QString GetBranchWdh(const QString &wdh);

    // The running list of GetBelongedWDHS, kept until cleared.
    const QString &belongedWdhs() const { return m_belongedWdhs; }
    void clearBelongedWdhs() { m_belongedWdhs.clear(); }

    // The teller record.
    QString hydh, Hyname, Hypwd, Hyqx;
    qint16 GetIfConfirm = 0, GetOpType = 0;
    qint16 AuditMode = 0;
    bool HyTran = false;
    qint16 FixedQx = 0, RManHy = 0;
    qint32 Allownum = 0;
    qint16 HyLevel = 0;
    QString LoginHy;
    QString qysj, Zxsj, PwdExpDate;
    bool IfPwdExpire = false, IncludeDate = false;
    bool IsRemote = false;
    QString RemoteIP;
    qint32 LocalPort = 0;
    qint16 HydhLen = 0, HypwdLen = 0;
    qint32 HyTypeId = 0;
    QString HyTypeName, Wdh;
    qint16 IsAudit = 0;
    QString OpHydh;

private:
    const DbConnection &LocalConn();
    // The field of the first row of a query, nothing when there is no row.
    std::optional<QString> firstValue(const QString &sql, const QVariantList &params,
                                      const QString &field);
    // The same, "" when there is no row.
    QString firstText(const QString &sql, const QVariantList &params, const QString &field);
    void fillRecord(const DbRecordSet &records);

    // Runs a lookup; a database error is logged and raised again with the
    // source and the description prefix + error text + "]".
    template<typename Lookup>
    auto guarded(const QString &source, const QString &prefix, Lookup &&lookup);
    [[noreturn]] void raiseLogged(const QString &source, const QString &description) const;

    std::unique_ptr<CSysCfg> m_config;
    std::unique_ptr<DbConnection> m_db;
    QString m_belongedWdhs;
};

} // namespace quarry
