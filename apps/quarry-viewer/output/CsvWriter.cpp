#include "CsvWriter.h"

#include <QIODevice>

#include <algorithm>
#include <charconv>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

CsvWriter::CsvWriter(QIODevice &device)
    : m_device(device)
{
    if (m_device.write("\xEF\xBB\xBF") != 3)
        m_ok = false;
}

void CsvWriter::writeRow(const QStringList &fields)
{
    for (const QString &text : fields)
        appendField(text);
    endRow();
}

void CsvWriter::writeRow(const QVariantList &values)
{
    for (const QVariant &value : values)
        appendValue(value);
    endRow();
}

// The texts a log's rows hold most, written without a QString of their own.
void CsvWriter::appendValue(const QVariant &value)
{
    if (value.isNull()) {
        appendField({});
        return;
    }
    char digits[24];
    std::to_chars_result number{};
    switch (value.typeId()) {
    case QMetaType::QString:
        appendField(*static_cast<const QString *>(value.constData()));
        return;
    case QMetaType::LongLong:
        number = std::to_chars(digits, std::end(digits),
                               *static_cast<const qlonglong *>(value.constData()));
        break;
    case QMetaType::Int:
        number
            = std::to_chars(digits, std::end(digits), *static_cast<const int *>(value.constData()));
        break;
    default:
        appendField(value.toString());
        return;
    }
    appendField({});
    m_line.append(digits, number.ptr - digits);
}

void CsvWriter::appendField(QStringView text)
{
    if (m_fields++ > 0)
        m_line.append(',');
    const bool quoted = std::any_of(text.cbegin(), text.cend(), [](QChar c) {
        return c == u',' || c == u'"' || c == u'\n' || c == u'\r';
    });
    if (!quoted) {
        appendUtf8(text);
        return;
    }
    m_line.append('"');
    for (qsizetype from = 0, quote = 0; quote >= 0; from = quote + 1) {
        quote = text.indexOf(u'"', from);
        appendUtf8(text.sliced(from, (quote < 0 ? text.size() : quote + 1) - from));
        if (quote >= 0)
            m_line.append('"');
    }
    m_line.append('"');
}

void CsvWriter::appendUtf8(QStringView text)
{
    const qsizetype at = m_line.size();
    m_line.resize(at + m_utf8.requiredSpace(text.size()));
    char *const end = m_utf8.appendToBuffer(m_line.data() + at, text);
    m_line.resize(end - m_line.constData());
}

void CsvWriter::endRow()
{
    m_line.append("\r\n");
    if (m_ok && m_device.write(m_line) != m_line.size())
        m_ok = false;
    m_line.resize(0);
    m_fields = 0;
}

} // namespace quarry::viewer
