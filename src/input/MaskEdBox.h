#pragma once

#include <quarry/quarry_export.h>

#include <QLineEdit>
#include <QStringView>

namespace quarry {

// A date or time box in the manner of the masked edit control the operators
// know: fixed separators, a blank in every position not typed yet, and a
// text that keeps those blanks ("2009-1 -5 " for a half-typed date). Such a
// text is still a date, so leaving a date box rewrites it as yyyy-mm-dd
// ("2009-01-05") unless told to keep its text; a box that holds no date
// keeps what was typed.
class QUARRY_EXPORT MaskEdBox : public QLineEdit
{
    Q_OBJECT

public:
    enum class Kind { Date, Time };

    static constexpr QStringView EmptyDate = u"    -  -  ";
    static constexpr QStringView EmptyTime = u"  :  :  ";

    explicit MaskEdBox(Kind kind, QWidget *parent = nullptr);

    // The text with its blanks in place. QLineEdit::text() drops them.
    QString maskedText() const;
    // Nothing typed: the text is the empty mask.
    bool isBlank() const;
    // Leaving the box leaves its text as typed.
    void keepTextOnLeave() { m_keepsText = true; }

protected:
    void focusOutEvent(QFocusEvent *event) override;

private:
    Kind m_kind;
    bool m_keepsText = false;
};

} // namespace quarry
