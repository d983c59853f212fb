#pragma once

#include <quarry/quarry_export.h>

#include <QtGlobal>

class QWidget;

namespace quarry {

class CSysCfg;

// What a dialog does before it builds a condition from empty input: bank
// profile 54 refuses it, QueryHintMode 2 asks first, anything else goes on.
enum class EmptyQueryAction { Proceed, Confirm, Refuse };

QUARRY_EXPORT EmptyQueryAction emptyQueryAction(qint16 profileCode, qint16 queryHintMode,
                                                bool inputEmpty);

// Applies the rule with the dialog's configuration, asking or telling the
// operator as it says; true when the dialog may build its condition.
QUARRY_EXPORT bool passesEmptyQueryRule(QWidget *dialog, const CSysCfg &config, bool inputEmpty);
// The same with the two codes given.
QUARRY_EXPORT bool passesEmptyQueryRule(QWidget *dialog, qint16 profileCode, qint16 queryHintMode,
                                        bool inputEmpty);

} // namespace quarry
