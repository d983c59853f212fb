#pragma once

#include <quarry/quarry_export.h>

#include <QDialog>
#include <QString>

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

    // The host's length limit of a text box: 0 for none, as the host has
    // always passed it; a negative length is the host's error.
    static void applyMaxLength(QLineEdit &box, qint32 length);

protected:
    ConditionDialog(const QString &name, const QString &title);

    void setCondition(const QString &condition) { m_condition = condition; }

private:
    QString m_condition;
};

} // namespace quarry
