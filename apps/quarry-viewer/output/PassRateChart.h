#pragma once

#include "output/PassRates.h"

#include <QWidget>

class QAbstractItemModel;
class QChartView;
class QLabel;
class QScrollArea;

namespace quarry::viewer {

// The pass rate of each operator in the seal result statistics as a bar
// chart: passed * 100 / total, from the statement's opcode, total and
// passed columns. One horizontal bar per operator, each on a line of its
// own that keeps its name readable: with many operators the bars grow
// taller than the pane and scroll, under a head that stays in view with
// the title and the value axis, lined up with the bars.
class PassRateChart : public QWidget
{
    Q_OBJECT

public:
    explicit PassRateChart(QWidget *parent = nullptr);

    // Replaces the bars by those of the model's rows (passRates); false when
    // the model lacks one of the columns.
    bool showRates(const QAbstractItemModel &model);
    // The bars shown: operator and rate in percent.
    PassRates rates() const { return m_rates; }
    // The head and every bar, scrolled out of sight or not.
    bool savePng(const QString &path);

private:
    QWidget *m_head;
    QScrollArea *m_scroll;
    QChartView *m_bars;
    PassRates m_rates;
};

} // namespace quarry::viewer
