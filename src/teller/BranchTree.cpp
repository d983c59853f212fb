#include "teller/BranchTree.h"

#include <QSet>

namespace quarry {

namespace {

using Children = QHash<QString, QStringList>;

// MariaDB matches MASTERNO without regard to case and trailing blanks, so a
// row may spell its parent differently from the code that found it.
QString comparable(const QString &code)
{
    qsizetype end = code.size();
    while (end > 0 && code.at(end - 1) == u' ')
        --end;
    return code.first(end).toCaseFolded();
}

// Files the rows of one level under their parents; the sub-branches not met
// before make up the next level.
QStringList addLevel(const QStringList &parents, const QList<BranchLink> &rows, Children &children,
                     QSet<QString> &seen)
{
    const QSet<QString> exact(parents.cbegin(), parents.cend());
    QHash<QString, QString> loose;
    for (const QString &parent : parents)
        loose.insert(comparable(parent), parent);

    QStringList next;
    for (const BranchLink &row : rows) {
        const QString parent = exact.contains(row.masterNo) ? row.masterNo
                                                            : loose.value(comparable(row.masterNo));
        if (parent.isNull())
            continue;
        children[parent].append(row.wdh);
        if (!seen.contains(row.wdh)) {
            seen.insert(row.wdh);
            next.append(row.wdh);
        }
    }
    return next;
}

Children readChildren(const QString &root, const BranchTree::LevelReader &readLevel)
{
    Children children;
    QSet<QString> seen{root};
    QStringList level{root};
    while (!level.isEmpty())
        level = addLevel(level, readLevel(level), children, seen);
    return children;
}

} // namespace

BranchTree::BranchTree(const QString &root, const LevelReader &readLevel)
{
    const Children children = readChildren(root, readLevel);

    // An explicit stack: a long chain of branches must not exhaust the call stack.
    QSet<QString> listed;
    QSet<QString> reported;
    QStringList stack{root};
    while (!stack.isEmpty()) {
        const QString branch = stack.takeLast();
        if (listed.contains(branch)) {
            if (!reported.contains(branch)) {
                reported.insert(branch);
                m_repeated.append(branch);
            }
            continue;
        }
        listed.insert(branch);
        m_branches.append(branch);
        const QStringList below = children.value(branch);
        for (auto it = below.crbegin(); it != below.crend(); ++it)
            stack.append(*it);
    }
}

} // namespace quarry
