#pragma once

#include <QPersistentModelIndex>
#include <QTableView>

namespace quarry::viewer {

class RowWindow;
class WindowSelection;

// A table over a log of any length whose memory does not grow with it: it
// shows a RowWindow of the log's rows, and its vertical scroll bar runs over
// the whole log and moves the window. The wheel, the keys (Up and Down
// past the window's edges, PageUp, PageDown, Ctrl+Home, Ctrl+End) and the
// bar reach every row; the selection and the current cell are kept by the
// log's rows (WindowSelection), and Ctrl+A selects every row of the log.
class LogTable : public QTableView
{
    Q_OBJECT

public:
    // rows: the log's rows, of which the table shows a window.
    explicit LogTable(QAbstractItemModel &rows, QWidget *parent = nullptr);

    // The operator's selection, over rows.
    const QItemSelectionModel &logSelection() const;

    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;
    void selectAll() override;

protected:
    void updateGeometries() override;
    void scrollContentsBy(int dx, int dy) override;
    QModelIndex moveCursor(CursorAction cursorAction, Qt::KeyboardModifiers modifiers) override;
    void setSelection(const QRect &rect, QItemSelectionModel::SelectionFlags command) override;

private:
    void fitScrollBar();
    void fitRowNumbers();
    // Moves the window so that the log's row is whole on view, placed as
    // hint says.
    void showRow(int row, ScrollHint hint);

    RowWindow *m_window;
    WindowSelection *m_selection;
    // The log's cell where the last selection started, which Shift and a
    // drag extend from after the window has moved.
    QPersistentModelIndex m_anchor;
};

} // namespace quarry::viewer
