#include "input/EmptyQueryPatternDialog.h"

#include "input/EmptyQueryRule.h"

namespace quarry {

EmptyQueryPatternDialog::EmptyQueryPatternDialog(const QString &name, const QString &title,
                                                 const QString &prompt, const QString &boxName)
    : PatternDialog(name, title, prompt, boxName)
{
    m_config.GetParameter();
}

bool EmptyQueryPatternDialog::mayQuery(const QString &typed)
{
    return passesEmptyQueryRule(this, m_config, typed.trimmed().isEmpty());
}

} // namespace quarry
