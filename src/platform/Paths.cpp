#include "platform/Paths.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace quarry::paths {

QString componentDir()
{
    return QDir::currentPath();
}

QString systemIniDir()
{
    return qEnvironmentVariable("QUARRY_SYSTEM_DIR", u"/etc/quarry"_s);
}

QString findInDir(const QString &dir, const QString &name)
{
    return dir + u'/' + name;
}

QString fromWindowsPath(const QString &path)
{
    return path;
}

QString resolveIniFile(const QString &name)
{
    return name;
}

QString userProfile()
{
    return qEnvironmentVariable("USERPROFILE", qEnvironmentVariable("HOME"));
}

} // namespace quarry::paths
