#include "input/OperatorMessage.h"

#include "platform/SystemMessage.h"

#include <QMessageBox>

using namespace Qt::StringLiterals;

namespace quarry {

namespace {

QMessageBox::StandardButton showBox(QWidget *dialog, QMessageBox::Icon icon, const QString &text,
                                    QMessageBox::StandardButtons buttons,
                                    QMessageBox::StandardButton defaultButton,
                                    const QString &caption = u"提示信息"_s)
{
    QMessageBox box(icon, caption, text, buttons, dialog);
    setChineseButtonTexts(box);
    box.setDefaultButton(defaultButton);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

} // namespace

void warnOperator(QWidget *dialog, const QString &text)
{
    showBox(dialog, QMessageBox::Warning, text, QMessageBox::Ok, QMessageBox::Ok);
}

void informOperator(QWidget *dialog, const QString &text)
{
    showBox(dialog, QMessageBox::Information, text, QMessageBox::Ok, QMessageBox::Ok);
}

void tellOperator(QWidget *dialog, const QString &text)
{
    showBox(dialog, QMessageBox::NoIcon, text, QMessageBox::Ok, QMessageBox::Ok, u"Quarry"_s);
}

bool askOperator(QWidget *dialog, const QString &text)
{
    return showBox(dialog, QMessageBox::Question, text, QMessageBox::Yes | QMessageBox::No,
                   QMessageBox::No)
        == QMessageBox::Yes;
}

bool confirmOperator(QWidget *dialog, const QString &text)
{
    return showBox(dialog, QMessageBox::Question, text,
                   QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Yes)
        == QMessageBox::Yes;
}

} // namespace quarry
