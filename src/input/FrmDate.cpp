#include "input/FrmDate.h"

#include "input/Conditions.h"
#include "input/EmptyQueryRule.h"
#include "input/FocusNavigation.h"
#include "input/KeyConventions.h"
#include "input/MaskEdBox.h"
#include "input/OperatorMessage.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quarry {

FrmDate::FrmDate()
    : ConditionDialog(u"FrmDate"_s, u"日期查询"_s)
    , MaskBoxKs(new MaskEdBox(MaskEdBox::Kind::Date, this))
    , MaskBoxJs(new MaskEdBox(MaskEdBox::Kind::Date, this))
    , cmdOK(new QPushButton(u"确定"_s, this))
    , cmdCancel(new QPushButton(u"取消"_s, this))
{
    m_config.GetParameter();

    MaskBoxKs->setObjectName(u"MaskBoxKs"_s);
    MaskBoxJs->setObjectName(u"MaskBoxJs"_s);
    cmdOK->setObjectName(u"cmdOK"_s);
    cmdCancel->setObjectName(u"cmdCancel"_s);

    auto *fields = new QFormLayout;
    fields->addRow(u"起始日期:"_s, MaskBoxKs);
    fields->addRow(u"截止日期:"_s, MaskBoxJs);
    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(cmdOK, QDialogButtonBox::AcceptRole);
    buttons->addButton(cmdCancel, QDialogButtonBox::RejectRole);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addWidget(buttons);
    setTabOrder(MaskBoxKs, MaskBoxJs);
    setTabOrder(MaskBoxJs, cmdOK);
    setTabOrder(cmdOK, cmdCancel);

    connect(cmdOK, &QPushButton::clicked, this, &FrmDate::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &FrmDate::reject);
    const QList<QWidget *> controls{MaskBoxKs, MaskBoxJs, cmdOK, cmdCancel};
    for (QWidget *control : controls)
        control->installEventFilter(this);
    MaskBoxKs->setFocus();
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
    if (watched == MaskBoxKs || watched == MaskBoxJs) {
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
    if (!passesEmptyQueryRule(this, m_config, MaskBoxKs->isBlank() && MaskBoxJs->isBlank()))
        return;
    const DateRange range = checkDateRange(MaskBoxKs->maskedText(), MaskBoxJs->maskedText());
    switch (range.fault) {
    case DateRange::Fault::None:
        setCondition(dateCondition(range));
        accept();
        return;
    case DateRange::Fault::Start:
        warnOperator(this, u"起始日期格式错误，请重新输入！"_s);
        MaskBoxKs->setFocus();
        return;
    case DateRange::Fault::End:
        warnOperator(this, u"截止日期格式错误，请重新输入！"_s);
        MaskBoxJs->setFocus();
        return;
    case DateRange::Fault::EndBeforeStart:
        warnOperator(this, u"截止日期不能小于起始日期，请重新输入！"_s);
        MaskBoxJs->setFocus();
        return;
    }
}

} // namespace quarry
