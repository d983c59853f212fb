#include "MissingStation.h"

#include "platform/Paths.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace quarry::apps {

QString missingStation(const QString &iniPath)
{
    if (QFileInfo::exists(iniPath))
        return {};
    const QString convert = paths::resolveIniFile(u"CONVERT.INI"_s);
    const QString where = QFileInfo::exists(convert)
        ? u"%1 所指的 %2 也不存在"_s.arg(convert, iniPath)
        : u"系统配置文件夹 %1 中也没有 CONVERT.INI"_s.arg(paths::systemIniDir());
    return u"未找到站点配置：%1 中没有 seal.ini，%2。请用环境变量 QUARRY_SYSTEM_DIR 指定含 "
           u"CONVERT.INI 的文件夹（默认 /etc/quarry）。"_s.arg(paths::componentDir(), where);
}

} // namespace quarry::apps
