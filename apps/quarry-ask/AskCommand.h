#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class QTextStream;

#include <optional>

namespace quarry {

class CQuarry;

// One CQuarry operation as quarry-ask's command line names it.
struct AskCommand
{
    enum class Operation { Clerk, Yjk, Acc, Branch, Date, Complex, ComplexEx };

    Operation operation = Operation::Date;
    qint32 length = 0; // clerk, yjk, acc, branch
    QString logType;   // complex, complex-ex
    QList<qint16> idsA, idsB;
    QStringList namesA, namesB;
    qint32 clerkLength = 0, accLength = 0, chequeLength = 0;
    bool showWdh = false, showYjk = false, showOpCode = false;
    quint64 parentWindow = 0; // X11 window id of the host, 0 for none
};

// What the command line asks for: a command, or an error message for a
// command line that makes no sense.
struct AskRequest
{
    std::optional<AskCommand> command;
    QString error;
};

// The arguments after the program name.
AskRequest parseAskArguments(const QStringList &arguments);
QString askUsage();
// Shows the command's dialog; the condition is then in quarry.SQLStr().
void runAskCommand(CQuarry &quarry, const AskCommand &command);

// The exit statuses of quarry-ask (askUsage() says them to its users).
enum AskStatus { Accepted = 0, NoCondition = 1, BadArguments = 2, Failed = 3 };

// Tells how the last call of quarry ended: the condition on out when the
// operator accepted it, the fault on err when it failed; hands back the
// exit status.
int reportOutcome(const CQuarry &quarry, QTextStream &out, QTextStream &err);

} // namespace quarry
