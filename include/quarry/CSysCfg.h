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

/// One value read by GetParameter, as quarry-config dump shows it.
struct IniRead
{
    QString section;        ///< Its section,
    QString key;            ///< its key
    QString value;          ///< and the value taken (the default where it was missing).
    bool defaulted = false; ///< The key was missing or empty.
};

/// A value of seal.ini that GetParameter cannot take, as inspectParameters()
/// finds it.
struct IniFault
{
    qsizetype read = 0;  ///< Its place in CSysCfg::parameterLog(),
    qint32 number = 0;   ///< the number of the error GetParameter stops with there
    QString description; ///< and its description.
};

/// The station's seal.ini configuration. Every reader owns its own copy:
/// create, call GetParameter once, then read the public fields, each named
/// after its key. A value that cannot be converted ends GetParameter, which
/// then tells the operator.
class QUARRY_EXPORT CSysCfg : public QObject
{
    Q_OBJECT

public:
    /// Finds seal.ini (see IniPath); reads nothing yet.
    explicit CSysCfg(QObject *parent = nullptr);
    ~CSysCfg() override;

    /// @name Keys read on first use
    /// Each reads its key the first time it is called and keeps the value.
    ///@{

    /// [Cukal] PreChequeNoLength, default 10.
    qint16 GetPreChequeNoLength();
    /// [BANKPARAM] PARAMHOSTIP, default [NETPARAM] HOST.
    QString GetParamHostIp();
    /// [LogCen] IfWriteAutoManualResult, default 0.
    qint16 GetIfWriteAutoManualResult();
    /// [HYADM] HyConfigEnable, default 1.
    qint16 GetHyConfigEnable();
    /// [Atktran] DownloadFilePath, default "".
    QString GetDownloadFilePath();
    /// [rzgl] PrintLogMode, default 0.
    qint16 GetPrintLogMode();
    /// [Talas] GsYjkPrintFontSize, default 12.
    qint32 GetTalasGsYjkPrintFontSize();
    /// [Talas] GsYjkPrintX, default 200.
    qint32 GetTalasGsYjkPrintX();
    /// [Talas] GsYjkPrintAccnoY, default 500.
    qint32 GetTalasGsYjkPrintAccnoY();
    /// [Talas] GsYjkPrintYjkY, default 500.
    qint32 GetTalasGsYjkPrintYjkY();
    /// [Talas] GsYjkPrintDateY, default 500.
    qint32 GetTalasGsYjkPrintDateY();
    ///@}

    /// A copy of ACCNOTYPE.
    QStringList GetAccNoType() const;
    /// The value of section and key of the INI file fileName ("SEAL.INI" is
    /// IniPath), or defaultValue when it is missing or empty.
    QString GetINIData(const QString &section, const QString &key, const QString &defaultValue,
                       const QString &fileName) const;
    /// Reads every key of seal.ini into the public fields. False, after
    /// telling the operator "初始化系统参数错误！", when a value cannot be
    /// converted; the values read before it stay.
    bool GetParameter();
    /// Reads seal.ini as GetParameter does, but tells no one, writes nothing
    /// back, and goes on past a value it cannot take (its field gets 0), so
    /// that parameterLog() lists every key a complete read takes.
    /// The values it could not take, in reading order: GetParameter stops at
    /// the first of them.
    QList<IniFault> inspectParameters();
    /// @name Elements of the lists, "" or 0 past their counts
    ///@{

