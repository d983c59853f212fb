#include "teller/CHy.h"

#include "platform/DbConnection.h"
#include "platform/DbRecordSet.h"
#include "platform/SqlLiteral.h"
#include "support/ErrorLog.h"
#include "teller/BranchTable.h"
#include "teller/BranchTree.h"

#include <quarry/CSysCfg.h>
#include <quarry/QuarryError.h>

#include <QSet>

using namespace Qt::StringLiterals;

namespace quarry {

namespace {

const QString HeadOfficeParent = u"000"_s;

// Whether a permission string grants the manager right, its third character.
bool hasManagerRight(const QString &hyqx)
{
    return hyqx.mid(2, 1) == u"1"_s;
}

// A failing error log must not hide the error it was to record.
void logQuietly(const QString &source, const QString &description)
{
    try {
        writeErrorLog(source, QuarryError::DataError, description);
    } catch (const QuarryError &) {
    }
}

} // namespace

CHy::CHy(QObject *parent)
    : QObject(parent)
    , m_config(std::make_unique<CSysCfg>())
    , m_db(std::make_unique<DbConnection>())
{
    m_config->GetParameter();
    HydhLen = m_config->HYDHLEN;
    HypwdLen = m_config->HYPWDLEN;
    LocalPort = m_config->TRANPORT;
    FixedQx = m_config->FIXEDQX;
    RManHy = m_config->RMANHY;
    AuditMode = m_config->AUDITHY;
}

CHy::~CHy() = default;

template<typename Lookup>
auto CHy::guarded(const QString &source, const QString &prefix, Lookup &&lookup)
{
    try {
        return lookup();
    } catch (const QuarryError &error) {
        raiseLogged(source, prefix + error.description() + u']');
    }
}

void CHy::raiseLogged(const QString &source, const QString &description) const
{
    logQuietly(source, description);
    throw QuarryError(QuarryError::DataError, source, description);
}

const DbConnection &CHy::LocalConn()
{
    if (m_db->isOpen())
        return *m_db;
    m_config->prepareConnection(*m_db);
    m_db->open(u"Server="_s + m_config->SERVER + u";Database="_s + m_config->SEALBASE, u"BISOL"_s,
               u"KORMANTE"_s, true);
    if (m_db->failed())
        throw QuarryError(QuarryError::DataError, u"CHy.LocalConn()"_s,
                          u"连接数据库"_s + m_config->SERVER + u" 失败！"_s + m_db->errorText());
    return *m_db;
}

std::optional<QString> CHy::firstValue(const QString &sql, const QVariantList &params,
                                       const QString &field)
{
    DbRecordSet records;
    records.open(sql, LocalConn(), params);
    if (records.eof())
        return std::nullopt;
    return records.field(field);
}

QString CHy::firstText(const QString &sql, const QVariantList &params, const QString &field)
{
    return firstValue(sql, params, field).value_or(QString());
}

QString CHy::GetBelongedWDHS(const QString &wdh)
{
    const auto tree = guarded(u"CHy.GetBelongedWDHS()"_s, u"CHy.GetBelongedWDHS["_s, [&] {
        BranchTable table(LocalConn());
        return BranchTree(wdh, [&table](const QStringList &parents) {
            return table.subBranches(parents);
        });
    });
    // The list is SQL text that the log dialogs paste into their
    // conditions: the codes are data, written for the station's dialect.
    const SqlDialect dialect = sqlDialect(m_config->BASEMODE);
    const qsizetype start = m_belongedWdhs.size();
    for (const QString &branch : tree.branches()) {
        m_belongedWdhs += u'\'';
        appendLiteralText(m_belongedWdhs, branch, dialect);
        m_belongedWdhs += "',"_L1;
    }
    if (!tree.repeated().isEmpty())
        logQuietly(u"CHy.GetBelongedWDHS()"_s,
                   u"网点对照表数据有误：网点"_s + tree.repeated().join(u',') + u"在网点"_s + wdh
                       + u"之下出现多次（有多个上级网点或上级关系构成循环），只列出一次"_s);
    // Without sub-branches: the branch just appended, without its comma.
    return tree.branches().size() > 1 ? QString() : m_belongedWdhs.sliced(start).chopped(1);
}

qint16 CHy::IsWdhExist(const QString &wdh)
{
    try {
        return firstValue(u"select WDH from WDDZ where WDH=?"_s, {wdh}, u"WDH"_s) ? 1 : 0;
    } catch (const QuarryError &error) {
        logQuietly(u"CHy.IsWdhExist()"_s, u"CHy.IsWdhExist["_s + error.description() + u']');
        return -1;
    }
}

QString CHy::GetWdNameByWdh(const QString &wdh)
{
    return guarded(u"CHy.GetWdNameByWdh()"_s, u"CHy.GetWdNameByWdh["_s, [&] {
        return firstText(u"select WDNAME from WDDZ where WDH=?"_s, {wdh}, u"WDNAME"_s);
    });
}

QString CHy::GetHyWDH(const QString &hydh)
{
    return guarded(u"CHy.GetHyWDH()"_s, u"CHy.GetHyWDH["_s, [&] {
        const QString typeId
            = firstText(u"SELECT HYTYPEID FROM HY WHERE HYDH=?"_s, {hydh}, u"HYTYPEID"_s);
        bool numeric = false;
        const qint64 id = typeId.toLongLong(&numeric);
        if (!numeric)
            return QString();
        return firstText(u"SELECT WDH FROM HYCONFIG WHERE HYTYPEID=?"_s, {id}, u"WDH"_s);
    });
}

bool CHy::isFenhang()
{
    return guarded(u"CHy"_s, u"isFenhang["_s, [&] {
        return firstValue(u"SELECT MASTERNO From WDDZ WHERE WDH IN"
                          "(SELECT MASTERNO From WDDZ WHERE WDH = ?)"_s,
                          {m_config->DEPARTID}, u"MasterNo"_s)
            == HeadOfficeParent;
    });
}

bool CHy::isManager(const QString &hydh)
{
    // The database-error text begins like isFenhang's, as the system has always reported it.
    const auto hyqx = guarded(u"CHy"_s, u"isFenhang["_s, [&] {
        return firstValue(
            u"SELECT b.HYQX FROM HY a INNER JOIN  HYCONFIG b ON a.HYTYPEID = b.HYTYPEID "
            " WHERE (a.HYDH = ?)"_s,
            {hydh}, u"HYQX"_s);
    });
    if (!hyqx)
        throw QuarryError(QuarryError::DataError, u"CHy"_s, u"isManager : 行员不存在权限!"_s);
    return hasManagerRight(*hyqx);
}

bool CHy::isPowerGroup(const QString &name)
{
    const auto hyqx = guarded(u"CHy"_s, u"isPowerGroup["_s, [&] {
        return firstValue(u"select HYQX from HYCONFIG where HYTYPENAME=?"_s, {name}, u"HYQX"_s);
    });
    if (!hyqx)
        throw QuarryError(QuarryError::DataError, u"CHy"_s, u"isPowerGroup : 行员组不存在权限!"_s);
    return hasManagerRight(*hyqx);
}

bool CHy::GetHyInfoByHydh(const QString &hydh)
{
    return guarded(u"CHy.GetHyInfoByHydh()"_s, u"CHy.GetHyInfoByHydh["_s, [&] {
        DbRecordSet records;
        records.open(u"select HY.*,HYCONFIG.HYTYPENAME,HYCONFIG.ALLOWNUM,HYCONFIG.HYQX from HY "
                     "inner join HYCONFIG on HY.HYTYPEID=HYCONFIG.HYTYPEID where HYDH=?"_s,
                     LocalConn(), {hydh});
        if (records.eof())
            return false;
        fillRecord(records);
        return true;
    });
}

void CHy::fillRecord(const DbRecordSet &records)
{
    hydh = records.field(u"HYDH"_s);
    Hyname = records.field(u"HYNAME"_s);
    Hypwd = records.field(u"HYMM"_s);
    Hyqx = records.field(u"HYQX"_s);
    HyTypeId = records.field(u"HYTYPEID"_s).toInt();
    HyTypeName = records.field(u"HYTYPENAME"_s);
    Wdh = records.field(u"WDH"_s);
    Allownum = records.field(u"ALLOWNUM"_s).toInt();
    IsAudit = records.field(u"ISAUDIT"_s).toShort();
    GetOpType = records.field(u"OpType"_s).toShort();
    GetIfConfirm = records.field(u"IfConfirm"_s).toShort();
    if (IncludeDate) {
        qysj = records.field(u"QYSJ"_s);
        Zxsj = records.field(u"ZXSJ"_s);
    }
    if (IfPwdExpire)
        PwdExpDate = records.field(u"PWDEXPDATE"_s);
}

QString CHy::GetHynameByHydh(const QString &hydh)
{
    return guarded(u"CHy.GetHynameByHydh()"_s, u"CHy.GetHynameByHydh["_s, [&] {
        return firstText(u"select HYNAME from HY where HYDH=?"_s, {hydh}, u"hyname"_s);
    });
}

QString CHy::GetBranchWdh(const QString &wdh)
{
    const QString source = u"CHy::GetBranchWdh()"_s;
    const auto read = [&](const QString &sql, const QVariantList &params, const QString &field) {
        return guarded(source, u"CHy::GetBranchWdh["_s,
                       [&] { return firstValue(sql, params, field); });
    };

    const auto headOffice = read(u"select WDH from WDDZ where MASTERNO='000'"_s, {}, u"WDH"_s);
    if (!headOffice)
        throw QuarryError(QuarryError::DataError, source, u"网点对照表中没有总行！"_s);
    if (wdh == *headOffice)
        return wdh;
    QString branch = wdh;
    QSet<QString> walked;
    for (;;) {
        if (walked.contains(branch))
            raiseLogged(source,
                        u"网点对照表中网点"_s + wdh
                            + u"的上级关系构成循环，找不到它所属的分行！"_s);
        walked.insert(branch);
        const auto master
            = read(u"select MASTERNO from WDDZ where WDH=?"_s, {branch}, u"MASTERNO"_s);
        if (!master)
            throw QuarryError(QuarryError::DataError, source,
                              u"网点号"_s + branch + u"不在网点对照表中"_s);
        if (*master == *headOffice)
            return branch;
        branch = *master;
    }
}

} // namespace quarry
