#pragma once

#include "input/Conditions.h"
#include "logdialogs/LogQueryDialog.h"

class QLabel;

namespace quarry {

// What frmPTFHLog has stored when OK builds its clause ("" where nothing was
// given), and the fields the host offered.
struct PTFHLogValues
{
    QString account;    // a LIKE pattern
    QString teller;     // trimmed, used as typed
    QString branchPart; // "" for none
    QString sealCard;   // a LIKE pattern
    DateRange dates;
    bool showOpCode = false;
    bool showWdh = false;
    bool showYjk = false;
};

QUARRY_EXPORT QString ptfhLogClause(const PTFHLogValues &values);

// The compound log query, for every log without a dialog of its own.
class QUARRY_EXPORT frmPTFHLog : public LogQueryDialog
{
    Q_OBJECT

public:
    frmPTFHLog();

    bool ShowWDH = false;
    bool ShowYJK = false;
    bool ShowOpCode = false;
    using LogQueryDialog::checkNumber;

protected:
    void Form_Load() override;

private:
    void BtnOk_Click();

    QLineEdit *TxtAccNo;
    QLineEdit *TxtHy;
    QLineEdit *TxtYJKNumber;
    QLabel *lblInfo;
    PTFHLogValues m_values;
};

} // namespace quarry
