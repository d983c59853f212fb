#include "input/PatternDialog.h"

#include "input/KeyConventions.h"
#include "input/SqlTextValidator.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quarry {

PatternDialog::PatternDialog(const QString &name, const QString &title, const QString &prompt,
                             const QString &boxName)
    : ConditionDialog(name, title)
    , m_box(new QLineEdit(this))
{
    auto *label = new QLabel(prompt, this);
    label->setObjectName(u"lblPrompt"_s);
    m_box->setObjectName(boxName);
    m_box->setValidator(new SqlTextValidator(SqlTextValidator::Quotes::Dropped, m_box));
    m_box->installEventFilter(this);
    label->setBuddy(m_box);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(m_box);
}

void PatternDialog::setMaxLength(qint32 length)
{
    applyMaxLength(*m_box, length);
}

QString PatternDialog::wildcardPrompt(const QString &subject)
{
    return u"请输入"_s + subject
        + u"特征:\"*\" 代表多个任意数字,\"?\"代表一个任意数字,空着显示所有."_s;
}

bool PatternDialog::mayQuery(const QString &)
{
    return true;
}

bool PatternDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_box && event->type() == QEvent::KeyPress) {
        const auto &key = static_cast<const QKeyEvent &>(*event);
        if (isEnterKey(key)) {
            confirm();
            return true;
        }
        if (isCancelKey(key)) {
            reject();
            return true;
        }
    }
    return ConditionDialog::eventFilter(watched, event);
}

void PatternDialog::confirm()
{
    const QString typed = m_box->text();
    if (!mayQuery(typed))
        return;
    setCondition(buildCondition(typed));
    accept();
}

} // namespace quarry
