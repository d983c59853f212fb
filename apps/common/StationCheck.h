#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace quarry::apps {

// One thing the station check found, in the administrator's words.
struct Finding
{
    enum class Level { Ok, Note, Fault };

    Level level = Level::Ok;
    // The component cannot be used for a query until this is put right: it
    // would show its own message boxes, or could not read anything.
    bool blocksQuery = false;
    // What it is about: "seal.ini", "[BANKPARAM] PRINTLINES", a folder, a
    // database.
    QString subject;
    QString text;
    // What the administrator does about it; "" when nothing is to be done.
    QString nextStep;

    // The text and the next step.
    QString sentence() const;
    // The finding on one line: its level and sentence().
    QString line() const;
};

// Reads a station as the component does and says at once everything that
// is wrong with it: where seal.ini is, each value the component cannot
// take and what it then leaves unread, the bank profile and the database
// type, each database the station uses (opened with the station's login)
// with the tables read from it, the error log's folder and the other
// folders seal.ini names. Changes no file and writes no log (a probe file,
// removed at once, tells whether the log's folder can be written). Each run
// reads the station anew, on the thread it is called on.
class StationCheck
{
public:
    // The station of the seal.ini at iniPath, or of the one the component
    // finds when it is empty. logTables: the seal database's tables that the
    // viewer's logs read, besides the component's own.
    StationCheck(const QString &iniPath, const QStringList &logTables);

    QList<Finding> run() const;

    static bool hasFault(const QList<Finding> &findings);
    static bool blocksQuery(const QList<Finding> &findings);

private:
    QString m_iniPath;
    QStringList m_logTables;
};

} // namespace quarry::apps
