#pragma once

#include <QWidget>

class QChartView;

namespace quarry::viewer {

// A ruler from 0 % to 100 % under the span of a chart's plot area, with its
// labels above the line: the value axis of the pass-rate bars, kept in
// view while the bars scroll under it.
class RateScale : public QWidget
{
    Q_OBJECT

public:
    // Follows the plot area of bars.
    RateScale(QChartView *bars, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QChartView *m_bars;
};

} // namespace quarry::viewer