    /// ACCNOTYPE(index).
    QString GetAccNo(qint16 index) const;
    /// The length of ACCNOTYPE(index).
    qint16 GetAccNoLen(qint16 index) const;
    /// ACCTYPE(index).
    QString GetAccType(qint16 index) const;
    /// AccUse(index).
    QString GetAccUse(qint16 index) const;
    /// AccState(index).
    QString GetAccState(qint16 index) const;
    /// CurrencyId(index).
    QString GetCurrencyId(qint16 index) const;
    /// CheckUsefulLifeKind(index).
    qint16 GetCheckUsefulLifeKinds(qint16 index) const;
    /// BANKACCNOTYPE(index).
    QString GetBankAccNo(qint16 index) const;
    ///@}
    /// The current teller, [LOGIN] CURHY, read anew on every call.
    QString CurHy() const;
    /// Writes value to section and key of the INI file fileName ("SEAL.INI"
    /// is IniPath), changing no other byte of it.
    void SetIniData(const QString &section, const QString &key, const QString &value,
                    const QString &fileName) const;
    /// The account-number condition of the station's account patterns, each
    /// written into its literal as the station's dialect reads it.
    QString GetLocalQueryString() const;
    /// The double-seal quota of the voucher type: its special quota where
    /// there is one, else DoubleSealQuota.
    double GetDoubleSealQuotaByPztype(qint16 pzType) const;
    /// Opens the connection to the local database.
    void ConnectDb();

    /// Gives a connection of the database access library the dialect, the
    /// folder of the embedded database files and the ODBC driver of this
    /// configuration, as ConnectDb does for its own.
    void prepareConnection(DbConnection &connection) const;
    /// The values read by the last GetParameter, in reading order.
    const QList<IniRead> &parameterLog() const { return m_log; }

    /// The seal.ini that GetParameter reads: the one beside the library, else
    /// the one that CONVERT.INI names.
    QString IniPath;
    /// $USERPROFILE, else $HOME, cut to 200 characters.
    QString UserProfile;

