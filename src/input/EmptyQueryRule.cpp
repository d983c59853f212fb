#include "input/EmptyQueryRule.h"

#include "input/OperatorMessage.h"

#include <quarry/CSysCfg.h>

using namespace Qt::StringLiterals;

namespace quarry {

EmptyQueryAction emptyQueryAction(qint16 profileCode, qint16 queryHintMode, bool inputEmpty)
{
    if (!inputEmpty)
        return EmptyQueryAction::Proceed;
    if (profileCode == 54)
        return EmptyQueryAction::Refuse;
    return queryHintMode == 2 ? EmptyQueryAction::Confirm : EmptyQueryAction::Proceed;
}

bool passesEmptyQueryRule(QWidget *dialog, const CSysCfg &config, bool inputEmpty)
{
    return passesEmptyQueryRule(dialog, config.ProfileCode, config.QueryHintMode, inputEmpty);
}

bool passesEmptyQueryRule(QWidget *dialog, qint16 profileCode, qint16 queryHintMode,
                          bool inputEmpty)
{
    switch (emptyQueryAction(profileCode, queryHintMode, inputEmpty)) {
    case EmptyQueryAction::Proceed:
        return true;
    case EmptyQueryAction::Confirm:
        return askOperator(dialog, u"未输入任何查询条件，查询可能需要很长时间，是否继续？"_s);
    case EmptyQueryAction::Refuse:
        break;
    }
    informOperator(dialog, u"请输入查询条件!"_s);
    return false;
}

} // namespace quarry
