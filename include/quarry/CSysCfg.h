#pragma once

#include <quarry/quarry_export.h>

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

namespace quarry {

class DbConnection;
class IniFile;

// One value read by GetParameter, as quarry-config dump shows it.
struct IniRead
{
    QString section;
    QString key;
    QString value;
    bool defaulted = false; // the key was missing or empty
};

// The station's seal.ini configuration. Every reader owns its own copy:
// create, call GetParameter once, then read the public fields, each named
// after its key.
class QUARRY_EXPORT CSysCfg : public QObject
{
    Q_OBJECT

public:
    explicit CSysCfg(QObject *parent = nullptr);
    ~CSysCfg() override;

    qint16 GetPreChequeNoLength();
    QString GetParamHostIp();
    qint16 GetIfWriteAutoManualResult();
    qint16 GetHyConfigEnable();
    QString GetDownloadFilePath();
    qint16 GetPrintLogMode();
    qint32 GetTalasGsYjkPrintFontSize();
    qint32 GetTalasGsYjkPrintX();
    qint32 GetTalasGsYjkPrintAccnoY();
    qint32 GetTalasGsYjkPrintYjkY();
    qint32 GetTalasGsYjkPrintDateY();
    QStringList GetAccNoType() const;
    QString GetINIData(const QString &section, const QString &key, const QString &defaultValue,
                       const QString &fileName) const;
    bool GetParameter();
    QString GetAccNo(qint16 index) const;
    qint16 GetAccNoLen(qint16 index) const;
    QString GetAccType(qint16 index) const;
    QString GetAccUse(qint16 index) const;
    QString GetAccState(qint16 index) const;
    QString GetCurrencyId(qint16 index) const;
    qint16 GetCheckUsefulLifeKinds(qint16 index) const;
    QString CurHy() const;
    void SetIniData(const QString &section, const QString &key, const QString &value,
                    const QString &fileName) const;
    QString GetLocalQueryString() const;
    QString GetBankAccNo(qint16 index) const;
    double GetDoubleSealQuotaByPztype(qint16 pzType) const;
    void ConnectDb();

    // Gives a connection of the database access library the dialect, the
    // folder of the embedded database files and the ODBC driver of this
    // configuration, as ConnectDb does for its own.
    void prepareConnection(DbConnection &connection) const;
    // The values read by the last GetParameter, in reading order.
    const QList<IniRead> &parameterLog() const { return m_log; }

    QString IniPath;
    QString UserProfile;

