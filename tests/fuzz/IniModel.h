#pragma once

// What the INI fuzz targets hold IniFile against: the reading rules of the
// profile functions, applied to the whole file decoded at once and split into
// lines as text, where IniFile parses the bytes of each line; and the scratch
// file they read and write.

#include "TestFiles.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringDecoder>
#include <QStringList>
#include <QTemporaryDir>

#include <utility>

namespace quarry::fuzz {

struct IniModel {
    enum class Encoding { Utf8, Gb18030, Utf16LE, Utf16BE };
    Encoding encoding = Encoding::Utf8;
    QByteArray bom;
    QStringList sectionNames; // every section line's name, as spelled
    // Every key line's section (empty before the first) and key, as spelled.
    QList<std::pair<QString, QString>> keyNames;
    // Case-folded section -> case-folded key -> value, as reading gives them.
    QHash<QString, QHash<QString, QString>> values;
};

inline QStringView trimBlanks(QStringView text)
{
    while (!text.isEmpty() && (text.front() == u' ' || text.front() == u'\t'))
        text = text.sliced(1);
    while (!text.isEmpty() && (text.back() == u' ' || text.back() == u'\t'))
        text.chop(1);
    return text;
}

inline QString foldName(QStringView name)
{
    return trimBlanks(name).toString().toCaseFolded();
}

// A value as reading hands it out: trimmed of blanks and tabs, one pair of
// matching quotes removed, cut at the first NUL and to 255 characters, never
// ending in the first half of a surrogate pair.
inline QString readValue(QStringView raw)
{
    QString value = trimBlanks(raw).toString();
    if (value.size() >= 2 && (value.front() == u'"' || value.front() == u'\'') && value.back() == value.front())
        value = value.sliced(1, value.size() - 2);
    if (const qsizetype nul = value.indexOf(QChar(u'\0')); nul >= 0)
        value.truncate(nul);
    if (value.size() > 255) {
        value.truncate(255);
        if (value.back().isHighSurrogate())
            value.chop(1);
    }
    return value;
}

// The text after the BOM. UTF-16 is taken unit by unit, a stray last byte
// left out; a character cut off at the end of the file reads as U+FFFD.
inline QString decodeText(QByteArrayView body, IniModel::Encoding encoding)
{
    if (encoding == IniModel::Encoding::Utf16LE || encoding == IniModel::Encoding::Utf16BE) {
        const bool bigEndian = encoding == IniModel::Encoding::Utf16BE;
        QString text;
        for (qsizetype at = 0; at + 1 < body.size(); at += 2) {
            const auto first = char16_t(uchar(body[at])), second = char16_t(uchar(body[at + 1]));
            text += QChar(bigEndian ? char16_t(first << 8 | second) : char16_t(second << 8 | first));
        }
        return text;
    }
    QStringDecoder decoder(encoding == IniModel::Encoding::Utf8 ? "UTF-8" : "GB18030",
                           QStringConverter::Flag::Stateless | QStringConverter::Flag::ConvertInitialBom);
    QString text = decoder.decode(body.toByteArray() + '\n');
    text.chop(1);
    return text;
}

inline IniModel readIni(const QByteArray &bytes)
{
    IniModel ini;
    if (bytes.startsWith("\xEF\xBB\xBF")) {
        ini.bom = bytes.first(3);
    } else if (bytes.startsWith("\xFF\xFE")) {
        ini.encoding = IniModel::Encoding::Utf16LE;
        ini.bom = bytes.first(2);
    } else if (bytes.startsWith("\xFE\xFF")) {
        ini.encoding = IniModel::Encoding::Utf16BE;
        ini.bom = bytes.first(2);
    } else if (!bytes.isValidUtf8()) {
        ini.encoding = IniModel::Encoding::Gb18030;
    }
    QString text = decodeText(QByteArrayView(bytes).sliced(ini.bom.size()), ini.encoding);
    // Lines end at CR LF, LF and a lone CR.
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');

    QString spelledSection;
    QString section;
    bool collecting = false; // not before the first section, nor under a repeated one
    for (const QString &whole : text.split(u'\n')) {
        const QStringView line = trimBlanks(whole);
        if (line.isEmpty() || line.startsWith(u';'))
            continue;
        if (const qsizetype close = line.lastIndexOf(u']'); line.startsWith(u'[') && close > 0) {
            spelledSection = trimBlanks(line.sliced(1, close - 1)).toString();
            ini.sectionNames.append(spelledSection);
            section = foldName(spelledSection);
            collecting = !ini.values.contains(section);
            if (collecting)
                ini.values.insert(section, {});
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        if (equals <= 0) // none, or "=value", which names no key
            continue;
        const QString key = trimBlanks(line.first(equals)).toString();
        ini.keyNames.append({spelledSection, key});
        if (collecting && !ini.values[section].contains(foldName(key)))
            ini.values[section].insert(foldName(key), readValue(line.sliced(equals + 1)));
    }
    return ini;
}

// One scratch file for the whole run, now holding these bytes.
inline QString scratchFile(const QByteArray &bytes)
{
    static const QTemporaryDir dir;
    static const QString path = dir.filePath(QStringLiteral("seal.ini"));
    test::writeFile(path, bytes);
    return path;
}

} // namespace quarry::fuzz
