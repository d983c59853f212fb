// The clauses of the log dialogs, built from what a dialog has stored: the
// exact text hosts append to their SELECT, blanks included. One table: each
// row builds a text from stored values and names the text expected.

#include "logdialogs/CodeList.h"
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
#include "platform/SqlLiteral.h"

#include <quarry/QuarryError.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace quarry {

namespace {

const DateRange AllDates{DateRange::Fault::None, u"1980-01-01"_s, u"3000-01-01"_s};
const DateRange January{DateRange::Fault::None, u"2009-01-01"_s, u"2009-01-31"_s};
// What an operator may paste: every character that ends a literal or widens
// a LIKE on one of the dialects.
const QString H = u"a'b\\c[d]"_s;

// "begin|end", or "!" when the end is before the begin.
QString cheques(const QString &begin, const QString &end, qint32 length, QChar high)
{
    const ChequeRange range = chequeRange(begin, end, length, high);
    return range.endBeforeBegin() ? u"!"_s : range.begin + u'|' + range.end;
}

// "legend|description of typed", or the error number. A host's code array
// may be longer than its descriptions.
QString codes(qint32 count, const QString &typed)
{
    const CodeList list{{1, 2, 3, 4}, {u"增加行员"_s, u"删除行员"_s, u"变更行员权限"_s}};
    try {
        return list.legend(count) + u'|' + list.describe(typed, count).value_or(u"-"_s);
    } catch (const QuarryError &error) {
        return u"error %1"_s.arg(error.number());
    }
}

} // namespace

