#include "LogTable.h"

#include "RowWindow.h"
#include "WindowSelection.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyleOptionHeader>

namespace quarry::viewer {

LogTable::LogTable(QAbstractItemModel &rows, QWidget *parent)
    : QTableView(parent)
    , m_window(new RowWindow(rows, this))
    , m_selection(new WindowSelection(*m_window, this))
{
    setModel(m_window);
    QItemSelectionModel *own = selectionModel();
    setSelectionModel(m_selection);
    delete own;
    // A row made taller would stay where it is while the rows move past.
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    // Shown whatever the log's length: the table decides on its horizontal
    // bar as if there were no vertical one when the window's rows fit, and
    // the rows the window holds follow the horizontal bar; the two would
    // show and hide each other without end.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, m_window, &RowWindow::moveTo);
    connect(m_window, &RowWindow::sourceRowsChanged, this, &LogTable::fitScrollBar);
}

const QItemSelectionModel &LogTable::logSelection() const
{
    return m_selection->log();
}

void LogTable::scrollTo(const QModelIndex &index, ScrollHint hint)
{
    if (!index.isValid() || m_selection->following())
        return;
    const int row = m_window->first() + index.row();
    showRow(row, hint);
    // The columns as the table scrolls them; the rows where the window has
    // put them.
    const QSignalBlocker quiet(verticalScrollBar());
    QTableView::scrollTo(m_window->index(row - m_window->first(), index.column()), hint);
    verticalScrollBar()->setValue(m_window->first());
    verticalHeader()->setOffset(0);
}

void LogTable::selectAll()
{
    QAbstractItemModel &rows = *m_window->sourceModel();
    if (rows.rowCount() == 0 || rows.columnCount() == 0)
        return;
    m_selection->selectInLog(
        QItemSelection(rows.index(0, 0), rows.index(rows.rowCount() - 1, rows.columnCount() - 1)),
        QItemSelectionModel::ClearAndSelect);
}

void LogTable::updateGeometries()
{
    fitRowNumbers();
    {
        // The table sets the bar for the window's rows: it is the log's.
        const QSignalBlocker quiet(verticalScrollBar());
        QTableView::updateGeometries();
    }
    verticalHeader()->setOffset(0);
    m_window->setFitting(viewport()->height() / qMax(verticalHeader()->defaultSectionSize(), 1));
    fitScrollBar();
}

// The window moves by the bar's value instead.
void LogTable::scrollContentsBy(int dx, int)
{
    if (dx != 0)
        QTableView::scrollContentsBy(dx, 0);
}

QModelIndex LogTable::moveCursor(CursorAction cursorAction, Qt::KeyboardModifiers modifiers)
{
    const QModelIndex current = logSelection().currentIndex();
    if (!current.isValid())
        return QTableView::moveCursor(cursorAction, modifiers);
    const bool control = modifiers.testFlag(Qt::ControlModifier);
    int row = current.row();
    switch (cursorAction) {
    case MoveUp:
        --row;
        break;
    case MoveDown:
        ++row;
        break;
    case MovePageUp:
        row -= m_window->fitting();
        break;
    case MovePageDown:
        row += m_window->fitting();
        break;
    case MoveHome:
    case MoveEnd:
        if (control) {
            row = cursorAction == MoveHome ? 0 : m_window->sourceRows() - 1;
            break;
        }
        [[fallthrough]];
    default: // along the current row, which is brought into view
        showRow(row, EnsureVisible);
        return QTableView::moveCursor(cursorAction, modifiers);
    }
    row = qBound(0, row, m_window->sourceRows() - 1);
    showRow(row, EnsureVisible);
    return m_window->mapFromSource(current.siblingAtRow(row));
}

// A selection that extends the last one (Shift, a drag) runs from the
// anchor in the log, which the rectangle's start in the window may no
// longer show.
void LogTable::setSelection(const QRect &rect, QItemSelectionModel::SelectionFlags command)
{
    const QModelIndex end = m_window->mapToSource(indexAt(rect.bottomRight()));
    if (!command.testFlag(QItemSelectionModel::Current) || !m_anchor.isValid() || !end.isValid()) {
        m_anchor = m_window->mapToSource(indexAt(rect.topLeft()));
        QTableView::setSelection(rect, command);
        return;
    }
    const QAbstractItemModel &rows = *m_window->sourceModel();
    m_selection->selectInLog(QItemSelection(rows.index(qMin(m_anchor.row(), end.row()),
                                                       qMin(m_anchor.column(), end.column())),
                                            rows.index(qMax(m_anchor.row(), end.row()),
                                                       qMax(m_anchor.column(), end.column()))),
                             command);
}

void LogTable::fitScrollBar()
{
    QScrollBar *bar = verticalScrollBar();
    bar->setRange(0, m_window->lastFirst());
    bar->setPageStep(m_window->fitting());
    bar->setSingleStep(1);
    bar->setValue(m_window->first());
}

// The row numbers as wide as the log's last one, wherever the window is.
void LogTable::fitRowNumbers()
{
    QStyleOptionHeader option;
    option.initFrom(verticalHeader());
    option.text = QString::number(m_window->sourceRows());
    verticalHeader()->setMinimumWidth(
        style()->sizeFromContents(QStyle::CT_HeaderSection, &option, {}, verticalHeader()).width());
}

void LogTable::showRow(int row, ScrollHint hint)
{
    const int fitting = m_window->fitting();
    int first = m_window->first();
    switch (hint) {
    case PositionAtTop:
        first = row;
        break;
    case PositionAtBottom:
        first = row - fitting + 1;
        break;
    case PositionAtCenter:
        first = row - fitting / 2;
        break;
    case EnsureVisible:
        if (row < first)
            first = row;
        else if (row >= first + fitting)
            first = row - fitting + 1;
        break;
    }
    verticalScrollBar()->setValue(first);
}

} // namespace quarry::viewer
