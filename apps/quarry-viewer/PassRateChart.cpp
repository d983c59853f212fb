#include "PassRateChart.h"

#include <QAbstractItemModel>
#include <QBarCategoryAxis>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QFontMetrics>
#include <QHorizontalBarSeries>
#include <QPixmap>
#include <QValueAxis>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

// The column whose header is name, without regard to case; -1 when none.
int column(const QAbstractItemModel &model, const QString &name)
{
    for (int c = 0; c < model.columnCount(); ++c) {
        if (model.headerData(c, Qt::Horizontal).toString().compare(name, Qt::CaseInsensitive) == 0)
            return c;
    }
    return -1;
}

} // namespace

PassRateChart::PassRateChart(QWidget *parent)
    : QScrollArea(parent)
    , m_view(new QChartView(this))
{
    m_view->setRenderHint(QPainter::Antialiasing);
    m_view->chart()->setTitle(u"各操作员验印通过率"_s);
    m_view->chart()->legend()->hide();
    setWidget(m_view);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

bool PassRateChart::showRates(const QAbstractItemModel &model)
{
    const int opcode = column(model, u"opcode"_s);
    const int total = column(model, u"total"_s);
    const int passed = column(model, u"passed"_s);
    m_rates.clear();
    if (opcode < 0 || total < 0 || passed < 0)
        return false;
    for (int row = 0; row < model.rowCount(); ++row) {
        const double count = model.index(row, total).data().toDouble();
        const double rate
            = count > 0 ? model.index(row, passed).data().toDouble() * 100.0 / count : 0.0;
        m_rates.append({model.index(row, opcode).data().toString(), rate});
    }

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
    axisX->setLabelFormat(u"%d%%"_s);
    axisX->setTitleText(u"通过率"_s);
    // Two lines of the labels' text per operator (the axis elides a label
    // that has less room), and room for the title and the value axis.
    const int line = QFontMetrics(axisY->labelsFont()).height();
    m_view->setMinimumHeight(int(operators.size()) * line * 2 + 120);

    QChart *c = m_view->chart();
    c->removeAllSeries();
    const QList<QAbstractAxis *> axes = c->axes();
    for (QAbstractAxis *axis : axes) {
        c->removeAxis(axis);
        delete axis;
    }
    c->addSeries(series);
    c->addAxis(axisY, Qt::AlignLeft);
    c->addAxis(axisX, Qt::AlignTop); // in sight before the list scrolls
    series->attachAxis(axisX);
    series->attachAxis(axisY);
    return true;
}

bool PassRateChart::savePng(const QString &path)
{
    return m_view->grab().save(path, "PNG");
}

} // namespace quarry::viewer
