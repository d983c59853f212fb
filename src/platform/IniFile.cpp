#include "platform/IniFile.h"

namespace quarry {

IniFile IniFile::load(const QString &path)
{
    Q_UNUSED(path);
    return {};
}

QString IniFile::value(const QString &section, const QString &key) const
{
    return m_sections.value(section.toLower()).value(key.toLower());
}

bool IniFile::hasSection(const QString &section) const
{
    return m_sections.contains(section.toLower());
}

bool IniFile::write(const QString &path, const QString &section, const QString &key,
                    const QString &value)
{
    Q_UNUSED(path);
    Q_UNUSED(section);
    Q_UNUSED(key);
    Q_UNUSED(value);
    return false;
}

} // namespace quarry
