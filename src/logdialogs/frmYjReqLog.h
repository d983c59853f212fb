#pragma once

#include "input/Conditions.h"
#include "logdialogs/LogQueryDialog.h"

namespace quarry {

// What frmYjReqLog reads at OK.
struct YjReqLogValues
{
    QString branch; // trimmed, used as typed
    DateRange dates;
};

// Dates compared with ">=" and "<=", upper-case columns, and the branch as
// the log holds it: with the prefix "Bank" as the branch, without as the
// master branch.
QUARRY_EXPORT QString yjReqLogClause(const YjReqLogValues &values);

// The seal request log query. It takes no settings from the host.
class QUARRY_EXPORT frmYjReqLog : public LogQueryDialog
{
    Q_OBJECT

public:
    frmYjReqLog();

protected:
    void Form_Load() override;

private:
    void cmdOK_Click();

    QLineEdit *txtWdh;
};

} // namespace quarry
