#pragma once

#include "input/Conditions.h"
#include "logdialogs/LogQueryDialog.h"

#include <memory>

namespace quarry {

class CSysCfgDb;

// What frmSealResultStat reads at OK.
struct SealResultStatValues
{
    QString branchPattern; // LIKE patterns
    QString tellerPattern;
    DateRange dates;
};

// The whole SELECT that counts, per operator, the bills recognised in the
// range, how many passed and the pass rate, with the operator's branch: in
// MySQL's words on MySQL, in SQL Server's on every other database. A teller pattern without a
// branch pattern starts its filter with " and", as hosts have always received it.
QUARRY_EXPORT QString sealResultStatement(const SealResultStatValues &values, SqlDialect dialect);

// The seal result statistics: asks for a branch, a teller and a date range
// and hands back a whole statement rather than a condition.
class QUARRY_EXPORT frmSealResultStat : public LogQueryDialog
{
    Q_OBJECT

public:
    frmSealResultStat();
    ~frmSealResultStat() override;

protected:
    void Form_Load() override;

private:
    // An empty end box gets the business date.
    void fillBusinessDate();
    void cmdOK_Click();

    QLineEdit *txtWdh;
    QLineEdit *TxtHy;
    std::unique_ptr<CSysCfgDb> m_db;
};

} // namespace quarry
