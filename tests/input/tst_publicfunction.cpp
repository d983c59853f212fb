// The pure helpers behind every condition dialog: pattern and date
// conversion, the condition fragments and the empty-query rule.

#include "input/Conditions.h"
#include "input/EmptyQueryRule.h"
#include "input/PublicFunction.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace quarry {

class TestPublicFunction : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void toLikePattern_data();
    void toLikePattern();
    void checkDateText_data();
    void checkDateText();
    void conditions_data();
    void conditions();
    void dateRange_data();
    void dateRange();
    void emptyQueryAction_data();
    void emptyQueryAction();
};

void TestPublicFunction::toLikePattern_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");

    QTest::newRow("empty is everything") << QString() << u"%"_s;
    QTest::newRow("lone quote is empty") << u"'"_s << QString();
    QTest::newRow("quotes only") << u"'''"_s << QString();
    QTest::newRow("second * stays") << u"12*34*"_s << u"12%34*"_s;
    QTest::newRow("? and *") << u"1?3*"_s << u"1_3%"_s;
    QTest::newRow("every ?") << u"??a?"_s << u"__a_"_s;
    QTest::newRow("quote inside") << u"ab'c"_s << u"abc"_s;
    QTest::newRow("quote before *") << u"'*"_s << u"%"_s;
    QTest::newRow("leading *") << u"*12"_s << u"%12"_s;
    QTest::newRow("% and _ pass") << u"1%_2"_s << u"1%_2"_s;
    QTest::newRow("blanks kept") << u" 1 "_s << u" 1 "_s;
    QTest::newRow("Chinese") << u"张*"_s << u"张%"_s;
}

void TestPublicFunction::toLikePattern()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(ToLikePattern(text), expected);
}

void TestPublicFunction::checkDateText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("expected");
    QTest::addColumn<QString>("rewritten");

    QTest::newRow("yyyy-mm-dd") << u"2009-02-28"_s << 1 << u"2009-02-28"_s;
    QTest::newRow("yyyy-m-d") << u"2009-1-5"_s << 1 << u"2009-01-05"_s;
    QTest::newRow("yyyy/m/d") << u"2009/1/5"_s << 1 << u"2009-01-05"_s;
    QTest::newRow("yyyy/mm/dd") << u"2009/12/31"_s << 1 << u"2009-12-31"_s;
    QTest::newRow("leap day") << u"2008-02-29"_s << 1 << u"2008-02-29"_s;
    QTest::newRow("year 100") << u"100-1-1"_s << 1 << u"0100-01-01"_s;
    QTest::newRow("year 9999") << u"9999-12-31"_s << 1 << u"9999-12-31"_s;
    QTest::newRow("month 13 is not 13 January") << u"2009-13-01"_s << 0 << u"2009-13-01"_s;
    QTest::newRow("30 February") << u"2009-02-30"_s << 0 << u"2009-02-30"_s;
    QTest::newRow("29 February 2009") << u"2009-02-29"_s << 0 << u"2009-02-29"_s;
    QTest::newRow("1900 no leap year") << u"1900-02-29"_s << 0 << u"1900-02-29"_s;
    QTest::newRow("day 0") << u"2009-01-00"_s << 0 << u"2009-01-00"_s;
    QTest::newRow("9999-99-99") << u"9999-99-99"_s << 0 << u"9999-99-99"_s;
    QTest::newRow("empty mask") << u"    -  -  "_s << 0 << u"    -  -  "_s;
    QTest::newRow("partly filled mask") << u"2009-1 -5 "_s << 0 << u"2009-1 -5 "_s;
    QTest::newRow("day missing") << u"2009-01-  "_s << 0 << u"2009-01-  "_s;
    QTest::newRow("year 99") << u"99-1-5"_s << 0 << u"99-1-5"_s;
    QTest::newRow("year 0099") << u"0099-01-05"_s << 0 << u"0099-01-05"_s;
    QTest::newRow("five-digit year") << u"10000-01-01"_s << 0 << u"10000-01-01"_s;
    QTest::newRow("mixed separators") << u"2009-01/05"_s << 0 << u"2009-01/05"_s;
    QTest::newRow("empty") << QString() << 0 << QString();
    QTest::newRow("words") << u"today"_s << 0 << u"today"_s;
    QTest::newRow("full-width digits") << u"２００９-01-05"_s << 0 << u"２００９-01-05"_s;
}

void TestPublicFunction::checkDateText()
{
    QFETCH(QString, text);
    QFETCH(int, expected);
    QFETCH(QString, rewritten);
    QCOMPARE(int(CheckDateText(text)), expected);
    QCOMPARE(text, rewritten);
}

