#pragma once

#include "platform/clsRunTimeError.h"
#include "platform/Currency.h"
#include "store/RecordTable.h"
#include "store/Schema.h"

#include <QDateTime>
#include <QString>

#include <array>
#include <memory>
#include <optional>
#include <span>
#include <tuple>
#include <variant>
#include <vector>

/// The value of a database's four-character code: the characters' Latin-1 codes, the first in the
/// most significant byte. 0 for a text of any other length.
quint32 CodeNumber(const QString &code);

/// Local databases of fixed, typed records, one table a database, each with a cursor.
///
/// Shape:  a position, an index and what FindFromPosition takes are one number space: the
///         zero-based place in the table's current order. That order is the stored order until
///         SortTable, and lasts until the table is sorted again or closed. A record is moved as a
///         plain structure with a member Fields() that ties its members in schema order: QString
///         for String, QDateTime (see WallClock) for Date, Currency for Currency.
/// Cursor: right after opening it stands on the first record; past the last one IsEndOfTable is
///         true and the position is the record count. Moving drops a record that was begun.
/// Files:  a path is given without extension; the file is <path>.db. Opening reads no record;
///         the first one that is asked for brings the table into memory.
/// Writes: each UpdateRecord and DeleteRecord is on the disk when it returns, or raises and has
///         changed nothing. A Batch makes one such step of many.
/// Others: what another program writes meanwhile is seen at the next MoveFirst and before each
///         write; a record that it changed is never overwritten (ChangedOutside).
/// Errors: clsRunTimeError with a number of StoreErrors, naming the file or the argument.
class RecordStore
{
public:
    using Handle = qint32; ///< 0: not open
    using Key = std::variant<QString, QDateTime, Currency>;

    static constexpr qint32 ExactMatch = 0;
    static constexpr qint32 NoExactMatch = -7;

    RecordStore();
    ~RecordStore();
    RecordStore(const RecordStore &) = delete;
    RecordStore &operator=(const RecordStore &) = delete;

    /// Files of any other creator are refused. 0 until it is set.
    void SetCreator(quint32 creator) { m_creator = creator; }

    /// 0 when the file does not exist, and when it cannot be opened; OpenFailure() then says why.
    /// `mode` is 1, `access` 3 (reading and writing).
    Handle OpenDatabase(qint32 mode, const QString &path, qint32 reserved1, qint32 reserved2,
        qint32 reserved3, qint32 reserved4, qint32 access);
    /// Why the last OpenDatabase has returned 0; std::nullopt when it did not, or found no file.
    const std::optional<clsRunTimeError> &OpenFailure() const { return m_openFailure; }
    /// OpenDatabase for callers that must tell the two apart: 0 when the file does not exist.
    Handle OpenOrRaise(const QString &path);
    void CloseDatabase(Handle handle);
    /// Begins to bring the table into memory, and to index its first field, beside whatever the
    /// caller does next. Every other call for the handle waits for it; a failure is told by the
    /// first call that needs a record.
    void Preload(Handle handle);
    qint32 GetRecordCount(Handle handle);

    void MoveFirst(Handle handle);
    void MoveCursor(Handle handle); ///< to the last record; the end on an empty table
    void MoveNext(Handle handle); ///< past the end it stays there
    bool IsEndOfTable(Handle handle);

    /// To the record with the least value that is not below the key, the first in the current
    /// order among equals; past the end when there is none. The key's type is the field's.
    void FindRecord(Handle handle, qint32 field, const Key &key);
    /// ExactMatch or NoExactMatch, of the last FindRecord.
    qint32 GetLastStatus(Handle handle);

    /// A value of the current record as text; Currency with four decimals, Date as
    /// "yyyy-MM-dd HH:mm:ss".
    QString ReadField(Handle handle, qint32 field);
    /// False past the end; the structure is then as it was.
    template <class Record>
    bool ReadRecord(Handle handle, Record &record);
    /// Fields of the current record, which is not past the end, as numbers: a String as the number
    /// of its text, a Date as SecondsFromDate counts it, Currency scaled.
    void ReadNumbers(Handle handle, std::span<const qint32> fields, std::span<qint64> values);
    /// The numbers of a field's texts; others when the table has been read anew.
    std::shared_ptr<const TextNumbers> NumbersOf(Handle handle, qint32 field);

