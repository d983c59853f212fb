// The clauses of the log dialogs, built from what a dialog has stored: the
// exact text hosts append to their SELECT, blanks included.

#include "logdialogs/CodeList.h"
#include "logdialogs/LogClause.h"
#include "logdialogs/frmHYLog.h"
#include "logdialogs/frmSJLog.h"
#include "logdialogs/frmYWLog.h"
#include "logdialogs/frmYYLog.h"
#include "logdialogs/frmZGSQLog.h"

#include <quarry/QuarryError.h>

#include <QTest>

Q_DECLARE_METATYPE(quarry::DateRange)

using namespace Qt::StringLiterals;

namespace quarry {

namespace {

const DateRange AllDates{DateRange::Fault::None, u"1980-01-01"_s, u"3000-01-01"_s};
const DateRange January{DateRange::Fault::None, u"2009-01-01"_s, u"2009-01-31"_s};
// What an operator may paste: every character that ends a literal or widens
// a LIKE on one of the dialects.
const QString Hostile = u"a'b\\c[d]"_s;

} // namespace

class TestLogClauses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void chequeRanges_data();
    void chequeRanges();
    void codeLists_data();
    void codeLists();
    void yyLog_data();
    void yyLog();
    void ywLog_data();
    void ywLog();
    void hyLog_data();
    void hyLog();
    void sjLog_data();
    void sjLog();
    void zgsqLog_data();
    void zgsqLog();
};

void TestLogClauses::chequeRanges_data()
{
    QTest::addColumn<QString>("begin");
    QTest::addColumn<QString>("end");
    QTest::addColumn<int>("length");
    QTest::addColumn<QChar>("high");
    QTest::addColumn<QString>("expected"); // "begin|end", "!" when the end is before the begin

    QTest::newRow("blank boxes, length 8") << u""_s << u"  "_s << 8 << QChar(u'z') << u"00000000|zzzzzzzz"_s;
    QTest::newRow("nines at the end") << u""_s << u""_s << 3 << QChar(u'9') << u"000|999"_s;
    QTest::newRow("no length, empty bounds") << u""_s << u""_s << 0 << QChar(u'z') << u"|"_s;
    QTest::newRow("typed text keeps its blanks") << u" 12"_s << u"9 "_s << 4 << QChar(u'z') << u" 12|9 "_s;
    QTest::newRow("12 to 9 in text order") << u"12"_s << u"9"_s << 4 << QChar(u'z') << u"12|9"_s;
    QTest::newRow("9 to 12 refused") << u"9"_s << u"12"_s << 4 << QChar(u'z') << u"!"_s;
    QTest::newRow("upper case before lower") << u"a"_s << u"B"_s << 4 << QChar(u'z') << u"!"_s;
}

void TestLogClauses::chequeRanges()
{
    QFETCH(QString, begin);
    QFETCH(QString, end);
    QFETCH(int, length);
    QFETCH(QChar, high);
    QFETCH(QString, expected);
    const ChequeRange range = chequeRange(begin, end, length, high);
    QCOMPARE(range.endBeforeBegin() ? u"!"_s : range.begin + u'|' + range.end, expected);
}

void TestLogClauses::codeLists_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("expected"); // legend | description, or the error number

    QTest::newRow("legend of all") << 3 << u"2"_s << u"1: 增加行员  2: 删除行员  3: 变更行员权限  |删除行员"_s;
    QTest::newRow("count below the arrays") << 1 << u"2"_s << u"1: 增加行员  |-"_s;
    QTest::newRow("no count") << 0 << u"1"_s << u"|-"_s;
    QTest::newRow("leading number of the text") << 3 << u" 3a"_s << u"1: 增加行员  2: 删除行员  3: 变更行员权限  |变更行员权限"_s;
    QTest::newRow("no number is code 0") << 3 << u"x"_s << u"1: 增加行员  2: 删除行员  3: 变更行员权限  |-"_s;
    QTest::newRow("count beyond the arrays") << 4 << u"1"_s << u"error 9"_s;
}

void TestLogClauses::codeLists()
{
    QFETCH(int, count);
    QFETCH(QString, typed);
    QFETCH(QString, expected);
    const CodeList codes{{1, 2, 3}, {u"增加行员"_s, u"删除行员"_s, u"变更行员权限"_s}};
    try {
        QCOMPARE(codes.legend(count) + u'|' + codes.describe(typed, count).value_or(u"-"_s), expected);
    } catch (const QuarryError &error) {
        QCOMPARE(u"error %1"_s.arg(error.number()), expected);
    }
}

