#pragma once

#include "input/Conditions.h"
#include "logdialogs/CodeList.h"
#include "logdialogs/LogQueryDialog.h"

namespace quarry {

// What frmYWLog has stored when OK builds its clause ("" where nothing was
// given).
struct YWLogValues
{
    QString account;      // a LIKE pattern
    QString teller;       // trimmed, used as typed
    QString sealCard;     // a number
    QString businessType; // the list's text
    DateRange dates;
};

// The clause with the branch part ("" for none).
// The business type, a description of the host's list, is matched as the
// dialect reads it.
QUARRY_EXPORT QString ywLogClause(const YWLogValues &values, const QString &branchPart,
                                  SqlDialect dialect);

// The business log query.
class QUARRY_EXPORT frmYWLog : public LogQueryDialog
{
    Q_OBJECT

public:
    frmYWLog();

    bool ShowWDH = false;
    bool ShowYJK = false;
    qint32 lYwCount = 0;
    void setYwName(const QStringList &names) { m_types.names = names; }
    void setYwId(const QList<qint16> &ids) { m_types.ids = ids; }
    void showYwDes();
    using LogQueryDialog::checkNumber;

protected:
    void Form_Load() override;

private:
    void TxtYJKNumber_LostFocus();
    void BtnOk_Click();

    QLineEdit *TxtAccNo;
    QLineEdit *TxtHy;
    QComboBox *comOpType;
    QLineEdit *TxtYJKNumber;
    CodeList m_types;
    YWLogValues m_values;
};

} // namespace quarry