    /// @name [DATABASESET]
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
    QString BASEMODE;
    QString ODBCDRIVER;
    ///@}
    /// @name [SQLSERVER]
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
    QString SEALSOURCE, LOCALSOURCE, YWSOURCE, SEALBASE, YWBASE, LOCALBASE, SERVER;
    QString CurSealBase, CurYwBase, CurLocalBase; ///< the "current" database names
    ///@}
    /// @name [BANKPARAM]
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
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
    ///@}
    /// @name [SEALMODE]
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
    qint16 IFONLINE = 0, HideChkMod = 0;
    ///@}
    /// @name [XTCHX]; IFQUERYCENTRE is read twice, into two fields.
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
    qint16 IFQUERYCENTRE = 0, IFJCCENTRE = 0, IFQUERYCENTRE2 = 0, SHOWWFH = 0;
    ///@}
    /// @name [YWCHL]
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
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
    ///@}
    /// @name [NETPARAM]
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
    qint16 HAVEMAINHOST = 0;
    QString MAINHOST, PARAMETERIP, MAINPORT, HOST, PORT, LOGINID, TRANSID;
    qint16 MASTER = 0, PCNO = 0, IsSingle = 0;
    QString BATPORT, ZHHOST;
    qint16 PRINTLINES = 0, PRINTFONT = 0; ///< [BANKPARAM], read between ZHHOST and HOSTBASEMODE
    QString HOSTBASEMODE, HOSTSEALBASE, HOSTYWBASE, HOSTLOCALBASE, HOSTSERVER;
    ///@}
    /// @name [ONLINEPARAM] HOST and PORT
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
    QString ONLINEHOST, ONLINEPORT;
    ///@}
    /// @name [CENTRE]
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
    qint16 IfWriteInterFaceData = 0;
    QString RECEIVEPATH, SENDPATH, UNPACKPATH, SAVEPATH;
    qint16 IfDownloadAllYj = 0, DownloadSealDelay = 0;
    ///@}
    /// @name [AUTOTRAN]
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
    QString USER, PASSWORD, REV_SRCFILE, REV_DESFILE, SND_SRCFILE, SND_DESFILE, SND_LOGSRCFILE,
        SND_LOGDESFILE, LOGFILEPATH;
    ///@}
    /// @name [HYADM]
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
    qint16 HYDHLEN = 0, HYPWDLEN = 0;
    qint32 TRANPORT = 0;
    qint16 FIXEDQX = 0, RMANHY = 0, AUDITHY = 0, SFZHLEN = 0, IFDOWNLOADALLHY = 0,
           CONTRMIMACOUNT = 0, ISCONTRMIMACOUNT = 0, BDMANAGEHY = 0, HYOPMODE = 0, HYMANAGEMODE = 0;
    ///@}
    /// @name [sbmk], first group
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
    qint16 IfPrintYjkNo = 0;
    qint32 PrintYjkNoFontSize = 0, PrintYjkNoCurrentX = 0, PrintYjkNoCurrenty = 0;
    ///@}
    /// @name [YWSH]
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
    qint16 IfAllowOtherManModifyShFlag = 0, IfGetAccnoByF8 = 0, IfAllowManualPassedAudit = 0,
           IfBranchCheck = 0, WDFHENABLE = 0, IfShowOldYjk = 0, IfShOldGz = 0;
    ///@}
    /// @name [DOWNLOADFTP]
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
    QString DOWNURL, DOWNDIR, UserName, PassWord;
    ///@}
    /// @name [UPLOADTOFTP], then [Uploadtoftp] UploadPastDays
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
    qint16 ZIPFILE = 0;
    QString FTPUserName, FTPPassWord, FTPUPLOADURL, UPLOADTIME, UPLOADFilePath;
    qint32 UploadPastDays = 0;
    ///@}
    /// @name [GSMK]
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
    qint16 YjkGsTerm = 0;
    QString GSSQBFILE;
    qint16 IFXF = 0, IFYJKGSJG = 0, IFPJGSJG = 0, IFZHDJJD = 0, MIMAGS = 0;
    QString XFSQBFILE, GSHOST, GSPORT;
    qint16 IFDOWNLOADGS = 0;
    ///@}
    /// @name [sbmk], second group
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
    qint16 ChequeBatchNoLength = 0, IfQueryBlacklist = 0;
    QString ImageDesPath, ImageTempPath;
    qint16 FormatMoney = 0, DownloadAccInfoMode = 0, GenerateSealSeriesNo = 0, SealSeriesNoLen = 0;
    qint32 PrintSeriesNoFontSize = 0, PrintSeriesNoCurrentX = 0, PrintSeriesNoCurrenty = 0,
           PrintSeriesNoCurrentX_FirstSeal = 0, PrintSeriesNoCurrenty_FirstSeal = 0;
    ///@}
    /// @name [SBMK]
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
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
    ///@}
    /// @name [YJK]
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
    qint16 IfAllowModiSameYjkno = 0, IfHintContinueDuplicateYjk = 0, YJKLENGTH = 0,
           YjkInputLength = 0;
    ///@}
    /// @name [gzseal], [ssCenter], [agent], [JC]
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
    qint16 gzenable = 0, CurdayManualSet = 0, IfClearLocalData = 0, IfWriteHistoryZl = 0,
           JcManualSealEnable = 0;
    ///@}
    /// @name [USER] and the codes derived from it
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
    QString MODE, UpperMode, SubMode;
    /// 2: the dialogs ask before an empty query.
    qint16 QueryHintMode = 0;
    /// The bank profile of MODE (0 to 65, 0 for an unknown name), and those
    /// of UpperMode and SubMode.
    qint16 ProfileCode = 0, UpperModeCode = 0, SubModeCode = 0;
    ///@}
    /// @name Profile sections: [Hopas], [Gugal], [Zacen], [Gofos]
    ///@{

    /// The values of the keys of the same names, as GetParameter read them.
    qint16 FontSize = 0;
    qint32 CurrentX = 0, CurrentY = 0;
    QString HostIp, Port;
    qint16 MaxSealCount = 0;
    qint16 PrintReceiptFontSize = 0, PrintReceiptCurrentX = 0, PrintReceiptCurrentY = 0;
    ///@}

private:
    qint16 GetMaxLength(const QList<qint16> &values, qint16 count) const;
    QString GetParamValue(const QString &section, const QString &key, const QString &defaultValue);

    // The file a profile-function call reads or writes: IniPath for "SEAL.INI".
    QString iniFileFor(const QString &fileName) const;

    // Reads every key in order; raises the first error unless inspecting.
    void readAll();
    // What convert gives for the value read last; when it raises an error,
    // an inspection notes it and takes the type's zero.
    template<typename Convert>
    auto taken(Convert convert);

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
    QList<IniFault> *m_faults = nullptr; // while inspectParameters runs
};

} // namespace quarry
