#include "logdialogs/frmSealResultStat.h"

#include "input/OperatorMessage.h"
#include "input/PublicFunction.h"
#include "logdialogs/LogClause.h"

#include <quarry/CSysCfgDb.h>

#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace quarry {

QString sealResultStatement(const SealResultStatValues &v, SqlDialect dialect)
{
    const bool mySql = dialect == SqlDialect::MySql;
    const QString start = quotable(v.dates.start), end = quotable(v.dates.end);
    QString statement = mySql
        ? u"SELECT 1 AS id, HY.wdh, TotalPj.opcode, TotalPj.total, PassedPj.passed, TotalPj.total "
          u"- PassedPj.passed AS NotPassed, "
          " CONCAT(CAST(CAST(PassedPj.passed * 100.0 / TotalPj.total as decimal(10, 2)) AS char), '%') AS percent,"_s
        : u"SELECT 1 AS id, dbo.HY.wdh, TotalPj.opcode, TotalPj.total, PassedPj.passed, "
          u"TotalPj.total - PassedPj.passed AS NotPassed, "
          " CAST(CONVERT(decimal(10, 2),PassedPj.passed * 100.0 / TotalPj.total) AS varchar) + '%' AS [percent],"_s;
    statement += u" '"_s + start + u"' AS BeginDate, '"_s + end + u"' AS EndDate "_s
        + u" FROM (SELECT COUNT(chequeno) AS total, opcode From pjsblog "_s
        + u" WHERE opresult IN (0, 1, 4, 5) AND opdate BETWEEN '"_s + start + u"' AND '"_s + end
        + u"' GROUP BY opcode) TotalPj "_s
        + u" INNER JOIN (SELECT COUNT(chequeno) AS passed, opcode From pjsblog "_s
        + u" WHERE opresult IN (0, 4) AND opdate BETWEEN '"_s + start + u"' AND '"_s + end + u"'"_s
        + u" GROUP BY opcode) PassedPj ON TotalPj.opcode = PassedPj.opcode "_s
        + (mySql ? u" INNER JOIN HY ON TotalPj.opcode = HY.HYDH"_s
                 : u" INNER JOIN dbo.HY ON TotalPj.opcode = dbo.HY.HYDH"_s);
    if (v.branchPattern != u"%"_s)
        statement += u" where wdh like '"_s + quotable(v.branchPattern) + u"'"_s;
    if (v.tellerPattern != u"%"_s)
        statement += u" and TotalPj.opcode like'"_s + quotable(v.tellerPattern) + u"'"_s;
    return statement;
}

frmSealResultStat::frmSealResultStat()
    : LogQueryDialog(u"frmSealResultStat"_s, u"验印结果统计"_s)
{
    txtWdh = addTextBox(u"txtWdh"_s, u"网点号:"_s, Typing::Pattern);
    TxtHy = addTextBox(u"TxtHy"_s, u"操作行员:"_s, Typing::Pattern);
    addDateRange(u"maskBeginDate"_s, u"maskEndDate"_s);
    addButtons(u"cmdOK"_s, u"确定"_s, u"cmdCancel"_s, u"取消"_s, [this] { cmdOK_Click(); });
    setCancelKeys(CancelKeys::Both);
    setKeys({txtWdh, TxtHy, dates().start()}, {.down = Move::Next});
    setKeys({dates().end()}, {.down = Move::Next, .beforeNext = [this] {
                                  fillBusinessDate();
                                  return true;
                              }});
}

frmSealResultStat::~frmSealResultStat() = default;

void frmSealResultStat::Form_Load()
{
    m_db = std::make_unique<CSysCfgDb>();
}

void frmSealResultStat::fillBusinessDate()
{
    if (dates().end()->isBlank())
        dates().end()->setText(m_db->GetToday());
}

void frmSealResultStat::cmdOK_Click()
{
    SealResultStatValues values{ToLikePattern(txtWdh->text()), ToLikePattern(TxtHy->text()), {}};
    const std::optional<DateRange> range = dates().check([this] { fillBusinessDate(); });
    if (!range)
        return;
    values.dates = *range;
    const bool unlimited = values.dates.end == m_db->GetToday() && values.branchPattern == u"%"_s
        && values.tellerPattern == u"%"_s && values.dates.start == u"1980-01-01"_s;
    if (unlimited
        && !confirmOperator(
            this, u"您查询时未选择任何限制条件，可能会因为数据量很大而影响查询速度，是否继续？"_s))
        return;
    setCondition(sealResultStatement(values, sqlDialect(m_db->GetObSysCfg()->BASEMODE)));
    accept();
}

} // namespace quarry
