#include "LogCatalogue.h"

#include "CodeListText.h"
#include "NumberFormat.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QSettings>

#include <optional>

using namespace Qt::StringLiterals;

namespace quarry::viewer {

namespace {

const QStringList KnownKeys{u"Title"_s,      u"Table"_s,     u"Key"_s,         u"Call"_s,
                            u"Result"_s,     u"ListA"_s,     u"ListASql"_s,    u"ListAColumn"_s,
                            u"ListB"_s,      u"ListBSql"_s,  u"ListBColumn"_s, u"ClerkLen"_s,
                            u"AccLen"_s,     u"ChequeLen"_s, u"ShowWDH"_s,     u"ShowYJK"_s,
                            u"ShowOpCode"_s, u"Columns"_s,   u"Hide"_s,        u"Formats"_s,
                            u"DateColumn"_s, u"TimeColumn"_s};

const QRegularExpression &identifier()
{
    static const QRegularExpression pattern(u"^[A-Za-z_][A-Za-z0-9_]*$"_s);
    return pattern;
}

// QSettings reads a value with commas as a list; the catalogue means the
// text.
QString text(const QSettings &settings, const QString &key)
{
    const QVariant value = settings.value(key);
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList().join(u", "_s).trimmed();
    return value.toString().trimmed();
}

// Collects the faults of one section.
class SectionReader
{
public:
    SectionReader(const QSettings &settings, const QString &where)
        : m_settings(settings)
        , m_where(where)
    {
    }

    QString value(const QString &key) const { return text(m_settings, key); }
    void fault(const QString &key, const QString &what)
    {
        m_faults.append(m_where + u' ' + key + u"："_s + what);
    }
    const QStringList &faults() const { return m_faults; }

    // One of the words (matched without regard to case) as its index.
    int choice(const QString &key, const QStringList &words)
    {
        const QString word = value(key);
        if (word.isEmpty())
            return 0;
        const qsizetype index = words.indexOf(word.toLower());
        if (index < 0)
            fault(key, u"“%1”不是 %2 之一"_s.arg(word, words.join(u"、"_s)));
        return int(qMax(index, 0));
    }

    // A table or column name (what), as it goes into SQL unquoted.
    QString name(const QString &key, const QString &what)
    {
        const QString name = value(key);
        if (name.isEmpty())
            fault(key, u"未填写"_s);
        else if (!identifier().match(name).hasMatch())
            fault(key, u"“%1”不是%2名"_s.arg(name, what));
        return name;
    }

    qint32 length(const QString &key)
    {
        const QString number = value(key);
        if (number.isEmpty())
            return 0;
        bool ok = false;
        const qint32 length = number.toInt(&ok);
        if (!ok || length < 0)
            fault(key, u"“%1”不是长度（0 或更大的整数）"_s.arg(number));
        return ok ? qMax(length, 0) : 0;
    }

    bool flag(const QString &key)
    {
        const QString word = value(key).toLower();
        if (word.isEmpty() || word == u"false"_s || word == u"0"_s)
            return false;
        if (word == u"true"_s || word == u"1"_s)
            return true;
        fault(key, u"“%1”既不是 true 也不是 false"_s.arg(value(key)));
        return false;
    }

    CodeListSource codeList(const QString &key)
    {
        CodeListSource list;
        const QString written = value(key);
        const QString select = value(key + u"Sql"_s);
        if (!written.isEmpty() && !select.isEmpty()) {
            fault(key, u"%1 和 %1Sql 只能给出一个"_s.arg(key));
        } else if (!select.isEmpty()) {
            if (!select.startsWith(u"SELECT "_s, Qt::CaseInsensitive))
                fault(key + u"Sql"_s, u"不是 SELECT 语句"_s);
            list.select = select;
        } else if (!apps::parseCodeList(written, list.ids, list.names)) {
            fault(key, u"“%1”不是代码表（代码=文字,...）"_s.arg(written));
        }
        list.column = column(key + u"Column"_s);
        return list;
    }

    // A column's name, or "" when the key is not given.
    QString column(const QString &key)
    {
        const QString name = value(key);
        if (!name.isEmpty() && !identifier().match(name).hasMatch())
            fault(key, u"“%1”不是列名"_s.arg(name));
        return name;
    }

    // "NAME=标题,...": titles by upper-case column name.
    QHash<QString, QString> titles(const QString &key)
    {
        return columnValues(key, u"列标题（列名=标题）"_s,
                            [](const QString &title) { return !title.isEmpty(); });
    }

    // "NAME=0.00,...": number formats by upper-case column name.
    QHash<QString, QString> formats(const QString &key)
    {
        return columnValues(key, u"数字格式（列名=0.00）"_s, isNumberFormat);
    }

