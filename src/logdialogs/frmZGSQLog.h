#pragma once

#include "input/Conditions.h"
#include "logdialogs/CodeList.h"
#include "logdialogs/LogQueryDialog.h"

namespace quarry {

// What frmZGSQLog has stored when OK builds its clause ("" where nothing
// was given).
struct ZGSQLogValues
{
    QString supervisor; // trimmed, used as typed
    QString operation;  // the list's text
    DateRange dates;
};

QUARRY_EXPORT QString zgsqLogClause(const ZGSQLogValues &values, SqlDialect dialect);

// The supervisor authorisation log query. The keypad's multiply key closes
// it; Esc does not.
class QUARRY_EXPORT frmZGSQLog : public LogQueryDialog
{
    Q_OBJECT

public:
    frmZGSQLog();

    void setZgsqId(const QList<qint16> &ids) { m_operations.ids = ids; }
    void setZgsqType(const QStringList &names) { m_operations.names = names; }
    qint32 lZgsqCount = 0;
    void showZgsqDes();

protected:
    void Form_Load() override { }

private:
    void Command1_Click();

    QLineEdit *TxtCha;
    QComboBox *ComSQLX;
    CodeList m_operations;
    ZGSQLogValues m_values;
};

} // namespace quarry
