// IniFile::write of one value into arbitrary bytes as a file, the section and
// key typed by the fuzzer or taken from the file's own lines. A refused write
// leaves every byte as it was and has one of the stated reasons; a done write
// reads back exactly, changes no other value or section, keeps the file's
// encoding, and changes no line but the written one or the lines it adds.

#include "FuzzCheck.h"
#include "IniModel.h"

#include "platform/IniFile.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

using quarry::fuzz::require;

namespace quarry::fuzz {

namespace {

// Text of UTF-8 bytes, or of UTF-16 units, which may be lone surrogates.
QString text(FuzzedDataProvider &input, std::size_t maxBytes)
{
    const bool utf16 = input.ConsumeBool();
    const std::string bytes = input.ConsumeRandomLengthString(maxBytes);
    if (!utf16)
        return QString::fromUtf8(bytes.data(), qsizetype(bytes.size()));
    QString units;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2)
        units += QChar(char16_t(uchar(bytes[at]) | uchar(bytes[at + 1]) << 8));
    return units;
}

// The typed name, or the file's own n-th one.
QString pick(std::uint8_t choice, const QString &typed, const QStringList &names)
{
    return choice == 0 || names.isEmpty() ? typed : names.at((choice - 1) % names.size());
}

// Refused whatever the file holds: a line break, NUL or lone surrogate, a key
// that would not read as one, a value that reading would change.
bool refusedText(const QString &section, const QString &key, const QString &value)
{
    for (const QString *part : {&section, &key, &value}) {
        if (part->contains(u'\r') || part->contains(u'\n') || part->contains(QChar(u'\0')) || !part->isValidUtf16())
            return true;
    }
    const QStringView name = trimBlanks(key);
    return name.isEmpty() || name.contains(u'=') || name.startsWith(u';') || name.startsWith(u'[')
        || readValue(value) != value;
}

struct ByteLine {
    QByteArray text;
    QByteArray lineBreak; // empty for a last line without one
};

// The lines of the bytes after the BOM, UTF-16 split at its own CR and LF
// units.
QList<ByteLine> byteLines(const QByteArray &file, const IniModel &ini)
{
    const QByteArray bytes = file.sliced(ini.bom.size());
    const IniModel::Encoding encoding = ini.encoding;
    const auto unit = [encoding](char c) {
        if (encoding == IniModel::Encoding::Utf16LE)
            return QByteArray(1, c) + '\0';
        if (encoding == IniModel::Encoding::Utf16BE)
            return QByteArray(1, '\0') + c;
        return QByteArray(1, c);
    };
    const QByteArray cr = unit('\r'), lf = unit('\n');
    QList<ByteLine> lines;
    qsizetype begin = 0;
    for (qsizetype at = 0; at + cr.size() <= bytes.size(); at += cr.size()) {
        const QByteArrayView here = QByteArrayView(bytes).sliced(at, cr.size());
        if (here != cr && here != lf)
            continue;
        qsizetype next = at + cr.size();
        if (here == cr && QByteArrayView(bytes).sliced(next).startsWith(lf))
            next += lf.size();
        lines.append({bytes.sliced(begin, at - begin), bytes.sliced(at, next - at)});
        begin = next;
        at = next - cr.size();
    }
    if (begin < bytes.size())
        lines.append({bytes.sliced(begin), {}});
    return lines;
}

struct Change {
    qsizetype removed = 0;
    qsizetype added = 0;
};

// The lines between the first and the last that differ, before and after. A
// last line without a line break that gets one for lines added after it has
// not changed.
Change changedLines(const QList<ByteLine> &before, const QList<ByteLine> &after)
{
    const auto same = [](const ByteLine &a, const ByteLine &b) {
        return a.text == b.text && a.lineBreak == b.lineBreak;
    };
    qsizetype prefix = 0;
    while (prefix < before.size() && prefix < after.size() && same(before[prefix], after[prefix]))
        ++prefix;
    if (prefix == before.size() - 1 && before.last().lineBreak.isEmpty() && after.size() > before.size()
        && after[prefix].text == before.last().text) {
        ++prefix;
    }
    qsizetype suffix = 0;
    while (suffix < before.size() - prefix && suffix < after.size() - prefix
           && same(before[before.size() - 1 - suffix], after[after.size() - 1 - suffix])) {
        ++suffix;
    }
    return {before.size() - prefix - suffix, after.size() - prefix - suffix};
}

} // namespace

} // namespace quarry::fuzz

// The input: the typed section, key and value, each ended by "\;" ("\\" is one
// backslash), then the file; its last bytes, from the end, tell whether the
// section, key and value are UTF-16, then which name of the file's own
// sections and keys to take instead (0 for the typed one).
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace quarry::fuzz;
    FuzzedDataProvider input(data, size);
    const QString typedSection = text(input, 64);
    const QString typedKey = text(input, 64);
    const QString value = text(input, 600);
    const auto sectionChoice = input.ConsumeIntegral<std::uint8_t>();
    const auto keyChoice = input.ConsumeIntegral<std::uint8_t>();
    const std::string file = input.ConsumeRemainingBytesAsString();
    const QByteArray before(file.data(), qsizetype(file.size()));

    const IniModel old = readIni(before);
    QStringList keys;
    for (const auto &names : old.keyNames)
        keys.append(names.second);
    const QString section = pick(sectionChoice, typedSection, old.sectionNames);
    const QString key = pick(keyChoice, typedKey, keys);

    const QString path = scratchFile(before);
    const bool written = quarry::IniFile::write(path, section, key, value);
    const QByteArray after = quarry::test::readFile(path);
    const bool oddUtf16 = old.bom.size() == 2 && before.size() % 2 != 0;
    const bool mustRefuse = refusedText(section, key, value) || oddUtf16;
    // Without a BOM, GB18030 text may become UTF-8 and read otherwise.
    const bool mayRefuse = mustRefuse || (old.bom.isEmpty() && old.encoding == IniModel::Encoding::Gb18030);
    if (!written) {
        require(after == before && mayRefuse);
        return 0;
    }
    require(!mustRefuse);

    require(quarry::IniFile::load(path).value(section, key) == value);
    auto expected = old.values;
    expected[foldName(section)][foldName(key)] = value;
    const IniModel now = readIni(after);
    require(now.values == expected);
    const bool ascii = std::all_of(after.begin(), after.end(), [](char c) { return uchar(c) < 0x80; });
    require(now.bom == old.bom && (now.encoding == old.encoding || ascii));

    const bool newSection = !old.values.contains(foldName(section));
    const bool newKey = newSection || !old.values.value(foldName(section)).contains(foldName(key));
    const Change change = changedLines(byteLines(before, old), byteLines(after, now));
    if (newSection)
        require(change.removed == 0 && change.added == 2);
    else if (newKey)
        require(change.removed == 0 && change.added == 1);
    else
        require(change.removed == change.added && change.removed <= 1);
    return 0;
}
