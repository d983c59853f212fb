#pragma once

#include "LogEntry.h"

#include <QList>
#include <QString>
#include <QStringList>

class QSettings;

namespace quarry::viewer {

// The logs of a station as the viewer offers them: an INI file whose
// [Catalogue] Logs key lists the log types in order, each with a section of
// its own:
//
//   [YYRZ]
//   Title=验印日志            what the list shows
//   Table=YYLOG              the log table (not for Result=select)
//   Key=LOGID                the column that orders the rows, one value
//                            per row (an indexed one reads fastest)
//   Call=complex             or complex-ex (showComplexEx)
//   Result=where             or select: the dialog hands back a whole SELECT
//   ListA="1=自动验印,2=人工验印"   first code list written out, or
//   ListASql=SELECT code, text FROM ...   read from the seal database
//   ListAColumn=OPTYPE       the column holding the first list's codes,
//                            shown with their descriptions
//   ListB=..., ListBSql=..., ListBColumn=...   the second code list likewise
//   Columns="LOGID=序号,ACCNO=账号"   column titles
//   Formats="money=0.00,wdh=0000"   how numbers are written: zeros for the
//                            digits always before the point, the decimals
//                            after it
//   Hide=id                  columns left out of the view, kept in exports
//   ClerkLen=4, AccLen=17, ChequeLen=8   text-box lengths, 0 for none
//   ShowWDH=true, ShowYJK=true, ShowOpCode=false
//
// An entry with a fault is left out and its fault reported; so is a log
// type listed without a section.
class LogCatalogue
{
public:
    static LogCatalogue read(const QString &path);

    const QList<LogEntry> &entries() const { return m_entries; }
    // The log tables of the entries.
    QStringList tables() const;
    // One line per fault: "<file> [<log type>] <key>: <what is wrong>".
    const QStringList &problems() const { return m_problems; }

private:
    void readEntry(QSettings &settings, const QString &logType, const QString &where);

    QList<LogEntry> m_entries;
    QStringList m_problems;
};

} // namespace quarry::viewer
