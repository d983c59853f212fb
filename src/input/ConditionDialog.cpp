#include "input/ConditionDialog.h"

#include <quarry/QuarryError.h>

#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace quarry {

ConditionDialog::ConditionDialog(const QString &name, const QString &title)
{
    setObjectName(name);
    setWindowTitle(title);
}

void ConditionDialog::applyMaxLength(QLineEdit &box, qint32 length)
{
    if (length < 0) {
        throw QuarryError(QuarryError::DataError, box.objectName() + u".MaxLength"_s,
                          u"文本框 %1 的最大长度不能为负数（%2）。"_s.arg(box.objectName()).arg(length));
    }
    constexpr qint32 NoLimit = 32767; // QLineEdit's own default
    box.setMaxLength(length == 0 ? NoLimit : length);
}

} // namespace quarry
