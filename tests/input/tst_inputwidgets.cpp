// The input helpers on real widgets: the focus walk and the text boxes'
// character filter. The key conventions and the masked date box are driven
// through the dialogs in the component tests.

#include "input/FocusNavigation.h"
#include "input/MaskEdBox.h"
#include "input/SqlTextValidator.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quarry {

class TestInputWidgets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void focusWalk_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<bool>("forwards");
        QTest::addColumn<QString>("expected");

        // Tab order: txtA, chk, cboB (editable), lbl, mask, txtHidden, txtDisabled, cmdOK, cmdCancel.
        QTest::newRow("check box skipped") << u"txtA"_s << true << u"cboB"_s;
        QTest::newRow("label skipped") << u"cboB"_s << true << u"mask"_s;
        QTest::newRow("hidden and disabled skipped") << u"mask"_s << true << u"cmdOK"_s;
        QTest::newRow("last stays") << u"cmdCancel"_s << true << u"cmdCancel"_s;
        QTest::newRow("first stays") << u"txtA"_s << false << u"txtA"_s;
    }

    void focusWalk()
    {
        QFETCH(QString, from);
        QFETCH(bool, forwards);

        QDialog dialog;
        auto *layout = new QVBoxLayout(&dialog);
        auto *combo = new QComboBox;
        combo->setEditable(true); // focus is then on the line edit inside it
        const QList<QPair<QWidget *, QString>> fields{{new QLineEdit, u"txtA"_s}, {new QCheckBox, u"chk"_s},
            {combo, u"cboB"_s}, {new QLabel(u"lbl"_s), u"lbl"_s}, {new MaskEdBox(MaskEdBox::Kind::Date), u"mask"_s},
            {new QLineEdit, u"txtHidden"_s}, {new QLineEdit, u"txtDisabled"_s}, {new QPushButton, u"cmdOK"_s}, {new QPushButton, u"cmdCancel"_s}};
        for (const auto &[widget, name] : fields) {
            widget->setObjectName(name);
            layout->addWidget(widget);
        }
        dialog.findChild<QWidget *>(u"txtHidden"_s)->hide();
        dialog.findChild<QWidget *>(u"txtDisabled"_s)->setEnabled(false);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        dialog.findChild<QWidget *>(from)->setFocus();

        forwards ? FocusNextControl(&dialog) : FocusPreviousControl(&dialog);

        QWidget *focus = dialog.focusWidget();
        if (focus->parentWidget() == combo)
            focus = combo;
        QTEST(focus->objectName(), "expected");
    }

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
