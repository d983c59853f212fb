// IniFile::load on arbitrary bytes: every section, and the value of every key
// line's name in its section, is what the reading rules of IniModel.h give,
// whatever the encoding; a key's name is a section only where the rules make
// one. Names are looked up as the file spells them, with blanks and tabs
// around, so that the caller's names are folded and trimmed too.

#include "FuzzCheck.h"
#include "IniModel.h"

#include "platform/IniFile.h"

#include <cstddef>
#include <cstdint>

using namespace Qt::StringLiterals;
using quarry::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace quarry::fuzz;
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const quarry::IniFile ini = quarry::IniFile::load(scratchFile(bytes));
    const IniModel model = readIni(bytes);

    for (const QString &section : model.sectionNames)
        require(ini.hasSection(u" \t"_s + section + u' '));
    for (const auto &[section, key] : model.keyNames) {
        require(ini.value(section, u'\t' + key + u' ') == model.values.value(foldName(section)).value(foldName(key)));
        require(ini.hasSection(key) == model.values.contains(foldName(key)));
    }
    return 0;
}
