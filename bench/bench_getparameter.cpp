// Time of one GetParameter over a generated seal.ini of about 400 lines: what
// every dialog pays when it loads. Run by hand:
//   ./bench/bench_getparameter [-iterations N]

#include <quarry/CSysCfg.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// Sections with many settings, counted lists long enough for a large bank,
// comments and blank lines as administrators leave them.
QString generatedIni()
{
    QString ini = u"; generated station configuration\n"
                  u"[DATABASESET]\nBASEMODE=ACCESS\nODBCDRIVER=FreeTDS\n\n"
                  u"[SQLSERVER]\nSEALBASE=SEAL\nLOCALBASE=LOCAL\nSERVER=SealServer\n\n"
                  u"[BANKPARAM]\nDEPARTID=110101\nWDHLEN=6\nWDHMAXLEN=10\n"_s;
    const auto list
        = [&ini](const QString &count, const QString &prefix, int n, const QString &value) {
              ini += count + u'=' + QString::number(n) + u'\n';
              for (int i = 0; i < n; ++i)
                  ini += prefix + QString::number(i) + u")="_s + value.arg(i) + u'\n';
          };
    list(u"TOTALACCNO"_s, u"ACCNOTYPE("_s, 60, u"%1??????????"_s);
    list(u"TOTALBANKACCNO"_s, u"BANKACCNOTYPE("_s, 60, u"9%1????????"_s);
    list(u"TOTALACCTYPE"_s, u"ACCTYPE("_s, 20, u"账户类型%1"_s);
    list(u"TotalAccUse"_s, u"AccUse("_s, 20, u"用途%1"_s);
    list(u"TotalAccState"_s, u"AccState("_s, 20, u"状态%1"_s);
    list(u"TotalCurrencyId"_s, u"CurrencyId("_s, 20, u"%1"_s);
    ini += u"\n[SBMK]\nDoubleSealQuota=50000\n"_s;
    list(u"TotalCheckUsefulLifeKind"_s, u"CheckUsefulLifeKind("_s, 20, u"%1"_s);
    ini += u"TotalSpecialDoubleSealQuota=20\n"_s;
    for (int i = 0; i < 20; ++i) {
        ini += u"SpecialDoubleSealPztype(%1)=%1\nSpecialDoubleSealQuota(%1)=%2\n"_s.arg(i).arg(1000
                                                                                               * i);
    }
    ini += u"\n[NETPARAM]\nHOST=10.11.1.11\nPCNO=3\n"
           u"[HYADM]\nHYDHLEN=4\nHYPWDLEN=6\nAUDITHY=1\n"
           u"[USER]\nMODE=Vefos\nQueryHintMode=2\n"_s;
    for (int i = 0; i < 100; ++i)
        ini += u"; note %1 left by an administrator\n"_s.arg(i);
    return ini;
}

} // namespace

class BenchGetParameter : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        const QString text = generatedIni();
        QFile file(m_dir.filePath(u"seal.ini"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text.toUtf8());
        qInfo("seal.ini: %lld lines", qlonglong(text.count(u'\n')));
    }

    void getParameter()
    {
        quarry::CSysCfg cfg;
        cfg.IniPath = m_dir.filePath(u"seal.ini"_s);
        QBENCHMARK
        {
            QVERIFY(cfg.GetParameter());
        }
        QCOMPARE(cfg.ProfileCode, qint16(65));
    }

private:
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(BenchGetParameter)
#include "bench_getparameter.moc"
