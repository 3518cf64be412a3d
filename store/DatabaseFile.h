#pragma once

#include "store/CheckValue.h"
#include "store/FileDescription.h"
#include "store/Schema.h"
#include "store/SqliteFile.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// A field value as a file holds it: UTF-8 text, or a number (Currency scaled by 10,000, Date as
/// seconds on the wall clock).
using StoredValue = std::variant<std::string, qint64>;
using StoredRow = std::vector<StoredValue>;

/// One SQLite file with one table of ours.
///
/// The creator's number is the file's application_id; FileDescription is what the file says about
/// itself. The records are protected in one of two ways:
/// - A digest of all records, in the description. It is written with every transaction. It is
///   judged when the rows are read, as long as no other program has written into the file.
/// - Where the table has a text column Check_Value next to its fields, a check value of each
///   record. It is empty where another program wrote the record, until the record is next written
///   here.
///
/// Errors: clsRunTimeError with a number of StoreErrors and a text that names the file. A file
///         that is not ours is recognized from its first bytes, before SQLite touches it.
class DatabaseFile
{
public:
    /// Null when the file does not exist.
    static std::unique_ptr<DatabaseFile> Open(const QString &fileName, quint32 creator);

    /// Begins a new file; CreateTable completes it. Until then it has a name of its own, so that a
    /// file under `fileName` is whole whenever it is there. Raises AlreadyExists when there is one
    /// already.
    static std::unique_ptr<DatabaseFile> Create(
        const QString &fileName, quint32 type, quint32 creator);

    ~DatabaseFile();
    DatabaseFile(const DatabaseFile &) = delete;
    DatabaseFile &operator=(const DatabaseFile &) = delete;

    const QString &FileName() const { return m_fileName; }
    bool HasTable() const { return !m_schema.empty(); }
    const Schema &Fields() const { return m_schema; }

    /// The table that is created next has a check value in each record, and no digest.
    void KeepCheckValues() { m_about.HasCheckValues = true; }
    bool HasCheckValues() const { return m_about.HasCheckValues; }

    void CreateTable(const QString &name, const QString &schemaText);

    /// A row as the file gives it; the values are valid during the call only.
    struct RowSource
    {
        virtual qint64 RowId() const = 0;
        virtual std::string_view Text(int field) const = 0;
        /// A Currency or Date value. Raises BadRecord for a text that is no date.
        virtual qint64 Number(int field) const = 0;
        /// False when there is a check value, and the fields are not those that it was made of.
        virtual bool IsAsSaved() const = 0;

    protected:
        ~RowSource() = default;
    };

    /// From now on no write waits for the disk, and there is no digest: after a crash of the
    /// computer, or of the program in the middle of a write, the file may be unusable.
    void MakeScratch() { m_file.MakeScratch(); }

    /// Raises Damaged when the file's pages do not fit together: rows may be missing then.
    void CheckIntegrity() const { m_file.CheckIntegrity(); }
    /// Passes on all rows in stored order. Raises Damaged, when all have been passed on, if they
    /// are not those that the digest was made of.
    void ReadRows(const std::function<void(const RowSource &)> &row);
    /// The row with that id, empty when it is gone or holds a text that is no date.
    StoredRow ReadRow(qint64 rowId);
    qint64 RowCount();
    /// About how many rows there are; costs nothing.
    qint64 RowCountGuess();

    /// Changes when another program has written into the file.
    qint64 DataVersion() const { return m_file.DataVersion(); }

    void Begin(); ///< a writing transaction
    bool InTransaction() const { return m_file.InTransaction(); } ///< see SqliteFile
    void Commit(); ///< see SqliteFile
    void Rollback() noexcept;

    qint64 Insert(const StoredRow &row); ///< the new row's id
    void Update(qint64 rowId, const StoredRow &row);
    void Delete(qint64 rowId);

    QString Note();
    void SetNote(const QString &note); ///< in a transaction

private:
    using Statement = SqliteFile::Statement;
    class Source;

    DatabaseFile(const QString &fileName, const QString &openName);

    void LoadDefinition();
    void CheckColumns(const SqliteFile::ColumnTypes &columns) const;
    void LookForCheckValues(const SqliteFile::ColumnTypes &columns) const;
    void DefineTable(const std::string &columns, quint32 creator);
    bool KeepsDigest() const;
    /// What the sum of the records must be; std::nullopt when it is not to be judged.
    std::optional<quint64> ExpectedSum();
    quint64 PassRows(
        const std::function<void(const RowSource &)> &row, bool sums); ///< 0 without sums
    void WriteDigest();
    quint64 SumOf(qint64 rowId, const StoredRow &row) const;
    quint64 StoredSumOf(qint64 rowId);
    void AddFields(CheckValue &value, const StoredRow &row) const;
    void BindRow(Statement &statement, const StoredRow &row) const;
    std::string ColumnNames() const;
    std::string ReadColumns() const;

    QString m_fileName;
    QString m_openName; // differs from m_fileName until CreateTable completes the file
    SqliteFile m_file;
    FileDescription m_about;
    std::string m_quotedTable;
    Schema m_schema;
    quint32 m_creator = 0; // of a new file
    bool m_hasWritten = false; // in the transaction, like the next
    std::optional<quint64> m_sum; // of the records; empty: to be read again
    std::unique_ptr<Statement> m_insert; // kept, because a bulk of records is inserted one by one
    std::unique_ptr<Statement> m_delete; // likewise, deleted
};

/// Removes a database file and its journal; false when there was none.
/// Errors: StoreErrors::NotDeleted, naming the file.
bool DeleteDatabaseFile(const QString &fileName);
