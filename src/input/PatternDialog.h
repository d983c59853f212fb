#pragma once

#include "input/ConditionDialog.h"

class QLineEdit;

namespace quarry {

// A dialog with one text box for a pattern and no buttons: Enter confirms,
// Esc or the keypad's multiply key cancels, every other key (the main
// keyboard's "*" among them) goes into the box.
class QUARRY_EXPORT PatternDialog : public ConditionDialog
{
    Q_OBJECT

public:
    // The MaxLength the host sets; see applyMaxLength.
    void setMaxLength(qint32 length);

    // The prompt of the wildcard patterns, for subject 印鉴卡号, 账号 and so on.
    static QString wildcardPrompt(const QString &subject);

protected:
    PatternDialog(const QString &name, const QString &title, const QString &prompt,
                  const QString &boxName);

    // Whether the typed text may be queried; the default lets everything pass.
    virtual bool mayQuery(const QString &typed);
    virtual QString buildCondition(const QString &typed) const = 0;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void confirm();

    QLineEdit *m_box;
};

} // namespace quarry
