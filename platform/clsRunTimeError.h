#pragma once

#include <QString>

#include <exception>

/// The one exception of the program: what a failing operation raises into its caller.
///
/// Number:      tells the kinds of failure apart; `RunTimeErrors` lists those of the platform,
///              `StoreErrors` those of the record store.
/// Source:      who raised it, for the reader of a report.
/// Description: plain text that names the file or argument, with no full stop at its end.
class clsRunTimeError : public std::exception
{
public:
    clsRunTimeError(int number, const QString &source, const QString &description);

    int Number() const { return m_number; }
    const QString &Source() const { return m_source; }
    const QString &Description() const { return m_description; }

    /// "Error #<number> (<description>)."
    QString Message() const;

    const char *what() const noexcept override { return m_what.constData(); }

private:
    int m_number;
    QString m_source;
    QString m_description;
    QByteArray m_what;
};

/// Error numbers of `platform/`, those that the field has always used for the same failures.
namespace RunTimeErrors {
constexpr int Overflow = 6;
constexpr int OutOfMemory = 7;
constexpr int TypeMismatch = 13;
constexpr int FileNotFound = 53;
constexpr int PastEndOfFile = 62;
constexpr int PermissionDenied = 70; ///< another instance holds the file
constexpr int PathAccess = 75; ///< the folder or file cannot be read or written
constexpr int PathNotFound = 76;
constexpr int Internal = 51; ///< a failure that none of ours describes
constexpr int ProcessNotStarted = 2001;
} // namespace RunTimeErrors
