// Conditions as CQuarry's dialogs write them, read back in words.

#include "catalogue/ConditionWords.h"
#include "logdialogs/frmSealResultStat.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quarry::viewer;

class TestConditionWords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void words_data()
    {
        QTest::addColumn<QString>("baseMode");
        QTest::addColumn<QString>("condition");
        QTest::addColumn<QString>("words");
        const QString access = u"ACCESS"_s, mySql = u"MYSQL"_s, sqlServer = u"SQLSERVER"_s;
        QTest::newRow("nothing") << access << u" "_s << u"全部记录"_s;
        QTest::newRow("the dialog's where and blanks, any value") << access << u" where  ACCNO  LIKE  '%'  and (Opcode Like '12*')"_s
            << u"账号 不限，并且 柜员号 为 12*"_s;
        QTest::newRow("between keeps its and") << access << u" where Opdate Between '2026-01-01' And '2026-01-31' and chequeno between '00000000' and 'zzzzzzzz'"_s
            << u"日期 从 2026-01-01 到 2026-01-31，并且 票据号 从 00000000 到 zzzzzzzz"_s;
        QTest::newRow("a code described") << access << u" where OPTYPE  LIKE  '3'"_s << u"操作类型 为 3（变更行员权限）"_s;
        QTest::newRow("a list of a qualified column, codes described") << access << u" where log.OPTYPE in (1, 2)"_s << u"操作类型 为 1（增加行员）、2 之一"_s;
        QTest::newRow("contains, ends with") << access << u"( wdh like '%01%' or wdh like '%01')"_s << u"网点号 包含 01，或者 网点号 以 01 结尾"_s;
        QTest::newRow("wildcards inside") << access << u"( wdh like '01_1%')"_s << u"网点号 形如 01_1%（“_”为任一个字符，“%”为任意个字符）"_s;
        QTest::newRow("both cases said once") << access << u"( wdh like '0101' or wdh like '0101')"_s << u"网点号 为 0101"_s;
        QTest::newRow("or within and") << access << u" where (BranchNo='Bank0101' or MasterNo='0101' ) and (OPDATE >='2009-01-01' and OPDATE <='2009-01-31')"_s
            << u"（请求网点 为 Bank0101，或者 上级网点 为 0101），并且 日期 不早于 2009-01-01，并且 日期 不晚于 2009-01-31"_s;
        QTest::newRow("blanks at a value's ends") << access << u" where chequeno between '  12' and ''"_s << u"票据号 从 “  12” 到 “”"_s;
        QTest::newRow("a doubled quote") << access << u" where ( OPTYPE = 'O''Neil') "_s << u"操作类型 为 O'Neil"_s;
        QTest::newRow("unknown parts kept") << access << u" where (accno like '1%') and (opcode like '12' opName like '12') and ()"_s
            << u"账号 以 1 开头，并且 opcode like '12' opName like '12'，并且 ()"_s;
        QTest::newRow("unended literal kept") << access << u" where accno like '1"_s << u"where accno like '1"_s;
        QTest::newRow("in without its list kept") << access << u" where OPTYPE in"_s << u"OPTYPE in"_s;
        QTest::newRow("a column for a value kept") << access << u" where accno = opcode"_s << u"accno = opcode"_s;
        QTest::newRow("a statement kept") << access << u"SELECT wdh FROM HY where wdh like '1%' and opcode = '1'"_s << u"SELECT wdh FROM HY where wdh like '1%' and opcode = '1'"_s;
        QTest::newRow("MySQL backslashes, an escaped %") << mySql << u"pztype like '\\\\%a\\\\\\\\b%' and OPTYPE = 'a\\\\b'"_s << u"凭证类型 以 %a\\b 开头，并且 操作类型 为 a\\b"_s;
        QTest::newRow("MySQL escaped _ among wildcards kept") << mySql << u"pztype like '1\\\\_2_%'"_s << u"pztype like '1\\\\_2_%'"_s;
        QTest::newRow("MySQL escaped quote") << mySql << u"OPTYPE = 'O\\'Neil'"_s << u"操作类型 为 O'Neil"_s;
        QTest::newRow("MySQL escape the component never writes") << mySql << u"OPTYPE = 'a\\nb'"_s << u"OPTYPE = 'a\\nb'"_s;
        QTest::newRow("a backslash elsewhere") << access << u"pztype like 'a\\\\b%'"_s << u"凭证类型 以 a\\\\b 开头"_s;
        QTest::newRow("SQL Server bracket") << sqlServer << u"pztype like '[[]1]%'"_s << u"凭证类型 以 [1] 开头"_s;
        QTest::newRow("a bracket elsewhere") << mySql << u"pztype like '[[]1]%'"_s << u"凭证类型 以 [[]1] 开头"_s;
        QTest::newRow("a class kept") << sqlServer << u"pztype like '[a-c]%'"_s << u"pztype like '[a-c]%'"_s;
        QTest::newRow("date plus time") << sqlServer << u"(opdate+optime between '2026-01-0100:00:00' and '2026-01-3123:59:59')"_s
            << u"日期时间 从 2026-01-01 00:00:00 到 2026-01-31 23:59:59"_s;
        QTest::newRow("date and time concatenated") << mySql << u"(concat(opdate,optime) between '2026-01-0100:00:00' and '9999-99-9923:59:59')"_s
            << u"日期时间 从 2026-01-01 00:00:00 到 9999-99-99 23:59:59"_s;
    }
    void words()
    {
        QFETCH(QString, baseMode);
        QFETCH(QString, condition);
        LogEntry entry;
        entry.columnTitles = {{u"ACCNO"_s, u"账号"_s},       {u"OPDATE"_s, u"日期"_s},    {u"OPTIME"_s, u"时间"_s},
                              {u"OPTYPE"_s, u"操作类型"_s},  {u"WDH"_s, u"网点号"_s},     {u"CHEQUENO"_s, u"票据号"_s},
                              {u"OPCODE"_s, u"柜员号"_s},    {u"BRANCHNO"_s, u"请求网点"_s}, {u"MASTERNO"_s, u"上级网点"_s},
                              {u"PZTYPE"_s, u"凭证类型"_s}};
        entry.listB = {{1, 3}, {u"增加行员"_s, u"变更行员权限"_s}, {}, u"optype"_s};
        QTEST(conditionWords(condition, entry, quarry::sqlDialect(baseMode)), "words");
    }

    void statistics_data()
    {
        QTest::addColumn<QString>("branch");
        QTest::addColumn<QString>("teller");
        QTest::addColumn<QString>("words");
        const QString dates = u"，并且 日期 从 1980-01-01 到 2026-11-25"_s;
        QTest::newRow("dates only") << u"%"_s << u"%"_s << u"网点号 不限，并且 操作员 不限"_s + dates;
        QTest::newRow("a teller without a branch") << u"%"_s << u"12%"_s << u"网点号 不限，并且 操作员 以 12 开头"_s + dates;
        QTest::newRow("both") << u"011%"_s << u"1"_s << u"网点号 以 011 开头，并且 操作员 为 1"_s + dates;
    }
    // The statistics' SELECT read as its dates, branch and teller, on both
    // its dialects.
    void statistics()
    {
        QFETCH(QString, branch);
        QFETCH(QString, teller);
        LogEntry entry;
        entry.result = LogEntry::Result::Select;
        entry.columnTitles = {{u"WDH"_s, u"网点号"_s}, {u"OPCODE"_s, u"操作员"_s}};
        const quarry::SealResultStatValues values{branch, teller, {{}, u"1980-01-01"_s, u"2026-11-25"_s}};
        for (const quarry::SqlDialect dialect : {quarry::SqlDialect::MySql, quarry::SqlDialect::SqlServer})
            QTEST(conditionWords(quarry::sealResultStatement(values, dialect), entry, dialect), "words");
    }
};

QTEST_MAIN(TestConditionWords)
#include "tst_conditionwords.moc"
