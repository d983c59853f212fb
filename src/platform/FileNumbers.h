#pragma once

#include <quarry/quarry_export.h>

#include <QByteArray>
#include <QString>

// The numbered files of the runtime the system was written for (FreeFile,
// Open ... As #n, Get, Put, LOF, Seek, EOF, Close). One table per process,
// numbers 1 to 511. Positions are 1-based byte positions; position 0 means
// "where the file stands". Failures raise QuarryError with the runtime's
// error numbers and a description naming the file.
namespace quarry::filenumbers {

enum class Mode {
    Input = 0,  // read; the file must exist
    Output = 1, // write; created or truncated
    Append = 2, // write at the end; created when missing
    Binary = 3, // read and write (read only when the file may not be written); created when missing
};

// The lowest number not in use.
QUARRY_EXPORT qint16 freeFile();

// Opens the file under freeFile() and returns that number.
QUARRY_EXPORT qint16 open(const QString &path, Mode mode);

// Closing a number that is not open does nothing.
QUARRY_EXPORT void close(qint16 number);

// Exactly size bytes from position; a short read raises "Input past end of
// file" and sets the end flag that atEnd() reports.
QUARRY_EXPORT QByteArray read(qint16 number, qint64 position, qint64 size);

// What one call appends to a Mode::Append file is never mixed with what other
// processes append to the same file at the same moment.
QUARRY_EXPORT void write(qint16 number, qint64 position, const QByteArray &data);

QUARRY_EXPORT qint64 length(qint16 number);

// The position the next read or write starts at.
QUARRY_EXPORT qint64 position(qint16 number);

// True when the position is at or past the end, or the last read fell short.
QUARRY_EXPORT bool atEnd(qint16 number);

// The runtime's file errors, for file operations outside this table too.
enum Error : qint32 {
    InvalidArgument = 5,
    BadFileNameOrNumber = 52,
    FileNotFound = 53,
    BadFileMode = 54,
    DeviceIOError = 57,
    FileAlreadyExists = 58,
    InputPastEnd = 62,
    BadRecordNumber = 63,
    TooManyFiles = 67,
    PermissionDenied = 70,
    PathFileAccessError = 75,
    PathNotFound = 76,
};

// Raises QuarryError(error) described as "<the runtime's text>: <subject>"
// (a path, or "#<number>" for a file number), the reason (an operating-system
// message) added in parentheses when given.
[[noreturn]] void raiseFileError(Error error, const QString &subject, const QString &reason = {});

} // namespace quarry::filenumbers
