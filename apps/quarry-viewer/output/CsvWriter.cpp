#include "CsvWriter.h"

#include <QIODevice>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

CsvWriter::CsvWriter(QIODevice &device)
    : m_device(device)
{
    write("\xEF\xBB\xBF");
}

void CsvWriter::writeRow(const QStringList &fields)
{
    QStringList quoted;
    quoted.reserve(fields.size());
    for (const QString &text : fields)
        quoted.append(field(text));
    write(quoted.join(u',').toUtf8() + "\r\n");
}

QString CsvWriter::field(const QString &text)
{
    const bool plain = !text.contains(u',') && !text.contains(u'"') && !text.contains(u'\n')
        && !text.contains(u'\r');
    if (plain)
        return text;
    QString doubled = text;
    doubled.replace(u"\""_s, u"\"\""_s);
    return u'"' + doubled + u'"';
}

void CsvWriter::write(const QByteArray &bytes)
{
    if (m_ok && m_device.write(bytes) != bytes.size())
        m_ok = false;
}

} // namespace quarry::viewer
