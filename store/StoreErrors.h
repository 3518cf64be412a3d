#pragma once

#include <QString>

/// Numbers of the run-time errors that the record store raises, one a kind of failure.
namespace StoreErrors {
constexpr int NotADatabase = 1001; ///< the file holds something else, or nothing
constexpr int ForeignCreator = 1002; ///< a database of another program
constexpr int Damaged = 1003; ///< truncated, or its table is not what its schema says
constexpr int Unreadable = 1004;
constexpr int ReadOnly = 1005;
constexpr int Locked = 1006; ///< another program is writing
constexpr int MalformedSchema = 1007;
constexpr int BadHandle = 1008; ///< closed, or never was one
constexpr int BadField = 1009; ///< index out of range, or of another type
constexpr int BadPosition = 1010; ///< past the end of the table
constexpr int AlreadyExists = 1011;
constexpr int NothingBegun = 1012; ///< a write without AddRecord or EditRecord
constexpr int WriteFailed = 1013; ///< the disk is full or refuses
constexpr int ChangedOutside = 1014; ///< another program has changed the record meanwhile
constexpr int NotDeleted = 1015;
constexpr int BadRecord = 1016; ///< a structure or a stored value that does not fit the schema
constexpr int BadArgument = 1017;
constexpr int Incomplete = 1018; ///< a company lacks some of its databases
constexpr int NewerFormat = 1019; ///< a newer version of the program wrote the file
} // namespace StoreErrors

/// Raises clsRunTimeError with the record store as its source.
[[noreturn]] void RaiseStoreError(int number, const QString &description);
