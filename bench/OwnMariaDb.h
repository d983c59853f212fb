#pragma once

#include <QTemporaryDir>

#include <optional>

namespace quarry::bench {

// The MariaDB server of a benchmark: the one named by $QUARRY_MARIADB_DIR
// (as the test fixture leaves it), else one started with
// scripts/mariadb-test-server.sh for the run and stopped again at the end.
// Without a MariaDB server the MariaDB rows skip with a message.
class OwnMariaDb
{
public:
    OwnMariaDb();
    ~OwnMariaDb();
    OwnMariaDb(const OwnMariaDb &) = delete;
    OwnMariaDb &operator=(const OwnMariaDb &) = delete;

private:
    bool runServerScript(const QString &action);

    std::optional<QTemporaryDir> m_folder;
};

} // namespace quarry::bench