    struct Sighting
    {
        bool IsRecord = false; ///< false: the search ended past the last one
        bool Exact = false;
        QString Value;
    };
    /// A String field of the record on which FindRecord would end. The cursor stays where it is.
    Sighting Sight(Handle handle, qint32 keyField, const QString &key, qint32 valueField);
    /// Another whenever the table was read anew, written, or so ordered that a search may end on
    /// another record.
    quint64 Version(Handle handle);

    /// Into the record begun by AddRecord or EditRecord; always true.
    template <class Record>
    bool WriteRecord(Handle handle, const Record &record);

    /// The values of a record, in schema order, as AppendRow takes them; `row` is overwritten.
    template <class Record>
    static void PutRow(StoredRow &row, const Record &record);
    /// AddRecord, WriteRecord and UpdateRecord in one step.
    void AppendRow(Handle handle, const StoredRow &row);

    void AddRecord(Handle handle);
    void EditRecord(Handle handle);
    void UpdateRecord(Handle handle); ///< the cursor is then on the written record
    /// The cursor is then on the record that followed. `mode` is 2; the result 0.
    qint32 DeleteRecord(Handle handle, qint32 mode);

    qint32 GetRecordPosition(Handle handle);
    void MoveToPosition(Handle handle, qint32 position);
    qint32 GetCurrentIndex(Handle handle);
    /// Like MoveToPosition, but the record count is allowed too and leaves the cursor at the end.
    /// The result is 0.
    qint32 FindFromPosition(Handle handle, qint32 position);

    /// `fieldList`: zero-based indexes separated by commas, blanks carry no meaning. The cursor
    /// stays on its record. The result is 0.
    qint32 SortTable(Handle handle, const QString &fieldList);
    /// The table's order becomes that of the field.
    void SetKeyField(Handle handle, qint32 field);

    /// Fails on a file that exists. The file appears under its name when CreateTable has run.
    Handle CreateDatabase(const QString &path, quint32 type, quint32 creator);
    qint32 CreateTable(Handle handle, const QString &name, const QString &schema); ///< 0
    /// What is written under the handle from now on is for this run of the program only: no write
    /// waits for the disk, and a crash may leave a file that is of no use.
    void MakeScratch(Handle handle);
    /// The table that CreateTable then makes keeps a check value with each record, in a column of
    /// its own that is no field: damage is known for each record, see DamagedRecords. Loading it
    /// raises Damaged for a file in which records may be missing. Every other table has a digest
    /// of all its records, and loading it raises Damaged when they are not those that were written.
    void KeepCheckValues(Handle handle);
    /// Reads the whole file and raises Damaged when its pages do not fit together, or when the
    /// records are not those that were written.
    void CheckIntegrity(Handle handle);
    /// The positions, in the current order, of records that are not what was saved: the check
    /// value does not hold. They are read like any other; a record counts no longer when it has
    /// been written again.
    std::vector<qint32> DamagedRecords(Handle handle);
    /// 0, or 1 when there was no such file. Handles of the file are closed first.
    qint32 DeleteDatabase(const QString &path, qint32 reserved1, qint32 reserved2);

    /// A text that stands in the file beside the table; empty in a new one.
    QString ReadNote(Handle handle);
    void WriteNote(Handle handle, const QString &note);

    /// True while a write waits for the disk. On the thread of the windows their events run then
    /// (see RunWhileWaiting), and every call but this one raises Locked.
    bool IsCommitting() const { return m_committing; }

    /// All writes to one database between construction and Commit() are one durable transaction;
    /// without Commit() none of them has happened, and the cursor is then on the first record. When
    /// one of them fails for want of space, or Commit() does, all that follow are refused until the
    /// end.
    class Batch
    {
    public:
        Batch(RecordStore &store, Handle handle); ///< the store outlives it
        ~Batch();
        Batch(const Batch &) = delete;
        Batch &operator=(const Batch &) = delete;
        void Commit();

    private:
        RecordStore &m_store;
        Handle m_handle;
    };

