#pragma once

#include <quarry/quarry_export.h>

#include <QDialog>
#include <QString>

#include <exception>
#include <functional>

class QLineEdit;

namespace quarry {

// A modal dialog that hands back one WHERE condition. OK stores the
// condition and closes with accept(); Cancel closes without one, so a fresh
// dialog hands back the empty text.
class QUARRY_EXPORT ConditionDialog : public QDialog
{
    Q_OBJECT
    Q_PROPERTY(QString CurFilterStr READ CurFilterStr)

public:
    QString CurFilterStr() const { return m_condition; }

    // Shows the dialog modally and hands back its condition. An error raised
    // while the operator worked in it closed the dialog and is raised here,
    // to the caller, rather than through Qt's event loop.
    QString execForCondition();

    // The host's length limit of a text box: 0 for none, as the host has
    // always passed it; a negative length is the host's error.
    static void applyMaxLength(QLineEdit &box, qint32 length);
    // The limit as the host set it: 0 for none.
    static qint32 hostMaxLength(const QLineEdit &box);

protected:
    ConditionDialog(const QString &name, const QString &title);

    void setCondition(const QString &condition) { m_condition = condition; }
    // Runs an action of the operator's (OK, mostly); a QuarryError closes the
    // dialog and is kept for execForCondition.
    void guarded(const std::function<void()> &action);

private:
    QString m_condition;
    std::exception_ptr m_failure;
};

} // namespace quarry
