#include "platform/Paths.h"

#include "platform/Blanks.h"
#include "platform/IniFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <dlfcn.h>

using namespace Qt::StringLiterals;

namespace quarry::paths {

namespace {

QString environmentOr(const char *name, const QString &fallback)
{
    const QString value = qEnvironmentVariable(name);
    return value.isEmpty() ? fallback : value;
}

QString drivesDir()
{
    return environmentOr("QUARRY_DRIVES", QDir::homePath() + u"/.local/share/quarry/drives"_s);
}

QString join(const QString &dir, const QString &name)
{
    return dir.endsWith(u'/') ? dir + name : dir + u'/' + name;
}

bool startsWithDrive(const QString &path)
{
    if (path.size() < 2 || path[1] != u':')
        return false;
    const char16_t letter = path[0].toLower().unicode();
    return letter >= u'a' && letter <= u'z';
}

// The folders below a drive's root, "." and ".." resolved; as on Windows,
// ".." goes no higher than the root, so a path never leaves its drive.
QString belowRoot(const QString &path)
{
    QStringList folders;
    for (const QString &folder : path.split(u'/', Qt::SkipEmptyParts)) {
        if (folder == u".."_s) {
            if (!folders.isEmpty())
                folders.removeLast();
        } else if (folder != u"."_s) {
            folders.append(folder);
        }
    }
    return folders.isEmpty() ? QString() : u'/' + folders.join(u'/');
}

// Each component of an absolute path found without regard to case, as on a
// Windows file system; components that do not exist stay as they are.
QString findPath(const QString &path)
{
    if (QFileInfo::exists(path))
        return path;
    const QFileInfo info(path);
    if (info.path() == path)
        return path;
    return findInDir(findPath(info.path()), info.fileName());
}

} // namespace

QString componentDir()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void *>(&componentDir), &info) == 0
        || info.dli_fname == nullptr)
        return {};
    return QFileInfo(QFile::decodeName(info.dli_fname)).absolutePath();
}

QString systemIniDir()
{
    return environmentOr("QUARRY_SYSTEM_DIR", u"/etc/quarry"_s);
}

QString findInDir(const QString &dir, const QString &name)
{
    const QString exact = join(dir, name);
    if (QFileInfo::exists(exact))
        return exact;
    const QStringList entries = QDir(dir).entryList(QDir::AllEntries | QDir::Hidden | QDir::System
                                                    | QDir::NoDotAndDotDot);
    for (const QString &entry : entries) {
        if (entry.compare(name, Qt::CaseInsensitive) == 0)
            return join(dir, entry);
    }
    return exact;
}

QString fromWindowsPath(const QString &path)
{
    QString local = path;
    local.replace(u'\\', u'/');
    if (!startsWithDrive(local))
        return local;
    return drivesDir() + u'/' + local[0].toLower() + belowRoot(local.sliced(2));
}

bool isDriveFolder(const QString &localPath)
{
    const QFileInfo folder(QDir::cleanPath(QDir(localPath).absolutePath()));
    const QString letter = folder.fileName();
    return letter.size() == 1 && letter[0] >= u'a' && letter[0] <= u'z'
        && folder.path() == QDir::cleanPath(QDir(drivesDir()).absolutePath());
}

QString resolveIniFile(const QString &name)
{
    const QString local = fromWindowsPath(name);
    return findPath(QDir::isAbsolutePath(local) ? local : join(systemIniDir(), local));
}

QString sealIni()
{
    const QString beside = findInDir(componentDir(), u"seal.ini"_s);
    if (QFileInfo::exists(beside))
        return beside;
    const QString named = trimBlanks(
        IniFile::load(resolveIniFile(u"CONVERT.INI"_s)).value(u"SYSTEM"_s, u"INITCFG"_s));
    return resolveIniFile(named.isEmpty() ? u"SEAL.INI"_s : named);
}

QString userProfile()
{
    return environmentOr("USERPROFILE", qEnvironmentVariable("HOME"));
}

} // namespace quarry::paths
