#pragma once

#include <QString>

namespace quarry {
class DbConnection;
}

namespace quarry::test {

// The branch list as the system has always collected it: one query per
// branch, recursing into each sub-branch as it is read, each code quoted and
// followed by a comma. The yardstick for CHy::GetBelongedWDHS on trees
// without anomalies (on a cycle it never ends).
QString belongedWdhsOneQueryPerBranch(const DbConnection &connection, const QString &wdh);

} // namespace quarry::test
