#include "ServerAddress.h"

#include "platform/SqlLiteral.h"

#include <quarry/CSysCfg.h>

using namespace Qt::StringLiterals;

namespace quarry::apps {

QString serverAddress(const CSysCfg &cfg)
{
    const bool mySql = sqlDialect(cfg.BASEMODE) == SqlDialect::MySql;
    return mySql && !cfg.SERVER.contains(u':') ? cfg.SERVER + u":3306"_s : cfg.SERVER;
}

} // namespace quarry::apps
