#include "teller/BranchTree.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using quarry::BranchLink;
using quarry::BranchTree;

using Links = QList<BranchLink>;
Q_DECLARE_METATYPE(Links)

namespace {

// "A<B C<B" -> A and C report to B.
Links links(const QString &text)
{
    Links rows;
    for (const QString &pair : text.split(u' ', Qt::SkipEmptyParts)) {
        const QStringList parts = pair.split(u'<');
        rows.append({parts.at(0), parts.at(1)});
    }
    return rows;
}

// A chain of count branches, each under the one before.
Links chain(int count)
{
    Links rows;
    for (int i = 1; i < count; ++i)
        rows.append({QString::number(i), QString::number(i - 1)});
    return rows;
}

QStringList numbers(int count)
{
    QStringList codes;
    for (int i = 0; i < count; ++i)
        codes.append(QString::number(i));
    return codes;
}

} // namespace

class TestBranchTree : public QObject
{
    Q_OBJECT

private slots:
    void listsDepthFirst_data();
    void listsDepthFirst();
};

void TestBranchTree::listsDepthFirst_data()
{
    QTest::addColumn<Links>("table"); // in table order
    QTest::addColumn<bool>("loose");  // the engine compares codes as MariaDB does
    QTest::addColumn<QString>("root");
    QTest::addColumn<QStringList>("branches");
    QTest::addColumn<QStringList>("repeated");
    QTest::addColumn<int>("levels"); // reads of the table

    const Links tree = links(u"B<A C<A D<B E<B F<C G<E X<Y"_s);
    QTest::newRow("leaf") << tree << false << u"D"_s << QStringList{u"D"_s} << QStringList() << 1;
    QTest::newRow("unknown") << tree << false << u"Q"_s << QStringList{u"Q"_s} << QStringList() << 1;
    QTest::newRow("tree, siblings in table order")
        << tree << false << u"A"_s
        << QStringList{u"A"_s, u"B"_s, u"D"_s, u"E"_s, u"G"_s, u"C"_s, u"F"_s} << QStringList() << 4;
    QTest::newRow("subtree") << tree << false << u"B"_s
                             << QStringList{u"B"_s, u"D"_s, u"E"_s, u"G"_s} << QStringList() << 3;
    QTest::newRow("table order, not code order")
        << links(u"Z<R M<R A<Z"_s) << false << u"R"_s
        << QStringList{u"R"_s, u"Z"_s, u"A"_s, u"M"_s} << QStringList() << 3;
    QTest::newRow("cycle") << links(u"B<A C<B A<C"_s) << false << u"A"_s
                           << QStringList{u"A"_s, u"B"_s, u"C"_s} << QStringList{u"A"_s} << 3;
    QTest::newRow("own parent") << links(u"A<A B<A"_s) << false << u"A"_s
                                << QStringList{u"A"_s, u"B"_s} << QStringList{u"A"_s} << 2;
    QTest::newRow("cycle below the root")
        << links(u"B<A C<B B<C"_s) << false << u"A"_s << QStringList{u"A"_s, u"B"_s, u"C"_s}
        << QStringList{u"B"_s} << 3;
    QTest::newRow("two parents")
        << links(u"D1<D0 D2<D0 D3<D1 D3<D2 D4<D3"_s) << false << u"D0"_s
        << QStringList{u"D0"_s, u"D1"_s, u"D3"_s, u"D4"_s, u"D2"_s} << QStringList{u"D3"_s} << 4;
    QTest::newRow("parent spelt otherwise")
        << Links{{u"x"_s, u"AB  "_s}, {u"y"_s, u"x"_s}} << true << u"ab"_s
        << QStringList{u"ab"_s, u"x"_s, u"y"_s} << QStringList() << 3;
    QTest::newRow("long chain") << chain(100000) << false << u"0"_s << numbers(100000)
                                << QStringList() << 100000;
}

void TestBranchTree::listsDepthFirst()
{
    QFETCH(Links, table);
    QFETCH(bool, loose);
    QFETCH(QString, root);
    QFETCH(QStringList, branches);
    QFETCH(QStringList, repeated);
    QFETCH(int, levels);

    // An index of the table on MASTERNO, as the database uses one.
    const auto key = [loose](QString code) {
        while (loose && code.endsWith(u' '))
            code.chop(1);
        return loose ? code.toCaseFolded() : code;
    };
    QHash<QString, QList<qsizetype>> byMaster;
    for (qsizetype i = 0; i < table.size(); ++i)
        byMaster[key(table.at(i).masterNo)].append(i);
    int reads = 0;
    const auto readLevel = [&](const QStringList &parents) {
        ++reads;
        QList<qsizetype> found;
        for (const QString &parent : parents)
            found += byMaster.value(key(parent));
        std::sort(found.begin(), found.end());
        Links rows;
        for (qsizetype i : std::as_const(found))
            rows.append(table.at(i));
        return rows;
    };

    const BranchTree tree(root, readLevel);
    QCOMPARE(tree.branches(), branches);
    QCOMPARE(tree.repeated(), repeated);
    QCOMPARE(reads, levels);
}

QTEST_GUILESS_MAIN(TestBranchTree)
#include "tst_branchtree.moc"