class TestLogClauses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void clauses_data()
    {
        QTest::addColumn<QString>("built");
        QTest::addColumn<QString>("expected");

        QTest::newRow("cheques: no length, empty bounds") << cheques(u""_s, u""_s, 0, u'z') << u"|"_s;
        QTest::newRow("cheques: 12 to 9 in text order") << cheques(u"12"_s, u"9"_s, 4, u'z') << u"12|9"_s;
        QTest::newRow("cheques: upper case before lower") << cheques(u"a"_s, u"B"_s, 4, u'z') << u"!"_s;

        // Text from the host or the database as data in a literal of each
        // dialect; the pattern's own wildcards keep their meaning.
        const QString outside = u"O'Neil\\[A]_%"_s;
        QTest::newRow("literal: sqlserver value") << literalText(outside, sqlDialect(u"sqlserver"_s)) << u"O''Neil\\[A]_%"_s;
        QTest::newRow("literal: SQL Server pattern") << literalText(outside, sqlDialect(u"SQLSERVER"_s), LiteralUse::LikePattern) << u"O''Neil\\[[]A]_%"_s;
        QTest::newRow("literal: Sybase12.5 pattern") << literalText(outside, sqlDialect(u"Sybase12.5"_s), LiteralUse::LikePattern) << u"O''Neil\\[[]A]_%"_s;
        QTest::newRow("literal: SYBAS is no Sybase") << literalText(outside, sqlDialect(u"SYBAS"_s), LiteralUse::LikePattern) << u"O''Neil\\[A]_%"_s;

        QTest::newRow("codes: count below the arrays") << codes(1, u"2"_s) << u"1: 增加行员  |-"_s;
        QTest::newRow("codes: no count") << codes(0, u"1"_s) << u"|-"_s;
        QTest::newRow("codes: leading number of the text") << codes(3, u" 3a"_s) << u"1: 增加行员  2: 删除行员  3: 变更行员权限  |变更行员权限"_s;
        QTest::newRow("codes: no number is code 0") << codes(3, u"x"_s) << u"1: 增加行员  2: 删除行员  3: 变更行员权限  |-"_s;
        QTest::newRow("codes: count beyond the descriptions, not the codes") << codes(4, u"1"_s) << u"error 9"_s;

        // Seal verification: teller, account, seal card, method, result, cheques, dates.
        QTest::newRow("YY: sub-branch list, result only") << yyLogClause({{}, {}, u"%"_s, {}, u"不通过"_s, {u"0"_s, u"z"_s}, January}, u"( wdh in ('110100','110101'))"_s, SqlDialect::Access) << u" where Opcode Like '%' And ACCNO  LIKE  '%' And Opdate Between '2009-01-01' And '2009-01-31' and chequeno between '0' and 'z' and  ( wdh in ('110100','110101')) and Result='不通过'"_s;
        // Typed text loses what could end its literal; the host's descriptions are data.
        QTest::newRow("YY: hostile") << yyLogClause({H, H, H, H, H, {H, H}, AllDates}, {}, SqlDialect::MySql) << u" where Opcode Like 'abcd' And ACCNO  LIKE  'abcd' And Opdate Between '1980-01-01' And '3000-01-01' and chequeno between 'abcd' and 'abcd' and ( YJKNumber like 'abcd')  and ( OPTYPE = 'a''b\\\\c[d]')  and Result='a''b\\\\c[d]'"_s;

        // Business: account, teller, seal card, business type, dates.
        QTest::newRow("YW: hostile") << ywLogClause({H, H, H, H, AllDates}, {}, SqlDialect::SqlServer) << u" where  ACCNO  LIKE  'abcd'  and (Opcode Like 'abcd')  And  OPTYPE  LIKE  'a''b\\c[[]d]'   And Opdate Between '1980-01-01' And '3000-01-01' And YJKNUMBER like 'abcd'"_s;

        // Teller administration: operating teller, reviewing teller, operation type, dates; profile.
        QTest::newRow("HY: reviewer ignored, branch") << hyLogClause({u"01?1"_s, u"0012"_s, u"3"_s, January}, 65, u"( wdh like '1101%')"_s) << u" where (Opcode Like '01?1')    And OPTYPE  LIKE  '3' And Opdate Between '2009-01-01' And '2009-01-31' and  ( wdh like '1101%')"_s;
        QTest::newRow("HY: hostile, profile 39") << hyLogClause({H, H, H, AllDates}, 39, {}) << u" where (Opcode Like 'abcd' or opName like 'abcd')   And  (FhName  LIKE  'abcd' or  FhCode  LIKE  'abcd') And OPTYPE  LIKE  'abcd' And Opdate Between '1980-01-01' And '3000-01-01'"_s;

        // Login: teller, module, branch pattern, dates; profile, branch shown.
        const QString allLogins = u" where (Opcode Like '%'  ) And APPNAME  LIKE  '%'  And Opdate Between '1980-01-01' And '3000-01-01'"_s;
        QTest::newRow("SJ: profile 39") << sjLogClause({u"0101"_s, u"2"_s, {}, January}, 39, false) << u" where (Opcode Like '0101' or OpName Like '0101'  ) And APPNAME  LIKE  '2'  And Opdate Between '2009-01-01' And '2009-01-31'"_s;
        QTest::newRow("branch part, hostile") << branchBothCasesPart(H) << u"( wdh like 'ABCD' or wdh like 'abcd')"_s;
        QTest::newRow("SJ: branch box hidden") << sjLogClause({{}, {}, u"( wdh like 'AB%' or wdh like 'ab%')"_s, AllDates}, 0, false) << allLogins;
        QTest::newRow("SJ: hostile") << sjLogClause({H, H, {}, AllDates}, 0, true) << u" where (Opcode Like 'abcd'  ) And APPNAME  LIKE  'abcd'  And Opdate Between '1980-01-01' And '3000-01-01'"_s;

        // Supervisor authorisation: supervisor, operation, dates.
        QTest::newRow("ZGSQ: hostile") << zgsqLogClause({H, H, AllDates}, SqlDialect::Access) << u" where  ZGCODE  LIKE  'abcd' And OPTYPE  LIKE  'a''b\\c[d]' And Opdate Between '1980-01-01' And '3000-01-01'"_s;
        // Cheque management: account, teller, voucher type, cheques, dates; profile.
        QTest::newRow("ZPGL: profile 39 names too") << zpglLogClause({u"62%"_s, u"0101"_s, u"转账支票"_s, {u"A1"_s, u"B2"_s}, January}, 39, SqlDialect::Access) << u" where (accno like '62%') and (opcode like '0101' opName like '0101') and  (zpid between 'A1' and 'B2') and (opdate between '2009-01-01' and '2009-01-31') and  (pztype like'转账支票')"_s;
        QTest::newRow("ZPGL: hostile") << zpglLogClause({H, H, H, {H, H}, AllDates}, 0, SqlDialect::Sybase) << u" where (accno like 'abcd') and (opcode like 'abcd') and  (zpid between 'abcd' and 'abcd') and (opdate between '1980-01-01' and '3000-01-01') and  (pztype like'a''b\\c[[]d]')"_s;

        // Bill recognition: dates completed, the dialect's join of date and time.
        QTest::newRow("dates: a year only, start") << completedDate(u"2009-  -  "_s, u'0') << u"2009-00-00"_s;
        QTest::newRow("dates: a year only, end") << completedDate(u"2009-  -  "_s, u'9') << u"2009-99-99"_s;
        const PJSBLogValues openBills{{}, {}, {}, {}, {u"000000"_s, u"zzzzzz"_s}, u"0000-00-00"_s, u"9999-99-99"_s, u"00:00:00"_s, u"23:59:59"_s};
        QTest::newRow("PJSB: nothing given, Sybase") << pjsbLogClause(openBills, 0, SqlDialect::Sybase, {}) << u" where (accno like '%') and (opcode like '%') and  (CHEQUENO between '000000' and 'zzzzzz') and (opdate+optime between '0000-00-0000:00:00' and '9999-99-9923:59:59') and  (pztype like '%') and (ChequeResult like '%')"_s;
        QTest::newRow("PJSB: nothing given, embedded, a branch") << pjsbLogClause(openBills, 0, SqlDialect::Access, u"( wdh like '11%')"_s) << u" where (accno like '%') and (opcode like '%') and  (CHEQUENO between '000000' and 'zzzzzz') and (concat(opdate,optime) between '0000-00-0000:00:00' and '9999-99-9923:59:59') and  (pztype like '%') and (ChequeResult like '%') and  ( wdh like '11%')"_s;
        QTest::newRow("PJSB: profile 39, no times and no result") << pjsbLogClause({u"62%"_s, u"0101"_s, u"现金支票"_s, u"通过"_s, {u"1"_s, u"2"_s}, u"2009-01-01"_s, u"2009-01-31"_s, u"08:00:00"_s, u"17:00:00"_s}, 39, SqlDialect::SqlServer, {}) << u" where (accno like '62%') and (opcode like '0101'  or OpName like '0101') and  (CHEQUENO between '1' and '2') and (opdate between '2009-01-01' and '2009-01-31') and  (pztype like'现金支票')"_s;
        QTest::newRow("PJSB: hostile") << pjsbLogClause({H, H, H, H, {H, H}, H, H, H, H}, 0, SqlDialect::MySql, {}) << u" where (accno like 'abcd') and (opcode like 'abcd') and  (CHEQUENO between 'abcd' and 'abcd') and (concat(opdate,optime) between 'abcdabcd' and 'abcdabcd') and  (pztype like 'a''b\\\\\\\\c[d]') and (ChequeResult like 'a''b\\\\\\\\c[d]')"_s;

        // Seal result statistics: branch and teller patterns, dates; the database.
        const DateRange toMay{DateRange::Fault::None, u"1980-01-01"_s, u"2009-05-20"_s};
        const QString mySqlAll = u"SELECT 1 AS id, HY.wdh, TotalPj.opcode, TotalPj.total, PassedPj.passed, TotalPj.total - PassedPj.passed AS NotPassed,  CONCAT(CAST(CAST(PassedPj.passed * 100.0 / TotalPj.total as decimal(10, 2)) AS char), '%') AS percent, '1980-01-01' AS BeginDate, '2009-05-20' AS EndDate  FROM (SELECT COUNT(chequeno) AS total, opcode From pjsblog  WHERE opresult IN (0, 1, 4, 5) AND opdate BETWEEN '1980-01-01' AND '2009-05-20' GROUP BY opcode) TotalPj  INNER JOIN (SELECT COUNT(chequeno) AS passed, opcode From pjsblog  WHERE opresult IN (0, 4) AND opdate BETWEEN '1980-01-01' AND '2009-05-20' GROUP BY opcode) PassedPj ON TotalPj.opcode = PassedPj.opcode  INNER JOIN HY ON TotalPj.opcode = HY.HYDH"_s;
        QTest::newRow("STAT: MySQL") << sealResultStatement({u"%"_s, u"%"_s, toMay}, SqlDialect::MySql) << mySqlAll;
        QTest::newRow("STAT: hostile") << sealResultStatement({H, H, toMay}, SqlDialect::MySql) << mySqlAll + u" where wdh like 'abcd' and TotalPj.opcode like'abcd'"_s;

        // Seal requests: branch, dates.
        QTest::newRow("YJREQ: hostile") << yjReqLogClause({H, AllDates}) << u" where (BranchNo='Bankabcd' or MasterNo='abcd' ) and (OPDATE >='1980-01-01' and OPDATE <='3000-01-01')"_s;

        // Compound: account, teller, branch pattern, seal card, dates; the fields offered.
        QTest::newRow("PTFH: nothing given") << ptfhLogClause({{}, {}, {}, {}, AllDates, true, true, true}) << u" where  ACCNO  LIKE  '%'  and Opdate Between '1980-01-01' And '3000-01-01'"_s;
        const QString ab = u"( wdh like 'AB' or wdh like 'ab')"_s;
        QTest::newRow("PTFH: fields not offered") << ptfhLogClause({u"62%"_s, u"12*"_s, ab, u"00_1"_s, January, false, false, false}) << u" where  ACCNO  LIKE  '62%'  and Opdate Between '2009-01-01' And '2009-01-31'"_s;
        QTest::newRow("PTFH: hostile") << ptfhLogClause({H, H, {}, H, AllDates, true, true, true}) << u" where  ACCNO  LIKE  'abcd'  and Opdate Between '1980-01-01' And '3000-01-01'  and (Opcode Like 'abcd') And YJKNUMBER like 'abcd'  "_s;
    }

    void clauses()
    {
        QFETCH(QString, built);
        QTEST(built, "expected");
    }
};

} // namespace quarry

QTEST_GUILESS_MAIN(quarry::TestLogClauses)
#include "tst_logclauses.moc"
