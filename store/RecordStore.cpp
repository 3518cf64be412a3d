#include "store/RecordStore.h"

#include "store/FieldText.h"
#include "store/StoreErrors.h"

#include <QScopedValueRollback>
#include <QScopeGuard>

#include <algorithm>
#include <future>
#include <unordered_map>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qint32 OpenMode = 1;
constexpr qint32 ReadAndWrite = 3;
constexpr qint32 DeleteMode = 2;

QString Utf16(std::string_view text)
{
    QString result = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    // The toolkit takes it for a byte order mark and drops it.
    if (text.starts_with("\uFEFF"))
        result.prepend(QChar::ByteOrderMark);
    return result;
}

void RequireArgument(bool holds, const QString &name)
{
    if (!holds)
        RaiseStoreError(StoreErrors::BadArgument, u"The argument has no such value: "_s + name);
}

} // namespace

struct RecordStore::OpenTable
{
    enum class Begun
    {
        Nothing,
        Add,
        Edit
    };

    std::unique_ptr<DatabaseFile> File;
    std::optional<RecordTable> Table; // empty until the first record is asked for
    quint64 Version = 0;
    qint64 DataVersion = 0;
    std::vector<size_t> Order; // fields of the last sort
    size_t Cursor = 0;
    std::optional<qint64> WrittenRow; // the cursor's record, while Table is empty
    qint32 LastStatus = ExactMatch;
    Begun Pending = Begun::Nothing;
    StoredRow PendingRow;
    bool InBatch = false;
    std::vector<qint64> DamagedRows; // row ids, as of the last reading
    std::unordered_map<qint64, StoredRow> Unwritten; // by row id: what the batch has still to write
    /// While this is valid, all the rest belongs to another thread. The last member: its end is
    /// waited for before the others go.
    std::future<void> Preloading;

    void Drop()
    {
        Pending = Begun::Nothing;
        PendingRow.clear();
    }
};

quint32 CodeNumber(const QString &code)
{
    if (code.size() != 4)
        return 0;
    quint32 number = 0;
    for (const QChar c : code)
        number = number * 256 + static_cast<quint8>(c.toLatin1());
    return number;
}

RecordStore::RecordStore() = default;
RecordStore::~RecordStore() = default;

void RecordStore::RequireNoCommit() const
{
    if (m_committing)
        RaiseStoreError(StoreErrors::Locked, u"A record is being saved"_s);
}

RecordStore::OpenTable &RecordStore::Find(Handle handle) const
{
    RequireNoCommit();
    const auto index = static_cast<size_t>(handle) - 1;
    if (index >= m_open.size() || !m_open[index])
        RaiseStoreError(StoreErrors::BadHandle,
            u"No database is open under the handle "_s + QString::number(handle));
    OpenTable &table = *m_open[index];
    if (table.Preloading.valid()) {
        table.Preloading.get();
        table.Version = ++m_versions;
    }
    return table;
}

RecordStore::OpenTable &RecordStore::WithTable(Handle handle) const
{
    OpenTable &table = Find(handle);
    if (!table.File->HasTable())
        RaiseStoreError(
            StoreErrors::BadHandle, u"The database has no table yet: "_s + table.File->FileName());
    return table;
}

RecordStore::OpenTable &RecordStore::Loaded(Handle handle) const
{
    OpenTable &table = WithTable(handle);
    if (!table.Table)
        Load(table);
    return table;
}

RecordStore::OpenTable &RecordStore::OfShape(
    Handle handle, const FieldType *types, size_t count) const
{
    OpenTable &table = WithTable(handle);
    const Schema &schema = table.File->Fields();
    const bool fits = std::equal(schema.begin(), schema.end(), types, types + count,
        [](const SchemaField &field, FieldType type) { return field.Type == type; });
    if (!fits)
        RaiseStoreError(StoreErrors::BadRecord,
            u"The record structure does not fit the database: "_s + table.File->FileName());
    return table;
}

void RecordStore::CheckField(const OpenTable &table, qint32 field)
{
    if (field < 0 || static_cast<size_t>(field) >= table.File->Fields().size())
        RaiseStoreError(StoreErrors::BadField,
            u"The field index "_s + QString::number(field) + u" is out of range in the database "_s
                + table.File->FileName());
}

