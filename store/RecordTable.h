#pragma once

#include "store/DatabaseFile.h"
#include "store/Schema.h"
#include "store/TextNumbers.h"

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The records of one table in memory, in their current order, with an index for each field that
/// was searched.
///
/// Shape: a position is a record's zero-based place in the current order. Values lie by column,
///        texts in one buffer a column, from which replaced ones are dropped when they are more
///        than the others.
/// Texts: a field's texts are numbered (see TextNumbers) at the first question, and the numbers
///        are then kept up to date.
/// Costs: reading a value is O(1), FindFirstNotBelow O(log n) once the field's index stands; the
///        index is built at the field's first search, or by a sort that the field leads, and then
///        kept up to date. Sorting into the order that stands looks at every record once.
class RecordTable
{
public:
    explicit RecordTable(const Schema &schema);

    size_t Count() const { return m_order.size(); }
    qint64 RowId(size_t position) const { return m_rowIds[m_order[position]]; }
    std::optional<size_t> PositionOf(qint64 rowId) const; ///< looks at every record
    std::string_view Text(size_t position, size_t field) const;
    qint64 Number(size_t position, size_t field) const;
    StoredRow Row(size_t position) const;

    /// The values of some fields of a record; of a text its number.
    void ReadNumbers(size_t position, std::span<const qint32> fields, std::span<qint64> values);
    std::shared_ptr<const TextNumbers> NumbersOf(size_t field) { return Numbered(field).Texts; }

    void Reserve(size_t count); ///< makes room for records to be appended
    void Append(const DatabaseFile::RowSource &source);
    void Append(qint64 rowId, const StoredRow &row); ///< last in the current and the stored order
    void Replace(size_t position, const StoredRow &row);
    void Remove(size_t position);

    /// Orders by the fields, the first most significant; equal records keep their stored order.
    /// False when every search still ends on the record that it ended on before.
    bool Sort(const std::vector<size_t> &fields);

    void BuildIndex(size_t field); ///< what the field's first search would do
    struct Found
    {
        size_t Position = 0; ///< Count() when every value is below the key
        bool Exact = false;
    };
    /// The record with the least value that is not below the key and, among equals, the first in
    /// the current order.
    Found FindFirstNotBelow(size_t field, const StoredValue &key);

    /// A record's name for as long as it is in the table; sorting and removing others leave it.
    using Slot = quint32;
    Slot SlotAt(size_t position) const { return m_order[position]; }
    size_t PositionOfSlot(Slot slot) const { return m_places[slot]; }

private:
    struct Cell
    {
        quint32 Offset = 0;
        quint32 Length = 0;
    };
    struct Numbering
    {
        std::shared_ptr<TextNumbers> Texts; // null until it is asked for
        std::vector<quint32> Slots; // by slot: the number of its text
    };
    struct Column
    {
        FieldType Type = FieldType::String;
        std::string Bytes; // all texts, some of those no longer in use too
        size_t Unused = 0; // how many of the bytes no cell has
        std::vector<Cell> Cells;
        std::vector<qint64> Numbers;
    };
    /// The part of a value that is looked at first: of a text its first `Bytes` bytes. Values whose
    /// keys differ are ordered as their keys.
    struct SortKey
    {
        static constexpr size_t Bytes = 24;
        quint64 First = 0;
        quint64 Second = 0;
        quint64 Third = 0;
        bool operator==(const SortKey &) const = default;
        bool operator<(const SortKey &other) const
        {
            if (First != other.First)
                return First < other.First;
            return Second != other.Second ? Second < other.Second : Third < other.Third;
        }
    };
    struct Keyed
    {
        SortKey Key;
        Slot At;
    };
    struct Index
    {
        bool Built = false;
        bool Unique = true; // then the order of equals is no question, and a sort leaves it valid
        std::vector<Keyed> Records; // ordered by value, then by position
    };

    Numbering &Numbered(size_t field)
    {
        Numbering &numbering = m_numberings[field];
        if (!numbering.Texts)
            Build(numbering, field);
        return numbering;
    }
    void Build(Numbering &numbering, size_t field) const;
    using Run = std::span<Keyed>;
    /// Which of two records with equal values comes first.
    using Precedence = std::function<bool(Slot, Slot)>;

    std::string_view TextAt(Slot slot, size_t field) const;
    SortKey KeyOf(Slot slot, size_t field, size_t from = 0) const;
    static SortKey TextKey(std::string_view text, size_t from);
    Index Ordered(size_t field, const Precedence &precedes) const;
    void SortRun(Run run, size_t field, size_t from) const;
    bool SettleEquals(Run run, size_t field, size_t from, const Precedence &precedes) const;
    bool IsOrderedBy(const std::vector<size_t> &fields) const;
    bool TakeOrderOf(const Index &leading); ///< true when searches may end elsewhere
    int CompareSlots(Slot a, Slot b, size_t field) const;
    static Cell PutText(Column &column, std::string_view text);
    static void ReplaceText(Column &column, Slot slot, std::string_view text);
    static void DropUnused(Column &column);
    Slot NewSlot(qint64 rowId);
    void InsertInto(Index &index, size_t field, Slot slot) const;
    void RemoveFrom(Index &index, Slot slot) const;
    size_t Rank(const Index &index, size_t field, Slot slot) const;

    std::vector<Column> m_columns;
    std::vector<Index> m_indexes; // one a field
    std::vector<Numbering> m_numberings; // one a field
    std::vector<qint64> m_rowIds; // by slot
    std::vector<Slot> m_order; // by position
    std::vector<Slot> m_places; // by slot: its position
    std::vector<size_t> m_orderedBy; // the fields by which the order stands; empty: none
};
