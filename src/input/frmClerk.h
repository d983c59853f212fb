#pragma once

#include "input/EmptyQueryPatternDialog.h"

namespace quarry {

// Asks for a teller code pattern (profile 39 also matches the teller's name).
class QUARRY_EXPORT frmClerk : public EmptyQueryPatternDialog
{
    Q_OBJECT

public:
    frmClerk();

protected:
    QString buildCondition(const QString &typed) const override;
};

} // namespace quarry
