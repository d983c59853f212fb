#pragma once

#include <QChartView>

class QAbstractItemModel;

namespace quarry::viewer {

// The pass rate of each operator in the seal result statistics as a bar
// chart: passed * 100 / total, from the statement's opcode, total and
// passed columns.
class PassRateChart : public QChartView
{
    Q_OBJECT

public:
    explicit PassRateChart(QWidget *parent = nullptr);

    // Replaces the bars by those of the model's rows; false when the model
    // lacks one of the columns.
    bool showRates(const QAbstractItemModel &model);
    // The bars shown: operator and rate in percent.
    QList<std::pair<QString, double>> rates() const { return m_rates; }
    bool savePng(const QString &path);

private:
    QList<std::pair<QString, double>> m_rates;
};

} // namespace quarry::viewer
