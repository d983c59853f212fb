#pragma once

#include <QList>

namespace quarry::viewer {

// What a column of a printed table needs across the page: its widest text
// on one line, and its widest piece that no line may break (an account
// number, a word); whether it identifies a row (the log's key, the
// account), so that it is repeated where the table continues on another
// page.
struct ColumnNeed
{
    double natural = 0;
    double minimum = 0;
    bool identifying = false;
};

// Columns printed side by side on one page, with their widths.
struct ColumnGroup
{
    QList<int> columns;
    QList<double> widths;

    friend bool operator==(const ColumnGroup &, const ColumnGroup &) = default;
};

struct TableLayout
{
    bool landscape = false;
    // One group when the table fits across a page; else the table continues
    // on further pages, each group repeating the identifying columns.
    QList<ColumnGroup> groups;
};

// How a table with columns of these needs goes on pages that are
// portraitWidth wide upright and landscapeWidth turned: upright when every
// column fits on one line, else turned; a column wraps when its text does
// not fit on one line of the turned page (never narrower than its widest
// unbreakable piece), and the table continues on further pages when even
// that does not fit. A group's columns fill the page's width.
TableLayout layoutTable(const QList<ColumnNeed> &needs, double portraitWidth,
                        double landscapeWidth);

} // namespace quarry::viewer
