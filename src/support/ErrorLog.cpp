#include "support/ErrorLog.h"

#include "platform/Blanks.h"
#include "platform/IniFile.h"
#include "platform/Paths.h"
#include "support/CFileMan.h"

#include <quarry/QuarryError.h>

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QScopeGuard>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace quarry {

namespace {

// Said to operators, so in Chinese: which file, and whether its folder was
// the trouble (only the last level of it is made).
[[noreturn]] void raiseLogError(const CFileMan &files, const QString &folder)
{
    const QString file = QDir::toNativeSeparators(folder + u"/error.txt"_s);
    const QString why = QFileInfo(folder).isDir()
        ? u"文件无法打开或写入"_s
        : u"文件夹 %1 不存在，也无法建立（其上级文件夹须已存在）"_s.arg(
            QDir::toNativeSeparators(folder));
    throw QuarryError(files.LastErrorNumber(), u"modErrorHandling.writeErrorLog"_s,
                      u"无法写入错误日志 %1：%2"_s.arg(file, why));
}

} // namespace

// Read afresh on every call: a changed seal.ini counts from the next error on.
// Only the one key is read, as the configuration reads a value: a full read
// may go to the database, and the log is written from the handlers of failed
// database calls.
QString errorLogFolder(const QString &sealIni)
{
    const QString folder = trimBlanks(IniFile::load(sealIni).value(u"ERROR"_s, u"ERRORFILE"_s));
    return paths::fromWindowsPath(folder.isEmpty() ? u"c:\\errorpath"_s : folder);
}

void writeErrorLog(const QString &source, qint32 number, const QString &description)
{
    const QDateTime now = QDateTime::currentDateTime();
    const QString line = QStringList{source, QString::number(number), description,
                                     now.toString(u"yyyy-MM-dd"_s), now.toString(u"hh:mm:ss"_s)}
                             .join(u' ');
    const QString folder = errorLogFolder(paths::sealIni());
    CFileMan files;
    if (!CFileMan::FolderExists(folder) && !files.EnsureFolder(folder))
        raiseLogError(files, folder);
    const qint16 log = files.OpenFile(folder + u"/error.txt"_s, filenumbers::Mode::Append);
    if (log == 0)
        raiseLogError(files, folder);
    const auto closeLog = qScopeGuard([&] { files.CloseFile(log); });
    if (!files.WriteText(log, line, 0, CFileMan::TextKind::Line))
        raiseLogError(files, folder);
}

} // namespace quarry
