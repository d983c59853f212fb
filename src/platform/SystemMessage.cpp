#include "platform/SystemMessage.h"

#include "platform/FaultWatch.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace quarry {

void setChineseButtonTexts(QMessageBox &box)
{
    const std::pair<QMessageBox::StandardButton, QString> texts[]
        = {{QMessageBox::Ok, u"确定"_s},
           {QMessageBox::Yes, u"是(&Y)"_s},
           {QMessageBox::No, u"否(&N)"_s},
           {QMessageBox::Cancel, u"取消"_s}};
    for (const auto &[button, text] : texts) {
        if (QAbstractButton *shown = box.button(button))
            shown->setText(text);
    }
}

void showSystemMessage(const QString &caption, const QString &text)
{
    if (qobject_cast<QApplication *>(QCoreApplication::instance())) {
        QMessageBox box(QMessageBox::Information, caption, text, QMessageBox::Ok);
        setChineseButtonTexts(box);
        box.exec();
        return;
    }
    std::fprintf(stderr, "%s: %s\n", caption.toUtf8().constData(), text.toUtf8().constData());
    std::fflush(stderr);
}

void tellConfigurationFault(const QString &text, const QuarryError &cause)
{
    showSystemMessage(u"系统提示"_s, text);
    FaultWatch::report(QuarryError(cause.number(), cause.source(), text));
}

} // namespace quarry
