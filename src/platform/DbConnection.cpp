#include "platform/DbConnection.h"

#include "platform/EmbeddedDatabase.h"
#include "platform/Paths.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>
#include <atomic>

using namespace Qt::StringLiterals;

namespace quarry {

namespace {

// Long enough for a distant server, short enough that a wrong address does
// not freeze the operator's dialog.
constexpr int ConnectTimeoutSeconds = 10;

struct ConnectionTarget
{
    QString server;
    QString database;
};

// "Server=...;Database=...": keys without regard to case, values trimmed.
ConnectionTarget parseConnectionString(const QString &text)
{
    ConnectionTarget target;
    for (const QString &part : text.split(u';')) {
        const qsizetype equals = part.indexOf(u'=');
        if (equals < 0)
            continue;
        const QString key = part.first(equals).trimmed();
        const QString value = part.sliced(equals + 1).trimmed();
        if (key.compare("Server"_L1, Qt::CaseInsensitive) == 0)
            target.server = value;
        else if (key.compare("Database"_L1, Qt::CaseInsensitive) == 0)
            target.database = value;
    }
    return target;
}

struct HostPort
{
    QString host;
    quint16 port = 0; // 0: the driver's default
};

// "host" or "host:port"; anything else (an IPv6 address, a named instance)
// is handed to the driver as the host.
HostPort splitHostPort(const QString &server)
{
    if (server.count(u':') == 1) {
        const qsizetype colon = server.indexOf(u':');
        bool ok = false;
        const quint16 port = server.sliced(colon + 1).toUShort(&ok);
        if (ok)
            return {server.first(colon), port};
    }
    return {server};
}

// An ODBC attribute value that the driver reads literally, whatever it holds.
QString bracedOdbcValue(QString value)
{
    value.replace(u'}', "}}"_L1);
    return u'{' + value + u'}';
}

// Braced only when it could otherwise end the value or start another
// attribute: some drivers do not accept braces around every value.
QString odbcValue(const QString &value)
{
    static const QString special = u";{}="_s;
    const bool plain
        = std::none_of(value.cbegin(), value.cend(), [](QChar c) { return special.contains(c); })
        && value.trimmed() == value;
    return plain ? value : bracedOdbcValue(value);
}

// Why a server could not be used, in the operator's words, with where it
// is and the driver's own text for the administrator. The drivers report
// the server's error numbers: MySQL's and MariaDB's, SQL Server's (18456,
// 4060) and Sybase's (4002, 911).
QString serverFault(const ConnectionTarget &target, const QString &user, const QSqlError &error)
{
    QString reason;
    switch (error.nativeErrorCode().toInt()) {
    case 1044:
    case 1045:
    case 1698:
    case 18456:
    case 4002:
        reason = u"拒绝了登录 %1（密码不对，或没有数据库的权限）"_s.arg(user);
        break;
    case 1049:
    case 4060:
    case 911:
        reason = u"上没有这个数据库"_s;
        break;
    case 2002:
    case 2003:
    case 2005:
    case 2006:
    case 2013:
        reason = u"连接不上（服务器没有运行，或地址、端口不对）"_s;
        break;
    default:
        reason = u"无法使用"_s;
        break;
    }
    const QString own = error.databaseText().isEmpty() ? error.driverText() : error.databaseText();
    return u"数据库服务器 %1（数据库 %2）%3：%4"_s.arg(target.server, target.database, reason, own);
}

QString nextConnectionName()
{
    static std::atomic<quint64> counter{0};
    return u"quarry-db-%1"_s.arg(++counter);
}

} // namespace

DbConnection::DbConnection()
    : m_connectionName(nextConnectionName())
{
}

DbConnection::~DbConnection()
{
    close();
}

void DbConnection::setDatabaseType(const QString &type)
{
    m_type = type;
}

void DbConnection::setFileFolder(const QString &folder)
{
    m_fileFolder = folder;
}

void DbConnection::setOdbcDriver(const QString &driver)
{
    m_odbcDriver = driver;
}

void DbConnection::open(const QString &connectionString, const QString &user,
                        const QString &password, bool flag)
{
    Q_UNUSED(flag)
    close();
    const ConnectionTarget target = parseConnectionString(connectionString);
    QSqlDatabase db;
    QString login = user;
    QString secret = password;
    switch (dialect()) {
    case Dialect::Embedded:
        openEmbedded(target.database);
        return;
    case Dialect::MySql:
        db = addMySql(target.server, target.database);
        break;
    case Dialect::Odbc:
        // The ODBC driver pastes user and password into its connection
        // string as they are.
        login = odbcValue(user);
        secret = odbcValue(password);
        db = addOdbc(target.server, target.database);
        break;
    case Dialect::Unknown:
        fail(u"不支持的数据库类型“%1”"_s.arg(m_type));
        return;
    }
    if (m_failed)
        return;
    if (!db.open(login, secret))
        fail(serverFault(target, user, db.lastError()));
}

void DbConnection::close()
{
    m_failed = false;
    m_errorText.clear();
    if (!QSqlDatabase::contains(m_connectionName))
        return;
    QSqlDatabase::database(m_connectionName, false).close();
    QSqlDatabase::removeDatabase(m_connectionName);
}

bool DbConnection::isOpen() const
{
    return database().isOpen();
}

QSqlDatabase DbConnection::database() const
{
    return QSqlDatabase::database(m_connectionName, false);
}

DbConnection::Dialect DbConnection::dialect() const
{
    const QString type = m_type.trimmed();
    if (type.isEmpty() || type.compare("ACCESS"_L1, Qt::CaseInsensitive) == 0)
        return Dialect::Embedded;
    if (type.compare("MYSQL"_L1, Qt::CaseInsensitive) == 0)
        return Dialect::MySql;
    if (type.compare("SQLSERVER"_L1, Qt::CaseInsensitive) == 0
        || type.startsWith("SYBASE"_L1, Qt::CaseInsensitive))
        return Dialect::Odbc;
    return Dialect::Unknown;
}

void DbConnection::openEmbedded(const QString &databaseName)
{
    if (databaseName.isEmpty()) {
        fail(u"连接字符串中没有数据库文件名（Database=）"_s);
        return;
    }
    const QString path = embeddedFilePath(databaseName);
    const QFileInfo file(path);
    if (!file.isFile()) {
        fail(u"数据库文件 %1 %2"_s.arg(QDir::toNativeSeparators(path),
                                       file.exists() ? u"不是文件"_s : u"不存在"_s));
        return;
    }
    QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, m_connectionName);
    db.setDatabaseName(path);
    db.setConnectOptions(u"QSQLITE_OPEN_READONLY"_s);
    if (!db.open()) {
        fail(embedded::fileFault(path, db.lastError()));
        return;
    }
    // SQLite reads nothing at the open: a file that is no database, or is
    // locked, fails only at the first query, which would otherwise be the
    // operator's.
    QSqlQuery probe(db);
    if (!probe.exec(u"select count(*) from sqlite_master"_s)) {
        fail(embedded::fileFault(path, probe.lastError()));
        probe.finish();
        db.close();
        return;
    }
    embedded::addDialectFunctions(db);
}

