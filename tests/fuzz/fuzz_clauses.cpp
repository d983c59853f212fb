// Every log dialog's clause from arbitrary stored values: read as the
// dialect reads it (a doubled quote, and on MySQL a backslash and the
// character after it, stay inside the literal), the quotes pair up and
// outside the literals the clause is the one that plain values give, so no
// value reached the SQL around its literal.

#include "FuzzCheck.h"

#include "logdialogs/LogClause.h"
#include "logdialogs/frmHYLog.h"
#include "logdialogs/frmPJSBLog.h"
#include "logdialogs/frmPTFHLog.h"
#include "logdialogs/frmSJLog.h"
#include "logdialogs/frmSealResultStat.h"
#include "logdialogs/frmYWLog.h"
#include "logdialogs/frmYYLog.h"
#include "logdialogs/frmYjReqLog.h"
#include "logdialogs/frmZGSQLog.h"
#include "logdialogs/frmZPGLLog.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <functional>
#include <optional>

using namespace Qt::StringLiterals;
using quarry::fuzz::require;

namespace quarry {

namespace {

// The clause with every literal's contents left out; nothing when a quote
// stays open.
std::optional<QString> skeleton(const QString &sql, SqlDialect dialect)
{
    QString outside;
    bool inLiteral = false;
    for (qsizetype i = 0; i < sql.size(); ++i) {
        const QChar c = sql[i];
        const QChar next = i + 1 < sql.size() ? sql[i + 1] : QChar();
        const bool escaped = (c == u'\'' && next == u'\'') || (c == u'\\' && dialect == SqlDialect::MySql);
        if (inLiteral && escaped) {
            ++i;
            continue;
        }
        if (c == u'\'')
            inLiteral = !inLiteral;
        if (!inLiteral || c == u'\'')
            outside += c;
    }
    if (inLiteral)
        return std::nullopt;
    return outside;
}

// Draws the values of one clause twice: as the fuzzer gives them, then,
// after replayPlain(), plain: "x" for any text, kept empty or "%" where the
// text is so, since those decide which parts a clause has.
class Values
{
public:
    explicit Values(FuzzedDataProvider &input)
        : m_input(input)
    {
    }

    void replayPlain()
    {
        m_plain = true;
        m_nextText = m_nextForm = 0;
    }

    QString text()
    {
        if (!m_plain) {
            const std::string bytes = m_input.ConsumeRandomLengthString(48);
            m_texts.append(QString::fromUtf8(bytes.data(), qsizetype(bytes.size())));
            return m_texts.last();
        }
        const QString &given = m_texts.at(m_nextText++);
        return given.isEmpty() || given == u"%"_s ? given : u"x"_s;
    }
    DateRange dates() { return {DateRange::Fault::None, text(), text()}; }
    ChequeRange cheques() { return {text(), text()}; }
    // No branch, or its pattern in one of the two forms of branch part.
    QString branchPart()
    {
        if (!m_plain)
            m_bothCases.append(m_input.ConsumeBool());
        const bool bothCases = m_bothCases.at(m_nextForm++);
        const QString pattern = text();
        if (pattern.isEmpty())
            return {};
        return bothCases ? branchBothCasesPart(pattern) : branchLikePart(pattern);
    }

private:
    FuzzedDataProvider &m_input;
    bool m_plain = false;
    QStringList m_texts;
    QList<bool> m_bothCases;
    qsizetype m_nextText = 0;
    qsizetype m_nextForm = 0;
};

using Build = std::function<QString(Values &)>;

} // namespace

} // namespace quarry

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace quarry;
    FuzzedDataProvider input(data, size);
    const auto profile = qint16(input.ConsumeIntegralInRange<int>(0, 65));
    const bool a = input.ConsumeBool(), b = input.ConsumeBool(), c = input.ConsumeBool();
    const SqlDialect dialect = input.PickValueInArray(
        {SqlDialect::Access, SqlDialect::SqlServer, SqlDialect::MySql, SqlDialect::Sybase});

    const Build builds[] = {
        [=](Values &v) {
            return yyLogClause({v.text(), v.text(), v.text(), v.text(), v.text(), v.cheques(), v.dates()}, v.branchPart(), dialect);
        },
        [=](Values &v) {
            return ywLogClause({v.text(), v.text(), v.text(), v.text(), v.dates()}, v.branchPart(), dialect);
        },
        [=](Values &v) {
            return hyLogClause({v.text(), v.text(), v.text(), v.dates()}, profile, v.branchPart());
        },
        [=](Values &v) {
            return sjLogClause({v.text(), v.text(), v.branchPart(), v.dates()}, profile, a);
        },
        [=](Values &v) { return zgsqLogClause({v.text(), v.text(), v.dates()}, dialect); },
        [=](Values &v) {
            return zpglLogClause({v.text(), v.text(), v.text(), v.cheques(), v.dates()}, profile, dialect);
        },
        [=](Values &v) {
            return pjsbLogClause({v.text(), v.text(), v.text(), v.text(), v.cheques(), v.text(), v.text(), v.text(), v.text()},
                                 profile, dialect, v.branchPart());
        },
        [=](Values &v) {
            return sealResultStatement({v.text(), v.text(), v.dates()}, dialect);
        },
        [](Values &v) { return yjReqLogClause({v.text(), v.dates()}); },
        [=](Values &v) {
            return ptfhLogClause({v.text(), v.text(), v.branchPart(), v.text(), v.dates(), a, b, c});
        },
    };
    for (const Build &build : builds) {
        Values values(input);
        const std::optional<QString> fuzzed = skeleton(build(values), dialect);
        values.replayPlain();
        const std::optional<QString> plain = skeleton(build(values), dialect);
        require(fuzzed && plain && *fuzzed == *plain);
    }
    return 0;
}