void RecordStore::Load(OpenTable &table) const
{
    WriteUnwritten(table);
    Read(table);
    table.Version = ++m_versions;
}

void RecordStore::Read(OpenTable &table) const
{
    RecordTable records(table.File->Fields());
    // Read first: a write that comes in between is then seen as one.
    table.DataVersion = table.File->DataVersion();
    records.Reserve(static_cast<size_t>(table.File->RowCountGuess()));
    if (table.File->HasCheckValues())
        table.File->CheckIntegrity();
    table.DamagedRows.clear();
    table.File->ReadRows([&](const DatabaseFile::RowSource &source) {
        records.Append(source);
        if (!source.IsAsSaved())
            table.DamagedRows.push_back(source.RowId());
    });
    if (!table.Order.empty())
        records.Sort(table.Order);
    table.Table = std::move(records);
    if (table.WrittenRow)
        table.Cursor = table.Table->PositionOf(*table.WrittenRow).value_or(table.Cursor);
    table.WrittenRow.reset();
    table.Cursor = std::min(table.Cursor, table.Table->Count());
}

void RecordStore::WriteUnwritten(OpenTable &table)
{
    const auto unwritten = std::exchange(table.Unwritten, {});
    if (!table.File->InTransaction())
        return; // the batch has failed, and none of it has happened
    for (const auto &[rowId, row] : unwritten)
        table.File->Update(rowId, row);
}

void RecordStore::Refresh(OpenTable &table) const
{
    if (table.Table && table.File->DataVersion() != table.DataVersion)
        table.Table.reset();
    if (!table.Table)
        Load(table);
}

RecordStore::Handle RecordStore::Keep(std::unique_ptr<OpenTable> table)
{
    RequireNoCommit();
    m_open.push_back(std::move(table));
    return static_cast<Handle>(m_open.size());
}

RecordStore::Handle RecordStore::OpenDatabase(
    qint32 mode, const QString &path, qint32, qint32, qint32, qint32, qint32 access)
{
    RequireArgument(mode == OpenMode, u"mode "_s + QString::number(mode));
    RequireArgument(access == ReadAndWrite, u"access "_s + QString::number(access));
    m_openFailure.reset();
    auto table = std::make_unique<OpenTable>();
    try {
        table->File = DatabaseFile::Open(FileName(path), m_creator);
    } catch (const clsRunTimeError &error) {
        m_openFailure = error;
    }
    return table->File ? Keep(std::move(table)) : 0;
}

RecordStore::Handle RecordStore::OpenOrRaise(const QString &path)
{
    const Handle handle = OpenDatabase(OpenMode, path, 0, 0, 0, 0, ReadAndWrite);
    if (m_openFailure)
        throw clsRunTimeError(*m_openFailure);
    return handle;
}

void RecordStore::CloseDatabase(Handle handle)
{
    Find(handle);
    m_open[static_cast<size_t>(handle) - 1].reset();
}

void RecordStore::Preload(Handle handle)
{
    OpenTable &table = WithTable(handle);
    if (table.Table || table.InBatch)
        return;
    // Whatever fails: the first who needs a record reads again, and is told then.
    try {
        table.Preloading = std::async(std::launch::async, [this, &table] {
            try {
                Read(table);
                table.Table->BuildIndex(0);
            } catch (...) {
            }
        });
    } catch (const std::system_error &) {
    }
}

qint32 RecordStore::GetRecordCount(Handle handle)
{
    OpenTable &table = WithTable(handle);
    const qint64 count
        = table.Table ? static_cast<qint64>(table.Table->Count()) : table.File->RowCount();
    return static_cast<qint32>(count);
}

void RecordStore::Place(OpenTable &table, qint32 position, qint32 most)
{
    if (position < 0 || position > most)
        RaiseStoreError(StoreErrors::BadPosition,
            u"The position "_s + QString::number(position) + u" is past the end of the database "_s
                + table.File->FileName());
    table.Drop();
    table.Cursor = static_cast<size_t>(position);
}

void RecordStore::MoveFirst(Handle handle)
{
    OpenTable &table = WithTable(handle);
    table.Drop();
    table.Cursor = 0;
    table.WrittenRow.reset();
    Refresh(table);
}

