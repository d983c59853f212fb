#include "input/MaskEdBox.h"

#include "input/PublicFunction.h"

using namespace Qt::StringLiterals;

namespace quarry {

MaskEdBox::MaskEdBox(Kind kind, QWidget *parent)
    : QLineEdit(parent)
    , m_kind(kind)
{
    setInputMask(kind == Kind::Date ? u"9999-99-99; "_s : u"99:99:99; "_s);
    // Room for the whole mask and a little more, at any font size.
    setMinimumWidth(fontMetrics().horizontalAdvance(u"0000-00-00000"_s));
}

QString MaskEdBox::maskedText() const
{
    return displayText();
}

bool MaskEdBox::isBlank() const
{
    return maskedText() == (m_kind == Kind::Date ? EmptyDate : EmptyTime);
}

void MaskEdBox::focusOutEvent(QFocusEvent *event)
{
    if (m_kind == Kind::Date && !m_keepsText) {
        if (const std::optional<QString> date = maskedDate(maskedText()))
            setText(*date);
    }
    QLineEdit::focusOutEvent(event);
}

} // namespace quarry
