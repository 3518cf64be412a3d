#pragma once

#include <QtGlobal>

#include <optional>
#include <string>
#include <string_view>

/// The digest of all records of a table, as Record_Store has it.
///
/// Shape:  "<changes>-<sum>" in hexadecimal, 8 and 16 digits.
/// Judged: only while `Changes` is what the file counts. Every other program that writes into a
///         database counts as well, so that its records are accepted; a flipped bit does not count.
struct ContentDigest
{
    quint32 Changes = 0; ///< SqliteFile::Changes() after the transaction that wrote the digest
    /// The sum, modulo 2^64, of the check values of the records, each over its row id and fields:
    /// a change to one record changes it at the cost of that record.
    quint64 Sum = 0;

    std::string Text() const;
    static std::optional<ContentDigest> FromText(std::string_view text);
};
