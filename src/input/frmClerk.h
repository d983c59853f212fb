#pragma once

#include "input/PatternDialog.h"

#include <quarry/CSysCfg.h>

namespace quarry {

// Asks for a teller code pattern (profile 39 also matches the teller's name); empty input follows
// the bank's empty-query rule.
class QUARRY_EXPORT frmClerk : public PatternDialog
{
    Q_OBJECT

public:
    frmClerk();

protected:
    bool mayQuery(const QString &typed) override;
    QString buildCondition(const QString &typed) const override;

private:
    CSysCfg m_config;
};

} // namespace quarry
