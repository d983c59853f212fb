#include "support/ErrorLog.h"

#include "platform/Blanks.h"
#include "platform/IniFile.h"
#include "platform/Paths.h"
#include "support/CFileMan.h"

#include <quarry/QuarryError.h>

#include <QDateTime>
#include <QScopeGuard>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace quarry {

namespace {

[[noreturn]] void raiseLogError(const CFileMan &files)
{
    throw QuarryError(files.LastErrorNumber(), u"modErrorHandling.writeErrorLog"_s,
                      u"The error log cannot be written: "_s + files.LastError());
}

// Read afresh on every call: a changed seal.ini counts from the next error on.
// Only the one key is read, as the configuration reads a value: a full read
// may go to the database, and the log is written from the handlers of failed
// database calls.
QString logFolder()
{
    const QString folder
        = trimBlanks(IniFile::load(paths::sealIni()).value(u"ERROR"_s, u"ERRORFILE"_s));
    return paths::fromWindowsPath(folder.isEmpty() ? u"c:\\errorpath"_s : folder);
}

} // namespace

void writeErrorLog(const QString &source, qint32 number, const QString &description)
{
    const QDateTime now = QDateTime::currentDateTime();
    const QString line = QStringList{source, QString::number(number), description,
                                     now.toString(u"yyyy-MM-dd"_s), now.toString(u"hh:mm:ss"_s)}
                             .join(u' ');
    const QString folder = logFolder();
    CFileMan files;
    if (!CFileMan::FolderExists(folder) && !files.EnsureFolder(folder))
        raiseLogError(files);
    const qint16 log = files.OpenFile(folder + u"/error.txt"_s, filenumbers::Mode::Append);
    if (log == 0)
        raiseLogError(files);
    const auto closeLog = qScopeGuard([&] { files.CloseFile(log); });
    if (!files.WriteText(log, line, 0, CFileMan::TextKind::Line))
        raiseLogError(files);
}

} // namespace quarry
