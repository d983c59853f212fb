#pragma once

#include "input/PatternDialog.h"

namespace quarry {

// Asks for a seal-card number pattern.
class QUARRY_EXPORT FrmYJK : public PatternDialog
{
    Q_OBJECT

public:
    FrmYJK();

protected:
    QString buildCondition(const QString &typed) const override;
};

} // namespace quarry
