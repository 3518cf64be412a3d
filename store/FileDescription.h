#pragma once

#include "store/SqliteFile.h"

#include <QString>

#include <string>

/// What a file says about itself: the one row of its table Record_Store.
///
/// Format: version 1 has no columns Format_Version, Content_Digest, and Check_Value. From version 2
///         on all three are there, so that damage to the name of one does not turn the checks off.
/// Checks: Check_Value is the check value of the row's other values. It is empty where another
///         program has changed the row, and then nothing is checked.
/// Errors: StoreErrors::Damaged for a row that is not as it was written, NewerFormat for a version
///         that this program does not know; both name the file.
class FileDescription
{
public:
    static constexpr qint64 CurrentFormat = 2;

    explicit FileDescription(const QString &fileName); ///< for the errors

    /// Creates the table with a row of these values.
    void Create(const SqliteFile &file) const;
    void Read(const SqliteFile &file);
    /// Reads the row again; the columns are those that Read found.
    void Refresh(const SqliteFile &file);
    /// Writes the note, the digest, and the check value.
    void Write(const SqliteFile &file) const;

    /// Whether the row has a place for a digest and for its check value.
    bool IsChecked() const { return m_isChecked; }

    qint64 TypeCode = 0;
    std::string TableName;
    std::string SchemaText;
    std::string Note;
    std::string ContentDigest; ///< see ContentDigest.h; empty: the records are not judged
    bool HasCheckValues = false; ///< each record of the table has a check value

private:
    std::string CheckText() const;
    [[noreturn]] void RaiseDamaged() const;
    void RefuseNewer(const SqliteFile &file) const;

    QString m_fileName;
    qint64 m_format = CurrentFormat;
    bool m_isChecked = true;
};
