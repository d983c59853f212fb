#pragma once

#include "input/ConditionDialog.h"
#include "input/DateRangeBoxes.h"
#include "logdialogs/BranchBoxes.h"
#include "platform/SqlLiteral.h"

#include <quarry/CSysCfg.h>

#include <QHash>

#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>

class QComboBox;
class QFormLayout;
class QKeyEvent;
class QLabel;
class QLineEdit;

namespace quarry {

class CHy;
struct CodeList;

// What the log query dialogs share. A dialog adds its fields in tab order,
// states what the keys do in each and what it stores when the operator
// leaves a field, lays itself out by its flags in Form_Load, and builds its
// clause on OK.
//
// The host sets a dialog's flags first, then touches its controls; the
// first touch (or the showing) loads the dialog: its own configuration is
// read and Form_Load runs, so that the layout follows the flags.
class QUARRY_EXPORT LogQueryDialog : public ConditionDialog
{
    Q_OBJECT

public:
    ~LogQueryDialog() override;

    // The host's length limit of the text box named boxName (see
    // applyMaxLength).
    void setMaxLength(const QString &boxName, qint32 length);

protected:
    LogQueryDialog(const QString &name, const QString &title);

    // What a key does in a field; Enter always moves on. Keep leaves the key
    // to the field: an arrow key keeps its meaning in a list, the keypad's
    // "*" types a wildcard.
    enum class Move { Keep, Next, Previous };
    struct Keys
    {
        Move up = Move::Previous;
        Move down = Move::Keep;
        Move multiply = Move::Keep;
        // Runs before Enter, or Down where it moves on, leaves the field;
        // false keeps the focus in it.
        std::function<bool()> beforeNext = nullptr;
    };
    // The keys that cancel from anywhere in the dialog.
    enum class CancelKeys { None, Escape, KeypadMultiply, Both };

    // What goes into a text box: a pattern that ToLikePattern makes safe, or
    // text that goes into the SQL as typed and so takes no quote.
    enum class Typing { Pattern, AsTyped };

    QFormLayout *form() const { return m_form; }
    QLineEdit *addTextBox(const QString &name, const QString &label, Typing typing);
    // A cheque number box: letters and digits only.
    QLineEdit *addChequeBox(const QString &name, const QString &label);
    // A list of the host's codes; an editable one takes typed text too, with
    // no quote in it.
    enum class ListKind { Fixed, Editable };
    QComboBox *addList(const QString &name, const QString &label, ListKind kind = ListKind::Fixed);
    MaskEdBox *addTimeBox(const QString &name, const QString &label);
    void addDateRange(const QString &startName = QStringLiteral("MaskBoxKs"),
                      const QString &endName = QStringLiteral("MaskBoxJs"));
    void addBranch(const QString &label, BranchBoxes::SubBranches subBranches);
    // A label of its own row, or beside rowLabel.
    QLabel *addLabel(const QString &name, const QString &text, const QString &rowLabel = {});
    // Shows or hides a field with the label of its row.
    void setRowShown(QWidget *field, bool shown);
    // The OK and Cancel buttons; OK runs ok, Cancel cancels.
    void addButtons(const QString &okName, const QString &okText, const QString &cancelName,
                    const QString &cancelText, std::function<void()> ok);

    void setKeys(std::initializer_list<QWidget *> fields, const Keys &keys);
    void setCancelKeys(CancelKeys keys) { m_cancelKeys = keys; }
    // store runs when the operator moves from field to another control of
    // the dialog (not when another window takes the focus).
    void onLeave(QWidget *field, std::function<void()> store);
    // The list's text goes to target when the operator picks an entry or
    // presses Enter in it; Up and Down keep their meaning in the list.
    void storeWhenChosen(QComboBox *list, QString &target);
    // show runs whenever field gets the focus, the first focus of the
    // opened dialog included.
    void onArrive(QWidget *field, std::function<void()> show);

    const DateRangeBoxes &dates() const { return *m_dates; }
    BranchBoxes &branch() { return *m_branch; }

    void ensureLoaded();
    virtual void Form_Load() = 0;
    const CSysCfg &config() const { return m_config; }
    SqlDialect dialect() const { return sqlDialect(m_config.BASEMODE); }
    // The teller data, opened on first use.
    CHy &hy();

    // Whether the trimmed text is a number; when it is not the operator is
    // told so. Public in the dialogs that offer it.
    bool checkNumber(const QString &text);
    // The bank's rule for an empty query; true when OK may go on.
    bool passesEmptyQuery(bool inputEmpty);
    // Text boxes blank after trimming, date boxes showing their empty mask,
    // lists with no entry chosen.
    static bool allBlank(std::initializer_list<const QWidget *> fields);
    // An empty entry first, then the used entries with their codes as item
    // data; no entry is chosen.
    static void fillList(QComboBox *list, const CodeList &codes, qint32 count);

    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    // The field an event of watched belongs to: an editable list for the
    // line edit inside it.
    static QObject *fieldOf(QObject *watched);
    bool handleKey(QObject *field, const QKeyEvent &key);
    bool isCancelKeyHere(const QKeyEvent &key) const;
    void move(Move move);

    QFormLayout *m_form;
    std::optional<DateRangeBoxes> m_dates;
    std::optional<BranchBoxes> m_branch;
    CSysCfg m_config;
    std::unique_ptr<CHy> m_hy;
    bool m_loaded = false;
    CancelKeys m_cancelKeys = CancelKeys::Escape;
    QHash<const QObject *, Keys> m_keys;
    QHash<const QObject *, std::function<void()>> m_onLeave;
    QHash<const QObject *, std::function<void()>> m_onArrive;
};

} // namespace quarry