QSqlDatabase DbConnection::addMySql(const QString &server, const QString &databaseName)
{
    const HostPort address = splitHostPort(server);
    QSqlDatabase db = QSqlDatabase::addDatabase(u"QMYSQL"_s, m_connectionName);
    db.setHostName(address.host);
    db.setPort(address.port);
    db.setDatabaseName(databaseName);
    db.setConnectOptions(u"MYSQL_OPT_CONNECT_TIMEOUT=%1"_s.arg(ConnectTimeoutSeconds));
    return db;
}

QSqlDatabase DbConnection::addOdbc(const QString &server, const QString &databaseName)
{
    const HostPort address = splitHostPort(server);
    QString text
        = u"DRIVER=%1;SERVER=%2"_s.arg(bracedOdbcValue(m_odbcDriver), odbcValue(address.host));
    if (address.port != 0)
        text += u";PORT=%1"_s.arg(address.port);
    text += u";DATABASE="_s + odbcValue(databaseName);
    QSqlDatabase db = QSqlDatabase::addDatabase(u"QODBC"_s, m_connectionName);
    db.setDatabaseName(text);
    db.setConnectOptions(u"SQL_ATTR_LOGIN_TIMEOUT=%1"_s.arg(ConnectTimeoutSeconds));
    return db;
}

// Names come from a Windows seal.ini: backslashes, drive letters and any
// letter case.
QString DbConnection::embeddedFilePath(const QString &databaseName) const
{
    QString name = paths::fromWindowsPath(databaseName);
    if (QFileInfo(name).suffix().isEmpty())
        name += ".db"_L1;
    const QFileInfo info(name);
    const QString folder
        = info.isAbsolute() ? info.path() : QDir(m_fileFolder).filePath(info.path());
    return paths::findInDir(QDir::cleanPath(folder), info.fileName());
}

void DbConnection::fail(const QString &text)
{
    m_failed = true;
    m_errorText = text;
}

} // namespace quarry
