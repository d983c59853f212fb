#pragma once

#include <quarry/quarry_export.h>

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

namespace quarry {

// One row of the branch table: a branch and the branch it reports to.
struct BranchLink
{
    QString wdh;
    QString masterNo;
};

// A branch and every branch below it, read one level at a time and listed
// depth first: the branch, then each sub-branch followed by its own
// sub-branches, siblings in the order the table gives them. A branch reached
// a second time (a cycle, or a branch under two parents) is listed only at
// its first place and reported by repeated().
class QUARRY_EXPORT BranchTree
{
public:
    // Gives the rows whose MASTERNO is one of parents, in the table's order.
    using LevelReader = std::function<QList<BranchLink>(const QStringList &parents)>;

    BranchTree(const QString &root, const LevelReader &readLevel);

    const QStringList &branches() const { return m_branches; }
    // Branches met again under another parent, each named once.
    const QStringList &repeated() const { return m_repeated; }

private:
    QStringList m_branches;
    QStringList m_repeated;
};

} // namespace quarry
