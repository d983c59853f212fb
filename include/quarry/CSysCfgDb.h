#pragma once

#include <quarry/CSysCfg.h>
#include <quarry/quarry_export.h>

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

namespace quarry {

class DbConnection;

/// The station's configuration as the databases hold it: the seal.ini
/// configuration, the business date of the seal database and the reference
/// lists of the local database.
///
/// Call GetParameter once before reading a list; the getters never load by
/// themselves and give 0 or "" before it. Index getters give "" for an index
/// at or past the count and raise QuarryError (SubscriptOutOfRange) for a
/// negative one. Every operation that opens a database closes it again.
class QUARRY_EXPORT CSysCfgDb : public QObject
{
    Q_OBJECT

public:
    /// Reads the station's seal.ini; opens no database yet.
    explicit CSysCfgDb(QObject *parent = nullptr);
    ~CSysCfgDb() override;

    /// The configuration, the same object every time, owned by this one.
    CSysCfg *GetObSysCfg() const;
    /// @name Reference lists of the bank profile, loaded by GetParameter
    ///@{

    /// How many account states there are.
    qint16 GetTotalAccState() const;
    /// The code of account state Index.
    QString GetAccStateId(qint16 Index) const;
    /// The name of account state Index.
    QString GetAccStateName(qint16 Index) const;
    /// How many currencies there are.
    qint16 GetTotalCurrencyId() const;
    /// The code of currency Index.
    QString GetCurrencyId(qint16 Index) const;
    /// The name of currency Index.
    QString GetCurrencyName(qint16 Index) const;
    /// How many account types there are.
    qint16 GetTotalAccType() const;
    /// The name of account type Index.
    QString GetAccTypeName(qint16 Index) const;
    /// How many account state words there are.
    qint16 GetTotalAccStateWord() const;
    /// The code of account state word Index. At or past the count this
    /// raises QuarryError (TypeMismatch) instead of giving 0, as hosts have
    /// always seen it.
    qint16 GetAccStateWordId(qint16 Index) const;
    /// The name of account state word Index.
    QString GetAccStateWordName(qint16 Index) const;
    ///@}
    /// Loads the lists of the bank profile: 58 the import lists, 61 the field
    /// code tables, any other nothing. False, after telling the operator,
    /// when a database could not be read.
    bool GetParameter();
    /// The business date "yyyy-mm-dd", read from the seal database once and
    /// then kept; today's date when the database holds none. Raises
    /// QuarryError 2000 when the database cannot be reached.
    QString GetToday();
    /// @name Descriptions of codes
    /// The code is compared without regard to case and surrounding blanks;
    /// "" when unknown.
    ///@{

    /// The description of a currency code.
    QString GetCurrDescById(const QString &strCurrId) const;
    /// The description of a cash/transfer flag code.
    QString GetTcFlagDescById(const QString &strTcFlagId) const;
    /// The description of a seal-password flag code.
    QString GetSealPwdFDescById(const QString &strSealPwdFId) const;
    ///@}

private:
    /// Codes and their names, in parallel.
    struct CodeList
    {
        QStringList ids;
        QStringList names;
    };

    void ConnectSealDb();
    void ConnectLocalDb();
    void DisConnectSealDb();
    void DisConnectLocalDb();
    QString ReadBusinessDate() const;

    void openDatabase(DbConnection &connection, const QString &database, const QString &source);
    void loadImportLists();
    void loadFieldCodeTables();
    QList<QStringList> readColumns(const QString &sql, const QStringList &fields) const;
    CodeList readCodeList(const QString &sql, const QString &idField,
                          const QString &nameField) const;

    std::unique_ptr<DbConnection> m_sealDb;
    std::unique_ptr<DbConnection> m_localDb;
    std::unique_ptr<CSysCfg> m_config;
    QString m_today;
    CodeList m_accStates;
    CodeList m_currencies;
    QStringList m_accTypeNames;
    QList<qint16> m_accStateWordIds;
    QStringList m_accStateWordNames;
    CodeList m_curr;
    CodeList m_tcFlag;
    CodeList m_sealPwdF;
};

} // namespace quarry
