#pragma once

#include <QString>

namespace quarry {
class CSysCfg;
}

namespace quarry::apps {

// The station's database server as the driver reaches it: MySQL's with its
// default port when seal.ini names none, any other as seal.ini names it.
QString serverAddress(const CSysCfg &cfg);

} // namespace quarry::apps
