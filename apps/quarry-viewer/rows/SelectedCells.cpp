#include "SelectedCells.h"

#include <algorithm>

namespace quarry::viewer {

SelectedCells::SelectedCells(const QItemSelection &selection)
{
    for (const QItemSelectionRange &range : selection) {
        m_spans.append({range.top(), range.bottom(), range.left(), range.right()});
        for (int column = range.left(); column <= range.right(); ++column)
            m_columns.append(column);
    }
    std::sort(m_columns.begin(), m_columns.end());
    m_columns.erase(std::unique(m_columns.begin(), m_columns.end()), m_columns.end());
    std::sort(m_spans.begin(), m_spans.end(),
              [](const Span &a, const Span &b) { return a.top < b.top; });
    int counted = -1; // the last row counted
    for (const Span &span : std::as_const(m_spans)) {
        if (span.bottom > counted) {
            m_rowCount += span.bottom - qMax(span.top, counted + 1) + 1;
            counted = span.bottom;
        }
    }
    if (!m_spans.isEmpty()) {
        m_firstRow = m_spans.first().top;
        m_lastRow = counted;
    }
}

bool SelectedCells::take(int row, const QVariantList &values, QVariantList &cells) const
{
    cells.clear();
    for (const Span &span : m_spans) {
        if (span.top > row)
            break;
        if (span.bottom < row)
            continue;
        if (cells.isEmpty())
            cells.resize(m_columns.size());
        for (int column = span.left; column <= span.right; ++column) {
            const auto at = std::lower_bound(m_columns.cbegin(), m_columns.cend(), column);
            cells[at - m_columns.cbegin()] = values.value(column);
        }
    }
    return !cells.isEmpty();
}

} // namespace quarry::viewer
