#pragma once

#include "input/Conditions.h"
#include "logdialogs/CodeList.h"
#include "logdialogs/LogClause.h"
#include "logdialogs/LogQueryDialog.h"

namespace quarry {

// What frmYYLog has stored when OK builds its clause: the values kept as
// the operator left each field ("" where nothing was given), the cheque
// range and the checked dates.
struct YYLogValues
{
    QString teller;   // trimmed, used as typed
    QString account;  // a LIKE pattern
    QString sealCard; // a LIKE pattern
    QString method;   // the lists' texts
    QString result;
    ChequeRange cheques;
    DateRange dates;
};

// The clause up to the cheque range: what OK stores before it checks the
// branch.
QUARRY_EXPORT QString yyLogHead(const YYLogValues &values);
// The whole clause with the branch part ("" for none).
// The method and the result, descriptions of the host's lists, are compared
// as the dialect reads them.
QUARRY_EXPORT QString yyLogClause(const YYLogValues &values, const QString &branchPart,
                                  SqlDialect dialect);

// The seal verification log query.
class QUARRY_EXPORT frmYYLog : public LogQueryDialog
{
    Q_OBJECT

public:
    frmYYLog();

    bool ShowWDH = false;
    bool ShowYJK = false;

    void setOpId(const QList<qint16> &ids) { m_methods.ids = ids; }
    void setOpStyle(const QStringList &names) { m_methods.names = names; }
    qint32 lOpCount = 0;
    void setResId(const QList<qint16> &ids) { m_results.ids = ids; }
    void setResName(const QStringList &names) { m_results.names = names; }
    qint32 lResCount = 0;
    void showYyDes();

protected:
    void Form_Load() override;

private:
    void BtnOk_Click();

    QLineEdit *TxtHy;
    QLineEdit *TxtAccNo;
    QLineEdit *TxtBZP;
    QLineEdit *TxtEZP;
    QLineEdit *TxtYJKNumber;
    QComboBox *cmbOpType;
    QComboBox *cmbOpResult;
    CodeList m_methods;
    CodeList m_results;
    YYLogValues m_values;
};

} // namespace quarry
