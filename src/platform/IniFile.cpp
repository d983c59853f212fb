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
struct Storage
{
    const char *codec = "UTF-8";
    qsizetype bomSize = 0;
    qsizetype unitSize = 1; // bytes per code unit: CR and LF are one unit
    bool bigEndian = false;
};

Storage detectStorage(QByteArrayView bytes)
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

QByteArray lineFeed(const Storage &storage)
{
    if (storage.unitSize == 1)
        return QByteArrayLiteral("\n");
    return storage.bigEndian ? QByteArrayLiteral("\0\n") : QByteArrayLiteral("\n\0");
}

// Keeps a U+FEFF at the start of the text: the file's own BOM is never part
// of what is decoded.
QStringDecoder decoderFor(const Storage &storage)
{
    return QStringDecoder(storage.codec,
                          QStringConverter::Flag::Stateless
                              | QStringConverter::Flag::ConvertInitialBom);
}

// A character cut off at the end becomes U+FFFD, as it does inside the text,
// instead of vanishing: the bytes are decoded with a line feed after them,
// which ends any character.
QString decode(QByteArrayView bytes, const Storage &storage, QStringDecoder &decoder)
{
    QString text = decoder.decode(bytes.toByteArray() + lineFeed(storage));
    text.chop(1);
    return text;
}

// Where the file's whole code units end: a UTF-16 file with an odd number of
// bytes has one stray byte after that.
qsizetype wholeUnitsEnd(QByteArrayView bytes, const Storage &storage)
{
    return bytes.size() - (bytes.size() - storage.bomSize) % storage.unitSize;
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
struct LineSpan
{
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
    const qsizetype whole = wholeUnitsEnd(bytes, storage);
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
    if (begin < whole)
        lines.append({begin, whole, whole});
    return lines;
}

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t';
}

// Only blanks and tabs: the profile functions keep other white space.
QStringView trimBlanksAndTabs(QStringView text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isBlank(text[begin]))
        ++begin;
    while (end > begin && isBlank(text[end - 1]))
        --end;
    return text.sliced(begin, end - begin);
}

// What one line of an INI file is. For a key line, the value is the bytes
// [valueBegin, valueEnd) of the file, blanks and tabs around it excluded.
struct IniLine
{
    enum class Kind { Other, Section, Key };
    Kind kind = Kind::Other;
    QString name;
    qsizetype valueBegin = 0;
    qsizetype valueEnd = 0;
};

struct Line
{
    LineSpan span;
    IniLine parsed;
};

struct Document
{
    QByteArray bytes;
    Storage storage;
    mutable QStringDecoder decoder; // stateless: one serves every part of the text
    QList<Line> lines;
};

// A line is parsed in its bytes, unit by unit, so that a write can change the
// bytes of a value alone. Blank, tab, "=" and ";" are ASCII bytes that never
// occur inside another character in UTF-8 or GB18030, and "[" is looked for
// only where a character starts (after the blanks that start a line). "]",
// which GB18030 also uses as a second byte, is looked for in decoded text.
char16_t unitAt(const Document &document, qsizetype at)
{
    return unitAt(document.bytes, at, document.storage);
}

bool isBlankAt(const Document &document, qsizetype at)
{
    return isBlank(QChar(unitAt(document, at)));
}

qsizetype skipBlanks(const Document &document, qsizetype from, qsizetype end)
{
    while (from < end && isBlankAt(document, from))
        from += document.storage.unitSize;
    return from;
}

qsizetype chopBlanks(const Document &document, qsizetype begin, qsizetype end)
{
    while (end > begin && isBlankAt(document, end - document.storage.unitSize))
        end -= document.storage.unitSize;
    return end;
}

qsizetype findUnit(const Document &document, char16_t unit, qsizetype from, qsizetype end)
{
    for (; from < end; from += document.storage.unitSize) {
        if (unitAt(document, from) == unit)
            return from;
    }
    return -1;
}

QString textOf(const Document &document, qsizetype begin, qsizetype end)
{
    return decode(QByteArrayView(document.bytes).sliced(begin, end - begin), document.storage,
                  document.decoder);
}

IniLine parseLine(const Document &document, const LineSpan &span)
{
    const qsizetype width = document.storage.unitSize;
    const qsizetype start = skipBlanks(document, span.begin, span.end);
    if (start == span.end || unitAt(document, start) == u';')
        return {};
    if (unitAt(document, start) == u'[') {
        // The last "]" of the line closes the name, as in the profile functions.
        const QString header = textOf(document, start + width, span.end);
        const qsizetype close = header.lastIndexOf(u']');
        if (close >= 0) {
            return {IniLine::Kind::Section,
                    trimBlanksAndTabs(QStringView(header).first(close)).toString()};
        }
    }
    const qsizetype equals = findUnit(document, u'=', start, span.end);
    // "=value" names no key: as in the profile functions, an empty key name
    // finds nothing, and a write never makes one.
    if (equals < 0 || equals == start)
        return {};
    const qsizetype valueBegin = skipBlanks(document, equals + width, span.end);
    return {IniLine::Kind::Key, trimBlanksAndTabs(textOf(document, start, equals)).toString(),
            valueBegin, chopBlanks(document, valueBegin, span.end)};
}

bool isQuoted(QStringView text)
{
    return text.size() >= 2 && (text.front() == u'"' || text.front() == u'\'')
        && text.back() == text.front();
}

