#include "support/CFileMan.h"

#include "platform/Paths.h"
#include "support/ErrorLog.h"

#include <quarry/QuarryError.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QScopeGuard>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace quarry {

using filenumbers::raiseFileError;

namespace {

constexpr qint64 BlockSize = 4096;    // of CopyFileBlock and CopyBlocks
constexpr qint64 CopyChunk = 1 << 16; // of CopyFileTo

QString localPath(const QString &path)
{
    return QDir::cleanPath(paths::fromWindowsPath(path));
}

// One level: the parent must exist. A drive's root always exists on
// Windows; here the folder it maps to is made when first needed.
void createFolder(const QString &folder)
{
    const QFileInfo info(folder);
    if (info.isDir())
        return;
    if (info.exists())
        raiseFileError(filenumbers::FileAlreadyExists, folder);
    const QString parent = info.absolutePath();
    if (paths::isDriveFolder(parent))
        QDir().mkpath(parent);
    if (!QFileInfo(parent).isDir())
        raiseFileError(filenumbers::PathNotFound, parent);
    // Unlike mkdir, mkpath also succeeds when another process has made the
    // folder since the check above. The parent is there: it makes one level.
    if (!QDir().mkpath(folder))
        raiseFileError(filenumbers::PathFileAccessError, folder);
}

void copyFile(const QString &source, const QString &destination)
{
    QFile input(source);
    if (!input.exists())
        raiseFileError(filenumbers::FileNotFound, source);
    if (!input.open(QIODevice::ReadOnly))
        raiseFileError(filenumbers::PathFileAccessError, source, input.errorString());
    // Through a temporary file, so that a failed copy leaves the old destination.
    QSaveFile output(destination);
    if (!output.open(QIODevice::WriteOnly))
        raiseFileError(filenumbers::PathFileAccessError, destination, output.errorString());
    for (QByteArray chunk = input.read(CopyChunk); !chunk.isEmpty(); chunk = input.read(CopyChunk))
        output.write(chunk);
    if (input.error() != QFileDevice::NoError)
        raiseFileError(filenumbers::DeviceIOError, source, input.errorString());
    if (!output.commit())
        raiseFileError(filenumbers::PathFileAccessError, destination, output.errorString());
}

template<typename Integer>
Integer readLittleEndian(qint16 fileNumber, qint64 recordNumber)
{
    const QByteArray bytes = filenumbers::read(fileNumber, recordNumber, sizeof(Integer));
    return qFromLittleEndian<Integer>(bytes.constData());
}

template<typename Integer>
void writeLittleEndian(qint16 fileNumber, qint64 recordNumber, Integer value)
{
    QByteArray bytes(sizeof(Integer), Qt::Uninitialized);
    qToLittleEndian(value, bytes.data());
    filenumbers::write(fileNumber, recordNumber, bytes);
}

QStringList entries(const QString &folder, QDir::Filters filters)
{
    if (folder.isEmpty())
        return {};
    return QDir(folder).entryList(filters | QDir::Hidden | QDir::NoDotAndDotDot,
                                  QDir::Name | QDir::IgnoreCase);
}

} // namespace

CFileMan::CFileMan(QObject *parent)
    : QObject(parent)
{
}

template<typename Result, typename Operation>
Result CFileMan::guarded(Result neutral, Operation operation)
{
    try {
        Result result = operation();
        m_lastError.clear();
        m_lastErrorNumber = 0;
        return result;
    } catch (const QuarryError &error) {
        remember(error);
        return neutral;
    }
}

void CFileMan::remember(const QuarryError &error)
{
    m_lastError = error.description();
    m_lastErrorNumber = error.number();
}

void CFileMan::SetFolder(const QString &path)
{
    const QString folder = localPath(path);
    if (!QFileInfo(folder).isDir())
        raiseFileError(filenumbers::PathNotFound, folder);
    m_folder = folder;
    m_files = entries(folder, QDir::Files);
}

int CFileMan::FileCount() const
{
    return int(m_files.size());
}

int CFileMan::FolderCount() const
{
    return int(entries(m_folder, QDir::Dirs).size());
}

QString CFileMan::FileNameAt(int index) const
{
    return m_files.value(index);
}

QString CFileMan::FolderNameAt(int index) const
{
    return entries(m_folder, QDir::Dirs).value(index);
}

QString CFileMan::BaseNameOf(const QString &path)
{
    return QFileInfo(QString(path).replace(u'\\', u'/')).completeBaseName();
}

bool CFileMan::FolderExists(const QString &path)
{
    return QFileInfo(localPath(path)).isDir();
}

bool CFileMan::FileExists(const QString &path)
{
    return QFileInfo(localPath(path)).isFile();
}

bool CFileMan::EnsureFolder(const QString &path)
{
    return guarded(false, [&] {
        createFolder(localPath(path));
        return true;
    });
}

