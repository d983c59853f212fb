// The paged rows sorted by a column on the database: read on page by page
// or by jumps, the rows come in exactly the order of the column and then
// the key, NULL first going up.

#include "LogRowsModel.h"
#include "TestDatabases.h"

#include "platform/DbConnection.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace quarry::viewer;
using quarry::test::Engine;

namespace {

constexpr int Rows = 20;

// Few names for many rows, some of them NULL, in no order of the key.
QVariant nameOf(int id)
{
    return id % 4 == 0 ? QVariant() : QVariant(QString(QChar(u'a' + (id * 7) % 3)));
}

// The keys in the order of the names (or the keys alone), then the keys.
QList<int> expectedOrder(bool byName, Qt::SortOrder direction)
{
    QList<int> ids;
    for (int id = 1; id <= Rows; ++id)
        ids.append(id);
    std::sort(ids.begin(), ids.end(), [&](int a, int b) {
        const QVariant x = nameOf(a), y = nameOf(b);
        const auto rank = [](const QVariant &v) { return v.isNull() ? QString() : u'~' + v.toString(); };
        const auto left = std::pair(byName ? rank(x) : QString(), a);
        const auto right = std::pair(byName ? rank(y) : QString(), b);
        return direction == Qt::AscendingOrder ? left < right : right < left;
    });
    return ids;
}

} // namespace

class TestLogRows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sorted_data()
    {
        QTest::addColumn<Engine>("engine");
        QTest::addColumn<bool>("byName");
        QTest::addColumn<Qt::SortOrder>("direction");
        QTest::addColumn<bool>("jumps"); // read from the last row back: every page from an offset
        for (Engine engine : {Engine::Sqlite, Engine::MariaDb}) {
            const QByteArray name = quarry::test::engineName(engine).toLatin1();
            QTest::addRow("%s: name up", name.data()) << engine << true << Qt::AscendingOrder << false;
            QTest::addRow("%s: name down", name.data()) << engine << true << Qt::DescendingOrder << false;
            QTest::addRow("%s: name down, by jumps", name.data()) << engine << true << Qt::DescendingOrder << true;
            QTest::addRow("%s: key down", name.data()) << engine << false << Qt::DescendingOrder << false;
        }
    }
    void sorted()
    {
        QFETCH(Engine, engine);
        QFETCH(bool, byName);
        QFETCH(Qt::SortOrder, direction);
        QFETCH(bool, jumps);
        QUARRY_REQUIRE_ENGINE(engine);
        QTemporaryDir folder;
        quarry::test::TestDatabase database(engine, folder.path());
        QString script = u"CREATE TABLE T (LOGID INTEGER NOT NULL PRIMARY KEY, NAME VARCHAR(10));\n"_s;
        for (int id = Rows; id >= 1; --id) {
            const QVariant name = nameOf(id);
            script += u"INSERT INTO T VALUES (%1, %2);\n"_s.arg(id).arg(name.isNull() ? u"NULL"_s : u"'%1'"_s.arg(name.toString()));
        }
        QVERIFY2(database.isValid() && database.execute(script), qPrintable(database.errorText()));
        quarry::DbConnection connection;
        database.prepare(connection);
        connection.open(database.connectionString(), u"BISOL"_s, u"KORMANTE"_s, true);
        QVERIFY2(connection.isOpen(), qPrintable(connection.errorText()));

        LogRowsModel model(3);
        QSignalSpy failed(&model, &LogRowsModel::readFailed);
        const QSqlError error = model.setQuery(connection.database(), u"SELECT * FROM T"_s, u"LOGID"_s, Paging::LimitOffset);
        QVERIFY2(!error.isValid(), qPrintable(error.text()));
        model.sort(byName ? 1 : 0, direction);
        QList<int> shown(Rows);
        for (int i = 0; i < Rows; ++i) {
            const int row = jumps ? Rows - 1 - i : i;
            shown[row] = model.index(row, 0).data().toInt();
        }
        QCOMPARE(shown, expectedOrder(byName, direction));
        // What ran, for the operator.
        QVERIFY2(model.statement().endsWith(direction == Qt::AscendingOrder ? u"LOGID"_s : u"LOGID DESC"_s), qPrintable(model.statement()));
        QCoreApplication::processEvents();
        QCOMPARE(failed.size(), 0);
    }
};

QTEST_GUILESS_MAIN(TestLogRows)
#include "tst_logrows.moc"
