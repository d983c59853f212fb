#include "TableLayout.h"

#include <numeric>

namespace quarry::viewer {

namespace {

double sum(const QList<ColumnNeed> &needs, const QList<int> &columns, double ColumnNeed::*part)
{
    return std::accumulate(columns.cbegin(), columns.cend(), 0.0,
                           [&](double total, int c) { return total + needs.at(c).*part; });
}

// The columns' widths across width: each column's one line and a share of
// what is left over when they all fit; else each column's unbreakable
// piece and a share of the rest in proportion to the text that must wrap.
ColumnGroup fit(const QList<ColumnNeed> &needs, const QList<int> &columns, double width)
{
    ColumnGroup group{columns, {}};
    const double natural = sum(needs, columns, &ColumnNeed::natural);
    const double minimum = sum(needs, columns, &ColumnNeed::minimum);
    for (int c : columns) {
        const ColumnNeed &need = needs.at(c);
        double share = 0;
        if (natural <= width)
            share = natural > 0 ? need.natural + (width - natural) * need.natural / natural
                                : width / double(columns.size());
        else if (minimum <= width)
            share = need.minimum
                + (width - minimum) * (need.natural - need.minimum) / (natural - minimum);
        else // a single piece wider than the page: it breaks anywhere
            share = need.minimum * width / minimum;
        group.widths.append(share);
    }
    return group;
}

} // namespace

TableLayout layoutTable(const QList<ColumnNeed> &needs, double portraitWidth, double landscapeWidth)
{
    QList<int> all(needs.size());
    std::iota(all.begin(), all.end(), 0);
    if (sum(needs, all, &ColumnNeed::natural) <= portraitWidth)
        return {false, {fit(needs, all, portraitWidth)}};
    if (sum(needs, all, &ColumnNeed::minimum) <= landscapeWidth)
        return {true, {fit(needs, all, landscapeWidth)}};
    QList<int> identifying;
    for (int c : all) {
        if (needs.at(c).identifying)
            identifying.append(c);
    }
    TableLayout layout{true, {}};
    QList<int> columns = identifying;
    for (int c : all) {
        if (needs.at(c).identifying)
            continue;
        QList<int> wider = columns;
        wider.append(c);
        if (columns.size() > identifying.size()
            && sum(needs, wider, &ColumnNeed::minimum) > landscapeWidth) {
            layout.groups.append(fit(needs, columns, landscapeWidth));
            wider = identifying;
            wider.append(c);
        }
        columns = wider;
    }
    layout.groups.append(fit(needs, columns, landscapeWidth));
    return layout;
}

} // namespace quarry::viewer
