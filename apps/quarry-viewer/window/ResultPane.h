#pragma once

#include <QWidget>

class QHBoxLayout;
class QLabel;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

namespace quarry::viewer {

class ExportActions;
class LabelledRows;
class LogTable;
class LogRowsModel;
class PassRateChart;
class StationBanner;
class StationDatabase;
struct LogEntry;

// The window's side of the rows: the station's banner, a fault and a notice
// above them, a line that names the rows on view beside the busy bar, the
// stop button and the buttons that copy the statement and export the rows,
// the statement that ran, the table (whose menu copies the selected cells)
// and the pass-rate chart of the statistics.
class ResultPane : public QWidget
{
    Q_OBJECT

public:
    // rows: the labelled rows of model, which the table shows.
    ResultPane(StationBanner *banner, const StationDatabase &database, LogRowsModel &model,
               LabelledRows *rows, QWidget *parent);

    ExportActions &exports() const { return *m_exports; }

    // Says text above the rows and appends it to the station's error log.
    void fault(const QString &text);
    void showNotice(const QString &text);
    // Hides the fault and the notice.
    void clearMessages();
    QString result() const;
    void setResult(const QString &text);
    void setStatement(const QString &select);
    // The busy bar and the stop button, while the model reads.
    void showBusy();
    // The first row and the first column in view.
    void scrollToTop();
    // The columns that entry hides hidden, the others as wide as their
    // contents, in the log's own order.
    void showColumns(const LogEntry &entry);
    // The pass rates of the rows in the chart, which shows them until
    // hideChart().
    void showChart();
    // Reads the rates anew if the chart is shown.
    void updateChart();
    void hideChart();

private:
    void addButtons(QHBoxLayout *bar);
    void addCopyActions();

    LogRowsModel &m_model;
    LabelledRows *m_rows;
    QLabel *m_errorLabel;
    QLabel *m_noticeLabel;
    QLabel *m_resultLabel = nullptr;
    QPlainTextEdit *m_sqlText = nullptr;
    LogTable *m_table = nullptr;
    QProgressBar *m_progress = nullptr;
    QPushButton *m_cancelButton = nullptr;
    QPushButton *m_exportPngButton = nullptr;
    PassRateChart *m_chart = nullptr;
    ExportActions *m_exports = nullptr;
};

} // namespace quarry::viewer
