#include "teller/BranchTree.h"

#include <QHash>

#include <vector>

namespace quarry {

namespace {

// MariaDB matches MASTERNO without regard to case and trailing blanks, so a
// row may spell its parent differently from the code that found it.
QString comparable(const QString &code)
{
    QStringView kept(code);
    while (kept.endsWith(u' '))
        kept.chop(1);
    return kept.toString().toCaseFolded();
}

// The branches met so far, numbered in the order they were met, and the
// sub-branches of each by number: a head office has tens of thousands, so
// each code is looked up once and the rest works on numbers.
struct Branches
{
    QStringList codes;
    QHash<QString, qsizetype> numbers; // code -> number + 1
    QList<QList<qsizetype>> children;

    // The number of the branch, and whether it is new.
    std::pair<qsizetype, bool> add(const QString &code)
    {
        qsizetype &slot = numbers[code];
        if (slot != 0)
            return {slot - 1, false};
        slot = codes.size() + 1;
        codes.append(code);
        children.emplace_back();
        return {slot - 1, true};
    }

    // Room for count more branches in one go: a level may bring thousands,
    // and growing the look-up by steps rehashes it each time.
    void reserve(qsizetype count)
    {
        const qsizetype size = codes.size() + count;
        if (size <= codes.capacity())
            return;
        const qsizetype room = qMax(size, 2 * codes.capacity());
        codes.reserve(room);
        numbers.reserve(room);
        children.reserve(room);
    }
};

// Finds the parent of a row among the branches of the level. Rows come
// grouped by parent, and nearly always name it exactly as it was asked for,
// so the loose look-up is built only when a row needs it.
class ParentFinder
{
public:
    ParentFinder(const Branches &branches, const QList<qsizetype> &level)
        : m_branches(branches)
        , m_level(level)
    {
    }

    // -1 when the row belongs to none of them.
    qsizetype find(const QString &masterNo)
    {
        if (m_last >= 0 && masterNo == m_lastMaster)
            return m_last;
        qsizetype number = m_branches.numbers.value(masterNo) - 1;
        if (number < 0)
            number = loose().value(comparable(masterNo), -1);
        m_lastMaster = masterNo;
        m_last = number;
        return number;
    }

private:
    const QHash<QString, qsizetype> &loose()
    {
        if (m_loose.isEmpty()) {
            for (qsizetype number : m_level)
                m_loose.insert(comparable(m_branches.codes.at(number)), number);
        }
        return m_loose;
    }

    const Branches &m_branches;
    const QList<qsizetype> &m_level;
    QHash<QString, qsizetype> m_loose;
    QString m_lastMaster;
    qsizetype m_last = -1;
};

// Files the rows read for one level under their parents; the sub-branches not
// met before make up the next level.
QList<qsizetype> addLevel(const QList<qsizetype> &level, const QList<BranchLink> &rows,
                          Branches &branches)
{
    ParentFinder parents(branches, level);
    branches.reserve(rows.size());
    QList<qsizetype> next;
    for (const BranchLink &row : rows) {
        const qsizetype parent = parents.find(row.masterNo);
        if (parent < 0)
            continue;
        const auto [child, isNew] = branches.add(row.wdh);
        branches.children[parent].append(child);
        if (isNew)
            next.append(child);
    }
    return next;
}

Branches readBranches(const QString &root, const BranchTree::LevelReader &readLevel)
{
    Branches branches;
    branches.add(root);
    QList<qsizetype> level{0};
    while (!level.isEmpty()) {
        QStringList codes;
        codes.reserve(level.size());
        for (qsizetype number : std::as_const(level))
            codes.append(branches.codes.at(number));
        level = addLevel(level, readLevel(codes), branches);
    }
    return branches;
}

} // namespace

BranchTree::BranchTree(const QString &root, const LevelReader &readLevel)
{
    const Branches branches = readBranches(root, readLevel);

    // An explicit stack: a long chain of branches must not exhaust the call stack.
    std::vector<bool> listed(branches.codes.size());
    std::vector<bool> reported(branches.codes.size());
    QList<qsizetype> stack{0};
    while (!stack.isEmpty()) {
        const qsizetype branch = stack.takeLast();
        if (listed[branch]) {
            if (!reported[branch]) {
                reported[branch] = true;
                m_repeated.append(branches.codes.at(branch));
            }
            continue;
        }
        listed[branch] = true;
        m_branches.append(branches.codes.at(branch));
        const QList<qsizetype> &below = branches.children.at(branch);
        for (auto it = below.crbegin(); it != below.crend(); ++it)
            stack.append(*it);
    }
}

} // namespace quarry
