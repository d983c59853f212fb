#include "WindowSelection.h"

#include "RowWindow.h"

#include <QScopedValueRollback>

namespace quarry::viewer {

WindowSelection::WindowSelection(RowWindow &window, QObject *parent)
    : QItemSelectionModel(&window, parent)
    , m_window(window)
    , m_log(new QItemSelectionModel(window.sourceModel()))
{
    connect(&window, &RowWindow::moved, this, &WindowSelection::follow);
    connect(&window, &RowWindow::sourceRowsChanged, this, &WindowSelection::follow);
}

void WindowSelection::selectInLog(const QItemSelection &selection, SelectionFlags command)
{
    m_log->select(selection, command);
    follow();
}

void WindowSelection::select(const QItemSelection &selection, SelectionFlags command)
{
    selectInLog(m_window.mapSelectionToSource(selection), command);
}

void WindowSelection::setCurrentIndex(const QModelIndex &index, SelectionFlags command)
{
    m_log->setCurrentIndex(m_window.mapToSource(index), NoUpdate);
    QItemSelectionModel::setCurrentIndex(index, command);
}

void WindowSelection::follow()
{
    const QScopedValueRollback following(m_following, true);
    QItemSelectionModel::select(m_window.mapSelectionFromSource(m_log->selection()),
                                ClearAndSelect);
    QItemSelectionModel::setCurrentIndex(m_window.mapFromSource(m_log->currentIndex()), NoUpdate);
}

} // namespace quarry::viewer