    QStringList names(const QString &key)
    {
        QStringList names;
        for (const QString &name : value(key).split(u',', Qt::SkipEmptyParts)) {
            if (!identifier().match(name.trimmed()).hasMatch())
                fault(key, u"“%1”不是列名"_s.arg(name.trimmed()));
            names.append(name.trimmed().toUpper());
        }
        return names;
    }

private:
    // "NAME=VALUE,...", values that pass `valid`, by upper-case column name.
    QHash<QString, QString> columnValues(const QString &key, const QString &what,
                                         bool (*valid)(const QString &))
    {
        QHash<QString, QString> values;
        for (const QString &entry : value(key).split(u',', Qt::SkipEmptyParts)) {
            const qsizetype equals = entry.indexOf(u'=');
            const QString name = entry.left(equals).trimmed();
            const QString text = entry.mid(equals + 1).trimmed();
            if (equals < 0 || !identifier().match(name).hasMatch() || !valid(text)) {
                fault(key, u"“%1”不是%2"_s.arg(entry.trimmed(), what));
                continue;
            }
            values.insert(name.toUpper(), text);
        }
        return values;
    }

    const QSettings &m_settings;
    QString m_where;
    QStringList m_faults;
};

} // namespace

QStringList LogCatalogue::tables() const
{
    QStringList tables;
    for (const LogEntry &entry : m_entries) {
        if (!entry.table.isEmpty())
            tables.append(entry.table);
    }
    return tables;
}

LogCatalogue LogCatalogue::read(const QString &path)
{
    LogCatalogue catalogue;
    const QString file = QFileInfo(path).fileName();
    if (!QFileInfo(path).isFile()) {
        catalogue.m_problems.append(u"%1：没有日志目录文件 %2"_s.arg(file, path));
        return catalogue;
    }
    QSettings settings(path, QSettings::IniFormat);
    if (settings.status() != QSettings::NoError) {
        catalogue.m_problems.append(u"%1：不是 INI 文件"_s.arg(file));
        return catalogue;
    }
    const QString order = text(settings, u"Catalogue/Logs"_s);
    if (order.isEmpty())
        catalogue.m_problems.append(u"%1 [Catalogue] Logs：没有列出日志类型"_s.arg(file));
    const QStringList sections = settings.childGroups();
    for (QString logType : order.split(u',', Qt::SkipEmptyParts)) {
        logType = logType.trimmed();
        const QString where = u"%1 [%2]"_s.arg(file, logType);
        if (!sections.contains(logType)) {
            catalogue.m_problems.append(where + u"：列在 [Catalogue] Logs 中，却没有这一节"_s);
            continue;
        }
        settings.beginGroup(logType);
        catalogue.readEntry(settings, logType, where);
        settings.endGroup();
    }
    return catalogue;
}

void LogCatalogue::readEntry(QSettings &settings, const QString &logType, const QString &where)
{
    SectionReader reader(settings, where);
    const QStringList keys = settings.childKeys();
    for (const QString &key : keys) {
        if (!KnownKeys.contains(key))
            reader.fault(key, u"不认识的键"_s);
    }
    LogEntry entry;
    entry.logType = logType;
    entry.title = reader.value(u"Title"_s);
    if (entry.title.isEmpty())
        reader.fault(u"Title"_s, u"未填写"_s);
    entry.call = LogEntry::Call(reader.choice(u"Call"_s, {u"complex"_s, u"complex-ex"_s}));
    entry.result = LogEntry::Result(reader.choice(u"Result"_s, {u"where"_s, u"select"_s}));
    entry.table = entry.result == LogEntry::Result::Where ? reader.name(u"Table"_s, u"表"_s)
                                                          : reader.value(u"Table"_s);
    entry.key = reader.name(u"Key"_s, u"列"_s);
    entry.dateColumn = reader.column(u"DateColumn"_s);
    entry.timeColumn = reader.column(u"TimeColumn"_s);
    entry.listA = reader.codeList(u"ListA"_s);
    entry.listB = reader.codeList(u"ListB"_s);
    entry.clerkLength = reader.length(u"ClerkLen"_s);
    entry.accLength = reader.length(u"AccLen"_s);
    entry.chequeLength = reader.length(u"ChequeLen"_s);
    entry.showWdh = reader.flag(u"ShowWDH"_s);
    entry.showYjk = reader.flag(u"ShowYJK"_s);
    entry.showOpCode = reader.flag(u"ShowOpCode"_s);
    entry.columnTitles = reader.titles(u"Columns"_s);
    entry.hiddenColumns = reader.names(u"Hide"_s);
    entry.columnFormats = reader.formats(u"Formats"_s);
    if (reader.faults().isEmpty())
        m_entries.append(entry);
    else
        m_problems.append(reader.faults());
}

} // namespace quarry::viewer
