// The input helpers on real widgets: the focus walk, the masked date and
// time boxes, the text boxes' character filter and the key conventions.

#include "input/FocusNavigation.h"
#include "input/KeyConventions.h"
#include "input/MaskEdBox.h"
#include "input/SqlTextValidator.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quarry {

namespace {

// A dialog with every kind of control, in this tab order: txtA, chk, cboB,
// lbl, mask, txtHidden, txtDisabled, cmdOK, cmdCancel.
class FieldsDialog : public QDialog
{
public:
    FieldsDialog()
    {
        auto *layout = new QVBoxLayout(this);
        auto add = [&](QWidget *w, const QString &name) {
            w->setObjectName(name);
            layout->addWidget(w);
        };
        add(new QLineEdit, u"txtA"_s);
        add(new QCheckBox(u"chk"_s), u"chk"_s);
        add(new QComboBox, u"cboB"_s);
        add(new QLabel(u"lbl"_s), u"lbl"_s);
        add(new MaskEdBox(MaskEdBox::Kind::Date), u"mask"_s);
        add(new QLineEdit, u"txtHidden"_s);
        add(new QLineEdit, u"txtDisabled"_s);
        add(new QPushButton(u"OK"_s), u"cmdOK"_s);
        add(new QPushButton(u"Cancel"_s), u"cmdCancel"_s);
        findChild<QWidget *>(u"txtHidden"_s)->hide();
        findChild<QWidget *>(u"txtDisabled"_s)->setEnabled(false);
    }
    QWidget *field(const QString &name) { return findChild<QWidget *>(name); }
};

} // namespace

class TestInputWidgets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void focusWalk_data();
    void focusWalk();
    void maskEdBox_data();
    void maskEdBox();
    void sqlTextValidator_data();
    void sqlTextValidator();
    void keyConventions_data();
    void keyConventions();
};

void TestInputWidgets::focusWalk_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<bool>("forwards");
    QTest::addColumn<QStringList>("disabled"); // besides txtDisabled
    QTest::addColumn<QString>("setUp");
    QTest::addColumn<QString>("expected");

    const QStringList none;
    QTest::newRow("check box skipped") << u"txtA"_s << true << none << QString() << u"cboB"_s;
    QTest::newRow("label skipped") << u"cboB"_s << true << none << QString() << u"mask"_s;
    QTest::newRow("hidden and disabled skipped") << u"mask"_s << true << none << QString() << u"cmdOK"_s;
    QTest::newRow("last stays") << u"cmdCancel"_s << true << none << QString() << u"cmdCancel"_s;
    QTest::newRow("first stays") << u"txtA"_s << false << none << QString() << u"txtA"_s;
    QTest::newRow("back over hidden and disabled") << u"cmdOK"_s << false << none << QString() << u"mask"_s;
    QTest::newRow("from a check box") << u"chk"_s << true << none << QString() << u"cboB"_s;
    QTest::newRow("disabled button skipped") << u"mask"_s << true << QStringList{u"cmdOK"_s} << QString() << u"cmdCancel"_s;
    QTest::newRow("no enabled field after") << u"mask"_s << true << QStringList{u"cmdOK"_s, u"cmdCancel"_s} << QString() << u"mask"_s;
    QTest::newRow("back to the first") << u"cmdCancel"_s << false << QStringList{u"cboB"_s, u"mask"_s, u"cmdOK"_s} << QString() << u"txtA"_s;
    QTest::newRow("editable combo forwards") << u"cboB"_s << true << none << u"editable"_s << u"mask"_s;
    QTest::newRow("editable combo backwards") << u"cboB"_s << false << none << u"editable"_s << u"txtA"_s;
    QTest::newRow("tab order, not layout order") << u"mask"_s << true << none << u"cancel before OK"_s << u"cmdCancel"_s;
    QTest::newRow("tab order backwards") << u"cmdOK"_s << false << none << u"cancel before OK"_s << u"cmdCancel"_s;
}

void TestInputWidgets::focusWalk()
{
    QFETCH(QString, from);
    QFETCH(bool, forwards);
    QFETCH(QStringList, disabled);
    QFETCH(QString, setUp);
    QFETCH(QString, expected);

    FieldsDialog dialog;
    for (const QString &name : disabled)
        dialog.field(name)->setEnabled(false);
    if (setUp == u"editable"_s)
        static_cast<QComboBox *>(dialog.field(u"cboB"_s))->setEditable(true);
    else if (setUp == u"cancel before OK"_s)
        QWidget::setTabOrder(dialog.field(u"cmdCancel"_s), dialog.field(u"cmdOK"_s));
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    dialog.field(from)->setFocus();

    forwards ? FocusNextControl(&dialog) : FocusPreviousControl(&dialog);

    QWidget *focus = dialog.focusWidget();
    if (qobject_cast<QComboBox *>(focus->parentWidget()))
        focus = focus->parentWidget();
    QCOMPARE(focus->objectName(), expected);
}

