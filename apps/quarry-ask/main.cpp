// quarry-ask: the CQuarry operations from the command line, for hosts in
// other languages and for scripts. See askUsage() for the syntax.

#include "AskCommand.h"
#include "CommandArguments.h"
#include "OwnerlessDialogs.h"
#include "ProgramHelp.h"
#include "QtChinese.h"

#include <quarry/CQuarry.h>
#include <quarry/QuarryError.h>

#include <QApplication>
#include <QStringList>
#include <QTextStream>
#include <QWindow>

#include <cstdio>
#include <memory>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    QTextStream out(stdout);
    QTextStream err(stderr);

    const QStringList arguments = quarry::apps::commandArguments(argc, argv);
    if (const std::optional<int> answered
        = quarry::apps::answerHelpOrVersion(arguments, quarry::askUsage()))
        return *answered;
    const quarry::AskRequest request = quarry::parseAskArguments(arguments.mid(1));
    if (!request.command) {
        err << u"quarry-ask: "_s << request.error << u"\n\n"_s << quarry::askUsage();
        return quarry::AskStatus::BadArguments;
    }
    QApplication app(argc, argv);
    quarry::apps::useChinese(app);
    const std::unique_ptr<QWindow> host(request.command->parentWindow
                                            ? QWindow::fromWinId(request.command->parentWindow)
                                            : nullptr);
    quarry::apps::OwnerlessDialogs dialogs;
    dialogs.setHostWindow(host.get());
    quarry::CQuarry quarry;
    try {
        quarry::runAskCommand(quarry, *request.command);
    } catch (const quarry::QuarryError &) {
        // Told below, from the outcome.
    }
    return quarry::reportOutcome(quarry, out, err);
}
