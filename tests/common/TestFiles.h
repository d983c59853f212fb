#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace quarry::test {

// How long a test waits, in milliseconds, for what may never come (a
// process's end, an answer, the end of a reading): the slowest build, the
// sanitized one, needs a few seconds at most, and a fault is told soon.
constexpr int WaitLimit = 10'000;

// Replaces the file at path with bytes at once (a program reading it meanwhile,
// such as the viewer's station check, reads the old file or the new one); a
// failure ends the program.
void writeFile(const QString &path, const QByteArray &bytes);
// The file's bytes; empty when it cannot be read.
QByteArray readFile(const QString &path);
// What the program writes on standard output, run with arguments and
// waited for up to WaitLimit.
QByteArray programOutput(const QString &program, const QStringList &arguments);

} // namespace quarry::test
