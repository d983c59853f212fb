#include "input/FrmDate.h"

#include "input/EmptyQueryRule.h"
#include "input/FocusNavigation.h"
#include "input/KeyConventions.h"
#include "input/MaskEdBox.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quarry {

FrmDate::FrmDate()
    : ConditionDialog(u"FrmDate"_s, u"日期查询"_s)
    , m_fields(new QFormLayout)
    , m_dates(this, m_fields)
    , cmdOK(new QPushButton(u"确定"_s, this))
    , cmdCancel(new QPushButton(u"取消"_s, this))
{
    m_config.GetParameter();

    cmdOK->setObjectName(u"cmdOK"_s);
    cmdCancel->setObjectName(u"cmdCancel"_s);
    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(cmdOK, QDialogButtonBox::AcceptRole);
    buttons->addButton(cmdCancel, QDialogButtonBox::RejectRole);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(m_fields);
    layout->addWidget(buttons);
    setTabOrder(m_dates.start(), m_dates.end());
    setTabOrder(m_dates.end(), cmdOK);
    setTabOrder(cmdOK, cmdCancel);

    connect(cmdOK, &QPushButton::clicked, this, &FrmDate::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &FrmDate::reject);
    const QList<QWidget *> controls{m_dates.start(), m_dates.end(), cmdOK, cmdCancel};
    for (QWidget *control : controls)
        control->installEventFilter(this);
    m_dates.start()->setFocus();
}

bool FrmDate::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return ConditionDialog::eventFilter(watched, event);
    const auto &key = static_cast<const QKeyEvent &>(*event);
    if (isCancelKey(key)) {
        reject();
        return true;
    }
    if (watched == m_dates.start() || watched == m_dates.end()) {
        if (isEnterKey(key)) {
            FocusNextControl(this);
            return true;
        }
        if (key.key() == Qt::Key_Up) {
            FocusPreviousControl(this);
            return true;
        }
    }
    return ConditionDialog::eventFilter(watched, event);
}

void FrmDate::cmdOK_Click()
{
    if (!passesEmptyQueryRule(this, m_config, m_dates.isBlank()))
        return;
    if (const std::optional<DateRange> range = m_dates.check()) {
        setCondition(dateCondition(*range));
        accept();
    }
}

} // namespace quarry