void TestPublicFunction::conditions_data()
{
    QTest::addColumn<QString>("builder");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("expected");

    QTest::newRow("yjk") << u"yjk"_s << u" 12*3? "_s << u" Where YJKNUMBER like '12%3_'"_s;
    QTest::newRow("yjk blank is everything") << u"yjk"_s << u"   "_s << u" Where YJKNUMBER like '%'"_s;
    QTest::newRow("wdh") << u"wdh"_s << u"aB?"_s << u" where  ( WDH LIKE 'AB_' or  WDH LIKE 'ab_')"_s;
    QTest::newRow("wdh untrimmed blank") << u"wdh"_s << u" "_s << u" where  ( WDH LIKE ' ' or  WDH LIKE ' ')"_s;
    QTest::newRow("acc") << u"acc"_s << u"6222*"_s << u" Where AccNo like '6222%'"_s;
    QTest::newRow("clerk") << u"clerk"_s << u"0?1"_s << u" Where OpCode like  '0_1'"_s;
    QTest::newRow("clerk 39") << u"clerk39"_s << u"王*"_s << u" Where OpCode like  '王%' or  OpName like '王%'"_s;
    QTest::newRow("cheque") << u"cheque"_s << u"12"_s << u" Where ChequeSeriesNo like  '12%'"_s;
    QTest::newRow("cheque blank") << u"cheque"_s << u" "_s << u" Where ChequeSeriesNo like  '%%'"_s;
    QTest::newRow("cheque with *") << u"cheque"_s << u"1*2"_s << u" Where ChequeSeriesNo like  '1%2%'"_s;
    // What could end the literal or widen the LIKE on some dialect.
    QTest::newRow("quote") << u"acc"_s << u"1' or '1'='1"_s << u" Where AccNo like '1 or 1=1'"_s;
    QTest::newRow("backslash") << u"acc"_s << u"1\\'"_s << u" Where AccNo like '1'"_s;
    QTest::newRow("brackets") << u"yjk"_s << u"[a-z]*"_s << u" Where YJKNUMBER like 'a-z%'"_s;
    QTest::newRow("wdh backslash") << u"wdh"_s << u"\\"_s << u" where  ( WDH LIKE '' or  WDH LIKE '')"_s;
    QTest::newRow("clerk bracket") << u"clerk"_s << u"]"_s << u" Where OpCode like  ''"_s;
}

void TestPublicFunction::conditions()
{
    QFETCH(QString, builder);
    QFETCH(QString, typed);
    QFETCH(QString, expected);
    const QHash<QString, QString (*)(const QString &)> builders{
        {u"yjk"_s, yjkCondition},
        {u"wdh"_s, wdhCondition},
        {u"acc"_s, accCondition},
        {u"clerk"_s, [](const QString &t) { return clerkCondition(t, 0); }},
        {u"clerk39"_s, [](const QString &t) { return clerkCondition(t, 39); }},
        {u"cheque"_s, chequeSeriesCondition},
    };
    QCOMPARE(builders.value(builder)(typed), expected);
}

void TestPublicFunction::dateRange_data()
{
    QTest::addColumn<QString>("startBox");
    QTest::addColumn<QString>("endBox");
    QTest::addColumn<DateRange::Fault>("fault");
    QTest::addColumn<QString>("condition");

    const QString blank = u"    -  -  "_s;
    const auto None = DateRange::Fault::None, Start = DateRange::Fault::Start,
               End = DateRange::Fault::End, Before = DateRange::Fault::EndBeforeStart;
    QTest::newRow("both blank") << blank << blank << None << u" Where OpDate Between '1980-01-01' And '3000-01-01'"_s;
    QTest::newRow("start only") << u"2009-01-05"_s << blank << None << u" Where OpDate Between '2009-01-05' And '3000-01-01'"_s;
    QTest::newRow("end only") << blank << u"2009-01-05"_s << None << u" Where OpDate Between '1980-01-01' And '2009-01-05'"_s;
    QTest::newRow("equal") << u"2009-01-05"_s << u"2009-01-05"_s << None << u" Where OpDate Between '2009-01-05' And '2009-01-05'"_s;
    QTest::newRow("bad start wins over bad end") << u"2009-02-30"_s << u"2009-13-01"_s << Start << QString();
    QTest::newRow("partly typed start") << u"2009-0 -  "_s << blank << Start << QString();
    QTest::newRow("bad end") << blank << u"2009-13-01"_s << End << QString();
    QTest::newRow("end before start") << u"2009-03-01"_s << u"2009-02-28"_s << Before << QString();
    QTest::newRow("end before 1980") << blank << u"1979-12-31"_s << Before << QString();
    QTest::newRow("start after 3000") << u"3000-01-02"_s << blank << Before << QString();
}

void TestPublicFunction::dateRange()
{
    QFETCH(QString, startBox);
    QFETCH(QString, endBox);
    QFETCH(DateRange::Fault, fault);
    QFETCH(QString, condition);
    const DateRange range = checkDateRange(startBox, endBox);
    QCOMPARE(range.fault, fault);
    if (fault == DateRange::Fault::None)
        QCOMPARE(dateCondition(range), condition);
}

void TestPublicFunction::emptyQueryAction_data()
{
    QTest::addColumn<int>("profile");
    QTest::addColumn<int>("hint");
    QTest::addColumn<bool>("empty");
    QTest::addColumn<EmptyQueryAction>("expected");

    const auto Proceed = EmptyQueryAction::Proceed, Confirm = EmptyQueryAction::Confirm,
               Refuse = EmptyQueryAction::Refuse;
    QTest::newRow("input given") << 0 << 2 << false << Proceed;
    QTest::newRow("input given, profile 54") << 54 << 2 << false << Proceed;
    QTest::newRow("empty, no hint") << 0 << 0 << true << Proceed;
    QTest::newRow("empty, hint 1") << 0 << 1 << true << Proceed;
    QTest::newRow("empty, hint 2") << 0 << 2 << true << Confirm;
    QTest::newRow("empty, hint 2, profile 39") << 39 << 2 << true << Confirm;
    QTest::newRow("empty, profile 54") << 54 << 0 << true << Refuse;
    QTest::newRow("empty, profile 54, hint 2") << 54 << 2 << true << Refuse;
}

void TestPublicFunction::emptyQueryAction()
{
    QFETCH(int, profile);
    QFETCH(int, hint);
    QFETCH(bool, empty);
    QFETCH(EmptyQueryAction, expected);
    QCOMPARE(quarry::emptyQueryAction(qint16(profile), qint16(hint), empty), expected);
}

} // namespace quarry

QTEST_APPLESS_MAIN(quarry::TestPublicFunction)
#include "tst_publicfunction.moc"
