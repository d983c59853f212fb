#include "input/ConditionDialog.h"

#include <quarry/QuarryError.h>

#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace quarry {

namespace {

constexpr qint32 NoLimit = 32767; // QLineEdit's own default

} // namespace

ConditionDialog::ConditionDialog(const QString &name, const QString &title)
{
    setObjectName(name);
    setWindowTitle(title);
}

QString ConditionDialog::execForCondition()
{
    exec();
    if (m_failure)
        std::rethrow_exception(std::exchange(m_failure, nullptr));
    return m_condition;
}

void ConditionDialog::guarded(const std::function<void()> &action)
{
    try {
        action();
    } catch (const QuarryError &) {
        m_failure = std::current_exception();
        reject();
    }
}

void ConditionDialog::applyMaxLength(QLineEdit &box, qint32 length)
{
    if (length < 0) {
        throw QuarryError(
            QuarryError::DataError, box.objectName() + u".MaxLength"_s,
            u"文本框 %1 的最大长度不能为负数（%2）。"_s.arg(box.objectName()).arg(length));
    }
    // Beyond the box's own limit is no limit either.
    box.setMaxLength(length == 0 ? NoLimit : qMin(length, NoLimit));
}

qint32 ConditionDialog::hostMaxLength(const QLineEdit &box)
{
    return box.maxLength() == NoLimit ? 0 : box.maxLength();
}

} // namespace quarry
