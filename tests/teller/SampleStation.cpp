#include "SampleStation.h"
#include "TestFiles.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace quarry::test {

SampleStation::SampleStation(Engine engine, Contents contents)
    : m_seal(engine, m_folder.path(), u"SEAL"_s)
    , m_local(engine, m_folder.path(), u"LOCAL"_s)
{
    if (!m_folder.isValid()) {
        m_errorText = u"No temporary folder: "_s + m_folder.errorString();
        return;
    }
    const bool sample = contents == Contents::Sample;
    load(m_seal, sample ? QStringList{u"seal.sql"_s, u"reference.sql"_s} : QStringList());
    load(m_local, sample ? QStringList{u"local.sql"_s, u"reference.sql"_s} : QStringList());
}

void SampleStation::load(TestDatabase &database, const QStringList &scripts)
{
    if (!m_errorText.isEmpty())
        return;
    if (!database.isValid()) {
        m_errorText = database.errorText();
        return;
    }
    for (const QString &script : scripts) {
        if (!database.loadScript(QDir(QStringLiteral(QUARRY_SAMPLE_DIR)).filePath(script))) {
            m_errorText = script + u": "_s + database.errorText();
            return;
        }
    }
}

void SampleStation::changeSeal(const QString &script)
{
    if (isValid() && !m_seal.execute(script))
        m_errorText = m_seal.errorText();
}

void SampleStation::writeIni(const QByteArray &extra, const QString &server) const
{
    const QString text = u"[DATABASESET]\nBASEMODE=%1\nODBCDRIVER=%2\n"
                         "[SQLSERVER]\nSERVER=%3\nSEALBASE=%4\nLOCALBASE=%5\n"
                         "[SBMK]\nDoubleSealQuota=0\n"
                         "[ERROR]\nERRORFILE=%6\n"_s
                             .arg(m_seal.baseMode(), m_seal.odbcDriver(),
                                  server.isEmpty() ? m_seal.server() : server,
                                  m_seal.databaseName(), m_local.databaseName(),
                                  QDir(folder()).filePath(u"log"_s));
    writeFile(QDir(folder()).filePath(u"seal.ini"_s), text.toUtf8() + extra);
    qputenv("QUARRY_SYSTEM_DIR", QFile::encodeName(folder()));
}

QString SampleStation::errorLog() const
{
    return QString::fromUtf8(readFile(QDir(folder()).filePath(u"log/error.txt"_s)));
}

void SampleStation::clearErrorLog() const
{
    QFile::remove(QDir(folder()).filePath(u"log/error.txt"_s));
}

} // namespace quarry::test

