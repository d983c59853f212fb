#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

namespace quarry::viewer {

// A code list of a log dialog: written out in the catalogue, or read from
// the station's database by a SELECT whose first two columns are the code
// and its description.
struct CodeListSource
{
    QList<qint16> ids;
    QStringList names;
    QString select; // empty for a written-out list
    // The log table's column that holds these codes; empty for none.
    QString column;
};

// One log the viewer offers, and how it asks CQuarry for its condition as a
// host does.
struct LogEntry
{
    // showComplex with the log type, or showComplexEx.
    enum class Call { Complex, ComplexEx };
    // A WHERE clause for the log table's SELECT, or a whole SELECT.
    enum class Result { Where, Select };

    QString logType;
    QString title;
    QString table;
    // The column that orders the rows, with one value per row: the view
    // reads the rows a page at a time in its order.
    QString key;
    // The columns of the day and the time of each row, or "": the rows show
    // newest first, by these and then the key.
    QString dateColumn;
    QString timeColumn;
    Call call = Call::Complex;
    Result result = Result::Where;
    CodeListSource listA;
    CodeListSource listB;
    qint32 clerkLength = 0;
    qint32 accLength = 0;
    qint32 chequeLength = 0;
    bool showWdh = false;
    bool showYjk = false;
    bool showOpCode = false;
    // Column titles by column name in upper case; a column without one
    // shows its name.
    QHash<QString, QString> columnTitles;
    // Number formats (isNumberFormat) by column name in upper case.
    QHash<QString, QString> columnFormats;
    // Columns left out of the view (kept in exports), names in upper case.
    QStringList hiddenColumns;
};

} // namespace quarry::viewer
