#pragma once

#include <quarry/quarry_export.h>

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace quarry {

// A code list as the host hands it to a dialog: the codes, their
// descriptions (indexed alike) and, separately, how many entries are used.
struct QUARRY_EXPORT CodeList
{
    QList<qint16> ids;
    QStringList names;

    // The number of entries used: none for a count below 1; a count beyond
    // either array is the host's error (QuarryError 9, subscript out of range).
    qsizetype used(qint32 count) const;
    // Description index, which the host must have given (QuarryError 9).
    QString name(qsizetype index) const;
    // "<id>: <description>  " for every used entry, in one line.
    QString legend(qint32 count) const;
    // The description of the last used entry whose code is the number at
    // the start of text (0 when there is none); nothing when no entry has it.
    std::optional<QString> describe(const QString &text, qint32 count) const;
};

} // namespace quarry
