#pragma once

#include "input/ConditionDialog.h"

#include <quarry/CSysCfg.h>

class QPushButton;

namespace quarry {

class MaskEdBox;

// Asks for a range of operation dates. Blank boxes mean open ends; the
// bank's empty-query rule applies when both are blank.
class QUARRY_EXPORT FrmDate : public ConditionDialog
{
    Q_OBJECT

public:
    FrmDate();

protected:
    // Previews the keys of every control: Esc and the keypad's multiply key
    // cancel from anywhere, Enter and Up walk the date boxes.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void cmdOK_Click();

    CSysCfg m_config;
    MaskEdBox *MaskBoxKs;
    MaskEdBox *MaskBoxJs;
    QPushButton *cmdOK;
    QPushButton *cmdCancel;
};

} // namespace quarry
