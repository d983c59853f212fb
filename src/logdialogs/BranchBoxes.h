#pragma once

#include <quarry/quarry_export.h>

#include <QString>

#include <optional>

class QCheckBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QWidget;

namespace quarry {

class CHy;

// The branch box of a log dialog (txtWdh and its label lblWDH) and, in the
// dialogs that offer it, the box that takes in the sub-branches (chkSub).
class QUARRY_EXPORT BranchBoxes
{
public:
    enum class SubBranches { Offered, None };

    BranchBoxes(QWidget *dialog, QFormLayout *form, const QString &label, SubBranches subBranches);

    QLineEdit *box() const { return m_box; }
    QCheckBox *subBranches() const { return m_subBranches; }

    // Shows the branch box and enables it, or hides and disables it. The
    // sub-branch box is offered with it under bank profile 65.
    void layOut(bool shown, qint16 profileCode);

    // The branch part of a clause for what is typed: "" when the box leaves
    // the branch open, the like part, or, with the sub-branches taken in,
    // the branch and all below it from the teller data. Nothing when that
    // branch does not exist: the operator is told and the focus is back in
    // the box.
    std::optional<QString> part(CHy &hy) const;

private:
    QWidget *m_dialog;
    QLabel *m_label;
    QLineEdit *m_box;
    QCheckBox *m_subBranches = nullptr;
};

} // namespace quarry