    // [DATABASESET]
    QString BASEMODE;
    QString ODBCDRIVER;
    // [SQLSERVER]
    QString SEALSOURCE, LOCALSOURCE, YWSOURCE, SEALBASE, YWBASE, LOCALBASE, SERVER;
    QString CurSealBase, CurYwBase, CurLocalBase; // the "current" database names
    // [BANKPARAM]
    qint16 IsLocalByWdh = 0, DepartIdLength = 0;
    QString SHDH;
    qint16 IFDOWNLOADPARAM = 0, IFDOWNLOADJKBZDEF = 0, IFDOWNLOADPZTYPE = 0, IFCENTRE = 0;
    QString DEPARTID, DQH, AreaId, JKJWDH;
    qint16 MANAGEPARAM = 0;
    qint16 TOTALACCNO = 0;
    QStringList ACCNOTYPE;
    QList<qint16> ACCNOLEN;
    qint16 TOTALBANKACCNO = 0;
    QStringList BANKACCNOTYPE;
    qint16 TOTALACCTYPE = 0;
    QStringList ACCTYPE;
    qint16 TotalAccUse = 0;
    QStringList AccUse;
    qint16 TotalAccState = 0;
    QStringList AccState;
    qint16 TotalCurrencyId = 0;
    QStringList CurrencyId;
    QString CHEQUENOLENGTH;
    qint16 CHGSEALDELAY = 0;
    QString YJCARDID;
    qint16 BankLevel = 0, IFDOWLOADWDDZ = 0, WDHLEN = 0, WDHMAXLEN = 0, WDHMINLEN = 0;
    qint16 AccNoMaxLen = 0;
    // [SEALMODE]
    qint16 IFONLINE = 0, HideChkMod = 0;
    // [XTCHX]; IFQUERYCENTRE is read twice, into two fields.
    qint16 IFQUERYCENTRE = 0, IFJCCENTRE = 0, IFQUERYCENTRE2 = 0, SHOWWFH = 0;
    // [YWCHL]
    qint16 IfGetZlFromCenter = 0, AutoGenerateYjknumber = 0, IfGetMaxYjknumberFromCenter = 0,
           WdhBeginInAccno = 0, InputWdh = 0, IfWriteYjkLogToYwLog = 0, YjkQysjEnable = 0;
    qint32 MaxBoundAccNum = 0;
    qint16 CommunityYjk = 0, IfAllowOtherManModifyAccInfo = 0, XTWH = 0, XTWH_OFFLINE = 0,
           IFSETCALENDER = 0, IFLOCKHYLOGIN = 0, IFDownLoadYWLog = 0, IFQueryCentreLog = 0;
    QString SEALDRIVE;
    qint16 NEEDCONFIRM = 0, ADMPC = 0;
    QString UPDBPATH;
    qint16 CHECKYZH = 0;
    QString BACKUPPATH;
    qint16 ISCENTRE = 0, PARAMETER = 0, ACCTRANSFER = 0, HYTREE = 0;
    QString AccNoFilePath;
    // [NETPARAM]
    qint16 HAVEMAINHOST = 0;
    QString MAINHOST, PARAMETERIP, MAINPORT, HOST, PORT, LOGINID, TRANSID;
    qint16 MASTER = 0, PCNO = 0, IsSingle = 0;
    QString BATPORT, ZHHOST;
    qint16 PRINTLINES = 0, PRINTFONT = 0; // [BANKPARAM], read between ZHHOST and HOSTBASEMODE
    QString HOSTBASEMODE, HOSTSEALBASE, HOSTYWBASE, HOSTLOCALBASE, HOSTSERVER;
    // [ONLINEPARAM] HOST and PORT
    QString ONLINEHOST, ONLINEPORT;
    // [CENTRE]
    qint16 IfWriteInterFaceData = 0;
    QString RECEIVEPATH, SENDPATH, UNPACKPATH, SAVEPATH;
    qint16 IfDownloadAllYj = 0, DownloadSealDelay = 0;
    // [AUTOTRAN]
    QString USER, PASSWORD, REV_SRCFILE, REV_DESFILE, SND_SRCFILE, SND_DESFILE, SND_LOGSRCFILE,
        SND_LOGDESFILE, LOGFILEPATH;
    // [HYADM]
    qint16 HYDHLEN = 0, HYPWDLEN = 0;
    qint32 TRANPORT = 0;
    qint16 FIXEDQX = 0, RMANHY = 0, AUDITHY = 0, SFZHLEN = 0, IFDOWNLOADALLHY = 0,
           CONTRMIMACOUNT = 0, ISCONTRMIMACOUNT = 0, BDMANAGEHY = 0, HYOPMODE = 0,
           HYMANAGEMODE = 0;
    // [sbmk], first group
    qint16 IfPrintYjkNo = 0;
    qint32 PrintYjkNoFontSize = 0, PrintYjkNoCurrentX = 0, PrintYjkNoCurrenty = 0;
    // [YWSH]
    qint16 IfAllowOtherManModifyShFlag = 0, IfGetAccnoByF8 = 0, IfAllowManualPassedAudit = 0,
           IfBranchCheck = 0, WDFHENABLE = 0, IfShowOldYjk = 0, IfShOldGz = 0;
    // [DOWNLOADFTP]
    QString DOWNURL, DOWNDIR, UserName, PassWord;
    // [UPLOADTOFTP], then [Uploadtoftp] UploadPastDays
    qint16 ZIPFILE = 0;
    QString FTPUserName, FTPPassWord, FTPUPLOADURL, UPLOADTIME, UPLOADFilePath;
    qint32 UploadPastDays = 0;
    // [GSMK]
    qint16 YjkGsTerm = 0;
    QString GSSQBFILE;
    qint16 IFXF = 0, IFYJKGSJG = 0, IFPJGSJG = 0, IFZHDJJD = 0, MIMAGS = 0;
    QString XFSQBFILE, GSHOST, GSPORT;
    qint16 IFDOWNLOADGS = 0;
    // [sbmk], second group
    qint16 ChequeBatchNoLength = 0, IfQueryBlacklist = 0;
    QString ImageDesPath, ImageTempPath;
    qint16 FormatMoney = 0, DownloadAccInfoMode = 0, GenerateSealSeriesNo = 0, SealSeriesNoLen = 0;
    qint32 PrintSeriesNoFontSize = 0, PrintSeriesNoCurrentX = 0, PrintSeriesNoCurrenty = 0,
           PrintSeriesNoCurrentX_FirstSeal = 0, PrintSeriesNoCurrenty_FirstSeal = 0;
    // [SBMK]
    qint16 DelTmpDoubleSeal = 0, YYZCS = 0, YYRate = 0, IfSendPjsblogToCenter = 0, MoneyLen = 0,
           IfChequeLenMustEqualMaxLen = 0, CheckUsefulLife = 0;
    qint16 TotalCheckUsefulLifeKind = 0;
    QList<qint16> CheckUsefulLifeKind;
    qint16 IfContinueByCheckUsefulLife = 0, IfQueryBlackListAndGs = 0, IfAllowPjReSeal = 0,
           DoubleSeal = 0, SetDoubleSealQuotaType = 0;
    double DoubleSealQuota = 0;
    qint16 TotalSpecialDoubleSealQuota = 0;
    QList<qint16> SpecialDoubleSealPztype;
    QList<double> SpecialDoubleSealQuota;
    qint16 ZxDelay = 0;
    // [YJK]
    qint16 IfAllowModiSameYjkno = 0, IfHintContinueDuplicateYjk = 0, YJKLENGTH = 0,
           YjkInputLength = 0;
    // [gzseal], [ssCenter], [agent], [JC]
    qint16 gzenable = 0, CurdayManualSet = 0, IfClearLocalData = 0, IfWriteHistoryZl = 0,
           JcManualSealEnable = 0;
    // [USER] and the codes derived from it
    QString MODE, UpperMode, SubMode;
    qint16 QueryHintMode = 0;
    qint16 ProfileCode = 0, UpperModeCode = 0, SubModeCode = 0;
    // Profile sections: [Hopas], [Gugal], [Zacen], [Gofos]
    qint16 FontSize = 0;
    qint32 CurrentX = 0, CurrentY = 0;
    QString HostIp, Port;
    qint16 MaxSealCount = 0;
    qint16 PrintReceiptFontSize = 0, PrintReceiptCurrentX = 0, PrintReceiptCurrentY = 0;

private:
    qint16 GetMaxLength(const QList<qint16> &values, qint16 count) const;
    QString GetParamValue(const QString &section, const QString &key, const QString &defaultValue);

