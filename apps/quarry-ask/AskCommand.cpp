#include "AskCommand.h"

#include "CodeListText.h"
#include "ProgramHelp.h"

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

// What is wrong with a command line the parser refused, in the operators'
// language. A negative number is taken for options ("-1": "-" and "1"), so
// it is named as the length it was meant to be.
QString parseError(const QCommandLineParser &parser, const QStringList &arguments)
{
    for (const QString &argument : arguments) {
        bool number = false;
        argument.toLongLong(&number);
        if (number && argument.startsWith(u'-'))
            return u"长度应是 0 或正整数，不是 "_s + argument;
    }
    if (!parser.unknownOptionNames().isEmpty())
        return u"未知的选项："_s + parser.unknownOptionNames().join(u", "_s);
    // Qt names the option between quotes: "Missing value after '--parent'."
    const QString option = parser.errorText().section(u'\'', 1, 1);
    return parser.errorText().startsWith(u"Missing"_s) ? u"选项 %1 后面缺少它的值"_s.arg(option)
                                                       : u"选项 %1 不带值"_s.arg(option);
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
        {listA, listB, clerkLen, accLen, chequeLen, showWdh, showYjk, showOpCode, parent});
    if (!parser.parse(QStringList{u"quarry-ask"_s} + arguments))
        return failure(parseError(parser, arguments));

    const QStringList words = parser.positionalArguments();
    if (words.isEmpty())
        return failure(u"没有指定操作"_s);
    const auto found = operations().constFind(words.first());
    if (found == operations().cend())
        return failure(u"未知的操作："_s + words.first());
    const OperationName &name = found.value();
    const qsizetype expectedWords = (name.takesLength || name.takesLogType) ? 2 : 1;
    if (words.size() != expectedWords)
        return failure(words.first() + u"：参数个数不对"_s);
    const bool complexOptions = parser.isSet(listA) || parser.isSet(listB) || parser.isSet(clerkLen)
        || parser.isSet(accLen) || parser.isSet(chequeLen) || parser.isSet(showWdh)
        || parser.isSet(showYjk) || parser.isSet(showOpCode);
    if (complexOptions && name.operation != Operation::Complex)
        return failure(u"这些选项只用于 complex 操作"_s);

    AskCommand command;
    command.operation = name.operation;
    if (name.takesLength) {
        const std::optional<qint32> length = parseLength(words.at(1));
        if (!length)
            return failure(u"长度应是 0 或正整数，不是 "_s + words.at(1));
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
            return failure(u"--%1 的长度应是 0 或正整数，不是 %2"_s.arg(option->names().first(),
                                                                        parser.value(*option)));
        *target = *length;
    }
    if (!parseCodeList(parser.value(listA), command.idsA, command.namesA))
        return failure(u"--list-a 不是代码表（代码=说明,...）："_s + parser.value(listA));
    if (!parseCodeList(parser.value(listB), command.idsB, command.namesB))
        return failure(u"--list-b 不是代码表（代码=说明,...）："_s + parser.value(listB));
    command.showWdh = parser.isSet(showWdh);
    command.showYjk = parser.isSet(showYjk);
    command.showOpCode = parser.isSet(showOpCode);
    if (parser.isSet(parent)) {
        const std::optional<quint64> window = parseWindowId(parser.value(parent));
        command.parentWindow = window.value_or(0);
        if (command.parentWindow == 0)
            return failure(u"--parent 不是窗口号："_s + parser.value(parent));
    }

    AskRequest request;
    request.command = command;
    return request;
}

QString askUsage()
{
    return uR"(用法：
  quarry-ask clerk 长度           行员号特征
  quarry-ask yjk 长度             印鉴卡号特征
  quarry-ask acc 长度             帐号特征
  quarry-ask branch 长度          网点号特征
  quarry-ask date                 操作日期区间
  quarry-ask complex 日志类型 [选项]
                                  某种日志的查询对话框（YWRZ、YYRZ 等，区分大小写）
  quarry-ask complex-ex 日志类型  印鉴请求日志（YJREQLOG，不区分大小写）
显示组件的一个查询条件对话框；操作员按“确定”后，把条件（一个 WHERE 子句，
统计为整个 SELECT）以 UTF-8 写到标准输出。长度是文本框的最大长度，0 为不限。

选项（所有操作）：
  --parent 窗口号    宿主的 X11 窗口：十进制（如 xdotool getactivewindow 所给）
                     或 0x 开头的十六进制（如 xwininfo 所给）；对话框显示在它上面
)"_s + apps::standardOptionLines()
        + uR"(
选项（complex）：
  --list-a 代码表    第一个代码表，如 "1=自动验印,2=人工验印"
  --list-b 代码表    第二个代码表，格式相同
  --clerk-len 长度   行员号文本框的最大长度
  --acc-len 长度     帐号文本框的最大长度
  --cheque-len 长度  支票号文本框的最大长度
  --show-wdh         提供网点号
  --show-yjk         提供印鉴卡号
  --show-opcode      提供操作员号

退出状态：
  0  操作员确定，条件在标准输出上
  1  没有条件：操作员取消，或该日志类型无需输入（标准输出为空）
  2  参数错误（说明在标准错误上）
  3  调用失败：组件的错误，或以“系统提示”框告知的配置故障（站点配置、
     LOCAL.db、数据库服务器），来源、说明和错误号在标准错误上
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
