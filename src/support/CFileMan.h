#pragma once

#include "platform/FileNumbers.h"

#include <quarry/quarry_export.h>

#include <QObject>
#include <QString>
#include <QStringList>

namespace quarry {

class QuarryError;

// Folder and file utilities: queries over a folder, folder and file creation,
// copying and deletion, and numbered files with typed reads and writes.
//
// Operations that return a result keep the description of their failure
// (LastError) and return false, 0 or "" instead of raising; success clears
// it. Only SetFolder and CopyBlocks raise QuarryError.
//
// Paths are local paths or the Windows paths of seal.ini: "\" and "/" both
// separate folders and a drive "c:" lands where paths::fromWindowsPath puts
// it. Text in files is UTF-8; integers are little-endian; record numbers are
// 1-based byte positions, 0 meaning the file's current position.
class QUARRY_EXPORT CFileMan : public QObject
{
    Q_OBJECT

public:
    enum class TextKind : qint16 {
        Line = 0, // the text and a line end
        Raw = 1,  // the text's bytes only
    };

    explicit CFileMan(QObject *parent = nullptr);

    QString LastError() const { return m_lastError; }
    // The number of the last failure (the runtime's file error numbers), 0 after success.
    qint32 LastErrorNumber() const { return m_lastErrorNumber; }

    // Makes path the current folder and reads its list of files once; later
    // changes to the files are not seen until the next SetFolder. Sub-folders
    // are read on every call. Raises QuarryError when the folder is missing.
    void SetFolder(const QString &path);
    int FileCount() const;
    int FolderCount() const;
    // Names in name order; "" when index is out of range.
    QString FileNameAt(int index) const;
    QString FolderNameAt(int index) const;

    // "c:\a\b.tar.gz" -> "b.tar"
    static QString BaseNameOf(const QString &path);
    static bool FolderExists(const QString &path);
    static bool FileExists(const QString &path);
    // Creates the folder when missing; its parent must exist, unless it is
    // the root of a drive.
    bool EnsureFolder(const QString &path);
    // Creates every missing folder along the path.
    bool MakePath(const QString &path);
    // Replaces an existing destination; a failed copy leaves it as it was.
    bool CopyFileTo(const QString &source, const QString &destination);
    bool DeleteFile(const QString &path);
    // Deletes the folder with everything in it.
    bool DeleteFolder(const QString &path);

    // The file number, 0 on failure.
    qint16 OpenFile(const QString &path, filenumbers::Mode mode);
    void CloseFile(qint16 fileNumber);

    // value is left unchanged when the read fails.
    bool GetInteger(qint16 fileNumber, qint16 &value, qint64 recordNumber);
    bool GetLong(qint16 fileNumber, qint32 &value, qint64 recordNumber);
    // Reads as many bytes as text takes in UTF-8: a field as wide as the text
    // that holds its place, so text read back into a copy of the text written
    // there round-trips.
    bool GetText(qint16 fileNumber, QString &text, qint64 recordNumber);
    bool PutInteger(qint16 fileNumber, qint16 value, qint64 recordNumber);
    bool PutLong(qint16 fileNumber, qint32 value, qint64 recordNumber);
    bool WriteText(qint16 fileNumber, const QString &text, qint64 recordNumber, TextKind kind);

    // Length of a file that is not open; 0 on failure.
    qint64 FileLength(const QString &path);
    qint64 OpenLength(qint16 fileNumber);
    // The record number the next read or write at record 0 uses.
    qint64 FilePosition(qint16 fileNumber);
    bool AtEndOfFile(qint16 fileNumber);

    // Writes the first byteCount bytes of the source file at the destination's
    // current position. A failure is also written to the error log, which
    // raises QuarryError when the log itself cannot be written.
    bool CopyFileBlock(const QString &source, qint64 byteCount, qint16 destination);
    // The same from an open file's current position; raises QuarryError.
    static void CopyBlocks(qint16 source, qint16 destination, qint64 byteCount);

private:
    template<typename Result, typename Operation>
    Result guarded(Result neutral, Operation operation);
    void remember(const QuarryError &error);

    QString m_lastError;
    qint32 m_lastErrorNumber = 0;
    QString m_folder;
    QStringList m_files;
};

} // namespace quarry