bool CFileMan::MakePath(const QString &path)
{
    return guarded(false, [&] {
        const QString folder = localPath(path);
        // From 1: the root "/" of an absolute path is no folder to create.
        for (qsizetype end = folder.indexOf(u'/', 1); end != -1;
             end = folder.indexOf(u'/', end + 1))
            createFolder(folder.left(end));
        createFolder(folder);
        return true;
    });
}

bool CFileMan::CopyFileTo(const QString &source, const QString &destination)
{
    return guarded(false, [&] {
        copyFile(localPath(source), localPath(destination));
        return true;
    });
}

bool CFileMan::DeleteFile(const QString &path)
{
    return guarded(false, [&] {
        QFile file(localPath(path));
        if (!QFileInfo(file).isFile())
            raiseFileError(filenumbers::FileNotFound, file.fileName());
        if (!file.remove())
            raiseFileError(filenumbers::PermissionDenied, file.fileName(), file.errorString());
        return true;
    });
}

bool CFileMan::DeleteFolder(const QString &path)
{
    return guarded(false, [&] {
        const QString folder = localPath(path);
        if (!QFileInfo(folder).isDir())
            raiseFileError(filenumbers::PathNotFound, folder);
        if (!QDir(folder).removeRecursively())
            raiseFileError(filenumbers::PermissionDenied, folder);
        return true;
    });
}

qint16 CFileMan::OpenFile(const QString &path, filenumbers::Mode mode)
{
    return guarded(qint16(0), [&] { return filenumbers::open(localPath(path), mode); });
}

void CFileMan::CloseFile(qint16 fileNumber)
{
    guarded(false, [&] {
        filenumbers::close(fileNumber);
        return true;
    });
}

bool CFileMan::GetInteger(qint16 fileNumber, qint16 &value, qint64 recordNumber)
{
    return guarded(false, [&] {
        value = readLittleEndian<qint16>(fileNumber, recordNumber);
        return true;
    });
}

bool CFileMan::GetLong(qint16 fileNumber, qint32 &value, qint64 recordNumber)
{
    return guarded(false, [&] {
        value = readLittleEndian<qint32>(fileNumber, recordNumber);
        return true;
    });
}

bool CFileMan::GetText(qint16 fileNumber, QString &text, qint64 recordNumber)
{
    return guarded(false, [&] {
        text = QString::fromUtf8(filenumbers::read(fileNumber, recordNumber, text.toUtf8().size()));
        return true;
    });
}

bool CFileMan::PutInteger(qint16 fileNumber, qint16 value, qint64 recordNumber)
{
    return guarded(false, [&] {
        writeLittleEndian(fileNumber, recordNumber, value);
        return true;
    });
}

bool CFileMan::PutLong(qint16 fileNumber, qint32 value, qint64 recordNumber)
{
    return guarded(false, [&] {
        writeLittleEndian(fileNumber, recordNumber, value);
        return true;
    });
}

bool CFileMan::WriteText(qint16 fileNumber, const QString &text, qint64 recordNumber, TextKind kind)
{
    return guarded(false, [&] {
        QByteArray bytes = text.toUtf8();
        if (kind == TextKind::Line)
            bytes += '\n';
        filenumbers::write(fileNumber, recordNumber, bytes);
        return true;
    });
}

qint64 CFileMan::FileLength(const QString &path)
{
    return guarded(qint64(0), [&] {
        const QFileInfo info(localPath(path));
        if (!info.isFile())
            raiseFileError(filenumbers::FileNotFound, info.filePath());
        return info.size();
    });
}

qint64 CFileMan::OpenLength(qint16 fileNumber)
{
    return guarded(qint64(0), [&] { return filenumbers::length(fileNumber); });
}

qint64 CFileMan::FilePosition(qint16 fileNumber)
{
    return guarded(qint64(0), [&] { return filenumbers::position(fileNumber); });
}

bool CFileMan::AtEndOfFile(qint16 fileNumber)
{
    return guarded(false, [&] { return filenumbers::atEnd(fileNumber); });
}

bool CFileMan::CopyFileBlock(const QString &source, qint64 byteCount, qint16 destination)
{
    const bool copied = guarded(false, [&] {
        const qint16 input = filenumbers::open(localPath(source), filenumbers::Mode::Input);
        const auto closeInput = qScopeGuard([input] { filenumbers::close(input); });
        CopyBlocks(input, destination, byteCount);
        return true;
    });
    if (!copied)
        writeErrorLog(u"CFileMan.CopyFileBlock"_s, m_lastErrorNumber, m_lastError);
    return copied;
}

void CFileMan::CopyBlocks(qint16 source, qint16 destination, qint64 byteCount)
{
    if (byteCount < 0)
        raiseFileError(filenumbers::InvalidArgument, u"byte count "_s + QString::number(byteCount));
    for (qint64 left = byteCount; left > 0; left -= BlockSize)
        filenumbers::write(destination, 0, filenumbers::read(source, 0, qMin(left, BlockSize)));
}

} // namespace quarry
