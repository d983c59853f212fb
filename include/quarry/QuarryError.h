#pragma once

#include <quarry/quarry_export.h>

#include <QString>

#include <exception>

namespace quarry {

// The one error the component raises: the number, source and description of
// the errors the system has always reported (number 2000 and a source such as
// "CSysCfgDb.ConnectSealDb()" for the data classes).
class QUARRY_EXPORT QuarryError : public std::exception
{
public:
    QuarryError(qint32 number, QString source, QString description);

    qint32 number() const noexcept { return m_number; }
    const QString &source() const noexcept { return m_source; }
    const QString &description() const noexcept { return m_description; }

    // "source: description (number)", UTF-8.
    const char *what() const noexcept override;

    // Numbers of the run-time errors that the data classes report alike.
    static constexpr qint32 Overflow = 6;
    static constexpr qint32 SubscriptOutOfRange = 9;
    static constexpr qint32 TypeMismatch = 13;
    static constexpr qint32 DataError = 2000;

private:
    qint32 m_number;
    QString m_source;
    QString m_description;
    QByteArray m_what;
};

} // namespace quarry
