#include <quarry/CSysCfg.h>
#include <quarry/QuarryError.h>

#include "platform/Blanks.h"
#include "platform/DbConnection.h"
#include "platform/DbRecordSet.h"
#include "platform/IniFile.h"
#include "platform/Paths.h"
#include "platform/SqlLiteral.h"
#include "platform/SystemMessage.h"
#include "support/NumberText.h"

#include <QFileInfo>
#include <QScopeGuard>

#include <array>
#include <cmath>
#include <limits>
#include <optional>

using namespace Qt::StringLiterals;

namespace quarry {

namespace {

const QString SealIni = u"SEAL.INI"_s;
constexpr qsizetype MaxUserProfileLength = 200;

// Run-time errors carry the project's name as their source, as the old
// run-time reported them; the detail says which value caused it.
[[noreturn]] void throwRunTimeError(qint32 number, const QString &detail)
{
    QString reason;
    switch (number) {
    case QuarryError::Overflow:
        reason = u"溢出"_s;
        break;
    case QuarryError::SubscriptOutOfRange:
        reason = u"下标越界"_s;
        break;
    default:
        reason = u"类型不匹配"_s;
        break;
    }
    throw QuarryError(number, u"Quarry"_s, reason + u"："_s + detail);
}

[[noreturn]] void throwRunTimeError(qint32 number, const QString &section, const QString &key,
                                    const QString &value)
{
    throwRunTimeError(number, u"[%1] %2=%3"_s.arg(section, key, value));
}

// Rounds half to even into T; nothing when the result does not fit.
template<typename T>
std::optional<T> roundedInteger(double value)
{
    const double rounded = std::nearbyint(value); // the default mode rounds half to even
    if (!std::isfinite(rounded) || rounded < double(std::numeric_limits<T>::min())
        || rounded > double(std::numeric_limits<T>::max()))
        return std::nullopt;
    return T(rounded);
}

template<typename T>
T lenientInteger(const QString &section, const QString &key, const QString &value)
{
    const std::optional<double> number = leadingNumber(value);
    const std::optional<T> result = number ? roundedInteger<T>(*number) : std::nullopt;
    if (!result)
        throwRunTimeError(QuarryError::Overflow, section, key, value);
    return *result;
}

double lenientDouble(const QString &section, const QString &key, const QString &value)
{
    const std::optional<double> number = leadingNumber(value);
    if (!number)
        throwRunTimeError(QuarryError::Overflow, section, key, value);
    return *number;
}

qint16 strictInteger(const QString &section, const QString &key, const QString &value)
{
    const std::optional<double> number = strictNumber(value);
    if (!number)
        throwRunTimeError(QuarryError::TypeMismatch, section, key, value);
    const std::optional<qint16> result = roundedInteger<qint16>(*number);
    if (!result)
        throwRunTimeError(QuarryError::Overflow, section, key, value);
    return *result;
}

// The value as the profile functions give it out (IniFile cuts it as they
// do), or the default when the key is missing or empty; trimmed of blanks.
QString profileValue(const IniFile &ini, const QString &section, const QString &key,
                     const QString &defaultValue, bool *defaulted = nullptr)
{
    const QString value = ini.value(section, key);
    const bool useDefault = value.isEmpty();
    if (defaulted)
        *defaulted = useDefault;
    return trimBlanks(useDefault ? defaultValue : value);
}

// A list element, or the fallback past the end; a negative index is an error.
template<typename T>
T element(const QList<T> &list, qint16 index, const T &fallback, const QString &listName)
{
    if (index < 0)
        throwRunTimeError(QuarryError::SubscriptOutOfRange, u"%1(%2)"_s.arg(listName).arg(index));
    return index < list.size() ? list.at(index) : fallback;
}

// The account types are the one list whose count the old reader dimensioned
// without a check: a count below 1 could not be dimensioned.
void requireDimension(const QString &section, const QString &key, qint16 count)
{
    if (count < 1)
        throwRunTimeError(QuarryError::SubscriptOutOfRange, section, key, QString::number(count));
}

QString countedKey(const QString &prefix, qsizetype index)
{
    return prefix + QString::number(index) + u')';
}

// Numeric lists have their count of elements, zeros, before the first is
// read: a value that fails leaves the ones read before it, and the lists
// read in pairs keep one length.
qsizetype listSize(qint16 count)
{
    return qMax<qsizetype>(count, 0);
}

// The bank profiles in code order; code 21 was never given to a profile.
const std::array<QString, 66> &profileNames()
{
    static const std::array<QString, 66> names = {
        u"普通银行"_s, u"银行1"_s, u"银行2"_s, u"银行3"_s, u"银行4"_s, u"银行5"_s,    u"银行6"_s,
        u"Fecus"_s,    u"Gocal"_s, u"Lagis"_s, u"Funun"_s, u"Kiful"_s, u"Kotis"_s,    u"Rilen"_s,
        u"Nuzis"_s,    u"Dater"_s, u"Zocar"_s, u"Ruzus"_s, u"Dizal"_s, u"Visil"_s,    u"Refol"_s,
        QString(),     u"Nelos"_s, u"Devor"_s, u"Tumar"_s, u"Leden"_s, u"日志输出"_s, u"Lazun"_s,
        u"Nagor"_s,    u"Gucos"_s, u"Sofos"_s, u"Kakon"_s, u"Pucal"_s, u"Fiban"_s,    u"Girur"_s,
        u"Fazos"_s,    u"Nagar"_s, u"Zeber"_s, u"Bunar"_s, u"Hilur"_s, u"Kesen"_s,    u"Rabis"_s,
        u"Kuror"_s,    u"Defes"_s, u"Pezul"_s, u"Talas"_s, u"Rafon"_s, u"Hopas"_s,    u"Sahen"_s,
        u"Guves"_s,    u"Cukal"_s, u"Gugal"_s, u"Gokel"_s, u"Kilur"_s, u"Tecis"_s,    u"Gugul"_s,
        u"Huben"_s,    u"Zuful"_s, u"Zacen"_s, u"Cavul"_s, u"Vikis"_s, u"Lumun"_s,    u"Gofos"_s,
        u"Detan"_s,    u"Ferer"_s, u"Vefos"_s,
    };
    return names;
}

qint16 profileCode(const QString &mode)
{
    const auto &names = profileNames();
    for (qsizetype code = 0; code < qsizetype(names.size()); ++code) {
        if (!names[code].isEmpty() && names[code] == mode)
            return qint16(code);
    }
    return 0;
}

// The code of a name in a list of names, or the current code when the list
// does not have it.
qint16 modeCode(const QString &mode, const QStringList &names, qint16 current)
{
    const qsizetype code = names.indexOf(mode);
    return code >= 0 ? qint16(code) : current;
}

} // namespace

CSysCfg::CSysCfg(QObject *parent)
    : QObject(parent)
{
    IniPath = paths::sealIni();
    UserProfile = paths::userProfile().left(MaxUserProfileLength);
}

CSysCfg::~CSysCfg() = default;

// --- Read and write primitives ---------------------------------------------

QString CSysCfg::iniFileFor(const QString &fileName) const
{
    return paths::resolveIniFile(fileName.toUpper() == SealIni ? IniPath : fileName);
}

QString CSysCfg::GetINIData(const QString &section, const QString &key, const QString &defaultValue,
                            const QString &fileName) const
{
    if (m_snapshot && fileName.toUpper() == SealIni)
        return profileValue(*m_snapshot, section, key, defaultValue);
    return profileValue(IniFile::load(iniFileFor(fileName)), section, key, defaultValue);
}

void CSysCfg::SetIniData(const QString &section, const QString &key, const QString &value,
                         const QString &fileName) const
{
    IniFile::write(iniFileFor(fileName), section, key, value);
}

QString CSysCfg::CurHy() const
{
    return GetINIData(u"LOGIN"_s, u"CURHY"_s, QString(), SealIni);
}

// --- Lazily read values ------------------------------------------------------

qint16 CSysCfg::GetPreChequeNoLength()
{
    if (PreChequeNoLength == -1) {
        PreChequeNoLength = lenientInteger<qint16>(u"Cukal"_s, u"PreChequeNoLength"_s,
                                                   GetINIData(u"Cukal"_s, u"PreChequeNoLength"_s,
                                                              u"10"_s, SealIni));
    }
    return PreChequeNoLength;
}

QString CSysCfg::GetParamHostIp()
{
    if (ParamHostIp.isEmpty())
        ParamHostIp = GetINIData(u"BANKPARAM"_s, u"PARAMHOSTIP"_s, HOST, SealIni);
    return ParamHostIp;
}

qint16 CSysCfg::GetIfWriteAutoManualResult()
{
    if (IfWriteAutoManualResult == -1) {
        IfWriteAutoManualResult
            = lenientInteger<qint16>(u"LogCen"_s, u"IfWriteAutoManualResult"_s,
                                     GetINIData(u"LogCen"_s, u"IfWriteAutoManualResult"_s, u"0"_s,
                                                SealIni));
    }
    return IfWriteAutoManualResult;
}

qint16 CSysCfg::GetHyConfigEnable()
{
    if (HyConfigEnable == -1) {
        HyConfigEnable
            = lenientInteger<qint16>(u"HYADM"_s, u"HyConfigEnable"_s,
                                     GetINIData(u"HYADM"_s, u"HyConfigEnable"_s, u"1"_s, SealIni));
    }
    return HyConfigEnable;
}

QString CSysCfg::GetDownloadFilePath()
{
    if (DownloadFilePath.isEmpty()) {
        QString path = GetINIData(u"Atktran"_s, u"DownloadFilePath"_s, QString(), SealIni);
        if (!path.isEmpty() && !path.endsWith(u'\\'))
            path += u'\\';
        DownloadFilePath = path.replace(u"%USERPROFILE%"_s, UserProfile);
    }
    return DownloadFilePath;
}

qint16 CSysCfg::GetPrintLogMode()
{
    if (PrintLogMode == -100) {
        PrintLogMode
            = lenientInteger<qint16>(u"rzgl"_s, u"PrintLogMode"_s,
                                     GetINIData(u"rzgl"_s, u"PrintLogMode"_s, u"0"_s, SealIni));
    }
    return PrintLogMode;
}

namespace {

// The print positions of the "Talas" profile: read while they hold 0.
qint32 talasValue(const CSysCfg &cfg, qint32 &value, const QString &key,
                  const QString &defaultValue)
{
    if (value == 0) {
        value = lenientInteger<qint32>(u"Talas"_s, key,
                                       cfg.GetINIData(u"Talas"_s, key, defaultValue, SealIni));
    }
    return value;
}

} // namespace

qint32 CSysCfg::GetTalasGsYjkPrintFontSize()
{
    return talasValue(*this, TalasGsYjkPrintFontSize, u"GsYjkPrintFontSize"_s, u"12"_s);
}

qint32 CSysCfg::GetTalasGsYjkPrintX()
{
    return talasValue(*this, TalasGsYjkPrintX, u"GsYjkPrintX"_s, u"200"_s);
}

qint32 CSysCfg::GetTalasGsYjkPrintAccnoY()
{
    return talasValue(*this, TalasGsYjkPrintAccnoY, u"GsYjkPrintAccnoY"_s, u"500"_s);
}

qint32 CSysCfg::GetTalasGsYjkPrintYjkY()
{
    return talasValue(*this, TalasGsYjkPrintYjkY, u"GsYjkPrintYjkY"_s, u"500"_s);
}

qint32 CSysCfg::GetTalasGsYjkPrintDateY()
{
    return talasValue(*this, TalasGsYjkPrintDateY, u"GsYjkPrintDateY"_s, u"500"_s);
}

// --- Lists -------------------------------------------------------------------

QStringList CSysCfg::GetAccNoType() const
{
    return ACCNOTYPE;
}

QString CSysCfg::GetAccNo(qint16 index) const
{
    return element(ACCNOTYPE, index, QString(), u"ACCNOTYPE"_s);
}

qint16 CSysCfg::GetAccNoLen(qint16 index) const
{
    return element(ACCNOLEN, index, qint16(0), u"ACCNOLEN"_s);
}

QString CSysCfg::GetAccType(qint16 index) const
{
    return element(ACCTYPE, index, QString(), u"ACCTYPE"_s);
}

QString CSysCfg::GetAccUse(qint16 index) const
{
    return element(AccUse, index, QString(), u"AccUse"_s);
}

QString CSysCfg::GetAccState(qint16 index) const
{
    return element(AccState, index, QString(), u"AccState"_s);
}

QString CSysCfg::GetCurrencyId(qint16 index) const
{
    return element(CurrencyId, index, QString(), u"CurrencyId"_s);
}

qint16 CSysCfg::GetCheckUsefulLifeKinds(qint16 index) const
{
    return element(CheckUsefulLifeKind, index, qint16(0), u"CheckUsefulLifeKind"_s);
}

QString CSysCfg::GetBankAccNo(qint16 index) const
{
    return element(BANKACCNOTYPE, index, QString(), u"BANKACCNOTYPE"_s);
}

qint16 CSysCfg::GetMaxLength(const QList<qint16> &values, qint16 count) const
{
    qint16 longest = 0;
    for (qsizetype i = 0; i < count && i < values.size(); ++i)
        longest = std::max(longest, values.at(i));
    return longest;
}

QString CSysCfg::GetLocalQueryString() const
{
    // The patterns are the station's text, written into their literals as
    // the dialect reads them; "?" and "*" become LIKE's wildcards after.
    const SqlDialect dialect = sqlDialect(BASEMODE);
    QString condition;
    for (qsizetype i = 0; i < TOTALACCNO && i < ACCNOTYPE.size(); ++i) {
        condition += u"ACCNO like '"_s
            + literalText(trimBlanks(ACCNOTYPE.at(i)), dialect, LiteralUse::LikePattern)
            + u"' or "_s;
    }
    condition.chop(3);
    return condition.replace(u'?', u'_').replace(u'*', u'%');
}

double CSysCfg::GetDoubleSealQuotaByPztype(qint16 pzType) const
{
    const qsizetype index = SpecialDoubleSealPztype.indexOf(pzType);
    return index >= 0 && index < SpecialDoubleSealQuota.size() ? SpecialDoubleSealQuota.at(index)
                                                               : DoubleSealQuota;
}

// --- Database ----------------------------------------------------------------

void CSysCfg::prepareConnection(DbConnection &connection) const
{
    connection.setDatabaseType(BASEMODE);
    connection.setFileFolder(QFileInfo(IniPath).absolutePath());
    connection.setOdbcDriver(ODBCDRIVER);
}

void CSysCfg::ConnectDb()
{
    if (m_localDb)
        return;
    m_localDb = std::make_unique<DbConnection>();
    prepareConnection(*m_localDb);
    m_localDb->open(u"Server="_s + SERVER + u";Database="_s + LOCALBASE, u"BISOL"_s, u"KORMANTE"_s,
                    true);
    if (m_localDb->failed()) {
        throw QuarryError(QuarryError::DataError, u"CSysCfg.ConnectDb()"_s,
                          u"连接数据库"_s + SERVER + u" 失败！"_s + m_localDb->errorText());
    }
}

QString CSysCfg::GetParamValue(const QString &section, const QString &key,
                               const QString &defaultValue)
{
    ConnectDb();
    DbRecordSet records;
    records.open(u"select * from parameter where ParamEnName=? and RegionName=? "
                 u"and ? like wdh and IsValid=1"_s,
                 *m_localDb, {key, section, DEPARTID});
    const QString value = records.eof() ? defaultValue : records.field(u"ParamValue"_s);
    records.close();
    return value;
}

// --- GetParameter ------------------------------------------------------------

QString CSysCfg::readString(const QString &section, const QString &key, const QString &defaultValue)
{
    bool defaulted = false;
    const QString value = profileValue(*m_snapshot, section, key, defaultValue, &defaulted);
    m_log.append({section, key, value, defaulted});
    return value;
}

template<typename Convert>
auto CSysCfg::taken(Convert convert)
{
    try {
        return convert();
    } catch (const QuarryError &error) {
        if (!m_faults)
            throw;
        m_faults->append({m_log.size() - 1, error.number(), error.description()});
        return decltype(convert())();
    }
}

qint16 CSysCfg::readInteger(const QString &section, const QString &key, const QString &defaultValue)
{
    const QString value = readString(section, key, defaultValue);
    return taken([&] { return lenientInteger<qint16>(section, key, value); });
}

qint32 CSysCfg::readLong(const QString &section, const QString &key, const QString &defaultValue)
{
    const QString value = readString(section, key, defaultValue);
    return taken([&] { return lenientInteger<qint32>(section, key, value); });
}

double CSysCfg::readDouble(const QString &section, const QString &key, const QString &defaultValue)
{
    const QString value = readString(section, key, defaultValue);
    return taken([&] { return lenientDouble(section, key, value); });
}

qint16 CSysCfg::readCount(const QString &section, const QString &key, const QString &defaultValue)
{
    const QString value = readString(section, key, defaultValue);
    return taken([&] { return strictInteger(section, key, value); });
}

QStringList CSysCfg::readStrings(const QString &section, const QString &prefix, qint16 count,
                                 const QString &defaultValue)
{
    QStringList values;
    for (qsizetype i = 0; i < count; ++i)
        values.append(readString(section, countedKey(prefix, i), defaultValue));
    return values;
}

bool CSysCfg::GetParameter()
{
    try {
        readAll();
    } catch (const QuarryError &error) {
        tellConfigurationFault(u"初始化系统参数错误！"_s + error.description(), error);
        return false;
    }
    return true;
}

QList<IniFault> CSysCfg::inspectParameters()
{
    QList<IniFault> faults;
    m_faults = &faults;
    const auto stopInspecting = qScopeGuard([this] { m_faults = nullptr; });
    readAll();
    return faults;
}

void CSysCfg::readAll()
{
    m_log.clear();
    const IniFile ini = IniFile::load(iniFileFor(SealIni));
    m_snapshot = &ini;
    const auto forgetSnapshot = qScopeGuard([this] { m_snapshot = nullptr; });
    readDatabaseSettings();
    readBankParam();
    readAccountLists();
    readCodeLists();
    readStationSettings();
    readNetParam();
    readCentreSettings();
    readTellerAdministration();
    readAuditAndFtp();
    readPrintAndSeries();
    readDoubleSealSettings();
    readSealCardAndFlags();
    readProfile();
    readProfileKeys();
}

void CSysCfg::readDatabaseSettings()
{
    BASEMODE = readString(u"DATABASESET"_s, u"BASEMODE"_s, u"ACCESS"_s);
    ODBCDRIVER = readString(u"DATABASESET"_s, u"ODBCDRIVER"_s, u"FreeTDS"_s);

    const QString section = u"SQLSERVER"_s;
    SEALSOURCE = readString(section, u"SEALSOURCE"_s, u"SEALSET"_s);
    LOCALSOURCE = readString(section, u"LOCALSOURCE"_s, u"LOCALSET"_s);
    YWSOURCE = readString(section, u"YWSOURCE"_s, u"YWSET"_s);
    SEALBASE = readString(section, u"SEALBASE"_s, u"SEAL"_s);
    YWBASE = readString(section, u"YWBASE"_s, u"YW"_s);
    LOCALBASE = readString(section, u"LOCALBASE"_s, u"LOCAL"_s);
    SERVER = readString(section, u"SERVER"_s, u"SealServer"_s);
    CurSealBase = SEALBASE;
    CurYwBase = YWBASE;
    CurLocalBase = LOCALBASE;
}

void CSysCfg::readBankParam()
{
    const QString section = u"BANKPARAM"_s;
    IsLocalByWdh = readInteger(section, u"IsLocalByWdh"_s, u"0"_s);
    DepartIdLength = readInteger(section, u"DepartIdLength"_s, u"8"_s);
    SHDH = readString(section, u"SHDH"_s, QString());
    IFDOWNLOADPARAM = readInteger(section, u"IFDOWNLOADPARAM"_s, u"0"_s);
    IFDOWNLOADJKBZDEF = readInteger(section, u"IFDOWNLOADJKBZDEF"_s, u"0"_s);
    IFDOWNLOADPZTYPE = readInteger(section, u"IFDOWNLOADPZTYPE"_s, u"0"_s);
    IFCENTRE = readInteger(section, u"IFCENTRE"_s, u"0"_s);
    DEPARTID = readString(section, u"DEPARTID"_s, u"1"_s);
    DQH = readString(section, u"DQH"_s, u"1"_s);
    AreaId = readString(section, u"AreaId"_s, u"000"_s);
    JKJWDH = readString(section, u"JKJWDH"_s, QString());
    MANAGEPARAM = readInteger(section, u"MANAGEPARAM"_s, u"0"_s);
}

void CSysCfg::readAccountLists()
{
    const QString section = u"BANKPARAM"_s;
    const QString defaultPattern = u"201?????????"_s;
    TOTALACCNO = readCount(section, u"TOTALACCNO"_s, u"1"_s);
    if (TOTALACCNO == 0) {
        // A station without patterns gets the default one, and the file says so.
        TOTALACCNO = 1;
        if (!m_faults)
            SetIniData(section, u"TOTALACCNO"_s, u"1"_s, SealIni);
    }
    ACCNOTYPE = readStrings(section, u"ACCNOTYPE("_s, TOTALACCNO, defaultPattern);
    ACCNOLEN.clear();
    for (const QString &pattern : std::as_const(ACCNOTYPE))
        ACCNOLEN.append(qint16(pattern.size()));

    TOTALBANKACCNO = readCount(section, u"TOTALBANKACCNO"_s, u"-1"_s);
    if (TOTALBANKACCNO == -1) {
        TOTALBANKACCNO = TOTALACCNO;
        BANKACCNOTYPE = ACCNOTYPE;
    } else {
        BANKACCNOTYPE = readStrings(section, u"BANKACCNOTYPE("_s, TOTALBANKACCNO, defaultPattern);
    }
}

void CSysCfg::readCodeLists()
{
    const QString section = u"BANKPARAM"_s;
    TOTALACCTYPE = readCount(section, u"TOTALACCTYPE"_s, u"4"_s);
    taken([&] {
        requireDimension(section, u"TOTALACCTYPE"_s, TOTALACCTYPE);
        return 0;
    });
    ACCTYPE = readStrings(section, u"ACCTYPE("_s, TOTALACCTYPE, QString());
    TotalAccUse = readCount(section, u"TotalAccUse"_s, u"0"_s);
    AccUse = readStrings(section, u"AccUse("_s, TotalAccUse, QString());
    TotalAccState = readCount(section, u"TotalAccState"_s, u"0"_s);
    AccState = readStrings(section, u"AccState("_s, TotalAccState, QString());
    TotalCurrencyId = readCount(section, u"TotalCurrencyId"_s, u"0"_s);
    CurrencyId = readStrings(section, u"CurrencyId("_s, TotalCurrencyId, QString());

    CHEQUENOLENGTH = readString(section, u"CHEQUENOLENGTH"_s, u"4"_s);
    CHGSEALDELAY = readInteger(section, u"CHGSEALDELAY"_s, u"10"_s);
    YJCARDID = readString(section, u"YJCARDID"_s, u"8"_s);
    BankLevel = readInteger(section, u"BankLevel"_s, u"0"_s);
    IFDOWLOADWDDZ = readInteger(section, u"IFDOWLOADWDDZ"_s, u"0"_s);
    WDHLEN = readInteger(section, u"WDHLEN"_s, u"6"_s);
    WDHMAXLEN = readInteger(section, u"WDHMAXLEN"_s, QString::number(WDHLEN));
    WDHMINLEN = readInteger(section, u"WDHMINLEN"_s, QString::number(WDHLEN));
    AccNoMaxLen = GetMaxLength(ACCNOLEN, TOTALACCNO);
}

void CSysCfg::readStationSettings()
{
    IFONLINE = readInteger(u"SEALMODE"_s, u"IFONLINE"_s, u"0"_s);
    HideChkMod = readInteger(u"SEALMODE"_s, u"HideChkMod"_s, u"0"_s);

    IFQUERYCENTRE = readInteger(u"XTCHX"_s, u"IFQUERYCENTRE"_s, u"0"_s);
    IFJCCENTRE = readInteger(u"XTCHX"_s, u"IFJCCENTRE"_s, u"0"_s);
    IFQUERYCENTRE2 = readInteger(u"XTCHX"_s, u"IFQUERYCENTRE"_s, u"0"_s);
    SHOWWFH = readInteger(u"XTCHX"_s, u"SHOWWFH"_s, u"0"_s);

    const QString section = u"YWCHL"_s;
    IfGetZlFromCenter = readInteger(section, u"IfGetZlFromCenter"_s, u"0"_s);
    AutoGenerateYjknumber = readInteger(section, u"AutoGenerateYjknumber"_s, u"0"_s);
    IfGetMaxYjknumberFromCenter = readInteger(section, u"IfGetMaxYjknumberFromCenter"_s, u"0"_s);
    WdhBeginInAccno = readInteger(section, u"WdhBeginInAccno"_s, u"1"_s);
    InputWdh = readInteger(section, u"InputWdh"_s, u"0"_s);
    IfWriteYjkLogToYwLog = readInteger(section, u"IfWriteYjkLogToYwLog"_s, u"0"_s);
    YjkQysjEnable = readInteger(section, u"YjkQysjEnable"_s, u"0"_s);
    MaxBoundAccNum = readLong(section, u"MaxBoundAccNum"_s, u"100"_s);
    CommunityYjk = readInteger(section, u"CommunityYjk"_s, u"0"_s);
    IfAllowOtherManModifyAccInfo = readInteger(section, u"IfAllowOtherManModifyAccInfo"_s, u"0"_s);
    XTWH = readInteger(section, u"XTWH"_s, u"0"_s);
    XTWH_OFFLINE = readInteger(section, u"XTWH_OFFLINE"_s, u"0"_s);
    IFSETCALENDER = readInteger(section, u"IFSETCALENDER"_s, u"0"_s);
    IFLOCKHYLOGIN = readInteger(section, u"IFLOCKHYLOGIN"_s, u"0"_s);
    IFDownLoadYWLog = readInteger(section, u"IFDownLoadYWLog"_s, u"0"_s);
    IFQueryCentreLog = readInteger(section, u"IFQueryCentreLog"_s, u"0"_s);
    SEALDRIVE = readString(section, u"SEALDRIVE"_s, u"C:"_s);
    NEEDCONFIRM = readInteger(section, u"NEEDCONFIRM"_s, u"1"_s);
    ADMPC = readInteger(section, u"ADMPC"_s, u"0"_s);
    UPDBPATH = readString(section, u"UPDBPATH"_s, u"C:\\SEAL\\STORE"_s);
    CHECKYZH = readInteger(section, u"CHECKYZH"_s, u"0"_s);
    BACKUPPATH = readString(section, u"BACKUPPATH"_s, u"c:\\backup"_s);
    ISCENTRE = readInteger(section, u"ISCENTRE"_s, u"0"_s);
    PARAMETER = readInteger(section, u"PARAMETER"_s, u"0"_s);
    ACCTRANSFER = readInteger(section, u"ACCTRANSFER"_s, u"0"_s);
    HYTREE = readInteger(section, u"HYTREE"_s, u"0"_s);
    AccNoFilePath = readString(section, u"AccNoFilePath"_s, u"c:\\corvane\\accno.txt"_s);
}

void CSysCfg::readNetParam()
{
    const QString section = u"NETPARAM"_s;
    HAVEMAINHOST = readInteger(section, u"HAVEMAINHOST"_s, u"0"_s);
    MAINHOST = readString(section, u"MAINHOST"_s, QString());
    PARAMETERIP = readString(section, u"PARAMETERIP"_s, QString());
    MAINPORT = readString(section, u"MAINPORT"_s, u"1600"_s);
    HOST = readString(section, u"HOST"_s, QString());
    PORT = readString(section, u"PORT"_s, u"1600"_s);
    LOGINID = readString(section, u"LOGINID"_s, QString());
    TRANSID = readString(section, u"TRANSID"_s, QString());
    MASTER = readInteger(section, u"MASTER"_s, u"0"_s);
    PCNO = readInteger(section, u"PCNO"_s, u"1"_s);
    IsSingle = readInteger(section, u"IsSingle"_s, u"0"_s);
    BATPORT = readString(section, u"BATPORT"_s, u"1900"_s);
    ZHHOST = readString(section, u"ZHHOST"_s, QString());
    PRINTLINES = readCount(u"BANKPARAM"_s, u"PRINTLINES"_s, u"60"_s);
    PRINTFONT = readCount(u"BANKPARAM"_s, u"PRINTFONT"_s, u"10"_s);
    HOSTBASEMODE = readString(section, u"HOSTBASEMODE"_s, BASEMODE);
    HOSTSEALBASE = readString(section, u"HOSTSEALBASE"_s, SEALBASE);
    HOSTYWBASE = readString(section, u"HOSTYWBASE"_s, YWBASE);
    HOSTLOCALBASE = readString(section, u"HOSTLOCALBASE"_s, LOCALBASE);
    HOSTSERVER = readString(section, u"HOSTSERVER"_s, HOST);

    ONLINEHOST = readString(u"ONLINEPARAM"_s, u"HOST"_s, QString());
    ONLINEPORT = readString(u"ONLINEPARAM"_s, u"PORT"_s, u"1600"_s);
}

void CSysCfg::readCentreSettings()
{
    QString section = u"CENTRE"_s;
    IfWriteInterFaceData = readInteger(section, u"IfWriteInterFaceData"_s, u"0"_s);
    RECEIVEPATH = readString(section, u"RECEIVEPATH"_s, u"C:\\RECEIVE"_s);
    SENDPATH = readString(section, u"SENDPATH"_s, u"C:\\SEND"_s);
    UNPACKPATH = readString(section, u"UNPACKPATH"_s, u"C:\\UNPACK"_s);
    SAVEPATH = readString(section, u"SAVEPATH"_s, u"C:\\SAVE"_s);
    IfDownloadAllYj = readInteger(section, u"IfDownloadAllYj"_s, u"0"_s);
    DownloadSealDelay = readInteger(section, u"DownloadSealDelay"_s, u"0"_s);

    section = u"AUTOTRAN"_s;
    USER = readString(section, u"USER"_s, QString());
    PASSWORD = readString(section, u"PASSWORD"_s, QString());
    REV_SRCFILE = readString(section, u"REV_SRCFILE"_s, QString());
    REV_DESFILE = readString(section, u"REV_DESFILE"_s, QString());
    SND_SRCFILE = readString(section, u"SND_SRCFILE"_s, QString());
    SND_DESFILE = readString(section, u"SND_DESFILE"_s, QString());
    SND_LOGSRCFILE = readString(section, u"SND_LOGSRCFILE"_s, QString());
    SND_LOGDESFILE = readString(section, u"SND_LOGDESFILE"_s, QString());
    LOGFILEPATH = readString(section, u"LOGFILEPATH"_s, QString());
}

void CSysCfg::readTellerAdministration()
{
    const QString section = u"HYADM"_s;
    HYDHLEN = readCount(section, u"HYDHLEN"_s, u"4"_s);
    HYPWDLEN = readCount(section, u"HYPWDLEN"_s, u"6"_s);
    TRANPORT = readLong(section, u"TRANPORT"_s, u"1700"_s);
    FIXEDQX = readInteger(section, u"FIXEDQX"_s, u"0"_s);
    RMANHY = readInteger(section, u"RMANHY"_s, u"0"_s);
    AUDITHY = readInteger(section, u"AUDITHY"_s, u"0"_s);
    SFZHLEN = readInteger(section, u"SFZHLEN"_s, u"18"_s);
    IFDOWNLOADALLHY = readInteger(section, u"IFDOWNLOADALLHY"_s, u"0"_s);
    CONTRMIMACOUNT = readInteger(section, u"CONTRMIMACOUNT"_s, u"3"_s);
    ISCONTRMIMACOUNT = readInteger(section, u"ISCONTRMIMACOUNT"_s, u"0"_s);
    BDMANAGEHY = readInteger(section, u"BDMANAGEHY"_s, u"0"_s);
    HYOPMODE = readInteger(section, u"HYOPMODE"_s, u"0"_s);
    HYMANAGEMODE = readInteger(section, u"HYMANAGEMODE"_s, u"0"_s);

    IfPrintYjkNo = readInteger(u"sbmk"_s, u"IfPrintYjkNo"_s, u"0"_s);
    if (IfPrintYjkNo >= 1) {
        PrintYjkNoFontSize = readLong(u"sbmk"_s, u"PrintYjkNoFontSize"_s, u"12"_s);
        PrintYjkNoCurrentX = readLong(u"sbmk"_s, u"PrintYjkNoCurrentX"_s, u"100"_s);
        PrintYjkNoCurrenty = readLong(u"sbmk"_s, u"PrintYjkNoCurrenty"_s, u"100"_s);
    }
}

void CSysCfg::readAuditAndFtp()
{
    QString section = u"YWSH"_s;
    IfAllowOtherManModifyShFlag = readInteger(section, u"IfAllowOtherManModifyShFlag"_s, u"0"_s);
    IfGetAccnoByF8 = readInteger(section, u"IfGetAccnoByF8"_s, u"1"_s);
    IfAllowManualPassedAudit = readInteger(section, u"IfAllowManualPassedAudit"_s, u"0"_s);
    IfBranchCheck = readCount(section, u"IfBranchCheck"_s, u"0"_s);
    WDFHENABLE = readInteger(section, u"WDFHENABLE"_s, u"0"_s);
    IfShowOldYjk = readInteger(section, u"IfShowOldYjk"_s, u"0"_s);
    IfShOldGz = readInteger(section, u"IfShOldGz"_s, u"1"_s);

    section = u"DOWNLOADFTP"_s;
    DOWNURL = readString(section, u"DOWNURL"_s, QString());
    DOWNDIR = readString(section, u"DOWNDIR"_s, QString());
    UserName = readString(section, u"UserName"_s, QString());
    PassWord = readString(section, u"PassWord"_s, QString());

    section = u"UPLOADTOFTP"_s;
    ZIPFILE = readInteger(section, u"ZIPFILE"_s, u"0"_s);
    FTPUserName = readString(section, u"FTPUserName"_s, QString());
    FTPPassWord = readString(section, u"FTPPassWord"_s, QString());
    FTPUPLOADURL = readString(section, u"FTPUPLOADURL"_s, QString());
    UPLOADTIME = readString(section, u"UPLOADTIME"_s, u"20:00"_s);
    UPLOADFilePath = readString(section, u"UPLOADFilePath"_s, u"c:\\corvane\\UploadLogToFTP"_s);
    UploadPastDays = readLong(u"Uploadtoftp"_s, u"UploadPastDays"_s, u"0"_s);

    section = u"GSMK"_s;
    YjkGsTerm = readInteger(section, u"YjkGsTerm"_s, u"3"_s);
    GSSQBFILE = readString(section, u"GSSQBFILE"_s, u"C:\\CORVANE\\bin\\Excels\\GS.xls"_s);
    IFXF = readInteger(section, u"IFXF"_s, u"0"_s);
    IFYJKGSJG = readInteger(section, u"IFYJKGSJG"_s, u"0"_s);
    IFPJGSJG = readInteger(section, u"IFPJGSJG"_s, u"0"_s);
    IFZHDJJD = readInteger(section, u"IFZHDJJD"_s, u"0"_s);
    MIMAGS = readInteger(section, u"MIMAGS"_s, u"0"_s);
    XFSQBFILE = readString(section, u"XFSQBFILE"_s, u"C:\\CORVANE\\bin\\Excels\\XF.xls"_s);
    GSHOST = readString(section, u"GSHOST"_s, HOST);
    GSPORT = readString(section, u"GSPORT"_s, u"8080"_s);
    IFDOWNLOADGS = readCount(section, u"IFDOWNLOADGS"_s, u"0"_s);
}

void CSysCfg::readPrintAndSeries()
{
    const QString section = u"sbmk"_s;
    ChequeBatchNoLength = readInteger(section, u"ChequeBatchNoLength"_s, u"1"_s);
    IfQueryBlacklist = readInteger(section, u"IfQueryBlacklist"_s, u"0"_s);
    ImageDesPath = readString(section, u"ImageDesPath"_s, u"c:\\corvane\\bin\\image"_s);
    ImageTempPath = readString(section, u"ImageTempPath"_s, u"c:\\corvane\\bin\\TempPath"_s);
    FormatMoney = readInteger(section, u"FormatMoney"_s, u"0"_s);
    DownloadAccInfoMode = readInteger(section, u"DownloadAccInfoMode"_s, u"0"_s);
    GenerateSealSeriesNo = readInteger(section, u"GenerateSealSeriesNo"_s, u"0"_s);
    if (GenerateSealSeriesNo >= 1) {
        SealSeriesNoLen = readInteger(section, u"SealSeriesNoLen"_s, u"10"_s);
        PrintSeriesNoFontSize = readLong(section, u"PrintSeriesNoFontSize"_s, u"12"_s);
        PrintSeriesNoCurrentX = readLong(section, u"PrintSeriesNoCurrentX"_s, u"100"_s);
        PrintSeriesNoCurrenty = readLong(section, u"PrintSeriesNoCurrenty"_s, u"100"_s);
        PrintSeriesNoCurrentX_FirstSeal
            = readLong(section, u"PrintSeriesNoCurrentX_FirstSeal"_s, u"100"_s);
        PrintSeriesNoCurrenty_FirstSeal
            = readLong(section, u"PrintSeriesNoCurrenty_FirstSeal"_s, u"50"_s);
    }
}

void CSysCfg::readDoubleSealSettings()
{
    const QString section = u"SBMK"_s;
    DelTmpDoubleSeal = readInteger(section, u"DelTmpDoubleSeal"_s, u"1"_s);
    YYZCS = readInteger(section, u"YYZCS"_s, u"1000"_s);
    YYRate = readInteger(section, u"YYRate"_s, u"100"_s);
    IfSendPjsblogToCenter = readInteger(section, u"IfSendPjsblogToCenter"_s, u"0"_s);
    MoneyLen = readInteger(section, u"MoneyLen"_s, u"10"_s);
    IfChequeLenMustEqualMaxLen = readInteger(section, u"IfChequeLenMustEqualMaxLen"_s, u"1"_s);
    CheckUsefulLife = readInteger(section, u"CheckUsefulLife"_s, u"10"_s);
    TotalCheckUsefulLifeKind = readCount(section, u"TotalCheckUsefulLifeKind"_s, u"1"_s);
    CheckUsefulLifeKind = QList<qint16>(listSize(TotalCheckUsefulLifeKind));
    for (qsizetype i = 0; i < CheckUsefulLifeKind.size(); ++i) {
        CheckUsefulLifeKind[i]
            = readInteger(section, countedKey(u"CheckUsefulLifeKind("_s, i), QString());
    }
    IfContinueByCheckUsefulLife = readInteger(section, u"IfContinueByCheckUsefulLife"_s, u"0"_s);
    IfQueryBlackListAndGs = readInteger(section, u"IfQueryBlackListAndGs"_s, u"0"_s);
    IfAllowPjReSeal = readInteger(section, u"IfAllowPjReSeal"_s, u"1"_s);
    DoubleSeal = readInteger(section, u"DoubleSeal"_s, u"0"_s);
    SetDoubleSealQuotaType = readInteger(section, u"SetDoubleSealQuotaType"_s, u"1"_s);
    DoubleSealQuota = readDouble(section, u"DoubleSealQuota"_s, u"-1"_s);
    if (DoubleSealQuota == -1) {
        // -1 (also the default) leaves the quota to the branch's row of the
        // parameter table.
        DoubleSealQuota = taken([&] {
            const QString quota = GetParamValue(section, u"DoubleSealQuota"_s, u"0"_s);
            return lenientDouble(u"parameter"_s, u"DoubleSealQuota"_s, quota);
        });
    }

    TotalSpecialDoubleSealQuota = readCount(u"sbmk"_s, u"TotalSpecialDoubleSealQuota"_s, u"0"_s);
    SpecialDoubleSealPztype = QList<qint16>(listSize(TotalSpecialDoubleSealQuota));
    SpecialDoubleSealQuota = QList<double>(SpecialDoubleSealPztype.size());
    for (qsizetype i = 0; i < SpecialDoubleSealPztype.size(); ++i) {
        SpecialDoubleSealPztype[i]
            = readInteger(section, countedKey(u"SpecialDoubleSealPztype("_s, i), QString());
        SpecialDoubleSealQuota[i]
            = readDouble(section, countedKey(u"SpecialDoubleSealQuota("_s, i), QString());
    }
    ZxDelay = readInteger(section, u"ZxDelay"_s, u"0"_s);
}

void CSysCfg::readSealCardAndFlags()
{
    IfAllowModiSameYjkno = readInteger(u"YJK"_s, u"IfAllowModiSameYjkno"_s, u"0"_s);
    IfHintContinueDuplicateYjk = readInteger(u"YJK"_s, u"IfHintContinueDuplicateYjk"_s, u"0"_s);
    YJKLENGTH = readInteger(u"YJK"_s, u"YJKLENGTH"_s, u"8"_s);
    YjkInputLength = readInteger(u"YJK"_s, u"YjkInputLength"_s, QString::number(YJKLENGTH));

    gzenable = readInteger(u"gzseal"_s, u"gzenable"_s, u"0"_s);
    CurdayManualSet = readInteger(u"ssCenter"_s, u"CurdayManualSet"_s, u"0"_s);
    IfClearLocalData = readInteger(u"agent"_s, u"IfClearLocalData"_s, u"0"_s);
    IfWriteHistoryZl = readInteger(u"agent"_s, u"IfWriteHistoryZl"_s, u"0"_s);
    JcManualSealEnable = readInteger(u"JC"_s, u"JcManualSealEnable"_s, u"0"_s);
}

void CSysCfg::readProfile()
{
    const QString section = u"USER"_s;
    const QString branchMode = u"普通网点"_s;
    MODE = readString(section, u"MODE"_s, u"普通银行"_s);
    ProfileCode = profileCode(MODE);
    UpperMode = readString(section, u"UpperMode"_s, branchMode);
    UpperModeCode = modeCode(UpperMode, {branchMode, u"Letus"_s}, UpperModeCode);
    SubMode = readString(section, u"SubMode"_s, branchMode);
    SubModeCode
        = modeCode(SubMode, {branchMode, u"信贷建库机"_s, u"Teril"_s, u"Gugul"_s, u"Bivol"_s},
                   SubModeCode);
    // 2 asks the operator to confirm a query without any condition.
    QueryHintMode = readInteger(section, u"QueryHintMode"_s, u"0"_s);
}

void CSysCfg::readProfileKeys()
{
    switch (ProfileCode) {
    case 47:
        FontSize = readInteger(u"Hopas"_s, u"FontSize"_s, u"12"_s);
        CurrentX = readLong(u"Hopas"_s, u"CurrentX"_s, u"100"_s);
        CurrentY = readLong(u"Hopas"_s, u"CurrentY"_s, u"100"_s);
        break;
    case 51:
        HostIp = readString(u"Gugal"_s, u"HostIp"_s, u"localhost"_s);
        Port = readString(u"Gugal"_s, u"Port"_s, u"2000"_s);
        break;
    case 58:
        MaxSealCount = readInteger(u"Zacen"_s, u"MaxSealCount"_s, u"20"_s);
        break;
    case 62:
        PrintReceiptFontSize = readInteger(u"Gofos"_s, u"PrintReceiptFontSize"_s, u"12"_s);
        PrintReceiptCurrentX = readInteger(u"Gofos"_s, u"PrintReceiptCurrentX"_s, u"100"_s);
        PrintReceiptCurrentY = readInteger(u"Gofos"_s, u"PrintReceiptCurrentY"_s, u"100"_s);
        break;
    default:
        break;
    }
}

} // namespace quarry
