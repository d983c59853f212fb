#pragma once

#include "input/PatternDialog.h"

#include <quarry/CSysCfg.h>

namespace quarry {

// Asks for an account number pattern; empty input follows the bank's empty-query rule.
class QUARRY_EXPORT frmAcc : public PatternDialog
{
    Q_OBJECT

public:
    frmAcc();

protected:
    bool mayQuery(const QString &typed) override;
    QString buildCondition(const QString &typed) const override;

private:
    CSysCfg m_config;
};

} // namespace quarry
