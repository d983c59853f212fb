#pragma once

#include "input/PatternDialog.h"

namespace quarry {

// Asks for the leading part of a cheque series number.
class QUARRY_EXPORT frmChequeSeriesNo : public PatternDialog
{
    Q_OBJECT

public:
    frmChequeSeriesNo();

protected:
    QString buildCondition(const QString &typed) const override;
};

} // namespace quarry