void RecordStore::MoveCursor(Handle handle)
{
    OpenTable &table = Loaded(handle);
    table.Drop();
    table.Cursor = table.Table->Count() - (table.Table->Count() > 0 ? 1 : 0);
}

void RecordStore::MoveNext(Handle handle)
{
    OpenTable &table = Loaded(handle);
    table.Drop();
    table.Cursor = std::min(table.Cursor + 1, table.Table->Count());
}

bool RecordStore::AtEnd(const OpenTable &table) const
{
    return table.Cursor >= table.Table->Count();
}

void RecordStore::RequireRecord(const OpenTable &table) const
{
    if (AtEnd(table))
        RaiseStoreError(StoreErrors::BadPosition,
            u"There is no record past the end of the database "_s + table.File->FileName());
}

bool RecordStore::IsEndOfTable(Handle handle)
{
    return AtEnd(Loaded(handle));
}

void RecordStore::Put(StoredValue &stored, const QString &value)
{
    if (auto *text = std::get_if<std::string>(&stored))
        PutUtf8(*text, value);
    else
        stored = Utf8(value);
}

void RecordStore::Put(StoredValue &stored, const QDateTime &value)
{
    if (value.isValid() && (value.date().year() < 1 || value.date().year() > 9999))
        RaiseStoreError(StoreErrors::BadRecord,
            u"The year is out of range: "_s + QString::number(value.date().year()));
    stored = SecondsFromDate(value);
}

void RecordStore::Put(StoredValue &stored, Currency value)
{
    stored = value.Scaled();
}

StoredValue RecordStore::Stored(const OpenTable &table, qint32 field, const Key &key)
{
    const FieldType type = table.File->Fields()[static_cast<size_t>(field)].Type;
    const bool fits = (type == FieldType::String && std::holds_alternative<QString>(key))
        || (type == FieldType::Date && std::holds_alternative<QDateTime>(key))
        || (type == FieldType::Currency && std::holds_alternative<Currency>(key));
    if (!fits)
        RaiseStoreError(StoreErrors::BadField,
            u"The key is of another type than the field "_s + QString::number(field)
                + u" of the database "_s + table.File->FileName());
    StoredValue stored;
    std::visit([&](const auto &value) { Put(stored, value); }, key);
    return stored;
}

void RecordStore::FindRecord(Handle handle, qint32 field, const Key &key)
{
    OpenTable &table = WithTable(handle);
    CheckField(table, field);
    const StoredValue wanted = Stored(table, field, key);
    Loaded(handle);
    table.Drop();
    const RecordTable::Found found
        = table.Table->FindFirstNotBelow(static_cast<size_t>(field), wanted);
    table.Cursor = found.Position;
    table.LastStatus = found.Exact ? ExactMatch : NoExactMatch;
}

qint32 RecordStore::GetLastStatus(Handle handle)
{
    return Find(handle).LastStatus;
}

void RecordStore::Get(const OpenTable &table, size_t field, QString &value) const
{
    value = Utf16(table.Table->Text(table.Cursor, field));
}

void RecordStore::Get(const OpenTable &table, size_t field, QDateTime &value) const
{
    value = DateFromSeconds(table.Table->Number(table.Cursor, field));
}

void RecordStore::Get(const OpenTable &table, size_t field, Currency &value) const
{
    value = Currency::FromScaled(table.Table->Number(table.Cursor, field));
}

QString RecordStore::ReadField(Handle handle, qint32 field)
{
    OpenTable &table = WithTable(handle);
    CheckField(table, field);
    Loaded(handle);
    RequireRecord(table);
    const size_t index = static_cast<size_t>(field);
    switch (table.File->Fields()[index].Type) {
    case FieldType::String:
        return Utf16(table.Table->Text(table.Cursor, index));
    case FieldType::Date:
        return Utf16(DateText(table.Table->Number(table.Cursor, index)));
    case FieldType::Currency:
        break;
    }
    return FormatCurrency(
        Currency::FromScaled(table.Table->Number(table.Cursor, index)), 4, LeadingZero::Yes);
}

