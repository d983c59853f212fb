#include "teller/BranchTable.h"

#include "platform/DbRecordSet.h"

using namespace Qt::StringLiterals;

namespace quarry {

namespace {

// Parent codes bound in one query, well below every engine's limit of
// placeholders.
constexpr qsizetype ParentsPerQuery = 500;

} // namespace

BranchTable::BranchTable(const DbConnection &db)
    : m_db(db)
{
}

QList<BranchLink> BranchTable::subBranches(const QStringList &parents)
{
    if (!m_wholeTableRead && parents.size() > ParentsPerQuery)
        readWholeTable();
    return m_rows.isEmpty() ? query(parents) : lookUp(parents);
}

QList<BranchLink> BranchTable::query(const QStringList &parents) const
{
    QList<BranchLink> rows;
    for (qsizetype from = 0; from < parents.size(); from += ParentsPerQuery) {
        const QStringList chunk = parents.mid(from, ParentsPerQuery);
        QStringList marks(chunk.size(), u"?"_s);
        DbRowReader reader(u"select WDH,MASTERNO from WDDZ where MASTERNO in ("_s + marks.join(u',')
                               + u')',
                           m_db, QVariantList(chunk.cbegin(), chunk.cend()));
        while (reader.next())
            rows.append({reader.field(0), reader.field(1)});
    }
    return rows;
}

void BranchTable::readWholeTable()
{
    m_wholeTableRead = true;
    DbRowReader reader(u"select WDH,MASTERNO from WDDZ"_s, m_db);
    while (reader.next()) {
        const BranchLink row{reader.field(0), reader.field(1)};
        m_rowsBelow[row.masterNo].append(m_rows.size());
        m_rows.append(row);
    }
    if (!comparesAsText()) {
        m_rows.clear();
        m_rowsBelow.clear();
    }
}

// Whether the database matches MASTERNO to WDH exactly where their text is
// equal. It matches at least there, and any match beyond would show in one
// of two counts: it would take two MASTERNO spellings for one (fewer distinct
// values than in the text), or find a MASTERNO for a row whose WDH has none
// in the text (more linked rows).
bool BranchTable::comparesAsText() const
{
    qsizetype links = 0;
    for (const BranchLink &row : m_rows) {
        if (m_rowsBelow.contains(row.wdh))
            ++links;
    }
    DbRecordSet counts;
    counts.open(u"select count(distinct M.MASTERNO) as MASTERS,count(B.WDH) as LINKS from "
                "(select distinct MASTERNO from WDDZ) M left join WDDZ B on M.MASTERNO=B.WDH"_s,
                m_db);
    return counts.field(u"MASTERS"_s).toLongLong() == m_rowsBelow.size()
        && counts.field(u"LINKS"_s).toLongLong() == links;
}

QList<BranchLink> BranchTable::lookUp(const QStringList &parents) const
{
    QList<BranchLink> rows;
    for (const QString &parent : parents) {
        const auto below = m_rowsBelow.constFind(parent);
        if (below == m_rowsBelow.cend())
            continue;
        for (qsizetype row : *below)
            rows.append(m_rows.at(row));
    }
    return rows;
}

} // namespace quarry
