#include "platform/IniFile.h"

#include <QFile>
#include <QList>
#include <QSaveFile>
#include <QStringDecoder>
#include <QStringEncoder>

#include <optional>

using namespace Qt::StringLiterals;

namespace quarry {

namespace {

// GetPrivateProfileString copies into a 256-character buffer, one of them for
// the terminating NUL.
constexpr qsizetype MaxValueLength = 255;

// How a file's text is stored.
struct Storage {
    const char *codec = "UTF-8";
    qsizetype bomSize = 0;
    qsizetype unitSize = 1; // bytes per code unit: CR and LF are one unit
    bool bigEndian = false;
};

Storage detectStorage(const QByteArray &bytes)
{
    if (bytes.startsWith("\xEF\xBB\xBF"))
        return {"UTF-8", 3, 1, false};
    if (bytes.startsWith("\xFF\xFE"))
        return {"UTF-16LE", 2, 2, false};
    if (bytes.startsWith("\xFE\xFF"))
        return {"UTF-16BE", 2, 2, true};
    QStringDecoder utf8(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    [[maybe_unused]] const QString decoded = utf8.decode(bytes); // decode() itself is lazy
    return {utf8.hasError() ? "GB18030" : "UTF-8", 0, 1, false};
}

char16_t unitAt(const QByteArray &bytes, qsizetype at, const Storage &storage)
{
    const auto byte = [&bytes](qsizetype i) { return char16_t(uchar(bytes[i])); };
    if (storage.unitSize == 1)
        return byte(at);
    return storage.bigEndian ? char16_t(byte(at) << 8 | byte(at + 1))
                             : char16_t(byte(at + 1) << 8 | byte(at));
}

// Byte positions of one line: its text is [begin, end), its line break
// [end, next).
struct LineSpan {
    qsizetype begin = 0;
    qsizetype end = 0;
    qsizetype next = 0;
};

// Splits at CR LF, LF and a lone CR, looking at whole code units so that
// UTF-16 text is split at its own CR and LF. In UTF-8 and GB18030 the bytes
// of CR and LF never occur inside a character.
QList<LineSpan> splitLines(const QByteArray &bytes, const Storage &storage)
{
    const qsizetype width = storage.unitSize;
    const qsizetype whole = bytes.size() - (bytes.size() - storage.bomSize) % width;
    QList<LineSpan> lines;
    qsizetype begin = storage.bomSize;
    for (qsizetype at = begin; at < whole;) {
        const char16_t unit = unitAt(bytes, at, storage);
        if (unit != u'\r' && unit != u'\n') {
            at += width;
            continue;
        }
        qsizetype next = at + width;
        if (unit == u'\r' && next < whole && unitAt(bytes, next, storage) == u'\n')
            next += width;
        lines.append({begin, at, next});
        begin = at = next;
    }
    if (begin < bytes.size())
        lines.append({begin, bytes.size(), bytes.size()});
    return lines;
}

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t';
}

qsizetype skipBlanks(QStringView text, qsizetype from)
{
    while (from < text.size() && isBlank(text[from]))
        ++from;
    return from;
}

// Only blanks and tabs: the profile functions keep other white space.
QStringView trimBlanks(QStringView text)
{
    const qsizetype begin = skipBlanks(text, 0);
    qsizetype end = text.size();
    while (end > begin && isBlank(text[end - 1]))
        --end;
    return text.sliced(begin, end - begin);
}

// What one line of an INI file is. For a key line, the value is the text
// [valueBegin, valueEnd) of the line, blanks around it excluded.
struct IniLine {
    enum class Kind { Other, Section, Key };
    Kind kind = Kind::Other;
    QString name;
    qsizetype valueBegin = 0;
    qsizetype valueEnd = 0;
};

IniLine parseLine(QStringView text)
{
    const qsizetype start = skipBlanks(text, 0);
    if (start == text.size() || text[start] == u';')
        return {};
    if (text[start] == u'[') {
        const qsizetype close = text.indexOf(u']', start + 1);
        if (close >= 0)
            return {IniLine::Kind::Section, trimBlanks(text.sliced(start + 1, close - start - 1)).toString()};
    }
    const qsizetype equals = text.indexOf(u'=', start);
    if (equals < 0)
        return {};
    const qsizetype valueBegin = skipBlanks(text, equals + 1);
    const QStringView value = trimBlanks(text.sliced(valueBegin));
    return {IniLine::Kind::Key, trimBlanks(text.sliced(start, equals - start)).toString(), valueBegin,
            valueBegin + value.size()};
}

// The value as the profile functions hand it out: one pair of matching
// quotes removed, cut at the first NUL and to the buffer's length.
QString profileValue(QStringView raw)
{
    if (raw.size() >= 2 && (raw.front() == u'"' || raw.front() == u'\'') && raw.back() == raw.front())
        raw = raw.sliced(1, raw.size() - 2);
    if (const qsizetype nul = raw.indexOf(QChar(u'\0')); nul >= 0)
        raw.truncate(nul);
    if (raw.size() > MaxValueLength) {
        raw.truncate(MaxValueLength);
        if (raw.back().isHighSurrogate())
            raw.chop(1);
    }
    return raw.toString();
}

// Section and key names compare without regard to case and to the blanks
// around them, whether they come from the file or from the caller.
QString nameKey(QStringView name)
{
    return trimBlanks(name).toString().toCaseFolded();
}

struct Line {
    LineSpan span;
    QString text;
    IniLine parsed;
};

struct Document {
    QByteArray bytes;
    Storage storage;
    QList<Line> lines;
};

// An empty document when the file does not exist; nothing when it exists but
// cannot be read (so that a write never replaces what it could not read).
std::optional<Document> readDocument(const QString &path)
{
    QFile file(path);
    if (!file.exists())
        return Document{};
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    Document document;
    document.bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return std::nullopt;
    document.storage = detectStorage(document.bytes);
    QStringDecoder decoder(document.storage.codec, QStringConverter::Flag::Stateless);
    const QByteArrayView bytes(document.bytes);
    for (const LineSpan &span : splitLines(document.bytes, document.storage)) {
        QString text = decoder.decode(bytes.sliced(span.begin, span.end - span.begin));
        IniLine parsed = parseLine(text);
        document.lines.append({span, std::move(text), std::move(parsed)});
    }
    return document;
}

qsizetype findSection(const Document &document, QStringView section)
{
    const QString wanted = nameKey(section);
    for (qsizetype i = 0; i < document.lines.size(); ++i) {
        const IniLine &parsed = document.lines[i].parsed;
        if (parsed.kind == IniLine::Kind::Section && nameKey(parsed.name) == wanted)
            return i;
    }
    return -1;
}

// A write replaces the bytes [begin, end) of the file with these bytes.
struct Splice {
    qsizetype begin = 0;
    qsizetype end = 0;
    QByteArray bytes;
};

// The file's own line break, LF for a file that has none yet.
QByteArray lineBreak(const Document &document, QStringEncoder &encoder)
{
    for (const Line &line : document.lines) {
        if (line.span.next > line.span.end)
            return document.bytes.sliced(line.span.end, line.span.next - line.span.end);
    }
    return encoder.encode(u"\n");
}

// A new line after the line at index, or at the end of a document without
// lines.
Splice insertLine(const Document &document, qsizetype index, const QByteArray &text,
                  const QByteArray &newLine)
{
    if (index < 0) {
        const qsizetype end = document.bytes.size();
        return {end, end, text + newLine};
    }
    const LineSpan &after = document.lines[index].span;
    if (after.next == after.end) // the last line, without a line break
        return {after.end, after.end, newLine + text};
    return {after.next, after.next, text + newLine};
}

Splice spliceFor(const Document &document, const QString &section, const QString &key,
                 const QString &value)
{
    QStringEncoder encoder(document.storage.codec);
    const QByteArray newLine = lineBreak(document, encoder);
    const QByteArray entry = encoder.encode(key + u'=' + value);
    const qsizetype sectionLine = findSection(document, section);
    if (sectionLine < 0) {
        const QByteArray header = encoder.encode(u'[' + section + u']');
        return insertLine(document, document.lines.size() - 1, header + newLine + entry, newLine);
    }
    const QString wanted = nameKey(key);
    qsizetype last = sectionLine; // the section's last line that is not blank
    for (qsizetype i = sectionLine + 1; i < document.lines.size(); ++i) {
        const Line &line = document.lines[i];
        if (line.parsed.kind == IniLine::Kind::Section)
            break;
        if (line.parsed.kind == IniLine::Kind::Key && nameKey(line.parsed.name) == wanted) {
            QString text = line.text;
            text.replace(line.parsed.valueBegin, line.parsed.valueEnd - line.parsed.valueBegin, value);
            return {line.span.begin, line.span.end, encoder.encode(text)};
        }
        if (!trimBlanks(line.text).isEmpty())
            last = i;
    }
    return insertLine(document, last, entry, newLine);
}

bool containsLineBreakOrNul(const QString &text)
{
    return text.contains(u'\r') || text.contains(u'\n') || text.contains(QChar(u'\0'));
}

// Names and values that would read back as something else, or break the
// line they are written to, are not written at all.
bool isWritable(const QString &section, const QString &key, const QString &value)
{
    const QStringView name = trimBlanks(key);
    return !containsLineBreakOrNul(section) && !containsLineBreakOrNul(key)
        && !containsLineBreakOrNul(value) && !section.contains(u']') && !name.isEmpty()
        && !name.contains(u'=') && !name.startsWith(u';') && !name.startsWith(u'[');
}

// Another program reading the file at the same moment sees the old or the
// new file, never half of one. QSaveFile keeps the file's permissions.
bool replaceFile(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}

} // namespace

IniFile IniFile::load(const QString &path)
{
    IniFile ini;
    const std::optional<Document> document = readDocument(path);
    if (!document)
        return ini;
    QString section;
    bool collecting = false; // no keys before the first section, nor under a repeated one
    for (const Line &line : document->lines) {
        const IniLine &parsed = line.parsed;
        if (parsed.kind == IniLine::Kind::Section) {
            section = nameKey(parsed.name);
            collecting = !ini.m_sections.contains(section);
            if (collecting)
                ini.m_sections.insert(section, {});
        } else if (parsed.kind == IniLine::Kind::Key && collecting) {
            QHash<QString, QString> &keys = ini.m_sections[section];
            const QString key = nameKey(parsed.name);
            if (!keys.contains(key))
                keys.insert(key, profileValue(QStringView(line.text).sliced(
                                     parsed.valueBegin, parsed.valueEnd - parsed.valueBegin)));
        }
    }
    return ini;
}

QString IniFile::value(const QString &section, const QString &key) const
{
    return m_sections.value(nameKey(section)).value(nameKey(key));
}

bool IniFile::hasSection(const QString &section) const
{
    return m_sections.contains(nameKey(section));
}

bool IniFile::write(const QString &path, const QString &section, const QString &key,
                    const QString &value)
{
    if (!isWritable(section, key, value))
        return false;
    const std::optional<Document> document = readDocument(path);
    if (!document)
        return false;
    const Splice splice = spliceFor(*document, section, key, value);
    QByteArray bytes = document->bytes;
    bytes.replace(splice.begin, splice.end - splice.begin, splice.bytes);
    return replaceFile(path, bytes);
}

} // namespace quarry
