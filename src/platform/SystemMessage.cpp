#include "platform/SystemMessage.h"

#include <QApplication>
#include <QMessageBox>

#include <cstdio>

namespace quarry {

void showSystemMessage(const QString &caption, const QString &text)
{
    if (qobject_cast<QApplication *>(QCoreApplication::instance())) {
        QMessageBox box(QMessageBox::Information, caption, text, QMessageBox::Ok);
        box.exec();
        return;
    }
    std::fprintf(stderr, "%s: %s\n", caption.toUtf8().constData(), text.toUtf8().constData());
    std::fflush(stderr);
}

} // namespace quarry
