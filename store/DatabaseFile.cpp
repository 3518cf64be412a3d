#include "store/DatabaseFile.h"

#include "platform/clsRunTimeError.h"
#include "platform/DurableFiles.h"
#include "store/ContentDigest.h"
#include "store/CurrentRow.h"
#include "store/FieldText.h"
#include "store/StoreErrors.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *CheckColumn = "Check_Value";

constexpr QFile::Permissions AnyRead = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
constexpr QFile::Permissions AnyWrite = QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther;

std::string Quoted(std::string_view identifier)
{
    std::string quoted = "\"";
    for (const char c : identifier)
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + '"';
}

QString JournalName(const QString &fileName)
{
    return fileName + u"-journal"_s;
}

QString UnfinishedName(const QString &fileName)
{
    return fileName + u".new"_s;
}

std::string SqlType(FieldType type)
{
    return type == FieldType::Currency ? "INTEGER" : "TEXT";
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

void RemoveLeftover(const QString &fileName)
{
    if (QFile::exists(fileName) && !QFile::remove(fileName) && QFile::exists(fileName))
        RaiseStoreError(StoreErrors::WriteFailed, u"A leftover cannot be removed: "_s + fileName);
}

} // namespace

DatabaseFile::DatabaseFile(const QString &fileName, const QString &openName)
    : m_fileName(fileName)
    , m_openName(openName)
    , m_file(fileName)
    , m_about(fileName)
{
}

DatabaseFile::~DatabaseFile()
{
    m_insert.reset();
    m_delete.reset();
    m_file.Close();
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
    file->m_file.Open(fileName, SqliteFile::Mode::Existing);
    file->m_file.CheckHeader(creator);
    CheckWritable(fileName);
    file->m_file.Configure();
    file->LoadDefinition();
    file->m_file.CheckSize();
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
    file->m_file.Open(unfinished, SqliteFile::Mode::New);
    file->m_about.TypeCode = type;
    file->m_creator = creator;
    file->m_file.Configure();
    return file;
}

void DatabaseFile::LoadDefinition()
{
    m_about.Read(m_file);
    try {
        m_schema = ParseSchema(QString::fromStdString(m_about.SchemaText));
    } catch (const clsRunTimeError &) {
        RaiseStoreError(StoreErrors::Damaged,
            u"What the database says about itself is not as it was written: "_s + m_fileName);
    }
    m_quotedTable = Quoted(m_about.TableName);
    const SqliteFile::ColumnTypes columns = m_file.ColumnsOf(m_about.TableName);
    CheckColumns(columns);
    LookForCheckValues(columns);
}

void DatabaseFile::LookForCheckValues(const SqliteFile::ColumnTypes &columns) const
{
    const bool isField = std::any_of(m_schema.begin(), m_schema.end(), [](const auto &field) {
        return field.Name.compare(QLatin1String(CheckColumn), Qt::CaseInsensitive) == 0;
    });
    const auto column = columns.find(CheckColumn);
    const bool isThere = column != columns.end();
    // Said twice, so that damage to a column's name does not take the check away.
    const bool hasValues
        = m_about.HasCheckValues && !isField && isThere && column->second == "TEXT";
    if (hasValues != m_about.HasCheckValues || (!m_about.HasCheckValues && !isField && isThere))
        RaiseStoreError(StoreErrors::Damaged,
            u"The column of check values is not as it was created: "_s + m_fileName);
}

void DatabaseFile::CheckColumns(const SqliteFile::ColumnTypes &columns) const
{
    if (columns.empty())
        RaiseStoreError(
            StoreErrors::Damaged, u"The database has no table as it was created: "_s + m_fileName);
    for (const SchemaField &field : m_schema) {
        const auto type = columns.find(field.Name.toStdString());
        if (type == columns.end() || type->second != SqlType(field.Type))
            RaiseStoreError(StoreErrors::Damaged,
                u"The column %1 of the database is not as it was created: %2"_s.arg(
                    field.Name, m_fileName));
    }
}

