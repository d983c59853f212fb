#pragma once

#include <quarry/quarry_export.h>

#include <QHash>
#include <QString>

namespace quarry {

// A snapshot of one INI file, read with the rules of the Windows profile
// functions that seal.ini has always been written for: names match without
// regard to case, the first of duplicate sections and keys wins, the last "]"
// of a line closes a section name, values are trimmed of blanks and tabs,
// unquoted and cut to 255 characters, and a line "=value" is no key. Every
// line is read as it stands: a U+FEFF at the start of any line but the first
// is part of that line.
//
// Encoding: a BOM decides; without one, valid UTF-8 is UTF-8 and anything
// else is GB18030 (files written on Chinese Windows). The stray last byte of
// a UTF-16 file with an odd number of bytes is not read.
class QUARRY_EXPORT IniFile
{
public:
    // A missing or unreadable file gives an empty snapshot.
    static IniFile load(const QString &path);

    // The value as GetPrivateProfileString copies it out; empty when the
    // section or key is missing or the value is empty.
    QString value(const QString &section, const QString &key) const;
    bool hasSection(const QString &section) const;

    // WritePrivateProfileString for a value that reads back as written.
    // Changes only the bytes of the key's old value (or adds the key at the
    // end of its section, or the section at the end of the file), in the
    // file's encoding and line breaks; every other byte stays. Writes through
    // a temporary file and a rename.
    //
    // True when value(section, key) of the file now gives exactly value and
    // every other line reads as before. Otherwise false, the file byte for
    // byte as it was, and error (when given) says why:
    // - a section, key or value with a line break or NUL, or that is not
    //   valid text (a lone surrogate);
    // - a key that is empty, holds "=" or starts with ";" or "[";
    // - a value that reading would change: blanks or tabs at either end, a
    //   pair of matching quotes around it, more than 255 characters;
    // - a file that cannot be read or written;
    // - a UTF-16 file with an odd number of bytes, whose stray byte could
    //   belong anywhere;
    // - a file without a BOM that the new bytes would make another encoding,
    //   changing how its other lines read (GB18030 text whose last byte that
    //   is not UTF-8 is replaced). Text that reads the same either way (ASCII
    //   only) is written.
    static bool write(const QString &path, const QString &section, const QString &key,
                      const QString &value, QString *error = nullptr);

private:
    // Case-folded section name -> case-folded key -> value.
    QHash<QString, QHash<QString, QString>> m_sections;
};

} // namespace quarry
