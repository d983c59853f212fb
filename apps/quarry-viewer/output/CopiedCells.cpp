#include "CopiedCells.h"

#include "ColumnLabels.h"
#include "catalogue/LabelledRows.h"
#include "rows/RowStream.h"

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

QString line(const QVariantList &values)
{
    QStringList fields;
    for (const QVariant &value : values) {
        QString field = value.toString();
        for (QChar &c : field) {
            if (c == u'\t' || c == u'\n' || c == u'\r')
                c = u' ';
        }
        fields.append(field);
    }
    return fields.join(u'\t') + u'\n';
}

} // namespace

QString copyCells(const LabelledRows &rows, const RowSource &source, bool withTitles, QString &text,
                  const Progress &progress)
{
    const ColumnLabels labels(rows);
    const QList<int> columns = source.selected ? source.selected->columns() : QList<int>();
    QString copied;
    if (withTitles && !columns.isEmpty()) {
        const QStringList titles = labels.titles(columns);
        copied = line(QVariantList(titles.cbegin(), titles.cend()));
    }
    const QString fault = runBeside(
        [&](const Progress &told) {
            RowStream stream(source);
            qint64 read = 0;
            bool stopped = false;
            const auto goOn = [&] { return stopped = !told(read), !stopped; };
            for (QList<QVariantList> *batch = &stream.next(goOn); !batch->isEmpty();
                 batch = &stream.next(goOn)) {
                for (QVariantList &cells : *batch) {
                    for (qsizetype c = 0; c < cells.size(); ++c)
                        cells[c] = labels.labelled(columns.value(c), cells[c]);
                    copied += line(cells);
                    ++read;
                }
            }
            return stopped ? u"已停止复制，剪贴板未变。"_s : stream.failure();
        },
        progress);
    if (fault.isEmpty())
        text = copied;
    return fault;
}

} // namespace quarry::viewer
