#include "store/SqliteFile.h"

#include "platform/clsRunTimeError.h"
#include "platform/DurableFiles.h"
#include "platform/RunWhileWaiting.h"
#include "store/StoreErrors.h"

#include <QFileInfo>

#include <sqlite3.h>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

/// How long a write waits for another program's before it gives up. Longer, and the window would
/// seem to hang.
constexpr int BusyTimeoutMilliseconds = 250;

constexpr size_t HeaderBytes = 100;
constexpr size_t WriteVersionOffset = 18; // the version that reading needs follows
constexpr quint8 RollbackVersion = 1;
constexpr quint8 WriteAheadVersion = 2;
constexpr size_t ChangesOffset = 24; // counts the transactions that have changed the file
constexpr size_t ApplicationIdOffset = 68;
constexpr size_t ChangesCopyOffset = 92;

/// What a file may demand of SQLite: enough for every text that a window takes, and too little for
/// a file that was made to wear it out.
struct Limit
{
    int What;
    int Max;
};
constexpr std::array Limits
    = {Limit{SQLITE_LIMIT_LENGTH, 64'000'000}, Limit{SQLITE_LIMIT_SQL_LENGTH, 200'000},
        Limit{SQLITE_LIMIT_EXPR_DEPTH, 20}, Limit{SQLITE_LIMIT_COMPOUND_SELECT, 3},
        Limit{SQLITE_LIMIT_VDBE_OP, 25'000}, Limit{SQLITE_LIMIT_FUNCTION_ARG, 8},
        Limit{SQLITE_LIMIT_ATTACHED, 0}, Limit{SQLITE_LIMIT_LIKE_PATTERN_LENGTH, 50},
        Limit{SQLITE_LIMIT_TRIGGER_DEPTH, 1}, Limit{SQLITE_LIMIT_WORKER_THREADS, 0}};

} // namespace

SqliteFile::SqliteFile(const QString &name)
    : m_name(name)
{
}

SqliteFile::~SqliteFile()
{
    Close();
}

void SqliteFile::Open(const QString &fileName, Mode mode)
{
    // Counting memory, SQLite would make all connections wait for each other at every allocation.
    // Without effect where something else has used SQLite before.
    [[maybe_unused]] static const int uncounted = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
    m_fileName = fileName;
    m_mode = mode;
    const int longest = sqlite3_vfs_find(nullptr)->mxPathname;
    if ((fileName + u"-journal"_s).toUtf8().size() > longest)
        RaiseStoreError(StoreErrors::Unreadable,
            u"The path is longer than the "_s + QString::number(longest)
                + u" bytes that a database and its journal may have: "_s + m_name);
    const int flags = SQLITE_OPEN_READWRITE | (mode == Mode::New ? SQLITE_OPEN_CREATE : 0);
    Check(sqlite3_open_v2(fileName.toUtf8().constData(), &m_database,
        flags | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr));
}

void SqliteFile::Close() noexcept
{
    sqlite3_close(m_database);
    m_database = nullptr;
}

sqlite3_file &SqliteFile::RawFile() const
{
    sqlite3_file *file = nullptr;
    Check(sqlite3_file_control(m_database, nullptr, SQLITE_FCNTL_FILE_POINTER, &file));
    return *file;
}

qint64 SqliteFile::Size() const
{
    sqlite3_int64 size = 0;
    Check(RawFile().pMethods->xFileSize(&RawFile(), &size));
    return size;
}

/// A number of the file's header, zero in a file that is still empty. Past SQLite, see CheckHeader.
quint32 SqliteFile::HeaderNumber(size_t offset) const
{
    std::array<quint8, 4> bytes = {};
    const int result = RawFile().pMethods->xRead(
        &RawFile(), bytes.data(), bytes.size(), static_cast<sqlite3_int64>(offset));
    if (result != SQLITE_IOERR_SHORT_READ)
        Check(result);
    quint32 number = 0;
    for (const quint8 byte : bytes)
        number = number << 8 | byte;
    return number;
}

void SqliteFile::CheckHeader(quint32 creator) const
{
    // Through SQLite's own open file, but past SQLite, which would already recover or lock a
    // database of another program. Closing a file of our own would drop every lock that this
    // process holds on the database.
    std::array<char, HeaderBytes> header = {};
    const int result = RawFile().pMethods->xRead(&RawFile(), header.data(), HeaderBytes, 0);
    if (result != SQLITE_IOERR_SHORT_READ) // the rest is then zeros
        Check(result);
    if (!QByteArrayView(header).startsWith(QByteArrayView("SQLite format 3\0", 16)))
        RaiseStoreError(StoreErrors::NotADatabase, u"The file is not a database: "_s + m_name);
    if (Size() < static_cast<qint64>(HeaderBytes))
        RaiseStoreError(StoreErrors::Damaged, u"The database is truncated: "_s + m_name);
    if (HeaderNumber(ApplicationIdOffset) != creator)
        RaiseStoreError(
            StoreErrors::ForeignCreator, u"The database belongs to another program: "_s + m_name);
    // SQLite would only refuse to write into the file.
    for (const size_t offset : {WriteVersionOffset, WriteVersionOffset + 1}) {
        if (header[offset] != RollbackVersion && header[offset] != WriteAheadVersion)
            RaiseStoreError(StoreErrors::Damaged, u"The database is damaged: "_s + m_name);
    }
}

void SqliteFile::CheckSize() const
{
    // SQLite counts a page of which a part is there, and reads zeros for the rest.
    Statement size(
        *this, "SELECT page_count * page_size FROM pragma_page_count(), pragma_page_size()");
    if (!size.Step() || Size() < size.Number(0))
        RaiseStoreError(StoreErrors::Damaged, u"The database is truncated: "_s + m_name);
}

void SqliteFile::CheckIntegrity() const
{
    Statement statement(*this, "PRAGMA integrity_check(1)");
    if (!statement.Step() || statement.Text(0) != "ok")
        RaiseStoreError(StoreErrors::Damaged,
            u"The database is damaged: "_s + m_name + u" ("_s
                + statement.String(0).simplified().left(200) + u")"_s);
}

std::optional<quint32> SqliteFile::Changes() const
{
    if (HeaderNumber(WriteVersionOffset) >> 24 == WriteAheadVersion)
        return {};
    const quint32 changes = HeaderNumber(ChangesOffset);
    if (changes != HeaderNumber(ChangesCopyOffset))
        RaiseStoreError(StoreErrors::Damaged, u"The database is damaged: "_s + m_name);
    return changes;
}

void SqliteFile::Configure() const
{
    sqlite3_busy_timeout(m_database, BusyTimeoutMilliseconds);
    // SQLite's own advice for files that another program may have prepared.
    sqlite3_db_config(m_database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(m_database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(m_database, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(m_database, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    for (const Limit &limit : Limits)
        sqlite3_limit(m_database, limit.What, limit.Max);
    Execute("PRAGMA cell_size_check = ON");
    SetDurability();
}

void SqliteFile::SetDurability() const
{
    Execute(m_isScratch ? "PRAGMA journal_mode = MEMORY" : "PRAGMA journal_mode = DELETE");
    // EXTRA also puts the journal's removal on the disk, which is the moment of the commit.
    Execute(m_isScratch ? "PRAGMA synchronous = OFF" : "PRAGMA synchronous = EXTRA");
}

void SqliteFile::MakeScratch()
{
    m_isScratch = true;
    SetDurability();
}

qint64 SqliteFile::DataVersion() const
{
    Statement statement(*this, "PRAGMA data_version");
    statement.Step();
    return statement.Number(0);
}

SqliteFile::ColumnTypes SqliteFile::ColumnsOf(const std::string &table) const
{
    // In one statement: the program opens some twenty databases before its window is seen.
    Statement statement(*this,
        "SELECT i.name, i.type FROM pragma_table_list AS t, pragma_table_info(t.name) AS i "
        "WHERE t.schema = 'main' AND t.name = ?1 AND t.type = 'table' AND t.strict = 1 AND "
        "t.wr = 0");
    statement.Bind(1, table);
    ColumnTypes columns;
    while (statement.Step())
        columns.emplace(statement.Text(0), statement.Text(1));
    return columns;
}

void SqliteFile::Execute(const std::string &sql) const
{
    Check(sqlite3_exec(m_database, sql.c_str(), nullptr, nullptr, nullptr));
}

qint64 SqliteFile::LastRowId() const
{
    return sqlite3_last_insert_rowid(m_database);
}

void SqliteFile::Begin()
{
    Execute("BEGIN IMMEDIATE");
}

bool SqliteFile::InTransaction() const
{
    return sqlite3_get_autocommit(m_database) == 0;
}

void SqliteFile::Commit()
{
    std::optional<quint32> changes;
    try {
        changes = HeaderNumber(ChangesOffset);
        // This is what waits for the disk. A scratch file does not.
        if (m_isScratch)
            Execute("COMMIT");
        else
            RunWhileWaiting([this] { Execute("COMMIT"); });
    } catch (const clsRunTimeError &) {
        Rollback();
        // A scratch file has no journal that would show it.
        if (!changes || m_isScratch || !HasHappened(*changes))
            throw;
    }
}

/// Whether a transaction is in the file though its commit was reported as failed. That moment is
/// the journal's removal, which can happen and then be reported as failed: on the disk of another
/// computer, or when only the folder could not be put on the disk. Reported as a failure, the entry
/// would be typed, or the next one deleted, once more.
bool SqliteFile::HasHappened(quint32 changesBefore) const
{
    try {
        Statement reading(*this, "SELECT 1 FROM sqlite_schema"); // plays a journal back
        reading.Step();
        if (HeaderNumber(ChangesOffset) == changesBefore)
            return false;
    } catch (const clsRunTimeError &) {
        return false; // the journal is there and waits for a disk that works
    }
    try {
        SyncFolder(QFileInfo(m_fileName).path());
    } catch (const clsRunTimeError &) {
        // The next commit does it. Until then only a loss of power could bring the journal back.
    }
    return true;
}

void SqliteFile::Rollback() noexcept
{
    if (InTransaction())
        sqlite3_exec(m_database, "ROLLBACK", nullptr, nullptr, nullptr);
}

void SqliteFile::Check(int result) const
{
    if (result != SQLITE_OK)
        Raise(result);
}

void SqliteFile::Raise(int result) const
{
    // The system's own error says more than "disk I/O error".
    int system = 0;
    if (m_database != nullptr && (result & 0xff) == SQLITE_IOERR)
        sqlite3_file_control(m_database, nullptr, SQLITE_FCNTL_LAST_ERRNO, &system);
    const QString reason = u" ("_s
        + QString::fromUtf8(
            m_database == nullptr ? sqlite3_errstr(result) : sqlite3_errmsg(m_database))
        + (system == 0 ? QString() : u": "_s + qt_error_string(system)) + u")"_s;
    if (result == SQLITE_READONLY_DBMOVED)
        RaiseStoreError(StoreErrors::ChangedOutside,
            u"The database has been replaced or removed meanwhile: "_s + m_name);
    // Our statements are valid for every file that is as it was created.
    if ((result & 0xff) == SQLITE_ERROR && m_mode == Mode::Existing)
        RaiseStoreError(StoreErrors::Damaged, u"The database is damaged: "_s + m_name + reason);
    switch (result & 0xff) {
    case SQLITE_NOTADB:
        RaiseStoreError(StoreErrors::NotADatabase, u"The file is not a database: "_s + m_name);
    case SQLITE_CORRUPT:
        RaiseStoreError(StoreErrors::Damaged, u"The database is truncated or damaged: "_s + m_name);
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        RaiseStoreError(
            StoreErrors::Locked, u"The database is locked by another program: "_s + m_name);
    case SQLITE_READONLY:
        RaiseStoreError(StoreErrors::ReadOnly, u"The database is read-only: "_s + m_name);
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        RaiseStoreError(
            StoreErrors::Unreadable, u"The database cannot be opened: "_s + m_name + reason);
    case SQLITE_FULL:
        RaiseStoreError(StoreErrors::WriteFailed, u"The disk is full: "_s + m_name);
    default:
        RaiseStoreError(
            StoreErrors::WriteFailed, u"The database cannot be used: "_s + m_name + reason);
    }
}

SqliteFile::Snapshot::Snapshot(const SqliteFile &file)
    : m_file(file)
    , m_isOwn(!file.InTransaction())
{
    if (m_isOwn)
        file.Execute("BEGIN");
}

SqliteFile::Snapshot::~Snapshot()
{
    if (m_isOwn)
        sqlite3_exec(m_file.m_database, "ROLLBACK", nullptr, nullptr, nullptr);
}

SqliteFile::Statement::Statement(const SqliteFile &file, const std::string &sql)
    : m_file(file)
{
    file.Check(sqlite3_prepare_v2(
        file.m_database, sql.data(), static_cast<int>(sql.size()), &m_statement, nullptr));
}

SqliteFile::Statement::~Statement()
{
    sqlite3_finalize(m_statement);
}

void SqliteFile::Statement::Bind(int parameter, qint64 value)
{
    m_file.Check(sqlite3_bind_int64(m_statement, parameter, value));
}

void SqliteFile::Statement::Bind(int parameter, std::string_view text)
{
    m_file.Check(sqlite3_bind_text64(
        m_statement, parameter, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
}

void SqliteFile::Statement::BindLasting(int parameter, std::string_view text)
{
    m_file.Check(sqlite3_bind_text64(
        m_statement, parameter, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8));
}

bool SqliteFile::Statement::Step()
{
    const int result = sqlite3_step(m_statement);
    if (result != SQLITE_ROW && result != SQLITE_DONE)
        m_file.Raise(result);
    return result == SQLITE_ROW;
}

void SqliteFile::Statement::Reset()
{
    sqlite3_reset(m_statement); // what the last step reported is not reported again
}

qint64 SqliteFile::Statement::Number(int column) const
{
    return sqlite3_column_int64(m_statement, column);
}

std::string_view SqliteFile::Statement::Text(int column) const
{
    const unsigned char *text = sqlite3_column_text(m_statement, column);
    const int bytes = sqlite3_column_bytes(m_statement, column);
    return text == nullptr
        ? std::string_view()
        : std::string_view(
            static_cast<const char *>(static_cast<const void *>(text)), static_cast<size_t>(bytes));
}

QString SqliteFile::Statement::String(int column) const
{
    const std::string_view text = Text(column);
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

bool SqliteFile::Statement::HasValue(int column) const
{
    return sqlite3_column_type(m_statement, column) != SQLITE_NULL;
}
