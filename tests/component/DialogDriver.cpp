#include "DialogDriver.h"
#include "TestFiles.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QFile>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

using namespace Qt::StringLiterals;

namespace quarry::test {

namespace {

QWidget *control(QWidget *dialog, const QString &name)
{
    QWidget *found = dialog->findChild<QWidget *>(name);
    if (!found)
        qFatal("%s has no control %s", qPrintable(dialog->objectName()), qPrintable(name));
    return found;
}

QString after(QWidget *dialog)
{
    if (!dialog->isVisible())
        return u"closed"_s;
    QString where = dialog->focusWidget()->objectName();
    for (const QString &name : {u"OpShow"_s, u"AppShow"_s, u"lblInfo"_s}) {
        const auto *shown = dialog->findChild<QLabel *>(name);
        if (shown && !shown->text().isEmpty())
            where += u' ' + shown->text();
    }
    return where;
}

} // namespace

void writeSealIni(const QString &folder, const QString &mode, int queryHintMode)
{
    writeFile(folder + u"/SEAL.INI"_s, u"[SBMK]\r\nDoubleSealQuota=0\r\n[USER]\r\nQueryHintMode=%1\r\nMODE=%2\r\n"_s
                                          .arg(queryHintMode).arg(mode).toUtf8());
    qputenv("QUARRY_SYSTEM_DIR", QFile::encodeName(folder));
}

void step(QWidget *dialog, const QString &action)
{
    static const QHash<QString, QKeyCombination> keys{{u"Return"_s, Qt::Key_Return},
        {u"PadEnter"_s, Qt::KeypadModifier | Qt::Key_Enter}, {u"Up"_s, Qt::Key_Up},
        {u"Down"_s, Qt::Key_Down}, {u"Esc"_s, Qt::Key_Escape},
        {u"Pad*"_s, Qt::KeypadModifier | Qt::Key_Asterisk}};
    if (keys.contains(action)) {
        QTest::keyClick(dialog->focusWidget(), keys[action].key(), keys[action].keyboardModifiers());
    } else if (action.endsWith(u'!')) {
        QTest::mouseClick(control(dialog, action.chopped(1)), Qt::LeftButton);
    } else if (action.endsWith(u'~') && !action.contains(u'=')) {
        QWidget *box = control(dialog, action.chopped(1));
        box->setFocus();
        QTest::keyClick(box, Qt::Key_Space);
    } else if (const qsizetype caret = action.indexOf(u'^');
               caret > 0 && !action.left(caret).contains(u'=')) {
        QWidget *box = control(dialog, action.left(caret));
        box->setFocus();
        QGuiApplication::clipboard()->setText(action.mid(caret + 1));
        QTest::keyClick(box, Qt::Key_V, Qt::ControlModifier);
    } else if (const qsizetype at = action.indexOf(u'@'); at > 0) {
        auto *list = qobject_cast<QComboBox *>(control(dialog, action.left(at)));
        list->showPopup();
        const QModelIndex entry = list->model()->index(action.mid(at + 1).toInt(), 0);
        QTest::mouseClick(list->view()->viewport(), Qt::LeftButton, {}, list->view()->visualRect(entry).center());
    } else if (const qsizetype hash = action.indexOf(u'#'); hash > 0) {
        QWidget *list = control(dialog, action.left(hash));
        list->setFocus();
        for (int i = 0; i <= action.mid(hash + 1).toInt(); ++i)
            QTest::keyClick(list, Qt::Key_Down);
    } else {
        const qsizetype equals = action.indexOf(u'=');
        QWidget *target = equals == 0 ? dialog->focusWidget() : control(dialog, action.left(equals));
        target->setFocus();
        if (equals >= 0) {
            auto *list = qobject_cast<QComboBox *>(target);
            (list ? list->lineEdit() : qobject_cast<QLineEdit *>(target))->setCursorPosition(0);
            QTest::keyClicks(target, action.mid(equals + 1));
        }
    }
}

Outcome operate(const std::function<void()> &call, const QStringList &steps,
                QMessageBox::StandardButton answer, const std::function<void(QWidget *)> &inspect)
{
    Outcome outcome;
    ModalWatch watch(nullptr, [&](QWidget *dialog) {
        if (!QTest::qWaitForWindowActive(dialog))
            return;
        outcome.dialog = dialog->isModal() && !dialog->parentWidget() ? dialog->objectName() : QString();
        ModalWatch boxWatch(dialog, answerBox(answer, &outcome.box));
        for (const QString &action : steps)
            step(dialog, action);
        outcome.after = after(dialog);
        if (inspect)
            inspect(dialog);
    });
    call();
    outcome.shown = watch.fired();
    return outcome;
}

} // namespace quarry::test
