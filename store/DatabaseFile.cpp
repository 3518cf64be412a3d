#include "store/DatabaseFile.h"

#include "platform/clsRunTimeError.h"
#include "platform/DurableFiles.h"
#include "store/CheckValue.h"
#include "store/FieldText.h"
#include "store/StoreErrors.h"

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// How long a write waits for another program's before it gives up. Longer, and the window would
/// seem to hang.
constexpr int BusyTimeoutMilliseconds = 250;
constexpr int HeaderBytes = 100;
constexpr size_t ChangesOffset = 24; // counts the transactions that have changed the file
constexpr size_t ApplicationIdOffset = 68;
constexpr const char *CheckColumn = "Check_Value";
constexpr const char *CheckMark = "Has_Check_Values"; // of Record_Store, where the table has them

/// What a file may ask of SQLite: enough for every text that a window takes, and little for
/// somebody who has prepared a file to wear it out.
struct Limit
{
    int What;
    int Most;
};
constexpr std::array Limits
    = {Limit{SQLITE_LIMIT_LENGTH, 64'000'000}, Limit{SQLITE_LIMIT_SQL_LENGTH, 200'000},
        Limit{SQLITE_LIMIT_EXPR_DEPTH, 20}, Limit{SQLITE_LIMIT_COMPOUND_SELECT, 3},
        Limit{SQLITE_LIMIT_VDBE_OP, 25'000}, Limit{SQLITE_LIMIT_FUNCTION_ARG, 8},
        Limit{SQLITE_LIMIT_ATTACHED, 0}, Limit{SQLITE_LIMIT_LIKE_PATTERN_LENGTH, 50},
        Limit{SQLITE_LIMIT_TRIGGER_DEPTH, 1}, Limit{SQLITE_LIMIT_WORKER_THREADS, 0}};

constexpr QFile::Permissions AnyRead = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
constexpr QFile::Permissions AnyWrite = QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther;

std::string Quoted(const QString &identifier)
{
    return ('"' + QString(identifier).replace(u'"', u"\"\""_s).toStdString() + '"');
}

QString JournalName(const QString &fileName)
{
    return fileName + u"-journal"_s;
}

QString UnfinishedName(const QString &fileName)
{
    return fileName + u".new"_s;
}

QString SqlType(FieldType type)
{
    return type == FieldType::Currency ? u"INTEGER"_s : u"TEXT"_s;
}

/// What the file system says, before anything is opened: opening a pipe would wait for its writer.
void CheckFileKind(const QString &fileName)
{
    const QFileInfo info(fileName);
    if (info.isDir())
        RaiseStoreError(StoreErrors::NotADatabase, u"The database is a folder: "_s + fileName);
    if (!info.isFile())
        RaiseStoreError(StoreErrors::NotADatabase, u"The database is no file: "_s + fileName);
    if (!(info.permissions() & AnyRead))
        RaiseStoreError(StoreErrors::Unreadable, u"The database cannot be read: "_s + fileName);
}

void CheckWritable(const QString &fileName)
{
    const QFileInfo info(fileName);
    if (!(info.permissions() & AnyWrite) || !info.isWritable())
        RaiseStoreError(StoreErrors::ReadOnly, u"The database is read-only: "_s + fileName);
}

std::string_view AsText(const CheckValue::Digits &digits)
{
    return {digits.data(), digits.size()};
}

/// A record that another program wrote has none.
bool IsCheckValue(std::string_view stored, const CheckValue &value)
{
    return stored.empty() || stored == AsText(value.Hexadecimal());
}

void RemoveLeftover(const QString &fileName)
{
    if (QFile::exists(fileName) && !QFile::remove(fileName) && QFile::exists(fileName))
        RaiseStoreError(StoreErrors::WriteFailed, u"A leftover cannot be removed: "_s + fileName);
}

} // namespace

/// A prepared statement that ends with its scope.
class DatabaseFile::Statement
{
public:
    Statement(const DatabaseFile &file, const std::string &sql)
        : m_file(file)
    {
        file.Check(sqlite3_prepare_v2(
            file.m_database, sql.data(), static_cast<int>(sql.size()), &m_statement, nullptr));
    }
    ~Statement() { sqlite3_finalize(m_statement); }
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;

    void Bind(int parameter, qint64 value)
    {
        m_file.Check(sqlite3_bind_int64(m_statement, parameter, value));
    }
    void Bind(int parameter, std::string_view text)
    {
        m_file.Check(sqlite3_bind_text64(
            m_statement, parameter, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
    }
    /// Without a copy: the text outlives the next Step.
    void BindLasting(int parameter, std::string_view text)
    {
        m_file.Check(sqlite3_bind_text64(
            m_statement, parameter, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8));
    }
    bool Step()
    {
        const int result = sqlite3_step(m_statement);
        if (result != SQLITE_ROW && result != SQLITE_DONE)
            m_file.RaiseSqlite(result);
        return result == SQLITE_ROW;
    }
    /// Ready for other values. What the last step reported is not reported again.
    void Reset() { sqlite3_reset(m_statement); }
    qint64 Number(int column) const { return sqlite3_column_int64(m_statement, column); }
    std::string_view Text(int column) const
    {
        const unsigned char *text = sqlite3_column_text(m_statement, column);
        const int bytes = sqlite3_column_bytes(m_statement, column);
        return text == nullptr
            ? std::string_view()
            : std::string_view(static_cast<const char *>(static_cast<const void *>(text)),
                static_cast<size_t>(bytes));
    }
    QString String(int column) const
    {
        const std::string_view text = Text(column);
        return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    }

private:
    const DatabaseFile &m_file;
    sqlite3_stmt *m_statement = nullptr;
};

DatabaseFile::DatabaseFile(const QString &fileName, const QString &openName)
    : m_fileName(fileName)
    , m_openName(openName)
{
}

DatabaseFile::~DatabaseFile()
{
    m_insert.reset();
    m_delete.reset();
    sqlite3_close(m_database);
    if (m_openName != m_fileName) {
        QFile::remove(m_openName);
        QFile::remove(JournalName(m_openName));
    }
}

std::unique_ptr<DatabaseFile> DatabaseFile::Open(const QString &fileName, quint32 creator)
{
    if (!QFileInfo::exists(fileName))
        return nullptr;
    CheckFileKind(fileName);
    std::unique_ptr<DatabaseFile> file(new DatabaseFile(fileName, fileName));
    file->Connect(SQLITE_OPEN_READWRITE);
    file->CheckHeader(creator);
    CheckWritable(fileName);
    file->Configure();
    file->LoadDefinition();
    file->CheckSize();
    return file;
}

std::unique_ptr<DatabaseFile> DatabaseFile::Create(
    const QString &fileName, quint32 type, quint32 creator)
{
    if (QFileInfo::exists(fileName))
        RaiseStoreError(StoreErrors::AlreadyExists, u"The database exists already: "_s + fileName);
    const QString unfinished = UnfinishedName(fileName);
    RemoveLeftover(unfinished);
    RemoveLeftover(JournalName(unfinished));

    std::unique_ptr<DatabaseFile> file(new DatabaseFile(fileName, unfinished));
    file->m_type = type;
    file->Connect(SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    file->m_creator = creator;
    file->Configure();
    return file;
}

void DatabaseFile::Connect(int flags)
{
    // Counting memory, SQLite would make all connections wait for each other at every allocation.
    // Without effect where something else has used SQLite before.
    [[maybe_unused]] static const int uncounted = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
    const QByteArray name = m_openName.toUtf8();
    const int longest = sqlite3_vfs_find(nullptr)->mxPathname;
    if (JournalName(m_openName).toUtf8().size() > longest)
        RaiseStoreError(StoreErrors::Unreadable,
            u"The path is longer than the "_s + QString::number(longest)
                + u" bytes that a database and its journal may have: "_s + m_fileName);
    const int result = sqlite3_open_v2(name.constData(), &m_database,
        flags | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
    Check(result);
}

sqlite3_file &DatabaseFile::RawFile() const
{
    sqlite3_file *file = nullptr;
    Check(sqlite3_file_control(m_database, nullptr, SQLITE_FCNTL_FILE_POINTER, &file));
    return *file;
}

qint64 DatabaseFile::Size() const
{
    sqlite3_int64 size = 0;
    Check(RawFile().pMethods->xFileSize(&RawFile(), &size));
    return size;
}

/// A number of the file's header, zero in a file that is still empty. Past SQLite, see CheckHeader.
quint32 DatabaseFile::HeaderNumber(size_t offset) const
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

void DatabaseFile::CheckHeader(quint32 creator)
{
    // Through SQLite's own open file, but past SQLite, which would already recover or lock a
    // database that is somebody else's. A file of our own would drop, when it is closed, every
    // lock that this process holds on the database.
    std::array<char, HeaderBytes> header = {};
    const int result = RawFile().pMethods->xRead(&RawFile(), header.data(), HeaderBytes, 0);
    if (result != SQLITE_IOERR_SHORT_READ) // the rest is then zeros
        Check(result);
    if (!QByteArrayView(header).startsWith(QByteArrayView("SQLite format 3\0", 16)))
        RaiseStoreError(StoreErrors::NotADatabase, u"The file is not a database: "_s + m_fileName);
    if (Size() < HeaderBytes)
        RaiseStoreError(StoreErrors::Damaged, u"The database is truncated: "_s + m_fileName);
    if (HeaderNumber(ApplicationIdOffset) != creator)
        RaiseStoreError(StoreErrors::ForeignCreator,
            u"The database belongs to another program: "_s + m_fileName);
}

void DatabaseFile::CheckSize()
{
    // SQLite counts a page of which a part is there, and reads zeros for the rest.
    Statement size(
        *this, "SELECT page_count * page_size FROM pragma_page_count(), pragma_page_size()");
    if (!size.Step() || Size() < size.Number(0))
        RaiseStoreError(StoreErrors::Damaged, u"The database is truncated: "_s + m_fileName);
}

void DatabaseFile::Configure()
{
    sqlite3_busy_timeout(m_database, BusyTimeoutMilliseconds);
    // SQLite's own advice for files that somebody else may have prepared.
    sqlite3_db_config(m_database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(m_database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(m_database, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(m_database, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    for (const Limit &limit : Limits)
        sqlite3_limit(m_database, limit.What, limit.Most);
    Execute("PRAGMA cell_size_check = ON");
    SetDurability();
}

void DatabaseFile::SetDurability()
{
    Execute(m_isScratch ? "PRAGMA journal_mode = MEMORY" : "PRAGMA journal_mode = DELETE");
    // EXTRA also puts the journal's removal on the disk, which is the moment of the commit.
    Execute(m_isScratch ? "PRAGMA synchronous = OFF" : "PRAGMA synchronous = EXTRA");
}

void DatabaseFile::MakeScratch()
{
    m_isScratch = true;
    SetDurability();
}

void DatabaseFile::LoadDefinition()
{
    const QString unknown = u"The database does not say what it holds: "_s + m_fileName;
    const ColumnTypes about = ColumnsOf("Record_Store");
    for (const char *column : {"Type_Code", "Table_Name", "Schema_Text", "Note"}) {
        if (!about.contains(column))
            RaiseStoreError(StoreErrors::Damaged, unknown);
    }
    Statement statement(
        *this, "SELECT Type_Code, Table_Name, Schema_Text, count(*) FROM Record_Store");
    if (!statement.Step() || statement.Number(3) != 1)
        RaiseStoreError(StoreErrors::Damaged, unknown);
    m_type = static_cast<quint32>(statement.Number(0));
    m_tableName = statement.String(1);
    try {
        m_schema = ParseSchema(statement.String(2));
    } catch (const clsRunTimeError &) {
        RaiseStoreError(StoreErrors::Damaged, unknown);
    }
    m_quotedTable = Quoted(m_tableName);
    const ColumnTypes columns = ColumnsOf(m_tableName.toStdString());
    CheckColumns(columns);
    LookForCheckValues(about, columns);
}

void DatabaseFile::LookForCheckValues(const ColumnTypes &about, const ColumnTypes &columns)
{
    const bool isField = std::any_of(m_schema.begin(), m_schema.end(), [](const auto &field) {
        return field.Name.compare(QLatin1String(CheckColumn), Qt::CaseInsensitive) == 0;
    });
    const auto beside = columns.find(CheckColumn);
    const bool isThere = beside != columns.end();
    // Said twice, so that damage to a column's name does not take the check away.
    const bool isSaid = about.contains(CheckMark);
    m_hasCheckValues = isSaid && !isField && isThere && beside->second == "TEXT";
    if (m_hasCheckValues != isSaid || (!isSaid && !isField && isThere))
        RaiseStoreError(StoreErrors::Damaged,
            u"The column of check values is not as it was created: "_s + m_fileName);
}

DatabaseFile::ColumnTypes DatabaseFile::ColumnsOf(const std::string &table)
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

void DatabaseFile::CheckColumns(const ColumnTypes &columns)
{
    if (columns.empty())
        RaiseStoreError(
            StoreErrors::Damaged, u"The database has no table as it was created: "_s + m_fileName);
    for (const SchemaField &field : m_schema) {
        const auto type = columns.find(field.Name.toStdString());
        if (type == columns.end() || type->second != SqlType(field.Type).toStdString())
            RaiseStoreError(StoreErrors::Damaged,
                u"The column "_s + field.Name
                    + u" of the database is not as it was "_s
                      u"created: "_s
                    + m_fileName);
    }
}

void DatabaseFile::DefineTable(
    const QString &name, const QString &schemaText, const std::string &columns)
{
    Execute("PRAGMA application_id = " + std::to_string(static_cast<qint32>(m_creator)));
    const std::string mark = m_hasCheckValues
        ? std::string(", ") + CheckMark + " TEXT NOT NULL DEFAULT 'Y'"
        : std::string();
    Execute("CREATE TABLE Record_Store (Type_Code INTEGER NOT NULL, Table_Name TEXT NOT NULL, "
            "Schema_Text TEXT NOT NULL, Note TEXT NOT NULL DEFAULT ''"
        + mark + ") STRICT");
    Execute("CREATE TABLE " + Quoted(name) + " (" + columns + ") STRICT");
    Statement statement(*this,
        "INSERT INTO Record_Store (Type_Code, Table_Name, Schema_Text) "
        "VALUES (?1, ?2, ?3)");
    statement.Bind(1, static_cast<qint64>(m_type));
    statement.Bind(2, name.toStdString());
    statement.Bind(3, schemaText.toStdString());
    statement.Step();
}

void DatabaseFile::CreateTable(const QString &name, const QString &schemaText)
{
    if (HasTable())
        RaiseStoreError(
            StoreErrors::AlreadyExists, u"The database has its table already: "_s + m_fileName);
    Schema schema = ParseSchema(schemaText);

    std::string columns;
    for (const SchemaField &field : schema) {
        columns += columns.empty() ? "" : ", ";
        columns += Quoted(field.Name) + ' ' + SqlType(field.Type).toStdString()
            + " NOT NULL DEFAULT " + (field.Type == FieldType::Currency ? "0" : "''");
    }
    if (m_hasCheckValues)
        columns += std::string(", ") + CheckColumn + " TEXT NOT NULL DEFAULT ''";
    Begin();
    try {
        DefineTable(name, schemaText, columns);
    } catch (const clsRunTimeError &) {
        Rollback();
        throw;
    }
    Commit();

    Check(sqlite3_close_v2(m_database));
    m_database = nullptr;
    // A journal that outlived its database would be played back into this one.
    RemoveLeftover(JournalName(m_fileName));
    // A scratch file waits for the disk here no more than later.
    const bool moved
        = m_isScratch ? TakeNewName(m_openName, m_fileName) : MoveToNewName(m_openName, m_fileName);
    if (!moved)
        RaiseStoreError(
            StoreErrors::AlreadyExists, u"The database exists already: "_s + m_fileName);
    m_openName = m_fileName;
    Connect(SQLITE_OPEN_READWRITE);
    Configure();
    m_tableName = name;
    m_quotedTable = Quoted(name);
    m_schema = std::move(schema);
}

void DatabaseFile::ReadRows(const std::function<void(const RowSource &)> &row)
{
    /// The values of the current row, taken out of SQLite once.
    struct Source final : RowSource
    {
        const DatabaseFile &File;
        qint64 Id = 0;
        std::vector<std::string_view> Texts;
        std::vector<qint64> Numbers;
        CheckValue Check;
        bool Holds = true;

        explicit Source(const DatabaseFile &file)
            : File(file)
            , Texts(file.m_schema.size())
            , Numbers(file.m_schema.size())
        {
        }
        void Take(const Statement &row)
        {
            Id = row.Number(0);
            int column = 1;
            for (size_t i = 0; i < File.m_schema.size(); ++i, ++column) {
                if (File.m_schema[i].Type == FieldType::Currency)
                    Numbers[i] = row.Number(column);
                else
                    Texts[i] = row.Text(column);
            }
            if (File.m_hasCheckValues)
                Holds = HoldsAgainst(row.Text(column));
        }
        bool HoldsAgainst(std::string_view written)
        {
            Check.Clear();
            for (size_t i = 0; i < File.m_schema.size(); ++i) {
                if (File.m_schema[i].Type == FieldType::Currency)
                    Check.Add(Numbers[i]);
                else
                    Check.Add(Texts[i]);
            }
            return IsCheckValue(written, Check);
        }
        qint64 RowId() const override { return Id; }
        std::string_view Text(int field) const override
        {
            return Texts[static_cast<size_t>(field)];
        }
        qint64 Number(int field) const override
        {
            const auto index = static_cast<size_t>(field);
            const SchemaField &definition = File.m_schema[index];
            if (definition.Type == FieldType::Currency)
                return Numbers[index];
            const std::optional<qint64> seconds = SecondsFromText(Texts[index]);
            if (!seconds)
                RaiseStoreError(StoreErrors::BadRecord,
                    u"The field "_s + definition.Name + u" of record "_s + QString::number(Id)
                        + u" holds no date (\""_s
                        + QString::fromUtf8(Texts[index].data(), std::ssize(Texts[index])).left(40)
                        + u"\"): "_s + File.m_fileName);
            return *seconds;
        }
        bool IsAsSaved() const override { return Holds; }
    };
    Statement statement(*this,
        "SELECT rowid, " + ColumnNames() + (m_hasCheckValues ? std::string(", ") + CheckColumn : "")
            + " FROM " + m_quotedTable + " ORDER BY rowid");
    Source source(*this);
    while (statement.Step()) {
        source.Take(statement);
        row(source);
    }
}

void DatabaseFile::CheckIntegrity()
{
    Statement statement(*this, "PRAGMA integrity_check(1)");
    if (!statement.Step() || statement.Text(0) != "ok")
        RaiseStoreError(StoreErrors::Damaged,
            u"The database is damaged: "_s + m_fileName + u" ("_s
                + statement.String(0).simplified().left(200) + u")"_s);
}

CheckValue::Digits DatabaseFile::CheckValueOf(const StoredRow &row) const
{
    CheckValue value;
    for (size_t i = 0; i < row.size(); ++i) {
        if (m_schema[i].Type == FieldType::String)
            value.Add(std::get<std::string>(row[i]));
        else if (m_schema[i].Type == FieldType::Currency)
            value.Add(std::get<qint64>(row[i]));
        else
            value.Add(std::string_view(DateText(std::get<qint64>(row[i]))));
    }
    return value.Hexadecimal();
}

StoredRow DatabaseFile::ReadRow(qint64 rowId)
{
    Statement statement(
        *this, "SELECT " + ColumnNames() + " FROM " + m_quotedTable + " WHERE rowid = ?1");
    statement.Bind(1, rowId);
    if (!statement.Step())
        return {};
    StoredRow row;
    for (int i = 0; i < static_cast<int>(m_schema.size()); ++i) {
        switch (m_schema[static_cast<size_t>(i)].Type) {
        case FieldType::String:
            row.emplace_back(std::string(statement.Text(i)));
            break;
        case FieldType::Date:
            if (const std::optional<qint64> seconds = SecondsFromText(statement.Text(i)))
                row.emplace_back(*seconds);
            else
                return {};
            break;
        case FieldType::Currency:
            row.emplace_back(statement.Number(i));
            break;
        }
    }
    return row;
}

qint64 DatabaseFile::RowCount()
{
    Statement statement(*this, "SELECT count(*) FROM " + m_quotedTable);
    statement.Step();
    return statement.Number(0);
}

qint64 DatabaseFile::RowCountGuess()
{
    constexpr qint64 leastRowBytes = 8;
    Statement statement(*this, "SELECT max(rowid) FROM " + m_quotedTable);
    statement.Step();
    // Another program may have given a row any number.
    return std::clamp<qint64>(statement.Number(0), 0, Size() / leastRowBytes);
}

qint64 DatabaseFile::DataVersion()
{
    Statement statement(*this, "PRAGMA data_version");
    statement.Step();
    return statement.Number(0);
}

void DatabaseFile::Begin()
{
    Execute("BEGIN IMMEDIATE");
}

bool DatabaseFile::InTransaction() const
{
    return sqlite3_get_autocommit(m_database) == 0;
}

void DatabaseFile::Commit()
{
    std::optional<quint32> changes;
    try {
        changes = HeaderNumber(ChangesOffset);
        Execute("COMMIT");
    } catch (const clsRunTimeError &) {
        Rollback();
        // A scratch file has no journal that would tell.
        if (!changes || m_isScratch || !HasHappened(*changes))
            throw;
    }
}

/// Whether a transaction is in the file though its commit was reported as failed. That moment is
/// the journal's removal, which can happen and then be reported as failed: on the disk of another
/// computer, or when only the folder could not be put on the disk. Told as a failure, the entry
/// would be typed, or the next one deleted, once more.
bool DatabaseFile::HasHappened(quint32 changesBefore)
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

void DatabaseFile::Rollback() noexcept
{
    if (InTransaction())
        sqlite3_exec(m_database, "ROLLBACK", nullptr, nullptr, nullptr);
}

qint64 DatabaseFile::Insert(const StoredRow &row)
{
    if (!m_insert) {
        std::string places;
        const size_t values = m_schema.size() + (m_hasCheckValues ? 1 : 0);
        for (size_t i = 1; i <= values; ++i)
            places += (i == 1 ? "?" : ", ?") + std::to_string(i);
        m_insert = std::make_unique<Statement>(*this,
            "INSERT INTO " + m_quotedTable + " (" + ColumnNames()
                + (m_hasCheckValues ? std::string(", ") + CheckColumn : "") + ") VALUES (" + places
                + ")");
    }
    m_insert->Reset();
    BindRow(*m_insert, row);
    m_insert->Step();
    m_insert->Reset();
    return sqlite3_last_insert_rowid(m_database);
}

void DatabaseFile::Update(qint64 rowId, const StoredRow &row)
{
    std::string assignments;
    for (size_t i = 0; i < m_schema.size(); ++i)
        assignments
            += (i == 0 ? "" : ", ") + Quoted(m_schema[i].Name) + " = ?" + std::to_string(i + 1);
    int rowIdPlace = static_cast<int>(m_schema.size()) + 1;
    if (m_hasCheckValues)
        assignments += std::string(", ") + CheckColumn + " = ?" + std::to_string(rowIdPlace++);
    Statement statement(*this,
        "UPDATE " + m_quotedTable + " SET " + assignments + " WHERE rowid = ?"
            + std::to_string(rowIdPlace));
    BindRow(statement, row);
    statement.Bind(rowIdPlace, rowId);
    statement.Step();
}

void DatabaseFile::Delete(qint64 rowId)
{
    if (!m_delete)
        m_delete = std::make_unique<Statement>(
            *this, "DELETE FROM " + m_quotedTable + " WHERE rowid = ?1");
    m_delete->Reset();
    m_delete->Bind(1, rowId);
    m_delete->Step();
    m_delete->Reset();
}

QString DatabaseFile::Note()
{
    Statement statement(*this, "SELECT Note FROM Record_Store");
    return statement.Step() ? statement.String(0) : QString();
}

void DatabaseFile::SetNote(const QString &note)
{
    Statement statement(*this, "UPDATE Record_Store SET Note = ?1");
    statement.Bind(1, note.toStdString());
    statement.Step();
}

void DatabaseFile::BindRow(Statement &statement, const StoredRow &row)
{
    for (size_t i = 0; i < row.size(); ++i) {
        const int parameter = static_cast<int>(i) + 1;
        if (m_schema[i].Type == FieldType::String)
            statement.BindLasting(parameter, std::get<std::string>(row[i]));
        else if (m_schema[i].Type == FieldType::Currency)
            statement.Bind(parameter, std::get<qint64>(row[i]));
        else
            statement.Bind(parameter, std::string_view(DateText(std::get<qint64>(row[i]))));
    }
    if (m_hasCheckValues)
        statement.Bind(static_cast<int>(row.size()) + 1, AsText(CheckValueOf(row)));
}

std::string DatabaseFile::ColumnNames() const
{
    std::string names;
    for (const SchemaField &field : m_schema)
        names += (names.empty() ? "" : ", ") + Quoted(field.Name);
    return names;
}

void DatabaseFile::Execute(const std::string &sql)
{
    Check(sqlite3_exec(m_database, sql.c_str(), nullptr, nullptr, nullptr));
}

void DatabaseFile::Check(int result) const
{
    if (result != SQLITE_OK)
        RaiseSqlite(result);
}

void DatabaseFile::RaiseSqlite(int result) const
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
            u"The database has been replaced or removed meanwhile: "_s + m_fileName);
    switch (result & 0xff) {
    case SQLITE_NOTADB:
        RaiseStoreError(StoreErrors::NotADatabase, u"The file is not a database: "_s + m_fileName);
    case SQLITE_CORRUPT:
        RaiseStoreError(
            StoreErrors::Damaged, u"The database is truncated or damaged: "_s + m_fileName);
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        RaiseStoreError(
            StoreErrors::Locked, u"The database is locked by another program: "_s + m_fileName);
    case SQLITE_READONLY:
        RaiseStoreError(StoreErrors::ReadOnly, u"The database is read-only: "_s + m_fileName);
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        RaiseStoreError(
            StoreErrors::Unreadable, u"The database cannot be opened: "_s + m_fileName + reason);
    case SQLITE_FULL:
        RaiseStoreError(StoreErrors::WriteFailed, u"The disk is full: "_s + m_fileName);
    default:
        RaiseStoreError(
            StoreErrors::WriteFailed, u"The database cannot be used: "_s + m_fileName + reason);
    }
}

bool DeleteDatabaseFile(const QString &fileName)
{
    const auto remove = [](const QString &name) {
        QFile file(name);
        if (!file.exists())
            return false;
        if (!file.remove() && file.exists())
            RaiseStoreError(StoreErrors::NotDeleted,
                u"The database cannot be deleted: "_s + name + u" ("_s + file.errorString()
                    + u")"_s);
        return true;
    };
    // The journal goes last: without it a database that could not be removed may be unreadable.
    const bool existed = remove(fileName);
    remove(JournalName(fileName));
    return existed;
}
