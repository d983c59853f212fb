#include "RequestDialog.h"

#include "ComponentCall.h"
#include "DialogAnswer.h"
#include "OwnerlessDialogs.h"

#include <quarry/CQuarry.h>
#include <quarry/QuarryError.h>

#include <QFile>
#include <QJsonDocument>
#include <QTextStream>
#include <QWindow>

#include <cstdio>
#include <memory>

using namespace Qt::StringLiterals;

namespace quarry::service {

namespace {

DialogAnswer answerTo(const ComponentCall &call, const apps::OwnerlessDialogs &dialogs)
{
    DialogAnswer answer;
    try {
        CQuarry quarry;
        call.invoke(quarry);
        answer.condition = quarry.SQLStr();
    } catch (const QuarryError &error) {
        return DialogAnswer::failed(error.number(), error.source(), error.description());
    }
    // A fresh CQuarry: its SQLStr is empty unless this dialog gave a condition.
    if (!answer.condition.isEmpty())
        answer.outcome = DialogAnswer::Outcome::Condition;
    else if (dialogs.shownCount() > 0)
        answer.outcome = DialogAnswer::Outcome::Cancelled;
    return answer;
}

} // namespace

int runRequestDialog()
{
    QFile input;
    QFile output;
    if (!input.open(stdin, QIODevice::ReadOnly) || !output.open(stdout, QIODevice::WriteOnly))
        return 2;
    QJsonParseError parseError;
    const QJsonObject request = QJsonDocument::fromJson(input.readAll(), &parseError).object();
    QString error = parseError.errorString();
    const std::optional<ComponentCall> call = parseError.error == QJsonParseError::NoError
        ? ComponentCall::fromJson(request, &error)
        : std::nullopt;
    if (!call) {
        QTextStream(stderr) << u"quarry-service: the request of a dialog process makes no sense: "_s
                            << error << u'\n';
        return 2;
    }

    const auto parent = WId(request["parent_window"_L1].toInteger());
    const std::unique_ptr<QWindow> host(parent ? QWindow::fromWinId(parent) : nullptr);
    apps::OwnerlessDialogs dialogs;
    dialogs.setHostWindow(host.get());
    output.write(answerTo(call.value(), dialogs).toJson());
    return 0;
}

} // namespace quarry::service
