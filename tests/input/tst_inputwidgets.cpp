// The text boxes' character filter on a real box: what the box keeps of typed
// and pasted text. The focus walk, the key conventions and the masked date box
// are driven through the dialogs in the component and log dialog tests.

#include "input/SqlTextValidator.h"

#include <QLineEdit>
#include <QTest>

using namespace Qt::StringLiterals;

namespace quarry {

class TestInputWidgets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sqlTextValidator_data()
    {
        QTest::addColumn<SqlTextValidator::Quotes>("quotes");
        QTest::addColumn<bool>("typed"); // else inserted at once, as a paste is
        QTest::addColumn<QString>("input");
        QTest::addColumn<QString>("expected");

        const auto Dropped = SqlTextValidator::Quotes::Dropped, Refused = SqlTextValidator::Quotes::Refused;
        QTest::newRow("pattern box takes quotes") << Dropped << true << u"a'b\\c[d]e*?%_"_s << u"a'bcde*?%_"_s;
        QTest::newRow("plain box refuses quotes") << Refused << true << u"a'b\\c[d]e"_s << u"abcde"_s;
        QTest::newRow("paste with a backslash refused whole") << Dropped << false << u"12\\34"_s << QString();
        QTest::newRow("paste with a quote refused whole") << Refused << false << u"O'Neil"_s << QString();
    }

    void sqlTextValidator()
    {
        QFETCH(SqlTextValidator::Quotes, quotes);
        QFETCH(bool, typed);
        QFETCH(QString, input);

        QLineEdit box;
        box.setValidator(new SqlTextValidator(quotes, &box));
        typed ? QTest::keyClicks(&box, input) : box.insert(input);
        QTEST(box.text(), "expected");
    }
};

} // namespace quarry

QTEST_MAIN(quarry::TestInputWidgets)
#include "tst_inputwidgets.moc"
