#include "teller/BranchTree.h"

#include <QTest>

using namespace Qt::StringLiterals;
using quarry::BranchLink;
using quarry::BranchTree;

// The tree's rules are tested against the databases in tst_chy; this test
// covers what the sample data cannot reach: depth.
class TestBranchTree : public QObject
{
    Q_OBJECT

private slots:
    // 100,000 levels, each a pair under the first of the level before: no
    // recursion that could overflow the stack, and one read per level, never one
    // per branch.
    void longChain()
    {
        const int count = 100000;
        int reads = 0;
        const auto readLevel = [&](const QStringList &parents) {
            ++reads;
            QList<BranchLink> rows;
            for (const QString &parent : parents) {
                const int below = parent.mid(1).toInt() + 1;
                if (parent.startsWith(u'a') && below < count)
                    rows += {{u'a' + QString::number(below), parent}, {u'b' + QString::number(below), parent}};
            }
            return rows;
        };
        const BranchTree tree(u"a0"_s, readLevel);
        QCOMPARE(reads, count);
        QCOMPARE(tree.branches().size(), 2 * count - 1);
        // Depth first: down the a's, then the b's on the way back up.
        QCOMPARE(tree.branches().at(count - 1), u'a' + QString::number(count - 1));
        QCOMPARE(tree.branches().constLast(), u"b1"_s);
        QCOMPARE(tree.repeated(), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestBranchTree)
#include "tst_branchtree.moc"