void RecordStore::ReadNumbers(
    Handle handle, std::span<const qint32> fields, std::span<qint64> values)
{
    OpenTable &table = Loaded(handle);
    RequireRecord(table);
    for (const qint32 field : fields)
        CheckField(table, field);
    table.Table->ReadNumbers(table.Cursor, fields, values);
}

std::shared_ptr<const TextNumbers> RecordStore::NumbersOf(Handle handle, qint32 field)
{
    OpenTable &table = Loaded(handle);
    CheckField(table, field);
    return table.Table->NumbersOf(static_cast<size_t>(field));
}

RecordStore::Sighting RecordStore::Sight(
    Handle handle, qint32 keyField, const QString &key, qint32 valueField)
{
    OpenTable &table = Loaded(handle);
    CheckField(table, keyField);
    CheckField(table, valueField);
    const RecordTable::Found found = table.Table->FindFirstNotBelow(
        static_cast<size_t>(keyField), Stored(table, keyField, key));
    if (found.Position == table.Table->Count())
        return {};
    return {true, found.Exact,
        Utf16(table.Table->Text(found.Position, static_cast<size_t>(valueField)))};
}

quint64 RecordStore::Version(Handle handle)
{
    return Loaded(handle).Version;
}

void RecordStore::AddRecord(Handle handle)
{
    OpenTable &table = WithTable(handle);
    table.Drop();
    table.Pending = OpenTable::Begun::Add;
    for (const SchemaField &field : table.File->Fields()) {
        if (field.Type == FieldType::String)
            table.PendingRow.emplace_back(std::string());
        else
            table.PendingRow.emplace_back(field.Type == FieldType::Date ? NoDate : 0);
    }
}

void RecordStore::EditRecord(Handle handle)
{
    OpenTable &table = Loaded(handle);
    if (AtEnd(table))
        RaiseStoreError(StoreErrors::BadPosition,
            u"There is no record to edit past the end of the database "_s + table.File->FileName());
    table.Drop();
    table.Pending = OpenTable::Begun::Edit;
    table.PendingRow = table.Table->Row(table.Cursor);
}

void RecordStore::Write(OpenTable &table, StoredRow row)
{
    if (table.Pending == OpenTable::Begun::Nothing)
        RaiseStoreError(StoreErrors::NothingBegun,
            u"No record has been begun in the database "_s + table.File->FileName());
    table.PendingRow = std::move(row);
}

void RecordStore::BeginWrite(OpenTable &table)
{
    if (!table.InBatch)
        table.File->Begin();
    else
        RequireBatch(table);
}

void RecordStore::RequireBatch(const OpenTable &table)
{
    // A full disk undoes the whole transaction; what followed would otherwise be written alone.
    if (!table.File->InTransaction())
        RaiseStoreError(StoreErrors::WriteFailed,
            u"The batch of writes has already failed in the database "_s + table.File->FileName());
}

void RecordStore::EndWrite(OpenTable &table)
{
    if (!table.InBatch)
        Commit(table);
}

void RecordStore::Commit(OpenTable &table)
{
    const QScopedValueRollback<bool> committing(m_committing, true);
    table.File->Commit();
}

void RecordStore::AbandonWrite(OpenTable &table) noexcept
{
    if (!table.InBatch)
        table.File->Rollback();
}

/// The record under the cursor is still what was read.
void RecordStore::RequireUnchanged(OpenTable &table, qint64 rowId)
{
    // What a batch has once written, or is going to, nobody else can have changed since.
    if (table.Unwritten.contains(rowId) || table.File->DataVersion() == table.DataVersion)
        return;
    if (table.File->ReadRow(rowId) == table.Table->Row(table.Cursor))
        return;
    table.Table.reset(); // what is there now is read at the next call
    RaiseStoreError(StoreErrors::ChangedOutside,
        u"Another program has changed the record meanwhile: "_s + table.File->FileName());
}

void RecordStore::UpdateRecord(Handle handle)
{
    OpenTable &table = Find(handle);
    if (table.Pending == OpenTable::Begun::Nothing)
        RaiseStoreError(StoreErrors::NothingBegun,
            u"No record has been begun in the database "_s + table.File->FileName());
    const auto dropped = qScopeGuard([&] { table.Drop(); });
    if (table.Pending == OpenTable::Begun::Add)
        Insert(table, table.PendingRow);
    else
        ReplaceCurrent(table);
}

