#pragma once

#include <QByteArray>
#include <QString>

namespace quarry::test {

// Writes bytes into the file at path, replacing it; a failure ends the program.
void writeFile(const QString &path, const QByteArray &bytes);
// The file's bytes; empty when it cannot be read.
QByteArray readFile(const QString &path);

} // namespace quarry::test