void DatabaseFile::DefineTable(const std::string &columns, quint32 creator)
{
    m_file.Execute("PRAGMA application_id = " + std::to_string(static_cast<qint32>(creator)));
    m_about.Create(m_file);
    m_file.Execute("CREATE TABLE " + m_quotedTable + " (" + columns + ") STRICT");
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
        columns += Quoted(field.Name.toStdString()) + ' ' + SqlType(field.Type)
            + " NOT NULL DEFAULT " + (field.Type == FieldType::Currency ? "0" : "''");
    }
    if (HasCheckValues()) // why no constant: see FileDescription::Create
        columns += std::string(", ") + CheckColumn + " TEXT NOT NULL DEFAULT (lower(''))";
    m_about.TableName = name.toStdString();
    m_about.SchemaText = schemaText.toStdString();
    m_quotedTable = Quoted(m_about.TableName);
    m_file.Begin();
    try {
        if (KeepsDigest())
            m_about.ContentDigest = ContentDigest{m_file.Changes().value_or(0) + 1, 0}.Text();
        DefineTable(columns, m_creator);
    } catch (const clsRunTimeError &) {
        Rollback();
        throw;
    }
    m_file.Commit();

    m_file.Close();
    // A journal that outlived its database would be played back into this one.
    RemoveLeftover(JournalName(m_fileName));
    // A scratch file waits for the disk here no more than later.
    const bool moved = m_file.IsScratch() ? TakeNewName(m_openName, m_fileName)
                                          : MoveToNewName(m_openName, m_fileName);
    if (!moved)
        RaiseStoreError(
            StoreErrors::AlreadyExists, u"The database exists already: "_s + m_fileName);
    m_openName = m_fileName;
    m_file.Open(m_fileName, SqliteFile::Mode::Existing);
    m_file.Configure();
    m_schema = std::move(schema);
}

bool DatabaseFile::KeepsDigest() const
{
    return m_about.IsChecked() && !HasCheckValues() && !m_file.IsScratch();
}

std::optional<quint64> DatabaseFile::ExpectedSum()
{
    m_about.Refresh(m_file);
    if (m_about.ContentDigest.empty())
        return {}; // another program's records
    const std::optional<ContentDigest> digest = ContentDigest::FromText(m_about.ContentDigest);
    if (!digest)
        RaiseStoreError(StoreErrors::Damaged, u"The database is damaged: "_s + m_fileName);
    if (m_file.Changes() != digest->Changes)
        return {}; // another program has written since
    return digest->Sum;
}

quint64 DatabaseFile::PassRows(const std::function<void(const RowSource &)> &row, bool sums)
{
    Statement statement(
        m_file, "SELECT rowid, " + ReadColumns() + " FROM " + m_quotedTable + " ORDER BY rowid");
    Source source(*this);
    quint64 sum = 0;
    while (statement.Step()) {
        source.Take(statement);
        if (sums)
            sum += source.Sum();
        row(source);
    }
    return sum;
}

void DatabaseFile::ReadRows(const std::function<void(const RowSource &)> &row)
{
    if (!KeepsDigest()) {
        PassRows(row, false);
        return;
    }
    const bool isWriting = m_hasWritten && InTransaction();
    const SqliteFile::Snapshot moment(m_file); // of the digest and of the rows
    const std::optional<quint64> expected = isWriting ? m_sum : ExpectedSum();
    const quint64 sum = PassRows(row, expected.has_value());
    if (expected && sum != *expected)
        RaiseStoreError(StoreErrors::Damaged,
            u"The records of the database are not as they were written: "_s + m_fileName);
}

StoredRow DatabaseFile::ReadRow(qint64 rowId)
{
    Statement statement(
        m_file, "SELECT " + ColumnNames() + " FROM " + m_quotedTable + " WHERE rowid = ?1");
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
    Statement statement(m_file, "SELECT count(*) FROM " + m_quotedTable);
    statement.Step();
    return statement.Number(0);
}

qint64 DatabaseFile::RowCountGuess()
{
    constexpr qint64 minRowBytes = 8;
    Statement statement(m_file, "SELECT max(rowid) FROM " + m_quotedTable);
    statement.Step();
    // Another program may have given a row any number.
    return std::clamp<qint64>(statement.Number(0), 0, m_file.Size() / minRowBytes);
}

void DatabaseFile::Begin()
{
    m_file.Begin();
    m_hasWritten = false;
    m_sum.reset();
    if (!KeepsDigest())
        return;
    try {
        m_sum = ExpectedSum();
    } catch (const clsRunTimeError &) {
        Rollback();
        throw;
    }
}

void DatabaseFile::Commit()
{
    // SQLite may have undone the transaction; the digest would then be written by itself.
    if (std::exchange(m_hasWritten, false) && KeepsDigest() && InTransaction()) {
        try {
            WriteDigest();
        } catch (const clsRunTimeError &) {
            Rollback();
            throw;
        }
    }
    m_file.Commit();
}

void DatabaseFile::Rollback() noexcept
{
    m_hasWritten = false;
    m_file.Rollback();
}

void DatabaseFile::WriteDigest()
{
    // What another program wrote becomes ours with the first write after it.
    const quint64 sum = m_sum ? *m_sum : PassRows([](const RowSource &) {}, true);
    const std::optional<quint32> changes = m_file.Changes();
    m_about.ContentDigest = changes ? ContentDigest{*changes + 1, sum}.Text() : std::string();
    m_about.Write(m_file);
}

