#include "ReadRows.h"

#include "rows/LogRowsModel.h"
#include "TestFiles.h"

#include <QSqlError>
#include <QTest>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

QString readRows(LogRowsModel &model, const StationDatabase &station, const QString &select,
                 const QString &key, const RowOrder &own)
{
    QString fault;
    QObject context;
    QObject::connect(&model, &LogRowsModel::failed, &context,
                     [&fault](const QSqlError &error) { fault = error.text(); });
    // Rows told inserted are some: Qt checks that in its debug builds only.
    QObject::connect(&model, &QAbstractItemModel::rowsAboutToBeInserted, &context,
                     [&fault](const QModelIndex &, int first, int last) {
                         if (first > last)
                             fault = u"rows %1 to %2 inserted"_s.arg(first).arg(last);
                     });
    model.setQuery(station, select, key, own);
    if (!QTest::qWaitFor([&model] { return !model.isBusy(); }, test::WaitLimit))
        return u"still reading after the wait limit"_s;
    return fault;
}

} // namespace quarry::viewer
