#pragma once

#include <QList>
#include <QString>

#include <optional>
#include <utility>

class QAbstractItemModel;

namespace quarry::viewer {

// Each operator of the seal result statistics with his pass rate in
// percent, in the rows' order.
using PassRates = QList<std::pair<QString, double>>;

// passed * 100 / total of each row (0 for a total of 0), from the
// statement's opcode, total and passed columns, named in any case; none
// when the model lacks one of them.
std::optional<PassRates> passRates(const QAbstractItemModel &model);

} // namespace quarry::viewer
