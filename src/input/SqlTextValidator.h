#pragma once

#include <quarry/quarry_export.h>

#include <QValidator>

namespace quarry {

// Keeps out of a text box the characters that could end an SQL string
// literal or widen a LIKE on one of the dialects: backslash and square
// brackets always, the single quote in boxes whose text goes into the SQL
// as typed (pattern boxes may take it: ToLikePattern drops it).
class QUARRY_EXPORT SqlTextValidator : public QValidator
{
    Q_OBJECT

public:
    enum class Quotes { Dropped, Refused };

    explicit SqlTextValidator(Quotes quotes, QObject *parent = nullptr);

    State validate(QString &input, int &pos) const override;

private:
    Quotes m_quotes;
};

} // namespace quarry
