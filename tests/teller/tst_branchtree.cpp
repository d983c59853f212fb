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
    void longChain();
};

// 100,000 levels, each under the one before: no recursion that could
// overflow the stack, and one read per level, never one per branch.
void TestBranchTree::longChain()
{
    const int count = 100000;
    int reads = 0;
    const auto readLevel = [&](const QStringList &parents) {
        ++reads;
        const int below = parents.constFirst().toInt() + 1;
        return below < count ? QList<BranchLink>{{QString::number(below), parents.constFirst()}}
                             : QList<BranchLink>();
    };
    const BranchTree tree(u"0"_s, readLevel);
    QCOMPARE(tree.branches().size(), count);
    QCOMPARE(tree.branches().constLast(), QString::number(count - 1));
    QCOMPARE(tree.repeated(), QStringList());
    QCOMPARE(reads, count);
}

QTEST_GUILESS_MAIN(TestBranchTree)
#include "tst_branchtree.moc"
