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

DialogAnswer answerTo(const ComponentCall &call)
{
    CQuarry quarry;
    try {
        call.invoke(quarry);
    } catch (const QuarryError &) {
        // Kept as the outcome's fault.
    }
    DialogAnswer answer;
    answer.condition = quarry.SQLStr();
    switch (quarry.lastOutcome()) {
    case CQuarry::Outcome::Accepted:
        answer.outcome = DialogAnswer::Outcome::Condition;
        break;
    case CQuarry::Outcome::Cancelled:
        answer.outcome = DialogAnswer::Outcome::Cancelled;
        break;
    case CQuarry::Outcome::Failed: {
        const QuarryError error = quarry.lastError().value();
        return DialogAnswer::failed(error.number(), error.source(), error.description());
    }
    case CQuarry::Outcome::NotCalled:
    case CQuarry::Outcome::NothingAsked:
        answer = {};
        break;
    }
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
    output.write(answerTo(call.value()).toJson());
    return 0;
}

} // namespace quarry::service
