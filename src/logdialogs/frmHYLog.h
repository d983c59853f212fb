#pragma once

#include "input/Conditions.h"
#include "logdialogs/CodeList.h"
#include "logdialogs/LogQueryDialog.h"

class QLabel;

namespace quarry {

// What frmHYLog has stored when OK builds its clause ("" where nothing was
// given). All three are used as typed.
struct HYLogValues
{
    QString operatorTeller;
    QString reviewingTeller; // a code, or under bank profile 39 also a name
    QString operationType;
    DateRange dates;
};

// The clause with the branch part ("" for none, as OK first stores it).
// Only bank profile 39 matches names and the reviewing teller.
QUARRY_EXPORT QString hyLogClause(const HYLogValues &values, qint16 profileCode,
                                  const QString &branchPart);

// The teller administration log query.
class QUARRY_EXPORT frmHYLog : public LogQueryDialog
{
    Q_OBJECT

public:
    frmHYLog();

    // "True" or "False": the host has always handed this flag over as text.
    QString ShowWDH = QStringLiteral("False");
    void setOpId(const QList<qint16> &ids) { m_types.ids = ids; }
    void setOpType(const QStringList &names) { m_types.names = names; }
    qint32 lOpCount = 0;
    void showOpDes();

protected:
    void Form_Load() override;

private:
    bool branchShown() const;
    void TxtOpType_KeyUp();
    void BtnOk_Click();

    QLineEdit *TxtHy;
    QLineEdit *TxtCha;
    QLineEdit *TxtOpType;
    QLabel *OpShow;
    QLabel *Label3;
    CodeList m_types;
    HYLogValues m_values;
};

} // namespace quarry
