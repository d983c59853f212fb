// The clauses of the log dialogs, built from what a dialog has stored: the
// exact text hosts append to their SELECT, blanks included. One table: each
// row builds a text from stored values and names the text expected.

#include "logdialogs/CodeList.h"
#include "logdialogs/LogClause.h"
#include "logdialogs/frmHYLog.h"
#include "logdialogs/frmSJLog.h"
#include "logdialogs/frmYWLog.h"
#include "logdialogs/frmYYLog.h"
#include "logdialogs/frmZGSQLog.h"

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

// "legend|description of typed", or the error number.
QString codes(qint32 count, const QString &typed)
{
    const CodeList list{{1, 2, 3}, {u"增加行员"_s, u"删除行员"_s, u"变更行员权限"_s}};
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
    void clauses_data();
    void clauses();
};

void TestLogClauses::clauses_data()
{
    QTest::addColumn<QString>("built");
    QTest::addColumn<QString>("expected");

    QTest::newRow("cheques: blank boxes, length 8") << cheques(u""_s, u"  "_s, 8, u'z') << u"00000000|zzzzzzzz"_s;
    QTest::newRow("cheques: nines at the end") << cheques(u""_s, u""_s, 3, u'9') << u"000|999"_s;
    QTest::newRow("cheques: no length, empty bounds") << cheques(u""_s, u""_s, 0, u'z') << u"|"_s;
    QTest::newRow("cheques: typed text keeps its blanks") << cheques(u" 12"_s, u"9 "_s, 4, u'z') << u" 12|9 "_s;
    QTest::newRow("cheques: 12 to 9 in text order") << cheques(u"12"_s, u"9"_s, 4, u'z') << u"12|9"_s;
    QTest::newRow("cheques: 9 to 12 refused") << cheques(u"9"_s, u"12"_s, 4, u'z') << u"!"_s;
    QTest::newRow("cheques: upper case before lower") << cheques(u"a"_s, u"B"_s, 4, u'z') << u"!"_s;

    QTest::newRow("codes: all") << codes(3, u"2"_s) << u"1: 增加行员  2: 删除行员  3: 变更行员权限  |删除行员"_s;
    QTest::newRow("codes: count below the arrays") << codes(1, u"2"_s) << u"1: 增加行员  |-"_s;
    QTest::newRow("codes: no count") << codes(0, u"1"_s) << u"|-"_s;
    QTest::newRow("codes: leading number of the text") << codes(3, u" 3a"_s) << u"1: 增加行员  2: 删除行员  3: 变更行员权限  |变更行员权限"_s;
    QTest::newRow("codes: no number is code 0") << codes(3, u"x"_s) << u"1: 增加行员  2: 删除行员  3: 变更行员权限  |-"_s;
    QTest::newRow("codes: count beyond the arrays") << codes(4, u"1"_s) << u"error 9"_s;

    // Seal verification: teller, account, seal card, method, result, cheques, dates.
    QTest::newRow("YY: nothing given") << yyLogClause({{}, {}, {}, {}, {}, {u"00000000"_s, u"zzzzzzzz"_s}, AllDates}, {})
        << u" where Opcode Like '%' And ACCNO  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01' and chequeno between '00000000' and 'zzzzzzzz'"_s;
    QTest::newRow("YY: no cheque length") << yyLogClause({{}, {}, {}, {}, {}, {}, AllDates}, {})
        << u" where Opcode Like '%' And ACCNO  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01' and chequeno between '' and ''"_s;
    QTest::newRow("YY: everything") << yyLogClause({u"12*"_s, u"62%"_s, u"00_1"_s, u"自动验印"_s, u"通过"_s, {u" A1"_s, u"B2"_s}, January}, u"( wdh like '12%')"_s)
        << u" where Opcode Like '12*' And ACCNO  LIKE  '62%' And Opdate Between '2009-01-01' And '2009-01-31' and chequeno between ' A1' and 'B2' and  ( wdh like '12%') and ( YJKNumber like '00_1')  and ( OPTYPE = '自动验印')  and Result='通过'"_s;
    QTest::newRow("YY: head, before the branch") << yyLogHead({u"12*"_s, u"62%"_s, u"00_1"_s, u"自动验印"_s, u"通过"_s, {u" A1"_s, u"B2"_s}, January})
        << u" where Opcode Like '12*' And ACCNO  LIKE  '62%' And Opdate Between '2009-01-01' And '2009-01-31' and chequeno between ' A1' and 'B2'"_s;
    QTest::newRow("YY: sub-branch list, result only") << yyLogClause({{}, {}, u"%"_s, {}, u"不通过"_s, {u"0"_s, u"z"_s}, January}, u"( wdh in ('110100','110101'))"_s)
        << u" where Opcode Like '%' And ACCNO  LIKE  '%' And Opdate Between '2009-01-01' And '2009-01-31' and chequeno between '0' and 'z' and  ( wdh in ('110100','110101')) and Result='不通过'"_s;
    QTest::newRow("YY: hostile") << yyLogClause({H, H, H, H, H, {H, H}, AllDates}, {})
        << u" where Opcode Like 'abcd' And ACCNO  LIKE  'abcd' And Opdate Between '1980-01-01' And '3000-01-01' and chequeno between 'abcd' and 'abcd' and ( YJKNumber like 'abcd')  and ( OPTYPE = 'abcd')  and Result='abcd'"_s;

    // Business: account, teller, seal card, business type, dates.
    QTest::newRow("YW: nothing given") << ywLogClause({{}, {}, {}, {}, AllDates}, {})
        << u" where  ACCNO  LIKE  '%'  and (Opcode Like '%')  And  OPTYPE  LIKE  '%'   And Opdate Between '1980-01-01' And '3000-01-01'"_s;
    QTest::newRow("YW: everything") << ywLogClause({u"62%"_s, u"12*"_s, u"123"_s, u"开户"_s, January}, u"( wdh in ('110100','110101'))"_s)
        << u" where  ACCNO  LIKE  '62%'  and (Opcode Like '12*')  And  OPTYPE  LIKE  '开户'   And Opdate Between '2009-01-01' And '2009-01-31' and  ( wdh in ('110100','110101')) And YJKNUMBER like '123'"_s;
    QTest::newRow("YW: hostile") << ywLogClause({H, H, H, H, AllDates}, {})
        << u" where  ACCNO  LIKE  'abcd'  and (Opcode Like 'abcd')  And  OPTYPE  LIKE  'abcd'   And Opdate Between '1980-01-01' And '3000-01-01' And YJKNUMBER like 'abcd'"_s;

    // Teller administration: operating teller, reviewing teller, operation type, dates; profile.
    QTest::newRow("HY: nothing given") << hyLogClause({{}, {}, {}, AllDates}, 0, {})
        << u" where (Opcode Like '%')    And OPTYPE  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01'"_s;
    QTest::newRow("HY: profile 39, reviewer only") << hyLogClause({{}, u"0012"_s, {}, AllDates}, 39, {})
        << u" where (Opcode Like '%' or opName like '%')   And  (FhName  LIKE  '0012' or  FhCode  LIKE  '0012') And OPTYPE  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01'"_s;
    QTest::newRow("HY: reviewer ignored, branch") << hyLogClause({u"01?1"_s, u"0012"_s, u"3"_s, January}, 65, u"( wdh like '1101%')"_s)
        << u" where (Opcode Like '01?1')    And OPTYPE  LIKE  '3' And Opdate Between '2009-01-01' And '2009-01-31' and  ( wdh like '1101%')"_s;
    QTest::newRow("HY: hostile, profile 39") << hyLogClause({H, H, H, AllDates}, 39, {})
        << u" where (Opcode Like 'abcd' or opName like 'abcd')   And  (FhName  LIKE  'abcd' or  FhCode  LIKE  'abcd') And OPTYPE  LIKE  'abcd' And Opdate Between '1980-01-01' And '3000-01-01'"_s;

    // Login: teller, module, branch pattern, dates; profile, branch shown.
    const QString allLogins = u" where (Opcode Like '%'  ) And APPNAME  LIKE  '%'  And Opdate Between '1980-01-01' And '3000-01-01'"_s;
    QTest::newRow("SJ: nothing given") << sjLogClause({{}, {}, {}, AllDates}, 0, true) << allLogins;
    QTest::newRow("SJ: profile 39") << sjLogClause({u"0101"_s, u"2"_s, {}, January}, 39, false)
        << u" where (Opcode Like '0101' or OpName Like '0101'  ) And APPNAME  LIKE  '2'  And Opdate Between '2009-01-01' And '2009-01-31'"_s;
    QTest::newRow("SJ: branch in both cases") << sjLogClause({{}, {}, u"ab%"_s, AllDates}, 0, true)
        << allLogins + u"  and  ( wdh like 'AB%' or wdh like 'ab%')"_s;
    QTest::newRow("SJ: branch box hidden") << sjLogClause({{}, {}, u"ab%"_s, AllDates}, 0, false) << allLogins;
    QTest::newRow("SJ: branch left open") << sjLogClause({{}, {}, u"%"_s, AllDates}, 0, true) << allLogins;
    QTest::newRow("SJ: hostile") << sjLogClause({H, H, H, AllDates}, 0, true)
        << u" where (Opcode Like 'abcd'  ) And APPNAME  LIKE  'abcd'  And Opdate Between '1980-01-01' And '3000-01-01'  and  ( wdh like 'ABCD' or wdh like 'abcd')"_s;

    // Supervisor authorisation: supervisor, operation, dates.
    QTest::newRow("ZGSQ: nothing given") << zgsqLogClause({{}, {}, AllDates})
        << u" where  ZGCODE  LIKE  '%' And OPTYPE  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01'"_s;
    QTest::newRow("ZGSQ: everything") << zgsqLogClause({u"90*"_s, u"大额支付"_s, January})
        << u" where  ZGCODE  LIKE  '90*' And OPTYPE  LIKE  '大额支付' And Opdate Between '2009-01-01' And '2009-01-31'"_s;
    QTest::newRow("ZGSQ: hostile") << zgsqLogClause({H, H, AllDates})
        << u" where  ZGCODE  LIKE  'abcd' And OPTYPE  LIKE  'abcd' And Opdate Between '1980-01-01' And '3000-01-01'"_s;
}

void TestLogClauses::clauses()
{
    QFETCH(QString, built);
    QFETCH(QString, expected);
    QCOMPARE(built, expected);
}

} // namespace quarry

QTEST_GUILESS_MAIN(quarry::TestLogClauses)
#include "tst_logclauses.moc"
