#include "logdialogs/BranchBoxes.h"

#include "input/OperatorMessage.h"
#include "input/PublicFunction.h"
#include "input/SqlTextValidator.h"
#include "logdialogs/LogClause.h"
#include "teller/CHy.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace quarry {

BranchBoxes::BranchBoxes(QWidget *dialog, QFormLayout *form, const QString &label,
                         SubBranches subBranches)
    : m_dialog(dialog)
    , m_label(new QLabel(label, dialog))
    , m_box(new QLineEdit(dialog))
{
    m_label->setObjectName(u"lblWDH"_s);
    m_box->setObjectName(u"txtWdh"_s);
    m_box->setValidator(new SqlTextValidator(SqlTextValidator::Quotes::Dropped, m_box));
    m_label->setBuddy(m_box);
    form->addRow(m_label, m_box);
    if (subBranches == SubBranches::Offered) {
        m_subBranches = new QCheckBox(u"包含子机构"_s, dialog);
        m_subBranches->setObjectName(u"chkSub"_s);
        form->addRow(QString(), m_subBranches);
    }
}

void BranchBoxes::layOut(bool shown, qint16 profileCode)
{
    m_label->setVisible(shown);
    m_box->setVisible(shown);
    m_box->setEnabled(shown);
    if (m_subBranches)
        m_subBranches->setVisible(shown && profileCode == 65);
}

std::optional<QString> BranchBoxes::part(CHy &hy) const
{
    const QString pattern = ToLikePattern(m_box->text().trimmed());
    if (pattern == u"%"_s)
        return QString();
    if (!m_subBranches || !m_subBranches->isChecked())
        return branchLikePart(pattern);
    // The teller data is asked about the text as it stands in the box.
    const QString typed = m_box->text();
    if (hy.IsWdhExist(typed) != 1) {
        warnOperator(m_dialog, u"输入的网点号不存在，请重新输入！"_s);
        m_box->setFocus();
        return std::nullopt;
    }
    hy.clearBelongedWdhs();
    hy.GetBelongedWDHS(typed);
    return branchListPart(hy.belongedWdhs().chopped(1));
}

} // namespace quarry
