#include "input/DateRangeBoxes.h"

#include "input/MaskEdBox.h"
#include "input/OperatorMessage.h"

#include <QFormLayout>

using namespace Qt::StringLiterals;

namespace quarry {

DateRangeBoxes::DateRangeBoxes(QWidget *dialog, QFormLayout *form, const QString &startName,
                               const QString &endName)
    : m_dialog(dialog)
    , m_start(new MaskEdBox(MaskEdBox::Kind::Date, dialog))
    , m_end(new MaskEdBox(MaskEdBox::Kind::Date, dialog))
{
    m_start->setObjectName(startName);
    m_end->setObjectName(endName);
    form->addRow(u"起始日期:"_s, m_start);
    form->addRow(u"截止日期:"_s, m_end);
}

bool DateRangeBoxes::isBlank() const
{
    return m_start->isBlank() && m_end->isBlank();
}

std::optional<DateRange> DateRangeBoxes::check(const std::function<void()> &beforeEnd) const
{
    if (beforeEnd) {
        const DateRange start
            = checkDateRange(m_start->maskedText(), MaskEdBox::EmptyDate.toString());
        if (start.fault == DateRange::Fault::Start) {
            tell(start.fault);
            return std::nullopt;
        }
        beforeEnd();
    }
    const DateRange range = checkDateRange(m_start->maskedText(), m_end->maskedText());
    if (range.fault == DateRange::Fault::None)
        return range;
    tell(range.fault);
    return std::nullopt;
}

void DateRangeBoxes::tell(DateRange::Fault fault) const
{
    switch (fault) {
    case DateRange::Fault::None:
        break;
    case DateRange::Fault::Start:
        warnOperator(m_dialog, u"起始日期格式错误，请重新输入！"_s);
        m_start->setFocus();
        break;
    case DateRange::Fault::End:
        warnOperator(m_dialog, u"截止日期格式错误，请重新输入！"_s);
        m_end->setFocus();
        break;
    case DateRange::Fault::EndBeforeStart:
        warnOperator(m_dialog, u"截止日期不能小于起始日期，请重新输入！"_s);
        m_end->setFocus();
        break;
    }
}

} // namespace quarry
