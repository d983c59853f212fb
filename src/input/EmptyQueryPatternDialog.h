#pragma once

#include "input/PatternDialog.h"

#include <quarry/CSysCfg.h>

namespace quarry {

// A pattern dialog whose empty input follows the bank's empty-query rule,
// read from the station's configuration when the dialog is made.
class QUARRY_EXPORT EmptyQueryPatternDialog : public PatternDialog
{
    Q_OBJECT

protected:
    EmptyQueryPatternDialog(const QString &name, const QString &title, const QString &prompt,
                            const QString &boxName);

    bool mayQuery(const QString &typed) final;
    const CSysCfg &config() const { return m_config; }

private:
    CSysCfg m_config;
};

} // namespace quarry
