#include "logdialogs/LogQueryDialog.h"

#include "input/EmptyQueryRule.h"
#include "input/FocusNavigation.h"
#include "input/KeyConventions.h"
#include "input/MaskEdBox.h"
#include "input/OperatorMessage.h"
#include "input/SqlTextValidator.h"
#include "logdialogs/CodeList.h"
#include "support/NumberText.h"
#include "teller/CHy.h"

#include <quarry/QuarryError.h>

#include <QComboBox>
#include <QFocusEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quarry {

LogQueryDialog::LogQueryDialog(const QString &name, const QString &title)
    : ConditionDialog(name, title)
    , m_form(new QFormLayout)
{
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(m_form);
}

LogQueryDialog::~LogQueryDialog() = default;

void LogQueryDialog::setMaxLength(const QString &boxName, qint32 length)
{
    ensureLoaded();
    auto *box = findChild<QLineEdit *>(boxName, Qt::FindDirectChildrenOnly);
    if (!box) {
        throw QuarryError(QuarryError::DataError, objectName() + u".MaxLength"_s,
                          u"查询窗口 %1 没有文本框 %2。"_s.arg(objectName(), boxName));
    }
    applyMaxLength(*box, length);
}

QLineEdit *LogQueryDialog::addTextBox(const QString &name, const QString &label, Typing typing)
{
    auto *box = new QLineEdit(this);
    box->setObjectName(name);
    box->setValidator(new SqlTextValidator(typing == Typing::Pattern
                                               ? SqlTextValidator::Quotes::Dropped
                                               : SqlTextValidator::Quotes::Refused,
                                           box));
    m_form->addRow(label, box);
    return box;
}

QLineEdit *LogQueryDialog::addChequeBox(const QString &name, const QString &label)
{
    auto *box = new QLineEdit(this);
    box->setObjectName(name);
    static const QRegularExpression chequeNumber(u"[A-Za-z0-9]*"_s);
    box->setValidator(new QRegularExpressionValidator(chequeNumber, box));
    m_form->addRow(label, box);
    return box;
}

QComboBox *LogQueryDialog::addList(const QString &name, const QString &label, ListKind kind)
{
    auto *list = new QComboBox(this);
    list->setObjectName(name);
    if (kind == ListKind::Editable) {
        list->setEditable(true);
        list->setInsertPolicy(QComboBox::NoInsert);
        list->lineEdit()->setValidator(
            new SqlTextValidator(SqlTextValidator::Quotes::Refused, list->lineEdit()));
    }
    m_form->addRow(label, list);
    return list;
}

MaskEdBox *LogQueryDialog::addTimeBox(const QString &name, const QString &label)
{
    auto *box = new MaskEdBox(MaskEdBox::Kind::Time, this);
    box->setObjectName(name);
    m_form->addRow(label, box);
    return box;
}

void LogQueryDialog::addDateRange(const QString &startName, const QString &endName)
{
    m_dates.emplace(this, m_form, startName, endName);
}

void LogQueryDialog::addBranch(const QString &label, BranchBoxes::SubBranches subBranches)
{
    m_branch.emplace(this, m_form, label, subBranches);
}

QLabel *LogQueryDialog::addLabel(const QString &name, const QString &text, const QString &rowLabel)
{
    auto *label = new QLabel(text, this);
    label->setObjectName(name);
    label->setWordWrap(true);
    if (rowLabel.isEmpty())
        m_form->addRow(label);
    else
        m_form->addRow(rowLabel, label);
    return label;
}

void LogQueryDialog::setRowShown(QWidget *field, bool shown)
{
    field->setVisible(shown);
    if (QWidget *label = m_form->labelForField(field))
        label->setVisible(shown);
}

void LogQueryDialog::addButtons(const QString &okName, const QString &okText,
                                const QString &cancelName, const QString &cancelText,
                                std::function<void()> ok)
{
    auto *okButton = new QPushButton(okText, this);
    auto *cancelButton = new QPushButton(cancelText, this);
    okButton->setObjectName(okName);
    cancelButton->setObjectName(cancelName);
    auto *row = new QHBoxLayout;
    row->addStretch();
    for (QPushButton *button : {okButton, cancelButton}) {
        // Enter clicks the focused button only: in a field it has the
        // field's own meaning, never that of a default button.
        button->setAutoDefault(false);
        row->addWidget(button);
    }
    static_cast<QVBoxLayout *>(layout())->addLayout(row);
    connect(okButton, &QPushButton::clicked, this, [this, ok = std::move(ok)] { guarded(ok); });
    connect(cancelButton, &QPushButton::clicked, this, &LogQueryDialog::reject);
}

void LogQueryDialog::setKeys(std::initializer_list<QWidget *> fields, const Keys &keys)
{
    for (QWidget *field : fields)
        m_keys.insert(field, keys);
}

void LogQueryDialog::onLeave(QWidget *field, std::function<void()> store)
{
    m_onLeave.insert(field, std::move(store));
}

void LogQueryDialog::storeWhenChosen(QComboBox *list, QString &target)
{
    const auto store = [list, &target] {
        target = list->currentText();
        return true;
    };
    setKeys({list}, {.up = Move::Keep, .beforeNext = store});
    // An editable list also activates the entry that its text names when its
    // edit field is left; by then the focus has gone, and the operator chose
    // nothing.
    connect(list, &QComboBox::activated, this, [list, store] {
        if (!list->isEditable() || list->hasFocus())
            store();
    });
}

