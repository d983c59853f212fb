#include "ReadRows.h"

#include "rows/LogRowsModel.h"
#include "TestFiles.h"

#include <QSqlError>
#include <QTest>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

void checkRowRanges(const QAbstractItemModel &model, const QObject &context)
{
    const auto check = [](const QModelIndex &, int first, int last) {
        QVERIFY2(first <= last, qPrintable(u"rows %1 to %2"_s.arg(first).arg(last)));
    };
    QObject::connect(&model, &QAbstractItemModel::rowsAboutToBeInserted, &context, check);
    QObject::connect(&model, &QAbstractItemModel::rowsAboutToBeRemoved, &context, check);
}

QString readRows(LogRowsModel &model, const StationDatabase &station, const QString &select,
                 const QString &key, const RowOrder &own)
{
    QString fault;
    QObject context;
    QObject::connect(&model, &LogRowsModel::failed, &context,
                     [&fault](const QSqlError &error) { fault = error.text(); });
    checkRowRanges(model, context);
    model.setQuery(station, select, key, own);
    if (!QTest::qWaitFor([&model] { return !model.isBusy(); }, test::WaitLimit))
        return u"still reading after the wait limit"_s;
    return fault;
}

} // namespace quarry::viewer