// The value as the profile functions hand it out: one pair of matching
// quotes removed, cut at the first NUL and to the buffer's length.
QString profileValue(QStringView raw)
{
    if (isQuoted(raw))
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
    return trimBlanksAndTabs(name).toString().toCaseFolded();
}

// An empty document when the file does not exist; nothing, and the reason in
// error, when it exists but cannot be read (so that a write never replaces
// what it could not read).
std::optional<Document> readDocument(const QString &path, QString *error = nullptr)
{
    QFile file(path);
    if (!file.exists())
        return Document{};
    Document document;
    if (file.open(QIODevice::ReadOnly))
        document.bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        if (error)
            *error = u"无法读取文件："_s + file.errorString();
        return std::nullopt;
    }
    document.storage = detectStorage(document.bytes);
    document.decoder = decoderFor(document.storage);
    for (const LineSpan &span : splitLines(document.bytes, document.storage))
        document.lines.append({span, parseLine(document, span)});
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
struct Splice
{
    qsizetype begin = 0;
    qsizetype end = 0;
    QByteArray bytes;
};

// The file's own line break, LF for a file that has none yet.
QByteArray lineBreak(const Document &document)
{
    for (const Line &line : document.lines) {
        if (line.span.next > line.span.end)
            return document.bytes.sliced(line.span.end, line.span.next - line.span.end);
    }
    return lineFeed(document.storage);
}

// A new line after the line at index, or at the end of a document without
// lines. Between two lines it ends with the break of the line before it: the
// file's first break could be a lone CR, which a blank line's LF after it
// would join into one break, and that blank line would be gone.
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
    return {after.next, after.next,
            text + document.bytes.sliced(after.end, after.next - after.end)};
}

Splice spliceFor(const Document &document, const QString &section, const QString &key,
                 const QString &value)
{
    QStringEncoder encoder(document.storage.codec, QStringConverter::Flag::Stateless);
    const QByteArray newLine = lineBreak(document);
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
        if (line.parsed.kind == IniLine::Kind::Key && nameKey(line.parsed.name) == wanted)
            return {line.parsed.valueBegin, line.parsed.valueEnd, encoder.encode(value)};
        if (skipBlanks(document, line.span.begin, line.span.end) < line.span.end)
            last = i;
    }
    return insertLine(document, last, entry, newLine);
}

bool containsLineBreakOrNul(const QString &text)
{
    return text.contains(u'\r') || text.contains(u'\n') || text.contains(QChar(u'\0'));
}

// Why names or a value would not read back as written; empty when they do.
QString textRefusal(const QString &section, const QString &key, const QString &value)
{
    for (const QString *text : {&section, &key, &value}) {
        if (containsLineBreakOrNul(*text))
            return u"换行符或 NUL 字符会截断这一行"_s;
        if (!text->isValidUtf16())
            return u"不是有效的文本：含有不成对的代理码元"_s;
    }
    const QStringView name = trimBlanksAndTabs(key);
    if (name.isEmpty() || name.contains(u'=') || name.startsWith(u';') || name.startsWith(u'['))
        return u"键不能为空，不能含有“=”，也不能以“;”或“[”开头"_s;
    if (trimBlanksAndTabs(value).size() != value.size())
        return u"值的开头或结尾是空格或制表符，读取时会被去掉"_s;
    if (isQuoted(value))
        return u"值的两端是成对的引号，读取时会被去掉"_s;
    if (value.size() > MaxValueLength)
        return u"值超过 255 个字符，读取时只保留前 255 个"_s;
    return {};
}

// Without a BOM the encoding is told from the bytes alone: new bytes that
// would be told another encoding would change how the other lines read,
// unless they read the same either way.
bool keepsEncoding(const QByteArray &bytes, const Storage &storage)
{
    const Storage now = detectStorage(bytes);
    if (qstrcmp(now.codec, storage.codec) == 0)
        return true;
    QStringDecoder before = decoderFor(storage);
    QStringDecoder after = decoderFor(now);
    return decode(bytes, now, after) == decode(bytes, storage, before);
}

// Another program reading the file at the same moment sees the old or the
// new file, never half of one. QSaveFile keeps the file's permissions.
QString replaceFile(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return {};
    return u"无法写入文件："_s + file.errorString();
}

// Why the value was not written; empty when it was.
QString writeValue(const QString &path, const QString &section, const QString &key,
                   const QString &value)
{
    if (const QString refusal = textRefusal(section, key, value); !refusal.isEmpty())
        return refusal;
    QString error;
    const std::optional<Document> document = readDocument(path, &error);
    if (!document)
        return error;
    const Storage &storage = document->storage;
    if (wholeUnitsEnd(document->bytes, storage) != document->bytes.size())
        return u"文件是 UTF-16 编码，字节数却是奇数"_s;
    const Splice splice = spliceFor(*document, section, key, value);
    QByteArray bytes = document->bytes;
    bytes.replace(splice.begin, splice.end - splice.begin, splice.bytes);
    if (!keepsEncoding(bytes, storage))
        return u"写入后文件不再按 %1 读取，其他各行的内容会改变"_s.arg(
            QLatin1StringView(storage.codec));
    return replaceFile(path, bytes);
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
            if (!keys.contains(key)) {
                keys.insert(key,
                            profileValue(textOf(*document, parsed.valueBegin, parsed.valueEnd)));
            }
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
                    const QString &value, QString *error)
{
    const QString refusal = writeValue(path, section, key, value);
    if (error)
        *error = refusal;
    return refusal.isEmpty();
}

} // namespace quarry
