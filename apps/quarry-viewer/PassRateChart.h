#pragma once

#include <QScrollArea>

class QAbstractItemModel;
class QChartView;

namespace quarry::viewer {

// The pass rate of each operator in the seal result statistics as a bar
// chart: passed * 100 / total, from the statement's opcode, total and
// passed columns. One horizontal bar per operator, each on a line of its
// own that keeps its name readable: with many operators the chart grows
// taller than the pane and scrolls.
class PassRateChart : public QScrollArea
{
    Q_OBJECT

public:
    explicit PassRateChart(QWidget *parent = nullptr);

    // Replaces the bars by those of the model's rows; false when the model
    // lacks one of the columns.
    bool showRates(const QAbstractItemModel &model);
    // The bars shown: operator and rate in percent.
    QList<std::pair<QString, double>> rates() const { return m_rates; }
    // The whole chart, scrolled out of sight or not.
    bool savePng(const QString &path);

private:
    QChartView *m_view;
    QList<std::pair<QString, double>> m_rates;
};

} // namespace quarry::viewer
