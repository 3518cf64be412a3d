#pragma once

#include "store/CheckValue.h"
#include "store/Schema.h"

#include <QString>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

struct sqlite3;
struct sqlite3_file;
struct sqlite3_stmt;

/// A field value as a file holds it: UTF-8 text, or a number (Currency scaled by 10,000, Date as
/// seconds on the wall clock).
using StoredValue = std::variant<std::string, qint64>;
using StoredRow = std::vector<StoredValue>;

/// One SQLite file with one table of ours.
///
/// The creator's number is the file's application_id. Beside the table a one-row table keeps the
/// type's number, the table's name, the schema text as it was passed, and a note. Where the table
/// has a text column Check_Value beside its fields, each record's check value stands there; it is
/// empty where another program wrote the record, until the record is next written here.
///
/// Errors: clsRunTimeError with a number of StoreErrors and a text that names the file. A file
///         that is not ours is recognised from its first bytes, before SQLite touches it.
class DatabaseFile
{
public:
    /// Null when the file does not exist.
    static std::unique_ptr<DatabaseFile> Open(const QString &fileName, quint32 creator);

    /// Begins a new file; CreateTable completes it. Until then it stands under a name of its own,
    /// so that a file under `fileName` is whole whenever it is there. Raises AlreadyExists when
    /// there is one already.
    static std::unique_ptr<DatabaseFile> Create(
        const QString &fileName, quint32 type, quint32 creator);

    ~DatabaseFile();
    DatabaseFile(const DatabaseFile &) = delete;
    DatabaseFile &operator=(const DatabaseFile &) = delete;

    const QString &FileName() const { return m_fileName; }
    bool HasTable() const { return !m_schema.empty(); }
    const Schema &Fields() const { return m_schema; }

    /// The table that is created next keeps a check value beside each record.
    void KeepCheckValues() { m_hasCheckValues = true; }
    bool HasCheckValues() const { return m_hasCheckValues; }

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

    /// From now on no write waits for the disk: after a crash of the computer, or of the program
    /// in the middle of a write, the file may be of no use.
    void MakeScratch();

    /// Raises Damaged when the file's pages do not fit together: rows may be missing then.
    void CheckIntegrity();
    /// Hands over all rows in stored order.
    void ReadRows(const std::function<void(const RowSource &)> &row);
    /// The row with that id, empty when it is gone or holds a text that is no date.
    StoredRow ReadRow(qint64 rowId);
    qint64 RowCount();
    /// About how many rows there are; costs nothing.
    qint64 RowCountGuess();

    /// Changes when another program has written into the file.
    qint64 DataVersion();

    void Begin(); ///< a writing transaction
    bool InTransaction() const; ///< false also after a failure by which SQLite has undone it
    /// Returns also when SQLite reports a failure and the transaction is in the file all the same.
    void Commit();
    void Rollback() noexcept;

    qint64 Insert(const StoredRow &row); ///< the new row's id
    void Update(qint64 rowId, const StoredRow &row);
    void Delete(qint64 rowId);

    QString Note();
    void SetNote(const QString &note);

private:
    class Statement;

    DatabaseFile(const QString &fileName, const QString &openName);

    void Connect(int flags);
    sqlite3_file &RawFile() const;
    qint64 Size() const;
    void CheckHeader(quint32 creator);
    void CheckSize();
    quint32 HeaderNumber(size_t offset) const;
    bool HasHappened(quint32 changesBefore);
    void Configure();
    void SetDurability();
    using ColumnTypes = std::unordered_map<std::string, std::string>; // by name
    /// Empty when there is no strict table of that name.
    ColumnTypes ColumnsOf(const std::string &table);
    void LoadDefinition();
    void CheckColumns(const ColumnTypes &columns);
    void LookForCheckValues(const ColumnTypes &about, const ColumnTypes &columns);
    CheckValue::Digits CheckValueOf(const StoredRow &row) const;
    void DefineTable(const QString &name, const QString &schemaText, const std::string &columns);
    void Execute(const std::string &sql);
    void Check(int result) const;
    [[noreturn]] void RaiseSqlite(int result) const;
    void BindRow(Statement &statement, const StoredRow &row);
    std::string ColumnNames() const;

    QString m_fileName;
    QString m_openName; // differs from m_fileName until CreateTable completes the file
    sqlite3 *m_database = nullptr;
    QString m_tableName;
    std::string m_quotedTable;
    Schema m_schema;
    quint32 m_type = 0;
    quint32 m_creator = 0; // of a new file
    bool m_isScratch = false;
    bool m_hasCheckValues = false;
    std::unique_ptr<Statement> m_insert; // kept, because a bulk of records is inserted one by one
    std::unique_ptr<Statement> m_delete; // likewise, deleted
};

/// Removes a database file and its journal; false when there was none.
/// Errors: StoreErrors::NotDeleted, naming the file.
bool DeleteDatabaseFile(const QString &fileName);
