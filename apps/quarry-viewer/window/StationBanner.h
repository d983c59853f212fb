#pragma once

#include "StationCheck.h"

#include <QLabel>
#include <QStringList>

#include <memory>

class QThread;

namespace quarry::viewer {

// What is wrong with the station, above the viewer's rows. The station
// check runs at start and before each query, each time on a thread of its
// own; the banner shows its faults with the administrator's next step, and
// appends each fault to the error log when it is new (not found by the
// check before), so that a fault found at every click is logged once.
// Hidden while nothing is wrong.
class StationBanner : public QLabel
{
    Q_OBJECT

public:
    // logTables: the tables of the viewer's logs, which the check looks for.
    StationBanner(const QStringList &logTables, QWidget *parent = nullptr);
    // Waits for the checks still running.
    ~StationBanner() override;

    // Starts a check; the banner shows what it finds when it ends.
    void start();
    // Checks the station while the window goes on painting (the operator's
    // input waits); false when the component cannot be used for a query.
    bool usable();

private:
    using Findings = std::shared_ptr<QList<apps::Finding>>;

    // A check not started yet, which fills findings and then shows them.
    QThread *check(const Findings &findings);
    void showFindings(const QList<apps::Finding> &findings, int number);

    apps::StationCheck m_check;
    int m_started = 0; // checks started,
    int m_shown = 0;   // and the number of the one on show
    QStringList m_faults;
};

} // namespace quarry::viewer
