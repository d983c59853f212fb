#include "StationBanner.h"

#include "support/ErrorLog.h"

#include <quarry/QuarryError.h>

#include <QEventLoop>
#include <QGuiApplication>
#include <QThread>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

StationBanner::StationBanner(const QStringList &logTables, QWidget *parent)
    : QLabel(parent)
    , m_check(QString(), logTables)
{
    setObjectName(u"stationBanner"_s);
    setWordWrap(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    setStyleSheet(u"QLabel { color: #a40000; background: #fde8e8; padding: 6px; }"_s);
    hide();
}

StationBanner::~StationBanner()
{
    for (QThread *thread : findChildren<QThread *>())
        thread->wait();
}

QThread *StationBanner::check(const Findings &findings)
{
    QThread *thread = QThread::create([check = m_check, findings] { *findings = check.run(); });
    thread->setParent(this);
    connect(thread, &QThread::finished, this,
            [this, findings, number = ++m_started] { showFindings(*findings, number); });
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    return thread;
}

void StationBanner::start()
{
    check(std::make_shared<QList<apps::Finding>>())->start();
}

bool StationBanner::usable()
{
    const auto findings = std::make_shared<QList<apps::Finding>>();
    QThread *thread = check(findings);
    QEventLoop loop;
    connect(thread, &QThread::finished, &loop, &QEventLoop::quit);
    QGuiApplication::setOverrideCursor(Qt::BusyCursor);
    thread->start();
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    QGuiApplication::restoreOverrideCursor();
    return !apps::StationCheck::blocksQuery(*findings);
}

// A check that ends after a later one has been shown is out of date.
void StationBanner::showFindings(const QList<apps::Finding> &findings, int number)
{
    if (number < m_shown)
        return;
    m_shown = number;
    QStringList faults;
    QStringList lines;
    bool logFolder = false; // the log's folder is at fault: the log cannot say more
    for (const apps::Finding &finding : findings) {
        if (finding.level != apps::Finding::Level::Fault)
            continue;
        faults.append(finding.text);
        lines.append(u"• "_s + finding.sentence());
        logFolder = logFolder || finding.subject == u"[ERROR] ERRORFILE"_s;
    }
    for (const QString &fault : std::as_const(faults)) {
        if (m_faults.contains(fault))
            continue;
        try {
            writeErrorLog(u"StationCheck"_s, QuarryError::DataError, fault);
        } catch (const QuarryError &error) {
            if (!logFolder)
                lines.append(u"（未能写入错误日志：%1）"_s.arg(error.description()));
            break;
        }
    }
    m_faults = faults;
    const bool blocked = apps::StationCheck::blocksQuery(findings);
    setText(
        (blocked ? u"本站点现在不能查询，请管理员处理："_s : u"本站点有以下问题，请管理员处理："_s)
        + u'\n' + lines.join(u'\n'));
    setVisible(!faults.isEmpty());
}

} // namespace quarry::viewer
