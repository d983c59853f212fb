#pragma once

#include "input/ConditionDialog.h"
#include "input/DateRangeBoxes.h"

#include <quarry/CSysCfg.h>

class QFormLayout;
class QPushButton;

namespace quarry {

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
    QFormLayout *m_fields;
    DateRangeBoxes m_dates;
    QPushButton *cmdOK;
    QPushButton *cmdCancel;
};

} // namespace quarry
