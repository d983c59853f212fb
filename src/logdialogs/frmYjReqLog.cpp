#include "logdialogs/frmYjReqLog.h"

#include "logdialogs/LogClause.h"

#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace quarry {

QString yjReqLogClause(const YjReqLogValues &v)
{
    const QString dates = u"OPDATE >='"_s + quotable(v.dates.start) + u"' and OPDATE <='"_s
        + quotable(v.dates.end) + u"'"_s;
    if (v.branch.isEmpty())
        return u" where "_s + dates;
    const QString branch = quotable(v.branch);
    return u" where (BranchNo='Bank"_s + branch + u"' or MasterNo='"_s + branch + u"' ) and ("_s
        + dates + u")"_s;
}

frmYjReqLog::frmYjReqLog()
    : LogQueryDialog(u"frmYjReqLog"_s, u"复合查询"_s)
{
    txtWdh = addTextBox(u"txtWdh"_s, u"网点代号:"_s, Typing::AsTyped);
    addDateRange(u"txtStDate"_s, u"txtEndDate"_s);
    addButtons(u"cmdOK"_s, u"确  定"_s, u"cmdCancel"_s, u"取  消"_s, [this] { cmdOK_Click(); });
    setCancelKeys(CancelKeys::None);
    setKeys({txtWdh}, {.up = Move::Keep});
    setKeys({dates().start(), dates().end()}, {});
}

void frmYjReqLog::Form_Load()
{
    // Typing replaces whatever the box holds.
    txtWdh->selectAll();
}

void frmYjReqLog::cmdOK_Click()
{
    const std::optional<DateRange> range = dates().check();
    if (!range)
        return;
    setCondition(yjReqLogClause({txtWdh->text().trimmed(), *range}));
    accept();
}

} // namespace quarry
