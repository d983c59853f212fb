#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantMap>

#include <optional>

namespace quarry::service {

// What a request's dialog process answers on its standard output: one JSON
// object, and nothing else,
//   {"outcome": "condition", "condition": TEXT}   TEXT not empty
//   {"outcome": "cancelled"}                      a dialog was shown
//   {"outcome": "cancelled", "stored_condition": TEXT}
//                                                 and handed back TEXT all the same
//   {"outcome": "nothing"}                        the log type asks for nothing
//   {"outcome": "failed", "error_number": N, "error_source": TEXT,
//    "error_description": TEXT}
// with exactly these members.
struct DialogAnswer
{
    enum class Outcome { Condition, Cancelled, Nothing, Failed };

    Outcome outcome = Outcome::Nothing;
    QString condition; // accepted, or stored by a dialog that was cancelled
    qint32 errorNumber = 0;
    QString errorSource;
    QString errorDescription;

    static DialogAnswer failed(qint32 number, const QString &source, const QString &description);

    QByteArray toJson() const;
    // nullopt for anything that is not exactly one of the forms above.
    static std::optional<DialogAnswer> fromJson(const QByteArray &text);

    // The Response signal's arguments.
    uint response() const;
    QVariantMap results() const;
};

} // namespace quarry::service
