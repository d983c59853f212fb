#pragma once

#include "input/EmptyQueryPatternDialog.h"

namespace quarry {

// Asks for an account number pattern.
class QUARRY_EXPORT frmAcc : public EmptyQueryPatternDialog
{
    Q_OBJECT

public:
    frmAcc();

protected:
    QString buildCondition(const QString &typed) const override;
};

} // namespace quarry
