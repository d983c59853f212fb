#pragma once

#include "input/PatternDialog.h"

namespace quarry {

// Asks for a branch number pattern, matched in upper and in lower case.
class QUARRY_EXPORT frmWdh : public PatternDialog
{
    Q_OBJECT

public:
    frmWdh();

protected:
    QString buildCondition(const QString &typed) const override;
};

} // namespace quarry
