#include "OwnerlessDialogs.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QWindow>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <optional>

namespace quarry::apps {

namespace {

template<typename Reply>
using XcbReply = std::unique_ptr<Reply, decltype(&std::free)>;

// Where another program's window is on the screen, in X pixels: Qt keeps no
// geometry for such a window, so the X server is asked.
std::optional<QRect> x11Geometry(WId window)
{
    const auto *x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11)
        return std::nullopt;
    xcb_connection_t *connection = x11->connection();
    const auto id = xcb_window_t(window);
    const XcbReply<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, id), nullptr), &std::free);
    if (!size)
        return std::nullopt;
    const XcbReply<xcb_translate_coordinates_reply_t> origin(
        xcb_translate_coordinates_reply(connection,
                                        xcb_translate_coordinates(connection, id, size->root, 0, 0),
                                        nullptr),
        &std::free);
    if (!origin)
        return std::nullopt;
    return QRect(origin->dst_x, origin->dst_y, size->width, size->height);
}

} // namespace

OwnerlessDialogs::OwnerlessDialogs(QObject *parent)
    : QObject(parent)
{
    qApp->installEventFilter(this);
}

bool OwnerlessDialogs::eventFilter(QObject *watched, QEvent *event)
{
    // The show event comes after the native window is made and before it is
    // mapped, which is when X11 reads WM_TRANSIENT_FOR; and before the
    // dialog's own show event places it.
    if (event->type() != QEvent::Show)
        return false;
    auto *dialog = qobject_cast<QDialog *>(watched);
    if (!dialog || !dialog->isWindow() || dialog->parentWidget())
        return false;
    if (!m_hostWindow || !dialog->windowHandle())
        return false;
    dialog->windowHandle()->setTransientParent(m_hostWindow);
    // QDialog centres itself over its transient parent, which for another
    // program's window it takes to be empty at 0,0; placed here, it leaves
    // its place alone.
    if (const std::optional<QRect> host = x11Geometry(m_hostWindow->winId())) {
        const qreal ratio = dialog->devicePixelRatioF();
        QRect placed = dialog->frameGeometry();
        placed.moveCenter(
            QPoint(qRound(host->center().x() / ratio), qRound(host->center().y() / ratio)));
        dialog->move(placed.topLeft());
    }
    return false;
}

} // namespace quarry::apps
