#include "AskCommand.h"

#include "CodeListText.h"

#include <quarry/CQuarry.h>
#include <quarry/QuarryError.h>

#include <QCommandLineParser>
#include <QHash>
#include <QTextStream>

using namespace Qt::StringLiterals;

namespace quarry {

namespace {

using apps::parseCodeList;

using Operation = AskCommand::Operation;

struct OperationName
{
    Operation operation;
    bool takesLength;
    bool takesLogType;
};

const QHash<QString, OperationName> &operations()
{
    static const QHash<QString, OperationName> byName{
        {u"clerk"_s, {Operation::Clerk, true, false}},
        {u"yjk"_s, {Operation::Yjk, true, false}},
        {u"acc"_s, {Operation::Acc, true, false}},
        {u"branch"_s, {Operation::Branch, true, false}},
        {u"date"_s, {Operation::Date, false, false}},
        {u"complex"_s, {Operation::Complex, false, true}},
        {u"complex-ex"_s, {Operation::ComplexEx, false, true}},
    };
    return byName;
}

std::optional<qint32> parseLength(const QString &text)
{
    bool ok = false;
    const qint32 length = text.toInt(&ok);
    if (!ok || length < 0)
        return std::nullopt;
    return length;
}

// A window id as a shell gets it: decimal (xdotool, xwininfo -int) or hex
// with 0x (xwininfo, xprop). A leading 0 is no octal here.
std::optional<quint64> parseWindowId(const QString &text)
{
    const bool hex = text.startsWith(u"0x"_s, Qt::CaseInsensitive);
    bool ok = false;
    const quint64 window = (hex ? text.mid(2) : text).toULongLong(&ok, hex ? 16 : 10);
    if (!ok || window > 0xffffffffU || text.contains(u'+') || text.contains(u'-'))
        return std::nullopt;
    return window;
}

AskRequest failure(const QString &message)
{
    AskRequest request;
    request.error = message;
    return request;
}

} // namespace

AskRequest parseAskArguments(const QStringList &arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption help({u"h"_s, u"help"_s}, {});
    const QCommandLineOption listA(u"list-a"_s, {}, u"list"_s);
    const QCommandLineOption listB(u"list-b"_s, {}, u"list"_s);
    const QCommandLineOption clerkLen(u"clerk-len"_s, {}, u"n"_s);
    const QCommandLineOption accLen(u"acc-len"_s, {}, u"n"_s);
    const QCommandLineOption chequeLen(u"cheque-len"_s, {}, u"n"_s);
    const QCommandLineOption showWdh(u"show-wdh"_s, {});
    const QCommandLineOption showYjk(u"show-yjk"_s, {});
    const QCommandLineOption showOpCode(u"show-opcode"_s, {});
    const QCommandLineOption parent(u"parent"_s, {}, u"winid"_s);
    parser.addOptions(
        {help, listA, listB, clerkLen, accLen, chequeLen, showWdh, showYjk, showOpCode, parent});
    if (!parser.parse(QStringList{u"quarry-ask"_s} + arguments))
        return failure(parser.errorText());
    if (parser.isSet(help)) {
        AskRequest request;
        request.help = true;
        return request;
    }

    const QStringList words = parser.positionalArguments();
    if (words.isEmpty())
        return failure(u"no operation given"_s);
    const auto found = operations().constFind(words.first());
    if (found == operations().cend())
        return failure(u"unknown operation: "_s + words.first());
    const OperationName &name = found.value();
    const qsizetype expectedWords = (name.takesLength || name.takesLogType) ? 2 : 1;
    if (words.size() != expectedWords)
        return failure(words.first() + u": wrong number of arguments"_s);
    const bool complexOptions = parser.isSet(listA) || parser.isSet(listB) || parser.isSet(clerkLen)
        || parser.isSet(accLen) || parser.isSet(chequeLen) || parser.isSet(showWdh)
        || parser.isSet(showYjk) || parser.isSet(showOpCode);
    if (complexOptions && name.operation != Operation::Complex)
        return failure(u"options are for the complex operation only"_s);

    AskCommand command;
    command.operation = name.operation;
    if (name.takesLength) {
        const std::optional<qint32> length = parseLength(words.at(1));
        if (!length)
            return failure(u"not a length: "_s + words.at(1));
        command.length = *length;
    }
    if (name.takesLogType)
        command.logType = words.at(1);

    const std::pair<const QCommandLineOption *, qint32 *> lengths[] = {
        {&clerkLen, &command.clerkLength},
        {&accLen, &command.accLength},
        {&chequeLen, &command.chequeLength},
    };
    for (const auto &[option, target] : lengths) {
        if (!parser.isSet(*option))
            continue;
        const std::optional<qint32> length = parseLength(parser.value(*option));
        if (!length)
            return failure(u"not a length: --"_s + option->names().first() + u" "_s
                           + parser.value(*option));
        *target = *length;
    }
    if (!parseCodeList(parser.value(listA), command.idsA, command.namesA))
        return failure(u"not a code list (CODE=TEXT,...): "_s + parser.value(listA));
    if (!parseCodeList(parser.value(listB), command.idsB, command.namesB))
        return failure(u"not a code list (CODE=TEXT,...): "_s + parser.value(listB));
    command.showWdh = parser.isSet(showWdh);
    command.showYjk = parser.isSet(showYjk);
    command.showOpCode = parser.isSet(showOpCode);
    if (parser.isSet(parent)) {
        const std::optional<quint64> window = parseWindowId(parser.value(parent));
        command.parentWindow = window.value_or(0);
        if (command.parentWindow == 0)
            return failure(u"not a window id: --parent "_s + parser.value(parent));
    }

    AskRequest request;
    request.command = command;
    return request;
}

QString askUsage()
{
    return uR"(Usage:
  quarry-ask clerk LEN          teller code pattern
  quarry-ask yjk LEN            seal-card number pattern
  quarry-ask acc LEN            account number pattern
  quarry-ask branch LEN         branch number pattern
  quarry-ask date               operation-date range
  quarry-ask complex LOGTYPE [options]
                                the query dialog of a log (YWRZ, YYRZ, ...)
  quarry-ask complex-ex LOGTYPE the seal-request log (YJREQLOG)

LEN is the text box's length limit, 0 for none.

Options of every operation:
  --parent WINID    the host's X11 window (decimal or 0x hex): the dialog
                    opens over it and stays above it

Options of complex:
  --list-a LIST     first code list, e.g. "1=自动验印,2=人工验印"
  --list-b LIST     second code list, same form
  --clerk-len N     length limit of teller code boxes
  --acc-len N       length limit of account number boxes
  --cheque-len N    length limit of cheque number boxes
  --show-wdh        offer the branch number field
  --show-yjk        offer the seal-card number field
  --show-opcode     offer the operator code field

The dialog is shown; on OK its condition (a WHERE clause) is printed on
standard output in UTF-8.

Exit status: 0 a condition was printed; 1 no condition (cancelled, or a log
type with nothing to ask); 2 bad arguments; 3 the component reported an
error (on standard error).
)"_s;
}

