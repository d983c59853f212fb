#include "platform/FileNumbers.h"

#include <quarry/QuarryError.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QMutexLocker>
#include <QScopeGuard>

#include <array>
#include <cerrno>
#include <memory>

#include <fcntl.h>

using namespace Qt::StringLiterals;

namespace quarry::filenumbers {

namespace {

constexpr qint16 LastNumber = 511;

struct NumberedFile
{
    explicit NumberedFile(const QString &path, Mode mode)
        : file(path)
        , mode(mode)
    {
    }

    QFile file;
    Mode mode;
    bool shortRead = false;
};

struct Table
{
    QMutex mutex;
    // [0] stays empty. Read with at(): a table shorter than the numbers
    // throws instead of writing past its end.
    std::array<std::unique_ptr<NumberedFile>, LastNumber + 1> files;
};

Table &table()
{
    static Table instance;
    return instance;
}

QString errorText(Error error)
{
    switch (error) {
    case InvalidArgument:
        return u"Invalid procedure call or argument"_s;
    case BadFileNameOrNumber:
        return u"Bad file name or number"_s;
    case FileNotFound:
        return u"File not found"_s;
    case BadFileMode:
        return u"Bad file mode"_s;
    case DeviceIOError:
        return u"Device I/O error"_s;
    case FileAlreadyExists:
        return u"File already exists"_s;
    case InputPastEnd:
        return u"Input past end of file"_s;
    case BadRecordNumber:
        return u"Bad record number"_s;
    case TooManyFiles:
        return u"Too many files"_s;
    case PermissionDenied:
        return u"Permission denied"_s;
    case PathFileAccessError:
        return u"Path/File access error"_s;
    case PathNotFound:
        return u"Path not found"_s;
    }
    return {};
}

QString numberSubject(qint16 number)
{
    return u"#"_s + QString::number(number);
}

// Caller holds the table's mutex.
qint16 lowestFreeNumber(const Table &files)
{
    for (qint16 number = 1; number <= LastNumber; ++number) {
        if (!files.files.at(number))
            return number;
    }
    raiseFileError(TooManyFiles, QString::number(LastNumber));
}

bool inRange(qint16 number)
{
    return number >= 1 && number <= LastNumber;
}

// Caller holds the table's mutex.
NumberedFile &openedFile(Table &files, qint16 number)
{
    if (!inRange(number) || !files.files.at(number))
        raiseFileError(BadFileNameOrNumber, numberSubject(number));
    return *files.files.at(number);
}

void openDevice(QFile &file, Mode mode)
{
    // Unbuffered: every write reaches the file as one write() call, which
    // keeps appended lines whole (see appendLocked).
    constexpr QIODevice::OpenMode unbuffered = QIODevice::Unbuffered;
    const QString path = file.fileName();
    const QFileInfo info(path);
    if (mode == Mode::Input && !info.exists())
        raiseFileError(FileNotFound, path);
    if (!info.dir().exists())
        raiseFileError(PathNotFound, path);
    bool opened = false;
    switch (mode) {
    case Mode::Input:
        opened = file.open(unbuffered | QIODevice::ReadOnly);
        break;
    case Mode::Output:
        opened = file.open(unbuffered | QIODevice::WriteOnly | QIODevice::Truncate);
        break;
    case Mode::Append:
        opened = file.open(unbuffered | QIODevice::WriteOnly | QIODevice::Append);
        break;
    case Mode::Binary:
        opened = file.open(unbuffered | QIODevice::ReadWrite)
            || (info.exists() && file.open(unbuffered | QIODevice::ReadOnly));
        break;
    }
    if (!opened)
        raiseFileError(PathFileAccessError, path, file.errorString());
}

void moveTo(NumberedFile &entry, qint64 position)
{
    if (position < 0 || (position > 0 && !entry.file.seek(position - 1)))
        raiseFileError(BadRecordNumber, entry.file.fileName(), QString::number(position));
}

bool lockWholeFile(int descriptor, short type)
{
    struct flock lock = {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET; // l_start and l_len 0: the whole file, however long it grows
    int result = 0;
    do {
        result = ::fcntl(descriptor, F_SETLKW, &lock);
    } while (result == -1 && errno == EINTR);
    return result == 0;
}

// Several stations may append to one file at the same moment (the error log).
// O_APPEND alone keeps a single write() whole on a local disk, but NFS and SMB
// clients emulate it by writing at the length they last knew, so lines could
// overwrite each other there. An fcntl record lock is what both pass on to
// the server, so it serialises the appenders wherever the file lives; where
// the file system has no locks the line is still written, unlocked.
qint64 appendLocked(QFile &file, const QByteArray &data)
{
    const int descriptor = file.handle();
    const bool locked = lockWholeFile(descriptor, F_WRLCK);
    const auto unlock = qScopeGuard([&] {
        if (locked)
            lockWholeFile(descriptor, F_UNLCK);
    });
    return file.write(data);
}

} // namespace

void raiseFileError(Error error, const QString &subject, const QString &reason)
{
    QString description = errorText(error) + u": "_s + QDir::toNativeSeparators(subject);
    if (!reason.isEmpty())
        description += u" ("_s + reason + u')';
    throw QuarryError(error, u"Quarry"_s, description);
}

qint16 freeFile()
{
    Table &files = table();
    const QMutexLocker locker(&files.mutex);
    return lowestFreeNumber(files);
}

qint16 open(const QString &path, Mode mode)
{
    Table &files = table();
    const QMutexLocker locker(&files.mutex);
    const qint16 number = lowestFreeNumber(files);
    auto entry = std::make_unique<NumberedFile>(path, mode);
    openDevice(entry->file, mode);
    files.files.at(number) = std::move(entry);
    return number;
}

void close(qint16 number)
{
    Table &files = table();
    const QMutexLocker locker(&files.mutex);
    if (inRange(number))
        files.files.at(number).reset();
}

QByteArray read(qint16 number, qint64 position, qint64 size)
{
    Table &files = table();
    const QMutexLocker locker(&files.mutex);
    NumberedFile &entry = openedFile(files, number);
    if (!entry.file.isReadable())
        raiseFileError(BadFileMode, entry.file.fileName());
    moveTo(entry, position);
    QByteArray data = entry.file.read(size);
    entry.shortRead = data.size() < size;
    if (entry.shortRead)
        raiseFileError(InputPastEnd, entry.file.fileName());
    return data;
}

void write(qint16 number, qint64 position, const QByteArray &data)
{
    Table &files = table();
    const QMutexLocker locker(&files.mutex);
    NumberedFile &entry = openedFile(files, number);
    if (!entry.file.isWritable()) {
        raiseFileError(entry.mode == Mode::Binary ? PermissionDenied : BadFileMode,
                       entry.file.fileName());
    }
    moveTo(entry, position);
    const qint64 written
        = entry.mode == Mode::Append ? appendLocked(entry.file, data) : entry.file.write(data);
    if (written != data.size())
        raiseFileError(DeviceIOError, entry.file.fileName(), entry.file.errorString());
}

qint64 length(qint16 number)
{
    Table &files = table();
    const QMutexLocker locker(&files.mutex);
    return openedFile(files, number).file.size();
}

qint64 position(qint16 number)
{
    Table &files = table();
    const QMutexLocker locker(&files.mutex);
    return openedFile(files, number).file.pos() + 1;
}

bool atEnd(qint16 number)
{
    Table &files = table();
    const QMutexLocker locker(&files.mutex);
    const NumberedFile &entry = openedFile(files, number);
    return entry.shortRead || entry.file.pos() >= entry.file.size();
}

} // namespace quarry::filenumbers