    static QString FileName(const QString &path) { return path + QStringLiteral(".db"); }

private:
    struct OpenTable;

    template <class Member>
    static constexpr FieldType TypeOf();
    template <class Tied>
    struct Shape;

    OpenTable &Find(Handle handle) const;
    OpenTable &WithTable(Handle handle) const; ///< CreateTable has run
    OpenTable &Loaded(Handle handle) const;
    /// The table for a whole-record move: its fields are of these types.
    OpenTable &OfShape(Handle handle, const FieldType *types, size_t count) const;
    static void CheckField(const OpenTable &table, qint32 field);
    static void Place(OpenTable &table, qint32 position, qint32 most);
    static StoredValue Stored(const OpenTable &table, qint32 field, const Key &key);
    bool AtEnd(const OpenTable &table) const;
    void RequireRecord(const OpenTable &table) const;
    void Get(const OpenTable &table, size_t field, QString &value) const;
    void Get(const OpenTable &table, size_t field, QDateTime &value) const;
    void Get(const OpenTable &table, size_t field, Currency &value) const;
    static void Put(StoredValue &stored, const QString &value);
    static void Put(StoredValue &stored, const QDateTime &value);
    static void Put(StoredValue &stored, Currency value);
    void Write(OpenTable &table, StoredRow row);
    void Load(OpenTable &table) const;
    void Read(OpenTable &table) const;
    static void WriteUnwritten(OpenTable &table);
    void Refresh(OpenTable &table) const;
    static void BeginWrite(OpenTable &table);
    static void RequireBatch(const OpenTable &table);
    void EndWrite(OpenTable &table);
    void Commit(OpenTable &table);
    void RequireNoCommit() const;
    static void AbandonWrite(OpenTable &table) noexcept;
    void Insert(OpenTable &table, const StoredRow &row);
    void ReplaceCurrent(OpenTable &table);
    void ShowWritten(OpenTable &table, qint64 rowId, const StoredRow &row, bool isNew) const;
    static void RequireUnchanged(OpenTable &table, qint64 rowId);
    Handle Keep(std::unique_ptr<OpenTable> table);

    quint32 m_creator = 0;
    std::optional<clsRunTimeError> m_openFailure; // set by each OpenDatabase
    std::vector<std::unique_ptr<OpenTable>> m_open; // by handle, from 1; empty when closed
    mutable quint64 m_versions = 0;
    bool m_committing = false;
};

template <class Member>
constexpr FieldType RecordStore::TypeOf()
{
    if constexpr (std::is_same_v<Member, QString>)
        return FieldType::String;
    else if constexpr (std::is_same_v<Member, QDateTime>)
        return FieldType::Date;
    else {
        static_assert(std::is_same_v<Member, Currency>);
        return FieldType::Currency;
    }
}

template <class... Members>
struct RecordStore::Shape<std::tuple<Members &...>>
{
    static constexpr std::array<FieldType, sizeof...(Members)> Types
        = {TypeOf<std::remove_const_t<Members>>()...};
};

template <class Record>
bool RecordStore::ReadRecord(Handle handle, Record &record)
{
    auto members = record.Fields();
    constexpr auto &types = Shape<decltype(members)>::Types;
    OfShape(handle, types.data(), types.size());
    const OpenTable &table = Loaded(handle);
    if (AtEnd(table))
        return false;
    size_t field = 0;
    std::apply([&](auto &...member) { (Get(table, field++, member), ...); }, members);
    return true;
}

template <class Record>
bool RecordStore::WriteRecord(Handle handle, const Record &record)
{
    auto members = record.Fields();
    constexpr auto &types = Shape<decltype(members)>::Types;
    OpenTable &table = OfShape(handle, types.data(), types.size());
    StoredRow row;
    PutRow(row, record);
    Write(table, std::move(row));
    return true;
}

template <class Record>
void RecordStore::PutRow(StoredRow &row, const Record &record)
{
    auto members = record.Fields();
    row.resize(std::tuple_size_v<decltype(members)>);
    size_t field = 0;
    std::apply([&](const auto &...member) { (Put(row[field++], member), ...); }, members);
}
