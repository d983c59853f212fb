#pragma once

#include <QItemSelectionModel>

namespace quarry::viewer {

class RowWindow;

// The selection of a table over a RowWindow, kept in the rows of the whole
// log: what the operator selects in the window is selected in the log, and
// the window shows the part of the log's selection and the log's current
// cell that it holds, wherever it moves. A selection of every row is one
// range, whatever the log's length.
class WindowSelection : public QItemSelectionModel
{
    Q_OBJECT

public:
    explicit WindowSelection(RowWindow &window, QObject *parent = nullptr);

    // Over the window's source.
    const QItemSelectionModel &log() const { return *m_log; }
    // Whether the current cell changes only to follow the log's current
    // cell as the window moves, which a view then need not scroll to.
    bool following() const { return m_following; }
    // Selects cells of the log, by the log's rows.
    void selectInLog(const QItemSelection &selection, SelectionFlags command);

    using QItemSelectionModel::select;
    void select(const QItemSelection &selection, SelectionFlags command) override;
    void setCurrentIndex(const QModelIndex &index, SelectionFlags command) override;

private:
    // The log's selection and current cell as far as the window holds them.
    void follow();

    RowWindow &m_window;
    QItemSelectionModel *m_log; // the source's child, gone with it
    bool m_following = false;
};

} // namespace quarry::viewer