void RecordStore::AppendRow(Handle handle, const StoredRow &row)
{
    OpenTable &table = WithTable(handle);
    const Schema &schema = table.File->Fields();
    const bool fits = std::equal(schema.begin(), schema.end(), row.begin(), row.end(),
        [](const SchemaField &field, const StoredValue &value) {
            return std::holds_alternative<std::string>(value) == (field.Type == FieldType::String);
        });
    if (!fits)
        RaiseStoreError(StoreErrors::BadRecord,
            u"The record structure does not fit the database: "_s + table.File->FileName());
    table.Drop();
    Insert(table, row);
}

void RecordStore::Insert(OpenTable &table, const StoredRow &row)
{
    if (!table.Table && !table.Order.empty())
        Load(table); // once the record is there, sorting would no longer put it last
    qint64 rowId = 0;
    BeginWrite(table);
    try {
        rowId = table.File->Insert(row);
        EndWrite(table);
    } catch (...) {
        AbandonWrite(table);
        throw;
    }
    ShowWritten(table, rowId, row, true);
}

void RecordStore::ReplaceCurrent(OpenTable &table)
{
    const qint64 rowId = table.Table->RowId(table.Cursor);
    BeginWrite(table);
    try {
        RequireUnchanged(table, rowId);
        if (table.InBatch)
            table.Unwritten.insert_or_assign(rowId, table.PendingRow);
        else
            table.File->Update(rowId, table.PendingRow);
        EndWrite(table);
    } catch (...) {
        AbandonWrite(table);
        throw;
    }
    ShowWritten(table, rowId, table.PendingRow, false);
}

/// Brings a written record into memory. The write has happened: whatever fails here must not be
/// told as a failed write, so the table is then read anew.
void RecordStore::ShowWritten(
    OpenTable &table, qint64 rowId, const StoredRow &row, bool isNew) const
{
    std::erase(table.DamagedRows, rowId);
    try {
        if (table.Table && isNew) {
            table.Table->Append(rowId, row);
            table.Cursor = table.Table->Count() - 1;
        } else if (table.Table) {
            table.Table->Replace(table.Cursor, row);
        }
    } catch (...) {
        table.Table.reset();
    }
    table.Version = ++m_versions;
    if (!table.Table)
        table.WrittenRow = rowId;
}

qint32 RecordStore::DeleteRecord(Handle handle, qint32 mode)
{
    RequireArgument(mode == DeleteMode, u"mode "_s + QString::number(mode));
    OpenTable &table = Loaded(handle);
    table.Drop();
    if (AtEnd(table))
        RaiseStoreError(StoreErrors::BadPosition,
            u"There is no record to delete past the end of the database "_s
                + table.File->FileName());
    const qint64 rowId = table.Table->RowId(table.Cursor);
    BeginWrite(table);
    try {
        RequireUnchanged(table, rowId);
        table.Unwritten.erase(rowId);
        table.File->Delete(rowId);
        EndWrite(table);
    } catch (...) {
        AbandonWrite(table);
        throw;
    }
    table.Table->Remove(table.Cursor);
    table.Version = ++m_versions;
    return 0;
}

qint32 RecordStore::GetRecordPosition(Handle handle)
{
    return static_cast<qint32>(Loaded(handle).Cursor);
}

qint32 RecordStore::GetCurrentIndex(Handle handle)
{
    return GetRecordPosition(handle);
}

void RecordStore::MoveToPosition(Handle handle, qint32 position)
{
    OpenTable &table = Loaded(handle);
    Place(table, position, static_cast<qint32>(table.Table->Count()) - 1);
}

qint32 RecordStore::FindFromPosition(Handle handle, qint32 position)
{
    OpenTable &table = Loaded(handle);
    Place(table, position, static_cast<qint32>(table.Table->Count()));
    return 0;
}

