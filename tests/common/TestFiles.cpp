#include "TestFiles.h"

#include <QFile>
#include <QProcess>
#include <QSaveFile>

namespace quarry::test {

void writeFile(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        qFatal("Cannot write %s", qPrintable(path));
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray programOutput(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(WaitLimit);
    return process.readAllStandardOutput();
}

} // namespace quarry::test
