#pragma once

#include <QStringList>

class QIODevice;

namespace quarry::viewer {

// Rows as CSV for spreadsheets: UTF-8 with a byte order mark first, fields
// quoted where they hold a separator, a quote or a line break, lines ended
// by CR LF.
class CsvWriter
{
public:
    // Writes the byte order mark.
    explicit CsvWriter(QIODevice &device);

    void writeRow(const QStringList &fields);
    // False once a write to the device failed.
    bool ok() const { return m_ok; }

    static QString field(const QString &text);

private:
    void write(const QByteArray &bytes);

    QIODevice &m_device;
    bool m_ok = true;
};

} // namespace quarry::viewer
