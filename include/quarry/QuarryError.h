#pragma once

#include <quarry/quarry_export.h>

#include <QString>

#include <exception>

namespace quarry {

/// The one error the component raises: the number, source and description of
/// the errors the system has always reported (number 2000 and a source such as
/// "CSysCfgDb.ConnectSealDb()" for the data classes).
class QUARRY_EXPORT QuarryError : public std::exception
{
public:
    /// An error with its number, source ("Class.Operation()") and description.
    QuarryError(qint32 number, QString source, QString description);

    /// 2000 for the data classes' errors, a run-time number otherwise.
    qint32 number() const noexcept { return m_number; }
    /// Where it arose, "CSysCfgDb.ConnectSealDb()" for example.
    const QString &source() const noexcept { return m_source; }
    /// What went wrong, in the operators' language.
    const QString &description() const noexcept { return m_description; }

    /// "source: description (number)", UTF-8.
    const char *what() const noexcept override;

    /// Numbers of the run-time errors that the data classes report alike.
    static constexpr qint32 Overflow = 6;            ///< A number too large for its type.
    static constexpr qint32 SubscriptOutOfRange = 9; ///< An index past a list's end.
    static constexpr qint32 TypeMismatch = 13;       ///< A text that is no number or date.
    static constexpr qint32 DataError = 2000;        ///< A database or data error.
    /// A dialog asked for in a program that has no QApplication.
    static constexpr qint32 NoApplication = 2001;
    /// A dialog asked for on another thread than the QApplication's.
    static constexpr qint32 NotGuiThread = 2002;

private:
    qint32 m_number;
    QString m_source;
    QString m_description;
    QByteArray m_what;
};

} // namespace quarry
