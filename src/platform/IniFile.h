#pragma once

#include <quarry/quarry_export.h>

#include <QHash>
#include <QString>

namespace quarry {

// A snapshot of one INI file, read with the rules of the Windows profile
// functions that seal.ini has always been written for: names match without
// regard to case, the first of duplicate sections and keys wins, values are
// trimmed, unquoted and cut to 255 characters.
//
// Encoding: a BOM decides; without one, valid UTF-8 is UTF-8 and anything
// else is GB18030 (files written on Chinese Windows).
class QUARRY_EXPORT IniFile
{
public:
    // A missing or unreadable file gives an empty snapshot.
    static IniFile load(const QString &path);

    // The value as GetPrivateProfileString copies it out; empty when the
    // section or key is missing or the value is empty.
    QString value(const QString &section, const QString &key) const;
    bool hasSection(const QString &section) const;

    // WritePrivateProfileString: changes only the value of the key (or adds
    // the key at the end of its section, or the section at the end of the
    // file) and keeps every other byte, the encoding and the line endings.
    // Writes through a temporary file and a rename. False when the file
    // could not be read or written, and for a section, key or value that
    // would not read back as written (a line break or NUL anywhere, a "]" in
    // the section, an empty key or one with "=" or starting with ";" or "[");
    // the file is then left as it was.
    static bool write(const QString &path, const QString &section, const QString &key,
                      const QString &value);

private:
    // Case-folded section name -> case-folded key -> value.
    QHash<QString, QHash<QString, QString>> m_sections;
};

} // namespace quarry
