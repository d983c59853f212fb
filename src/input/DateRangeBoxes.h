#pragma once

#include "input/Conditions.h"
#include "input/MaskEdBox.h"

#include <quarry/quarry_export.h>

#include <QString>

#include <functional>
#include <optional>

class QFormLayout;
class QWidget;

namespace quarry {

// The start and end date boxes of a condition dialog and the check that
// every dialog makes of them at OK.
class QUARRY_EXPORT DateRangeBoxes
{
public:
    // Adds the two boxes, labelled 起始日期: and 截止日期:, as rows of form.
    DateRangeBoxes(QWidget *dialog, QFormLayout *form,
                   const QString &startName = QStringLiteral("MaskBoxKs"),
                   const QString &endName = QStringLiteral("MaskBoxJs"));

    MaskEdBox *start() const { return m_start; }
    MaskEdBox *end() const { return m_end; }
    // Neither box has anything typed in it.
    bool isBlank() const;

    // The range, both dates yyyy-mm-dd. When a date is wrong or the end is
    // before the start, the operator is told so, the focus goes to the box
    // concerned and there is no range. beforeEnd runs once the start has
    // passed, before the end is read.
    std::optional<DateRange> check(const std::function<void()> &beforeEnd = {}) const;

private:
    void tell(DateRange::Fault fault) const;

    QWidget *m_dialog;
    MaskEdBox *m_start;
    MaskEdBox *m_end;
};

} // namespace quarry
