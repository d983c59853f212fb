#include "PassRateChart.h"

#include "RateScale.h"

#include <QAbstractItemModel>
#include <QBarCategoryAxis>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QFontMetrics>
#include <QHorizontalBarSeries>
#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QScrollArea>
#include <QVBoxLayout>
#include <QValueAxis>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

// The axes of a chart removed and deleted.
void removeAxes(QChart *chart)
{
    const QList<QAbstractAxis *> axes = chart->axes();
    for (QAbstractAxis *axis : axes) {
        chart->removeAxis(axis);
        delete axis;
    }
}

} // namespace

PassRateChart::PassRateChart(QWidget *parent)
    : QWidget(parent)
    , m_head(new QWidget(this))
    , m_scroll(new QScrollArea(this))
    , m_bars(new QChartView(m_scroll))
{
    auto *head = new QVBoxLayout(m_head);
    auto *title = new QLabel(u"各操作员验印通过率"_s, m_head);
    title->setAlignment(Qt::AlignCenter);
    head->addWidget(title);
    head->addWidget(new RateScale(m_bars, m_head));
    m_head->setAutoFillBackground(true);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_head);
    m_bars->setRenderHint(QPainter::Antialiasing);
    m_bars->chart()->legend()->hide();
    m_bars->chart()->setMargins({0, 0, 24, 0}); // room for the scale's last label
    m_scroll->setWidget(m_bars);
    m_scroll->setWidgetResizable(true);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    layout->addWidget(m_scroll, 1);
}

bool PassRateChart::showRates(const QAbstractItemModel &model)
{
    const std::optional<PassRates> rates = passRates(model);
    m_rates = rates.value_or(PassRates());
    if (!rates)
        return false;

    // A horizontal series lays its first category at the bottom: the
    // operators go in backwards so that the first one stands on top.
    auto *bars = new QBarSet(u"通过率 (%)"_s);
    QStringList operators;
    for (auto rate = m_rates.crbegin(); rate != m_rates.crend(); ++rate) {
        operators.append(rate->first);
        bars->append(rate->second);
    }
    auto *series = new QHorizontalBarSeries;
    series->append(bars);
    auto *axisY = new QBarCategoryAxis;
    axisY->append(operators);
    auto *axisX = new QValueAxis;
    axisX->setRange(0, 100);
    axisX->setTickCount(6); // the lines of the head's scale
    axisX->setLabelsVisible(false);
    // Two lines of the labels' text per operator (the axis elides a label
    // that has less room).
    const int line = QFontMetrics(axisY->labelsFont()).height();
    m_bars->setMinimumHeight(int(operators.size()) * line * 2 + 20);

    QChart *c = m_bars->chart();
    c->removeAllSeries();
    removeAxes(c);
    c->addSeries(series);
    c->addAxis(axisY, Qt::AlignLeft);
    c->addAxis(axisX, Qt::AlignTop);
    series->attachAxis(axisX);
    series->attachAxis(axisY);
    return true;
}

bool PassRateChart::savePng(const QString &path)
{
    const QPixmap head = m_head->grab();
    const QPixmap bars = m_bars->grab();
    QPixmap whole(qMax(head.width(), bars.width()), head.height() + bars.height());
    whole.setDevicePixelRatio(bars.devicePixelRatio());
    whole.fill(Qt::white);
    QPainter painter(&whole);
    painter.drawPixmap(0, 0, head);
    painter.drawPixmap(QPointF(0, head.deviceIndependentSize().height()), bars);
    painter.end();
    return whole.save(path, "PNG");
}

} // namespace quarry::viewer
