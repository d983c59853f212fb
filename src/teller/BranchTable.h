#pragma once

#include "teller/BranchTree.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

namespace quarry {

class DbConnection;

// The sub-branches BranchTree asks for, read from the branch table WDDZ.
// A level that fits in one query is read by query. A level too large for
// that belongs to a tree of thousands of branches, and reading those through
// the MASTERNO index costs several times one plain read of the whole table:
// so the table is read once, and the rest of the tree is matched in memory.
// Which codes are equal is the database's to say (a case-insensitive
// collation takes "d4 " for "D4"), so the memory answers only when the
// database compares the table's codes exactly as text; otherwise the levels
// go on by query.
class BranchTable
{
public:
    explicit BranchTable(const DbConnection &db);

    // The rows whose MASTERNO is one of parents; each parent's in the
    // table's order.
    QList<BranchLink> subBranches(const QStringList &parents);

private:
    QList<BranchLink> query(const QStringList &parents) const;
    void readWholeTable();
    bool comparesAsText() const;
    QList<BranchLink> lookUp(const QStringList &parents) const;

    const DbConnection &m_db;
    bool m_wholeTableRead = false;
    // The whole table in its order, kept only when it answers for the database.
    QList<BranchLink> m_rows;
    QHash<QString, QList<qsizetype>> m_rowsBelow; // MASTERNO -> its rows in m_rows
};

} // namespace quarry