void TestLogClauses::yyLog_data()
{
    QTest::addColumn<QStringList>("stored"); // teller, account, seal card, method, result
    QTest::addColumn<QStringList>("cheques");
    QTest::addColumn<DateRange>("dates");
    QTest::addColumn<QString>("branchPart");
    QTest::addColumn<QString>("expected");

    QTest::newRow("nothing given") << QStringList(5) << QStringList{u"00000000"_s, u"zzzzzzzz"_s} << AllDates << QString()
        << u" where Opcode Like '%' And ACCNO  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01' and chequeno between '00000000' and 'zzzzzzzz'"_s;
    QTest::newRow("no cheque length") << QStringList(5) << QStringList(2) << AllDates << QString()
        << u" where Opcode Like '%' And ACCNO  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01' and chequeno between '' and ''"_s;
    QTest::newRow("everything") << QStringList{u"12*"_s, u"62%"_s, u"00_1"_s, u"自动验印"_s, u"通过"_s} << QStringList{u" A1"_s, u"B2"_s} << January << u"( wdh like '12%')"_s
        << u" where Opcode Like '12*' And ACCNO  LIKE  '62%' And Opdate Between '2009-01-01' And '2009-01-31' and chequeno between ' A1' and 'B2' and  ( wdh like '12%') and ( YJKNumber like '00_1')  and ( OPTYPE = '自动验印')  and Result='通过'"_s;
    QTest::newRow("sub-branch list") << QStringList{u""_s, u""_s, u"%"_s, u""_s, u"不通过"_s} << QStringList{u"0"_s, u"z"_s} << January << u"( wdh in ('110100','110101'))"_s
        << u" where Opcode Like '%' And ACCNO  LIKE  '%' And Opdate Between '2009-01-01' And '2009-01-31' and chequeno between '0' and 'z' and  ( wdh in ('110100','110101')) and Result='不通过'"_s;
    QTest::newRow("hostile") << QStringList{Hostile, Hostile, Hostile, Hostile, Hostile} << QStringList{Hostile, Hostile} << AllDates << QString()
        << u" where Opcode Like 'abcd' And ACCNO  LIKE  'abcd' And Opdate Between '1980-01-01' And '3000-01-01' and chequeno between 'abcd' and 'abcd' and ( YJKNumber like 'abcd')  and ( OPTYPE = 'abcd')  and Result='abcd'"_s;
}

void TestLogClauses::yyLog()
{
    QFETCH(QStringList, stored);
    QFETCH(QStringList, cheques);
    QFETCH(DateRange, dates);
    QFETCH(QString, branchPart);
    QFETCH(QString, expected);
    const YYLogValues values{stored[0], stored[1], stored[2], stored[3], stored[4], {cheques[0], cheques[1]}, dates};
    QCOMPARE(yyLogClause(values, branchPart), expected);
    QVERIFY(expected.startsWith(yyLogHead(values)));
}

void TestLogClauses::ywLog_data()
{
    QTest::addColumn<QStringList>("stored"); // account, teller, seal card, business type
    QTest::addColumn<DateRange>("dates");
    QTest::addColumn<QString>("branchPart");
    QTest::addColumn<QString>("expected");

    QTest::newRow("nothing given") << QStringList(4) << AllDates << QString()
        << u" where  ACCNO  LIKE  '%'  and (Opcode Like '%')  And  OPTYPE  LIKE  '%'   And Opdate Between '1980-01-01' And '3000-01-01'"_s;
    QTest::newRow("everything") << QStringList{u"62%"_s, u"12*"_s, u"123"_s, u"开户"_s} << January << u"( wdh in ('110100','110101'))"_s
        << u" where  ACCNO  LIKE  '62%'  and (Opcode Like '12*')  And  OPTYPE  LIKE  '开户'   And Opdate Between '2009-01-01' And '2009-01-31' and  ( wdh in ('110100','110101')) And YJKNUMBER like '123'"_s;
    QTest::newRow("hostile") << QStringList{Hostile, Hostile, Hostile, Hostile} << AllDates << QString()
        << u" where  ACCNO  LIKE  'abcd'  and (Opcode Like 'abcd')  And  OPTYPE  LIKE  'abcd'   And Opdate Between '1980-01-01' And '3000-01-01' And YJKNUMBER like 'abcd'"_s;
}

void TestLogClauses::ywLog()
{
    QFETCH(QStringList, stored);
    QFETCH(DateRange, dates);
    QFETCH(QString, branchPart);
    QFETCH(QString, expected);
    QCOMPARE(ywLogClause({stored[0], stored[1], stored[2], stored[3], dates}, branchPart), expected);
}