void DatabaseFile::AddFields(CheckValue &value, const StoredRow &row) const
{
    for (size_t i = 0; i < row.size(); ++i) {
        if (m_schema[i].Type == FieldType::String)
            value.Add(std::get<std::string>(row[i]));
        else if (m_schema[i].Type == FieldType::Currency)
            value.Add(std::get<qint64>(row[i]));
        else
            value.Add(std::string_view(DateText(std::get<qint64>(row[i]))));
    }
}

quint64 DatabaseFile::SumOf(qint64 rowId, const StoredRow &row) const
{
    CheckValue value;
    value.Add(rowId);
    AddFields(value, row);
    return value.Value();
}

/// As the row is in the file, whatever its dates say; 0 when it is gone.
quint64 DatabaseFile::StoredSumOf(qint64 rowId)
{
    Statement statement(
        m_file, "SELECT rowid, " + ReadColumns() + " FROM " + m_quotedTable + " WHERE rowid = ?1");
    statement.Bind(1, rowId);
    Source source(*this);
    if (!statement.Step())
        return 0;
    source.Take(statement);
    return source.Sum();
}

qint64 DatabaseFile::Insert(const StoredRow &row)
{
    if (!m_insert) {
        std::string places;
        const size_t values = m_schema.size() + (HasCheckValues() ? 1 : 0);
        for (size_t i = 1; i <= values; ++i)
            places += (i == 1 ? "?" : ", ?") + std::to_string(i);
        m_insert = std::make_unique<Statement>(m_file,
            "INSERT INTO " + m_quotedTable + " (" + ReadColumns() + ") VALUES (" + places + ")");
    }
    m_insert->Reset();
    BindRow(*m_insert, row);
    m_insert->Step();
    m_insert->Reset();
    const qint64 rowId = m_file.LastRowId();
    m_hasWritten = true;
    if (m_sum)
        *m_sum += SumOf(rowId, row);
    return rowId;
}

void DatabaseFile::Update(qint64 rowId, const StoredRow &row)
{
    const quint64 before = m_sum ? StoredSumOf(rowId) : 0;
    std::string assignments;
    for (size_t i = 0; i < m_schema.size(); ++i)
        assignments += (i == 0 ? "" : ", ") + Quoted(m_schema[i].Name.toStdString()) + " = ?"
            + std::to_string(i + 1);
    int rowIdPlace = static_cast<int>(m_schema.size()) + 1;
    if (HasCheckValues())
        assignments += std::string(", ") + CheckColumn + " = ?" + std::to_string(rowIdPlace++);
    Statement statement(m_file,
        "UPDATE " + m_quotedTable + " SET " + assignments + " WHERE rowid = ?"
            + std::to_string(rowIdPlace));
    BindRow(statement, row);
    statement.Bind(rowIdPlace, rowId);
    statement.Step();
    m_hasWritten = true;
    if (m_sum)
        *m_sum += SumOf(rowId, row) - before;
}

void DatabaseFile::Delete(qint64 rowId)
{
    const quint64 before = m_sum ? StoredSumOf(rowId) : 0;
    if (!m_delete)
        m_delete = std::make_unique<Statement>(
            m_file, "DELETE FROM " + m_quotedTable + " WHERE rowid = ?1");
    m_delete->Reset();
    m_delete->Bind(1, rowId);
    m_delete->Step();
    m_delete->Reset();
    m_hasWritten = true;
    if (m_sum)
        *m_sum -= before;
}

QString DatabaseFile::Note()
{
    m_about.Refresh(m_file);
    return QString::fromStdString(m_about.Note);
}

void DatabaseFile::SetNote(const QString &note)
{
    m_about.Refresh(m_file);
    m_about.Note = note.toStdString();
    m_about.Write(m_file);
    m_hasWritten = true;
}

void DatabaseFile::BindRow(Statement &statement, const StoredRow &row) const
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
    if (!HasCheckValues())
        return;
    CheckValue value;
    AddFields(value, row);
    const CheckValue::Digits digits = value.Hexadecimal();
    statement.Bind(
        static_cast<int>(row.size()) + 1, std::string_view(digits.data(), digits.size()));
}

std::string DatabaseFile::ColumnNames() const
{
    std::string names;
    for (const SchemaField &field : m_schema)
        names += (names.empty() ? "" : ", ") + Quoted(field.Name.toStdString());
    return names;
}

/// The fields and, where the table has it, the check value.
std::string DatabaseFile::ReadColumns() const
{
    return ColumnNames() + (HasCheckValues() ? std::string(", ") + CheckColumn : std::string());
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
