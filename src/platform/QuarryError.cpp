#include <quarry/QuarryError.h>

#include <utility>

namespace quarry {

QuarryError::QuarryError(qint32 number, QString source, QString description)
    : m_number(number)
    , m_source(std::move(source))
    , m_description(std::move(description))
    , m_what(QStringLiteral("%1: %2 (%3)").arg(m_source, m_description).arg(m_number).toUtf8())
{
}

const char *QuarryError::what() const noexcept
{
    return m_what.constData();
}

} // namespace quarry