void runAskCommand(CQuarry &quarry, const AskCommand &command)
{
    switch (command.operation) {
    case Operation::Clerk:
        quarry.showClerk(command.length);
        break;
    case Operation::Yjk:
        quarry.ShowYJK(command.length);
        break;
    case Operation::Acc:
        quarry.showAcc(command.length);
        break;
    case Operation::Branch:
        quarry.showBranch(command.length);
        break;
    case Operation::Date:
        quarry.showDate();
        break;
    case Operation::Complex:
        quarry.showComplex(command.logType, command.idsA, command.namesA, command.idsB,
                           command.namesB, qint32(command.idsA.size()), qint32(command.idsB.size()),
                           command.clerkLength, command.accLength, command.chequeLength,
                           command.showWdh, command.showYjk, command.showOpCode);
        break;
    case Operation::ComplexEx:
        quarry.showComplexEx(command.logType);
        break;
    }
}

int reportOutcome(const CQuarry &quarry, QTextStream &out, QTextStream &err)
{
    switch (quarry.lastOutcome()) {
    case CQuarry::Outcome::Accepted:
        out << quarry.SQLStr() << u"\n"_s;
        return AskStatus::Accepted;
    case CQuarry::Outcome::Failed: {
        const QuarryError error = quarry.lastError().value();
        err << u"quarry-ask: "_s << error.source() << u": "_s << error.description() << u" ("_s
            << error.number() << u")\n"_s;
        return AskStatus::Failed;
    }
    case CQuarry::Outcome::NotCalled:
    case CQuarry::Outcome::Cancelled:
    case CQuarry::Outcome::NothingAsked:
        break;
    }
    return AskStatus::NoCondition;
}

} // namespace quarry
