#include "RateScale.h"

#include <QChart>
#include <QChartView>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

constexpr int Steps = 5; // 0, 20, ..., 100 %
constexpr int Tick = 4;

} // namespace

RateScale::RateScale(QChartView *bars, QWidget *parent)
    : QWidget(parent)
    , m_bars(bars)
{
    setFixedHeight(fontMetrics().height() + Tick + 6);
    connect(bars->chart(), &QChart::plotAreaChanged, this, [this] { update(); });
}

void RateScale::paintEvent(QPaintEvent *)
{
    const QRectF plot = m_bars->chart()->plotArea();
    const auto here = [this](const QPointF &scene) {
        const QWidget *viewport = m_bars->viewport();
        return mapFromGlobal(viewport->mapToGlobal(m_bars->mapFromScene(scene))).x();
    };
    const qreal left = here(plot.topLeft());
    const qreal width = here(plot.topRight()) - left;
    if (width <= 0)
        return;
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    const qreal line = height() - 1;
    painter.drawLine(QPointF(left, line), QPointF(left + width, line));
    for (int step = 0; step <= Steps; ++step) {
        const qreal x = left + width * step / Steps;
        painter.drawLine(QPointF(x, line), QPointF(x, line - Tick));
        const QString label = u"%1%"_s.arg(100 * step / Steps);
        const qreal half = fontMetrics().horizontalAdvance(label) / 2.0;
        painter.drawText(QPointF(x - half, line - Tick - 3), label);
    }
}

} // namespace quarry::viewer
