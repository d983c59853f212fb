// The helpers behind every condition dialog: pattern and date conversion,
// the condition fragments, and the text boxes' character filter on a real
// box. The date range rule, the empty-query rule, the focus walk, the key
// conventions and the masked date box are driven through the dialogs in the
// component and log dialog tests.

#include "input/Conditions.h"
#include "input/PublicFunction.h"
#include "input/SqlTextValidator.h"

#include <QLineEdit>
#include <QTest>

using namespace Qt::StringLiterals;

namespace quarry {

namespace {

// What a box with the filter keeps of text typed, or inserted at once as a
// paste is.
std::function<QString(const QString &)> box(SqlTextValidator::Quotes quotes, bool typed)
{
    return [=](const QString &input) {
        QLineEdit box;
        box.setValidator(new SqlTextValidator(quotes, &box));
        typed ? QTest::keyClicks(&box, input) : box.insert(input);
        return box.text();
    };
}

} // namespace

class TestPublicFunction : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textHelpers_data()
    {
        QTest::addColumn<QString>("helper");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("expected");

        QTest::newRow("like: second * stays") << u"like"_s << u"12*34*"_s << u"12%34*"_s;
        QTest::newRow("like: quote inside") << u"like"_s << u"ab'c"_s << u"abc"_s;
        QTest::newRow("date: yyyy-mm-dd") << u"date"_s << u"2009-02-28"_s << u"2009-02-28"_s;
        QTest::newRow("date: yyyy/m/d") << u"date"_s << u"2009/1/5"_s << u"2009-01-05"_s;
        QTest::newRow("date: year 100") << u"date"_s << u"100-1-1"_s << u"0100-01-01"_s;
        QTest::newRow("date: 30 February") << u"date"_s << u"2009-02-30"_s << u"no date"_s;
        QTest::newRow("date: partly filled mask") << u"date"_s << u"2009-1 -5 "_s << u"no date"_s;
        QTest::newRow("date: year 99") << u"date"_s << u"99-1-5"_s << u"no date"_s;
        QTest::newRow("date: five-digit year") << u"date"_s << u"10000-01-01"_s << u"no date"_s;
        QTest::newRow("date: mixed separators") << u"date"_s << u"2009-01/05"_s << u"no date"_s;
        QTest::newRow("date: final line break") << u"date"_s << u"2009-1-5\n"_s << u"no date"_s;
        QTest::newRow("time: h:m:s") << u"time"_s << u" 1:2 :3"_s << u"01:02:03"_s;
        QTest::newRow("time: final line break") << u"time"_s << u"12:00:00\n"_s << u"no time"_s;
        QTest::newRow("yjk, trimmed") << u"yjk"_s << u" 12*3? "_s << u" Where YJKNUMBER like '12%3_'"_s;
        QTest::newRow("wdh, untrimmed") << u"wdh"_s << u" "_s << u" where  ( WDH LIKE ' ' or  WDH LIKE ' ')"_s;
        QTest::newRow("wdh, both cases") << u"wdh"_s << u"aB?"_s << u" where  ( WDH LIKE 'AB_' or  WDH LIKE 'ab_')"_s;
        QTest::newRow("cheque, blank") << u"cheque"_s << u" "_s << u" Where ChequeSeriesNo like  '%%'"_s;
        // What could end the literal or widen the LIKE on some dialect.
        QTest::newRow("acc, backslash") << u"acc"_s << u"1\\'"_s << u" Where AccNo like '1'"_s;
        QTest::newRow("yjk, brackets") << u"yjk"_s << u"[a-z]*"_s << u" Where YJKNUMBER like 'a-z%'"_s;
        QTest::newRow("pattern box takes quotes") << u"typed into a pattern box"_s << u"a'b\\c[d]e*?%_"_s << u"a'bcde*?%_"_s;
        QTest::newRow("plain box refuses quotes") << u"typed into a plain box"_s << u"a'b\\c[d]e"_s << u"abcde"_s;
        QTest::newRow("paste with a backslash refused whole") << u"pasted into a pattern box"_s << u"12\\34"_s << QString();
        QTest::newRow("paste with a quote refused whole") << u"pasted into a plain box"_s << u"O'Neil"_s << QString();
    }

    void textHelpers()
    {
        QFETCH(QString, helper);
        QFETCH(QString, typed);
        const QHash<QString, std::function<QString(const QString &)>> helpers{
            {u"like"_s, ToLikePattern},
            // A text that is no date must come back unchanged.
            {u"date"_s, [](QString t) { const QString typed = t; return CheckDateText(t) ? t : t == typed ? u"no date"_s : t; }},
            {u"time"_s, [](const QString &t) { return maskedTime(t).value_or(u"no time"_s); }},
            {u"yjk"_s, yjkCondition},
            {u"wdh"_s, wdhCondition},
            {u"acc"_s, accCondition},
            {u"cheque"_s, chequeSeriesCondition},
            {u"typed into a pattern box"_s, box(SqlTextValidator::Quotes::Dropped, true)},
            {u"typed into a plain box"_s, box(SqlTextValidator::Quotes::Refused, true)},
            {u"pasted into a pattern box"_s, box(SqlTextValidator::Quotes::Dropped, false)},
            {u"pasted into a plain box"_s, box(SqlTextValidator::Quotes::Refused, false)},
        };
        QTEST(helpers.value(helper)(typed), "expected");
    }
};

} // namespace quarry

QTEST_MAIN(quarry::TestPublicFunction)
#include "tst_publicfunction.moc"