void TestLogClauses::hyLog_data()
{
    QTest::addColumn<QStringList>("stored"); // operating teller, reviewing teller, operation type
    QTest::addColumn<int>("profile");
    QTest::addColumn<QString>("branchPart");
    QTest::addColumn<QString>("expected");

    QTest::newRow("nothing given") << QStringList(3) << 0 << QString()
        << u" where (Opcode Like '%')    And OPTYPE  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01'"_s;
    QTest::newRow("profile 39, reviewer only") << QStringList{u""_s, u"0012"_s, u""_s} << 39 << QString()
        << u" where (Opcode Like '%' or opName like '%')   And  (FhName  LIKE  '0012' or  FhCode  LIKE  '0012') And OPTYPE  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01'"_s;
    QTest::newRow("reviewer ignored, branch") << QStringList{u"01?1"_s, u"0012"_s, u"3"_s} << 65 << u"( wdh like '1101%')"_s
        << u" where (Opcode Like '01?1')    And OPTYPE  LIKE  '3' And Opdate Between '1980-01-01' And '3000-01-01' and  ( wdh like '1101%')"_s;
    QTest::newRow("hostile, profile 39") << QStringList{Hostile, Hostile, Hostile} << 39 << QString()
        << u" where (Opcode Like 'abcd' or opName like 'abcd')   And  (FhName  LIKE  'abcd' or  FhCode  LIKE  'abcd') And OPTYPE  LIKE  'abcd' And Opdate Between '1980-01-01' And '3000-01-01'"_s;
}

void TestLogClauses::hyLog()
{
    QFETCH(QStringList, stored);
    QFETCH(int, profile);
    QFETCH(QString, branchPart);
    QFETCH(QString, expected);
    QCOMPARE(hyLogClause({stored[0], stored[1], stored[2], AllDates}, qint16(profile), branchPart), expected);
}

void TestLogClauses::sjLog_data()
{
    QTest::addColumn<QStringList>("stored"); // teller, module, branch pattern
    QTest::addColumn<int>("profile");
    QTest::addColumn<bool>("showWdh");
    QTest::addColumn<QString>("expected");

    const QString all = u" where (Opcode Like '%'  ) And APPNAME  LIKE  '%'  And Opdate Between '1980-01-01' And '3000-01-01'"_s;
    QTest::newRow("nothing given") << QStringList(3) << 0 << true << all;
    QTest::newRow("profile 39") << QStringList{u"0101"_s, u"2"_s, u""_s} << 39 << false
        << u" where (Opcode Like '0101' or OpName Like '0101'  ) And APPNAME  LIKE  '2'  And Opdate Between '1980-01-01' And '3000-01-01'"_s;
    QTest::newRow("branch in both cases") << QStringList{u""_s, u""_s, u"ab%"_s} << 0 << true
        << all + u"  and  ( wdh like 'AB%' or wdh like 'ab%')"_s;
    QTest::newRow("branch box hidden") << QStringList{u""_s, u""_s, u"ab%"_s} << 0 << false << all;
    QTest::newRow("branch left open") << QStringList{u""_s, u""_s, u"%"_s} << 0 << true << all;
    QTest::newRow("hostile") << QStringList{Hostile, Hostile, Hostile} << 0 << true
        << u" where (Opcode Like 'abcd'  ) And APPNAME  LIKE  'abcd'  And Opdate Between '1980-01-01' And '3000-01-01'  and  ( wdh like 'ABCD' or wdh like 'abcd')"_s;
}

void TestLogClauses::sjLog()
{
    QFETCH(QStringList, stored);
    QFETCH(int, profile);
    QFETCH(bool, showWdh);
    QFETCH(QString, expected);
    QCOMPARE(sjLogClause({stored[0], stored[1], stored[2], AllDates}, qint16(profile), showWdh), expected);
}

void TestLogClauses::zgsqLog_data()
{
    QTest::addColumn<QStringList>("stored"); // supervisor, operation
    QTest::addColumn<DateRange>("dates");
    QTest::addColumn<QString>("expected");

    QTest::newRow("nothing given") << QStringList(2) << AllDates
        << u" where  ZGCODE  LIKE  '%' And OPTYPE  LIKE  '%' And Opdate Between '1980-01-01' And '3000-01-01'"_s;
    QTest::newRow("everything") << QStringList{u"90*"_s, u"大额支付"_s} << January
        << u" where  ZGCODE  LIKE  '90*' And OPTYPE  LIKE  '大额支付' And Opdate Between '2009-01-01' And '2009-01-31'"_s;
    QTest::newRow("hostile") << QStringList{Hostile, Hostile} << AllDates
        << u" where  ZGCODE  LIKE  'abcd' And OPTYPE  LIKE  'abcd' And Opdate Between '1980-01-01' And '3000-01-01'"_s;
}

void TestLogClauses::zgsqLog()
{
    QFETCH(QStringList, stored);
    QFETCH(DateRange, dates);
    QFETCH(QString, expected);
    QCOMPARE(zgsqLogClause({stored[0], stored[1], dates}), expected);
}

} // namespace quarry

QTEST_GUILESS_MAIN(quarry::TestLogClauses)
#include "tst_logclauses.moc"
