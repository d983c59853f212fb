#include "PassRateChart.h"

#include <QAbstractItemModel>
#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
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
    : QChartView(parent)
{
    setRenderHint(QPainter::Antialiasing);
    chart()->setTitle(u"各操作员验印通过率"_s);
    chart()->legend()->hide();
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

    auto *bars = new QBarSet(u"通过率 (%)"_s);
    QStringList operators;
    for (const auto &[name, rate] : std::as_const(m_rates)) {
        operators.append(name);
        bars->append(rate);
    }
    auto *series = new QBarSeries;
    series->append(bars);
    auto *axisX = new QBarCategoryAxis;
    axisX->append(operators);
    axisX->setLabelsAngle(operators.size() > 12 ? -90 : 0);
    auto *axisY = new QValueAxis;
    axisY->setRange(0, 100);
    axisY->setLabelFormat(u"%d%%"_s);
    axisY->setTitleText(u"通过率"_s);

    QChart *c = chart();
    c->removeAllSeries();
    const QList<QAbstractAxis *> axes = c->axes();
    for (QAbstractAxis *axis : axes) {
        c->removeAxis(axis);
        delete axis;
    }
    c->addSeries(series);
    c->addAxis(axisX, Qt::AlignBottom);
    c->addAxis(axisY, Qt::AlignLeft);
    series->attachAxis(axisX);
    series->attachAxis(axisY);
    return true;
}

bool PassRateChart::savePng(const QString &path)
{
    return grab().save(path, "PNG");
}

} // namespace quarry::viewer