    // The file a profile-function call reads or writes: IniPath for "SEAL.INI".
    QString iniFileFor(const QString &fileName) const;

    // Readers used by GetParameter: each reads one key from the snapshot of
    // seal.ini, records it in the log and converts it.
    QString readString(const QString &section, const QString &key, const QString &defaultValue);
    qint16 readInteger(const QString &section, const QString &key, const QString &defaultValue);
    qint32 readLong(const QString &section, const QString &key, const QString &defaultValue);
    double readDouble(const QString &section, const QString &key, const QString &defaultValue);
    qint16 readCount(const QString &section, const QString &key, const QString &defaultValue);
    QStringList readStrings(const QString &section, const QString &prefix, qint16 count,
                            const QString &defaultValue);

    void readDatabaseSettings();
    void readBankParam();
    void readAccountLists();
    void readCodeLists();
    void readStationSettings();
    void readNetParam();
    void readCentreSettings();
    void readTellerAdministration();
    void readAuditAndFtp();
    void readPrintAndSeries();
    void readDoubleSealSettings();
    void readSealCardAndFlags();
    void readProfile();
    void readProfileKeys();

    const IniFile *m_snapshot = nullptr; // seal.ini while GetParameter runs

    // Lazily read values and their "not read yet" marks.
    qint16 PreChequeNoLength = -1;
    QString ParamHostIp;
    qint16 IfWriteAutoManualResult = -1;
    qint16 HyConfigEnable = -1;
    QString DownloadFilePath;
    qint16 PrintLogMode = -100;
    qint32 TalasGsYjkPrintFontSize = 0, TalasGsYjkPrintX = 0, TalasGsYjkPrintAccnoY = 0,
           TalasGsYjkPrintYjkY = 0, TalasGsYjkPrintDateY = 0;

    std::unique_ptr<DbConnection> m_localDb;
    QList<IniRead> m_log;
};

} // namespace quarry
