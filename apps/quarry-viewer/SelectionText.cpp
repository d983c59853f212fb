#include "SelectionText.h"

#include <QAbstractItemModel>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

QString field(const QVariant &value)
{
    QString text = value.toString();
    for (QChar &c : text) {
        if (c == u'\t' || c == u'\n' || c == u'\r')
            c = u' ';
    }
    return text;
}

QList<int> sorted(const QSet<int> &numbers)
{
    QList<int> list(numbers.cbegin(), numbers.cend());
    std::sort(list.begin(), list.end());
    return list;
}

} // namespace

QString tabSeparated(const QAbstractItemModel &model, const QModelIndexList &cells, bool withTitles)
{
    QSet<int> rowSet, columnSet;
    QSet<std::pair<int, int>> chosen;
    for (const QModelIndex &cell : cells) {
        rowSet.insert(cell.row());
        columnSet.insert(cell.column());
        chosen.insert({cell.row(), cell.column()});
    }
    const QList<int> rows = sorted(rowSet);
    const QList<int> columns = sorted(columnSet);
    QStringList lines;
    if (withTitles && !columns.isEmpty()) {
        QStringList titles;
        for (int c : columns)
            titles.append(field(model.headerData(c, Qt::Horizontal)));
        lines.append(titles.join(u'\t'));
    }
    for (int r : rows) {
        QStringList fields;
        for (int c : columns)
            fields.append(chosen.contains({r, c}) ? field(model.index(r, c).data()) : QString());
        lines.append(fields.join(u'\t'));
    }
    return lines.isEmpty() ? QString() : lines.join(u'\n') + u'\n';
}

} // namespace quarry::viewer
