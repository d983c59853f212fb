#pragma once

#include <QByteArray>
#include <QStringEncoder>
#include <QStringList>
#include <QVariantList>

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
    // A row of values, each as its text (QVariant::toString), a null one
    // empty.
    void writeRow(const QVariantList &values);
    // False once a write to the device failed.
    bool ok() const { return m_ok; }

private:
    void appendValue(const QVariant &value);
    void appendField(QStringView text);
    void appendUtf8(QStringView text);
    void endRow();

    QIODevice &m_device;
    // The row being written, its room kept from row to row.
    QByteArray m_line;
    qsizetype m_fields = 0;
    QStringEncoder m_utf8{QStringEncoder::Utf8};
    bool m_ok = true;
};

} // namespace quarry::viewer
