#include "OwnMariaDb.h"

#include "TestDatabases.h"

#include <QFile>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace quarry::bench {

OwnMariaDb::OwnMariaDb()
{
    if (quarry::test::mariaDbPort() != 0)
        return;
    m_folder.emplace(u"/tmp/quarry-bench-XXXXXX"_s); // short: the server's socket lives there
    // MariaDB's own default, which a station's server has at least (the
    // tests' 32 MiB suits their small tables).
    qputenv("QUARRY_MARIADB_BUFFER_POOL", "128M");
    if (!m_folder->isValid() || !runServerScript(u"start"_s))
        qWarning("The MariaDB server did not start: the MariaDB rows are skipped.");
    qputenv("QUARRY_MARIADB_DIR", QFile::encodeName(m_folder->path()));
}

OwnMariaDb::~OwnMariaDb()
{
    if (m_folder)
        runServerScript(u"stop"_s);
}

bool OwnMariaDb::runServerScript(const QString &action)
{
    QProcess script;
    script.setProcessChannelMode(QProcess::ForwardedChannels);
    script.start(u"bash"_s,
                 {QStringLiteral(QUARRY_SOURCE_DIR) + u"/scripts/mariadb-test-server.sh"_s, action,
                  m_folder->path()});
    return script.waitForFinished(180000) && script.exitStatus() == QProcess::NormalExit
        && script.exitCode() == 0;
}

} // namespace quarry::bench
