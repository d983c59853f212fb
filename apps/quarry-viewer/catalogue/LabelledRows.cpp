#include "LabelledRows.h"

#include "NumberFormat.h"

using namespace Qt::StringLiterals;

namespace quarry::viewer {

void LabelledRows::setEntry(const LogEntry &entry)
{
    beginResetModel();
    m_entry = entry;
    m_codes.clear();
    for (const CodeListSource *list : {&entry.listA, &entry.listB}) {
        if (list->column.isEmpty())
            continue;
        QHash<QString, QString> &codes = m_codes[list->column.toUpper()];
        for (qsizetype i = 0; i < list->ids.size(); ++i)
            codes.insert(QString::number(list->ids[i]), list->names.value(i));
    }
    endResetModel();
}

QVariant LabelledRows::data(const QModelIndex &index, int role) const
{
    if (role == NumberFormatRole)
        return m_entry.columnFormats.value(sourceName(index.column()).toUpper());
    const QVariant value = QIdentityProxyModel::data(index, role);
    return role == Qt::DisplayRole ? labelled(index.column(), value) : value;
}

QVariant LabelledRows::labelled(int column, const QVariant &value) const
{
    const QString name = sourceName(column).toUpper();
    if (const auto format = m_entry.columnFormats.constFind(name);
        format != m_entry.columnFormats.cend() && !value.isNull())
        return formatNumber(value, *format);
    const auto codes = m_codes.constFind(name);
    if (codes == m_codes.cend())
        return value;
    const QString code = value.toString().trimmed();
    const auto description = codes->constFind(code);
    return description == codes->cend() ? value : QVariant(code + u' ' + *description);
}

bool LabelledRows::relabels(int column) const
{
    const QString name = sourceName(column).toUpper();
    return m_entry.columnFormats.contains(name) || m_codes.contains(name);
}

QVariant LabelledRows::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return QIdentityProxyModel::headerData(section, orientation, role);
    const QString name = sourceName(section);
    if (role == Qt::ToolTipRole)
        return name;
    return m_entry.columnTitles.value(name.toUpper(), name);
}

QList<int> LabelledRows::identifyingColumns() const
{
    QList<int> columns;
    for (int c = 0; c < columnCount(); ++c) {
        const QString name = sourceName(c);
        if (name.compare(m_entry.key, Qt::CaseInsensitive) == 0
            || name.compare(u"ACCNO"_s, Qt::CaseInsensitive) == 0)
            columns.append(c);
    }
    return columns;
}

QList<int> LabelledRows::shownColumns() const
{
    QList<int> columns;
    for (int c = 0; c < columnCount(); ++c) {
        if (!m_entry.hiddenColumns.contains(sourceName(c).toUpper()))
            columns.append(c);
    }
    return columns;
}

QString LabelledRows::sourceName(int section) const
{
    return sourceModel() ? sourceModel()->headerData(section, Qt::Horizontal).toString()
                         : QString();
}

} // namespace quarry::viewer