qint32 RecordStore::SortTable(Handle handle, const QString &fieldList)
{
    OpenTable &table = WithTable(handle);
    std::vector<size_t> fields;
    for (const QStringView number : QStringView(fieldList).split(u',')) {
        bool isNumber = false;
        const qint32 field = number.trimmed().toInt(&isNumber);
        if (!isNumber)
            RaiseStoreError(
                StoreErrors::BadField, u"The field list is malformed: \""_s + fieldList + u"\""_s);
        CheckField(table, field);
        fields.push_back(static_cast<size_t>(field));
    }
    Loaded(handle);
    table.Drop();
    const bool atEnd = AtEnd(table);
    const RecordTable::Slot slot = atEnd ? 0 : table.Table->SlotAt(table.Cursor);
    if (table.Table->Sort(fields))
        table.Version = ++m_versions;
    table.Order = fields;
    if (!atEnd)
        table.Cursor = table.Table->PositionOfSlot(slot);
    return 0;
}

void RecordStore::SetKeyField(Handle handle, qint32 field)
{
    SortTable(handle, QString::number(field));
}

RecordStore::Handle RecordStore::CreateDatabase(const QString &path, quint32 type, quint32 creator)
{
    auto table = std::make_unique<OpenTable>();
    table->File = DatabaseFile::Create(FileName(path), type, creator);
    return Keep(std::move(table));
}

qint32 RecordStore::CreateTable(Handle handle, const QString &name, const QString &schema)
{
    OpenTable &table = Find(handle);
    const QScopedValueRollback<bool> committing(m_committing, true); // at its end
    table.File->CreateTable(name, schema);
    return 0;
}

void RecordStore::MakeScratch(Handle handle)
{
    Find(handle).File->MakeScratch();
}

void RecordStore::KeepCheckValues(Handle handle)
{
    Find(handle).File->KeepCheckValues();
}

void RecordStore::CheckIntegrity(Handle handle)
{
    DatabaseFile &file = *WithTable(handle).File;
    file.CheckIntegrity();
    file.ReadRows([](const DatabaseFile::RowSource &) {});
}

std::vector<qint32> RecordStore::DamagedRecords(Handle handle)
{
    const OpenTable &table = Loaded(handle);
    std::vector<qint32> positions;
    for (const qint64 rowId : table.DamagedRows) {
        if (const std::optional<size_t> position = table.Table->PositionOf(rowId))
            positions.push_back(static_cast<qint32>(*position));
    }
    return positions;
}

qint32 RecordStore::DeleteDatabase(const QString &path, qint32, qint32)
{
    RequireNoCommit();
    for (std::unique_ptr<OpenTable> &table : m_open) {
        if (table && table->File->FileName() == FileName(path))
            table.reset();
    }
    return DeleteDatabaseFile(FileName(path)) ? 0 : 1;
}

QString RecordStore::ReadNote(Handle handle)
{
    return WithTable(handle).File->Note();
}

void RecordStore::WriteNote(Handle handle, const QString &note)
{
    OpenTable &table = WithTable(handle);
    BeginWrite(table);
    try {
        table.File->SetNote(note);
        EndWrite(table);
    } catch (...) {
        AbandonWrite(table);
        throw;
    }
}

RecordStore::Batch::Batch(RecordStore &store, Handle handle)
    : m_store(store)
    , m_handle(handle)
{
    OpenTable &table = m_store.WithTable(m_handle);
    if (table.InBatch)
        RaiseStoreError(StoreErrors::BadArgument,
            u"The database is in a batch already: "_s + table.File->FileName());
    table.File->Begin();
    table.InBatch = true;
}

RecordStore::Batch::~Batch()
{
    const std::unique_ptr<OpenTable> &open = m_store.m_open[static_cast<size_t>(m_handle) - 1];
    if (!open || !open->InBatch)
        return;
    OpenTable &table = *open;
    table.File->Rollback();
    table.InBatch = false;
    table.Table.reset(); // it holds what has not happened
    table.WrittenRow.reset();
    table.Unwritten.clear();
    table.Cursor = 0;
    table.Drop();
}

void RecordStore::Batch::Commit()
{
    OpenTable &table = m_store.Find(m_handle);
    if (!table.InBatch)
        return;
    RequireBatch(table);
    WriteUnwritten(table);
    m_store.Commit(table);
    table.InBatch = false;
}
