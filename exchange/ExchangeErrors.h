#pragma once

#include <QString>

/// Numbers of the run-time errors that the exchange client itself raises. The person who reads
/// them reads the description: it names the file, and the line where there is one.
namespace ExchangeErrors {
constexpr int BadFile = 3001; ///< a CSV file that says something it may not say
constexpr int BadOption = 3002; ///< a synchronisation option that is none
constexpr int BadNote = 3003; ///< an entries database that another program has marked
constexpr int Refused = 3004; ///< nothing can be done where it was asked for
constexpr int Canceled = 3005; ///< the user has ended the synchronization
} // namespace ExchangeErrors

/// The description of Canceled.
QString CanceledText();

/// Raises clsRunTimeError with the exchange client as its source.
[[noreturn]] void RaiseExchangeError(int number, const QString &description);

/// Raises BadFile as "<file>, line <line>: <what>".
[[noreturn]] void RaiseFileError(const QString &fileName, qint64 line, const QString &what);
