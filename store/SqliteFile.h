#pragma once

#include <QString>

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

struct sqlite3;
struct sqlite3_file;
struct sqlite3_stmt;

/// An open SQLite file: its header, its statements, and its transactions.
///
/// Errors: clsRunTimeError with a number of StoreErrors and a text that names the file.
class SqliteFile
{
public:
    enum class Mode
    {
        Existing,
        New
    };

    /// `name` is what errors call the file.
    explicit SqliteFile(const QString &name);
    ~SqliteFile();
    SqliteFile(const SqliteFile &) = delete;
    SqliteFile &operator=(const SqliteFile &) = delete;

    void Open(const QString &fileName, Mode mode);
    void Close() noexcept;
    /// Raises for a file that is no database, is truncated, is damaged in its first bytes, or has
    /// another creator. SQLite has not touched the file then.
    void CheckHeader(quint32 creator) const;
    /// Raises Damaged for a file that is shorter than its header says.
    void CheckSize() const;
    /// Raises Damaged when the file's pages do not fit together: rows may be missing then.
    void CheckIntegrity() const;
    void Configure() const; ///< after CheckHeader, before the first statement
    /// From now on no write waits for the disk.
    void MakeScratch();
    bool IsScratch() const { return m_isScratch; }

    qint64 Size() const;
    /// How many transactions have changed the file, as its header says, where another program's
    /// are always counted; std::nullopt in write-ahead mode, where they are not.
    /// Errors: Damaged when the header's two copies of the number differ.
    std::optional<quint32> Changes() const;
    /// Changes when another program has written into the file.
    qint64 DataVersion() const;

    using ColumnTypes = std::unordered_map<std::string, std::string>; // by name
    /// Empty when there is no strict table of that name.
    ColumnTypes ColumnsOf(const std::string &table) const;
    void Execute(const std::string &sql) const;
    qint64 LastRowId() const;

    void Begin(); ///< a writing transaction
    bool InTransaction() const; ///< false also after a failure by which SQLite has undone it
    /// Window events can run meanwhile (see RunWhileWaiting): nothing may use the file then.
    /// Returns also when SQLite reports a failure and the transaction is in the file all the same.
    void Commit();
    void Rollback() noexcept;

    /// What is read during its life is of one moment.
    class Snapshot
    {
    public:
        explicit Snapshot(const SqliteFile &file);
        ~Snapshot();
        Snapshot(const Snapshot &) = delete;
        Snapshot &operator=(const Snapshot &) = delete;

    private:
        const SqliteFile &m_file;
        bool m_isOwn; // not part of a transaction that is open already
    };

    /// A prepared statement that ends with its scope.
    class Statement
    {
    public:
        Statement(const SqliteFile &file, const std::string &sql);
        ~Statement();
        Statement(const Statement &) = delete;
        Statement &operator=(const Statement &) = delete;

        void Bind(int parameter, qint64 value);
        void Bind(int parameter, std::string_view text);
        void BindLasting(int parameter, std::string_view text); ///< it outlives the next Step
        bool Step(); ///< true: there is a row
        void Reset(); ///< ready for other values
        qint64 Number(int column) const;
        std::string_view Text(int column) const;
        QString String(int column) const;
        /// False for NULL, which is what a row gives for a column that it is too short for.
        bool HasValue(int column) const;

    private:
        const SqliteFile &m_file;
        sqlite3_stmt *m_statement = nullptr;
    };

private:
    sqlite3_file &RawFile() const;
    quint32 HeaderNumber(size_t offset) const;
    bool HasHappened(quint32 changesBefore) const;
    void SetDurability() const;
    void Check(int result) const;
    [[noreturn]] void Raise(int result) const;

    QString m_name;
    QString m_fileName; // that is open
    Mode m_mode = Mode::Existing;
    sqlite3 *m_database = nullptr;
    bool m_isScratch = false;
};
