#pragma once

#include "input/Conditions.h"
#include "logdialogs/CodeList.h"
#include "logdialogs/LogClause.h"
#include "logdialogs/LogQueryDialog.h"

namespace quarry {

// What frmZPGLLog has at OK ("" where nothing was given).
struct ZPGLLogValues
{
    QString account;     // a LIKE pattern
    QString teller;      // trimmed, used as typed
    QString voucherType; // the list's text
    ChequeRange cheques;
    DateRange dates;
};

// Bank profile 39 also matches the teller's name; the two comparisons
// stand with no operator between them, as hosts of that profile have them.
QUARRY_EXPORT QString zpglLogClause(const ZPGLLogValues &values, qint16 profileCode,
                                    SqlDialect dialect);

// The cheque management log query.
class QUARRY_EXPORT frmZPGLLog : public LogQueryDialog
{
    Q_OBJECT

public:
    frmZPGLLog();

    void setPzId(const QList<qint16> &ids) { m_vouchers.ids = ids; }
    void setPzType(const QStringList &names) { m_vouchers.names = names; }
    qint32 lPzCount = 0;
    // Shows the second description in the list's text: the host must give
    // at least two.
    void showPzDes();

protected:
    void Form_Load() override;

private:
    // A cheque number means nothing without an account; false, after
    // telling the operator, for one typed into box alone.
    bool chequeNeedsAccount(const QLineEdit *box);
    void CmdYes_Click();

    QLineEdit *TxtAccNo;
    QLineEdit *TxtHy;
    QLineEdit *TxtBZP;
    QLineEdit *TxtEZP;
    QComboBox *ComPZ;
    CodeList m_vouchers;
    qint32 m_chequeLength = 0;
    ZPGLLogValues m_values;
};

} // namespace quarry