void TestInputWidgets::maskEdBox_data()
{
    QTest::addColumn<MaskEdBox::Kind>("kind");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("blank");

    const auto Date = MaskEdBox::Kind::Date, Time = MaskEdBox::Kind::Time;
    QTest::newRow("date, nothing typed") << Date << QString() << u"    -  -  "_s << true;
    QTest::newRow("date, year") << Date << u"2009"_s << u"2009-  -  "_s << false;
    QTest::newRow("date, separators typed") << Date << u"2009-1-5"_s << u"2009-1 -5 "_s << false;
    QTest::newRow("date, digits only") << Date << u"20090105"_s << u"2009-01-05"_s << false;
    QTest::newRow("date, letters refused") << Date << u"ab"_s << u"    -  -  "_s << true;
    QTest::newRow("date, too many digits") << Date << u"2009010599"_s << u"2009-01-05"_s << false;
    QTest::newRow("time, nothing typed") << Time << QString() << u"  :  :  "_s << true;
    QTest::newRow("time, hours and minutes") << Time << u"1230"_s << u"12:30:  "_s << false;
    QTest::newRow("time, full") << Time << u"235959"_s << u"23:59:59"_s << false;
}

void TestInputWidgets::maskEdBox()
{
    QFETCH(MaskEdBox::Kind, kind);
    QFETCH(QString, keys);
    QFETCH(QString, text);
    QFETCH(bool, blank);

    MaskEdBox box(kind);
    box.setCursorPosition(0);
    QTest::keyClicks(&box, keys);
    QCOMPARE(box.maskedText(), text);
    QCOMPARE(box.isBlank(), blank);
}

void TestInputWidgets::sqlTextValidator_data()
{
    QTest::addColumn<SqlTextValidator::Quotes>("quotes");
    QTest::addColumn<bool>("typed"); // else inserted at once, as a paste is
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("expected");

    const auto Dropped = SqlTextValidator::Quotes::Dropped, Refused = SqlTextValidator::Quotes::Refused;
    QTest::newRow("pattern box takes quotes") << Dropped << true << u"a'b\\c[d]e"_s << u"a'bcde"_s;
    QTest::newRow("as-typed box refuses quotes") << Refused << true << u"a'b\\c[d]e"_s << u"abcde"_s;
    QTest::newRow("wildcards pass") << Refused << true << u"1*2?3%4_"_s << u"1*2?3%4_"_s;
    QTest::newRow("paste with a backslash refused whole") << Dropped << false << u"12\\34"_s << QString();
    QTest::newRow("paste with a quote refused whole") << Refused << false << u"O'Neil"_s << QString();
    QTest::newRow("clean paste") << Refused << false << u"张三 0012"_s << u"张三 0012"_s;
}

void TestInputWidgets::sqlTextValidator()
{
    QFETCH(SqlTextValidator::Quotes, quotes);
    QFETCH(bool, typed);
    QFETCH(QString, input);
    QFETCH(QString, expected);

    QLineEdit box;
    box.setValidator(new SqlTextValidator(quotes, &box));
    if (typed)
        QTest::keyClicks(&box, input);
    else
        box.insert(input);
    QCOMPARE(box.text(), expected);
}

void TestInputWidgets::keyConventions_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<bool>("enter");
    QTest::addColumn<bool>("cancel");

    QTest::newRow("Return") << int(Qt::Key_Return) << 0 << true << false;
    QTest::newRow("keypad Enter") << int(Qt::Key_Enter) << int(Qt::KeypadModifier) << true << false;
    QTest::newRow("Esc") << int(Qt::Key_Escape) << 0 << false << true;
    QTest::newRow("keypad multiply") << int(Qt::Key_Asterisk) << int(Qt::KeypadModifier) << false << true;
    QTest::newRow("main keyboard *") << int(Qt::Key_Asterisk) << 0 << false << false;
    QTest::newRow("Shift+8 *") << int(Qt::Key_Asterisk) << int(Qt::ShiftModifier) << false << false;
    QTest::newRow("Up") << int(Qt::Key_Up) << 0 << false << false;
}

void TestInputWidgets::keyConventions()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(bool, enter);
    QFETCH(bool, cancel);
    const QKeyEvent event(QEvent::KeyPress, key, Qt::KeyboardModifiers(modifiers));
    QCOMPARE(isEnterKey(event), enter);
    QCOMPARE(isCancelKey(event), cancel);
}

} // namespace quarry

QTEST_MAIN(quarry::TestInputWidgets)
#include "tst_inputwidgets.moc"