void LogQueryDialog::onArrive(QWidget *field, std::function<void()> show)
{
    m_onArrive.insert(field, std::move(show));
}

void LogQueryDialog::ensureLoaded()
{
    if (m_loaded)
        return;
    m_loaded = true;
    m_config.GetParameter();
    // The dialog previews the keys of every control.
    const QList<QWidget *> controls = findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    for (QWidget *control : controls) {
        if (control->focusPolicy() != Qt::NoFocus)
            control->installEventFilter(this);
        if (auto *list = qobject_cast<QComboBox *>(control); list && list->isEditable())
            list->lineEdit()->installEventFilter(this);
    }
    Form_Load();
}

CHy &LogQueryDialog::hy()
{
    if (!m_hy)
        m_hy = std::make_unique<CHy>();
    return *m_hy;
}

bool LogQueryDialog::checkNumber(const QString &text)
{
    if (strictNumber(text))
        return true;
    tellOperator(this, u"输入非法字符，请输入正确的数字！"_s);
    return false;
}

bool LogQueryDialog::passesEmptyQuery(bool inputEmpty)
{
    return passesEmptyQueryRule(this, m_config, inputEmpty);
}

bool LogQueryDialog::allBlank(std::initializer_list<const QWidget *> fields)
{
    return std::all_of(fields.begin(), fields.end(), [](const QWidget *field) {
        if (const auto *mask = qobject_cast<const MaskEdBox *>(field))
            return mask->isBlank();
        if (const auto *box = qobject_cast<const QLineEdit *>(field))
            return box->text().trimmed().isEmpty();
        return qobject_cast<const QComboBox *>(field)->currentIndex() == -1;
    });
}

void LogQueryDialog::fillList(QComboBox *list, const CodeList &codes, qint32 count)
{
    const qsizetype used = codes.used(count);
    list->clear();
    list->addItem(QString());
    for (qsizetype i = 0; i < used; ++i)
        list->addItem(codes.names[i], codes.ids[i]);
    list->setCurrentIndex(-1);
}

QObject *LogQueryDialog::fieldOf(QObject *watched)
{
    if (qobject_cast<const QComboBox *>(watched->parent()))
        return watched->parent();
    return watched;
}

// What the dialog's hooks raise closes the dialog (see guarded): an error
// must not travel through Qt's event loop.
bool LogQueryDialog::eventFilter(QObject *watched, QEvent *event)
{
    QObject *field = fieldOf(watched);
    bool handled = false;
    switch (event->type()) {
    case QEvent::KeyPress:
        guarded([&] { handled = handleKey(field, static_cast<const QKeyEvent &>(*event)); });
        return handled;
    case QEvent::FocusIn: {
        // Also when the dialog opens with the focus in field.
        const auto hook = m_onArrive.constFind(field);
        if (hook != m_onArrive.cend())
            guarded(*hook);
        break;
    }
    case QEvent::FocusOut: {
        // Not when another window (a message box, a list's popup) takes the
        // focus: the operator has not left the field.
        const Qt::FocusReason reason = static_cast<const QFocusEvent &>(*event).reason();
        const auto hook = m_onLeave.constFind(field);
        if (hook != m_onLeave.cend() && reason != Qt::ActiveWindowFocusReason
            && reason != Qt::PopupFocusReason)
            guarded(*hook);
        break;
    }
    default:
        break;
    }
    return ConditionDialog::eventFilter(watched, event);
}

bool LogQueryDialog::handleKey(QObject *field, const QKeyEvent &key)
{
    if (isCancelKeyHere(key)) {
        reject();
        return true;
    }
    if (key.key() == Qt::Key_Escape)
        return true; // no meaning in this dialog
    const auto keys = m_keys.constFind(field);
    if (keys == m_keys.cend()) {
        if (auto *button = qobject_cast<QPushButton *>(field); button && isEnterKey(key))
            button->click();
        return isEnterKey(key);
    }
    const bool onwards = isEnterKey(key) || key.key() == Qt::Key_Down;
    Move wanted = isEnterKey(key) ? Move::Next : Move::Keep;
    if (key.key() == Qt::Key_Up)
        wanted = keys->up;
    else if (key.key() == Qt::Key_Down)
        wanted = keys->down;
    else if (isKeypadMultiply(key))
        wanted = keys->multiply;
    if (wanted == Move::Keep)
        return false;
    if (onwards && wanted == Move::Next && keys->beforeNext && !keys->beforeNext())
        return true;
    move(wanted);
    return true;
}

bool LogQueryDialog::isCancelKeyHere(const QKeyEvent &key) const
{
    switch (m_cancelKeys) {
    case CancelKeys::None:
        break;
    case CancelKeys::Escape:
        return key.key() == Qt::Key_Escape;
    case CancelKeys::KeypadMultiply:
        return isKeypadMultiply(key);
    case CancelKeys::Both:
        return isCancelKey(key);
    }
    return false;
}

void LogQueryDialog::move(Move move)
{
    if (move == Move::Next)
        FocusNextControl(this);
    else if (move == Move::Previous)
        FocusPreviousControl(this);
}

void LogQueryDialog::keyPressEvent(QKeyEvent *event)
{
    // What the fields leave reaches the dialog: cancel as the dialog says,
    // never QDialog's own Esc.
    if (isCancelKeyHere(*event))
        reject();
    else if (event->key() != Qt::Key_Escape)
        ConditionDialog::keyPressEvent(event);
}

void LogQueryDialog::showEvent(QShowEvent *event)
{
    ensureLoaded();
    ConditionDialog::showEvent(event);
}

} // namespace quarry
