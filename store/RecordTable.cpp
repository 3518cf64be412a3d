#include "store/RecordTable.h"

#include "store/FieldText.h"
#include "store/StoreErrors.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// So little of texts that were replaced is not worth the work to drop them.
constexpr size_t FewUnusedBytes = size_t(64) * 1024;

/// Numbers as unsigned ones of the same order.
quint64 NumberKey(qint64 number)
{
    return static_cast<quint64>(number) ^ (quint64(1) << 63);
}

quint32 NumberOf(TextNumbers &texts, std::string_view text)
{
    return static_cast<quint32>(texts.NumberFor(text)); // no more than there are records
}

} // namespace

RecordTable::RecordTable(const Schema &schema)
    : m_columns(schema.size())
    , m_indexes(schema.size())
    , m_numberings(schema.size())
{
    for (size_t i = 0; i < schema.size(); ++i)
        m_columns[i].Type = schema[i].Type;
}

std::string_view RecordTable::TextAt(Slot slot, size_t field) const
{
    const Column &column = m_columns[field];
    const Cell cell = column.Cells[slot];
    return std::string_view(column.Bytes).substr(cell.Offset, cell.Length);
}

std::optional<size_t> RecordTable::PositionOf(qint64 rowId) const
{
    const auto at = std::find_if(
        m_order.begin(), m_order.end(), [&](Slot slot) { return m_rowIds[slot] == rowId; });
    if (at == m_order.end())
        return {};
    return static_cast<size_t>(at - m_order.begin());
}

std::string_view RecordTable::Text(size_t position, size_t field) const
{
    return TextAt(m_order[position], field);
}

qint64 RecordTable::Number(size_t position, size_t field) const
{
    return m_columns[field].Numbers[m_order[position]];
}

StoredRow RecordTable::Row(size_t position) const
{
    StoredRow row;
    for (size_t field = 0; field < m_columns.size(); ++field) {
        if (m_columns[field].Type == FieldType::String)
            row.emplace_back(std::string(Text(position, field)));
        else
            row.emplace_back(Number(position, field));
    }
    return row;
}

void RecordTable::Build(Numbering &numbering, size_t field) const
{
    auto texts = std::make_shared<TextNumbers>();
    numbering.Slots.reserve(m_rowIds.size());
    for (Slot slot = 0; slot < m_rowIds.size(); ++slot)
        numbering.Slots.push_back(NumberOf(*texts, TextAt(slot, field)));
    numbering.Texts = std::move(texts);
}

void RecordTable::ReadNumbers(
    size_t position, std::span<const qint32> fields, std::span<qint64> values)
{
    const Slot slot = m_order[position];
    for (size_t i = 0; i < fields.size(); ++i) {
        const auto field = static_cast<size_t>(fields[i]);
        const Column &column = m_columns[field];
        values[i] = column.Type == FieldType::String ? qint64(Numbered(field).Slots[slot])
                                                     : column.Numbers[slot];
    }
}

RecordTable::Cell RecordTable::PutText(Column &column, std::string_view text)
{
    constexpr size_t most = std::numeric_limits<quint32>::max();
    const size_t begin = column.Bytes.size();
    if (begin + text.size() > most)
        RaiseStoreError(StoreErrors::BadRecord, u"The table's texts exceed 4 GB"_s);
    column.Bytes.append(text);
    return {static_cast<quint32>(begin), static_cast<quint32>(text.size())};
}

void RecordTable::ReplaceText(Column &column, Slot slot, std::string_view text)
{
    const Cell cell = PutText(column, text);
    column.Unused += std::exchange(column.Cells[slot], cell).Length;
    // Each byte is moved once for one that was replaced, however many records there are.
    if (column.Unused > FewUnusedBytes && column.Unused > column.Bytes.size() / 2)
        DropUnused(column);
}

void RecordTable::DropUnused(Column &column)
{
    std::string used;
    used.reserve(column.Bytes.size() - column.Unused);
    for (Cell &cell : column.Cells) {
        const auto offset = static_cast<quint32>(used.size());
        used.append(column.Bytes, cell.Offset, cell.Length);
        cell.Offset = offset;
    }
    column.Bytes = std::move(used);
    column.Unused = 0;
}

RecordTable::Slot RecordTable::NewSlot(qint64 rowId)
{
    const Slot slot = static_cast<Slot>(m_rowIds.size());
    m_rowIds.push_back(rowId);
    m_places.push_back(static_cast<Slot>(m_order.size()));
    m_order.push_back(slot);
    return slot;
}

void RecordTable::Reserve(size_t count)
{
    for (Column &column : m_columns) {
        if (column.Type == FieldType::String)
            column.Cells.reserve(count);
        else
            column.Numbers.reserve(count);
    }
    m_rowIds.reserve(count);
    m_places.reserve(count);
    m_order.reserve(count);
}

void RecordTable::Append(const DatabaseFile::RowSource &source)
{
    for (size_t field = 0; field < m_columns.size(); ++field) {
        Column &column = m_columns[field];
        if (column.Type == FieldType::String)
            column.Cells.push_back(PutText(column, source.Text(static_cast<int>(field))));
        else
            column.Numbers.push_back(source.Number(static_cast<int>(field)));
    }
    NewSlot(source.RowId());
}

void RecordTable::Append(qint64 rowId, const StoredRow &row)
{
    m_orderedBy.clear();
    const Slot slot = NewSlot(rowId);
    for (size_t field = 0; field < m_columns.size(); ++field) {
        Column &column = m_columns[field];
        if (column.Type == FieldType::String)
            column.Cells.push_back(PutText(column, std::get<std::string>(row[field])));
        else
            column.Numbers.push_back(std::get<qint64>(row[field]));
        if (m_indexes[field].Built)
            InsertInto(m_indexes[field], field, slot);
        if (Numbering &numbering = m_numberings[field]; numbering.Texts)
            numbering.Slots.push_back(NumberOf(*numbering.Texts, TextAt(slot, field)));
    }
}

void RecordTable::Replace(size_t position, const StoredRow &row)
{
    const Slot slot = m_order[position];
    for (size_t field = 0; field < m_columns.size(); ++field) {
        Index &index = m_indexes[field];
        Column &column = m_columns[field];
        const bool isText = column.Type == FieldType::String;
        const bool same = isText ? TextAt(slot, field) == std::get<std::string>(row[field])
                                 : column.Numbers[slot] == std::get<qint64>(row[field]);
        if (same)
            continue;
        m_orderedBy.clear();
        if (index.Built)
            RemoveFrom(index, slot);
        if (isText)
            ReplaceText(column, slot, std::get<std::string>(row[field]));
        else
            column.Numbers[slot] = std::get<qint64>(row[field]);
        if (index.Built)
            InsertInto(index, field, slot);
        if (Numbering &numbering = m_numberings[field]; numbering.Texts)
            numbering.Slots[slot] = NumberOf(*numbering.Texts, TextAt(slot, field));
    }
}

void RecordTable::Remove(size_t position)
{
    const Slot slot = m_order[position];
    for (Index &index : m_indexes) {
        if (index.Built)
            RemoveFrom(index, slot);
    }
    for (Column &column : m_columns) {
        if (column.Type == FieldType::String)
            column.Unused += std::exchange(column.Cells[slot].Length, 0);
    }
    m_order.erase(m_order.begin() + static_cast<std::ptrdiff_t>(position));
    for (size_t i = position; i < m_order.size(); ++i)
        m_places[m_order[i]] = static_cast<Slot>(i);
}

RecordTable::SortKey RecordTable::TextKey(std::string_view text, size_t from)
{
    return {TextPrefix(text, from), TextPrefix(text, from + 8), TextPrefix(text, from + 16)};
}

/// The key of the value, of a text from the given byte on.
RecordTable::SortKey RecordTable::KeyOf(Slot slot, size_t field, size_t from) const
{
    const Column &column = m_columns[field];
    if (column.Type != FieldType::String)
        return {NumberKey(column.Numbers[slot]), 0, 0};
    return TextKey(TextAt(slot, field), from);
}

int RecordTable::CompareSlots(Slot a, Slot b, size_t field) const
{
    const Column &column = m_columns[field];
    if (column.Type == FieldType::String)
        return CompareTexts(TextAt(a, field), TextAt(b, field));
    return column.Numbers[a] < column.Numbers[b] ? -1 : column.Numbers[a] > column.Numbers[b];
}

/// Sorts by the keys of the values from the given byte on.
void RecordTable::SortRun(Run run, size_t field, size_t from) const
{
    for (Keyed &record : run)
        record.Key = KeyOf(record.At, field, from);
    const auto before = [](const Keyed &a, const Keyed &b) { return a.Key < b.Key; };
    if (!std::is_sorted(run.begin(), run.end(), before))
        std::sort(run.begin(), run.end(), before);
}

/// Puts those in order that SortRun could not tell apart: by the bytes that follow, and what is
/// still the same then by comparing. True when no two values are equal.
bool RecordTable::SettleEquals(Run run, size_t field, size_t from, const Precedence &precedes) const
{
    constexpr size_t mostBytes = 48;
    bool unique = true;
    for (size_t begin = 0; begin < run.size();) {
        size_t end = begin + 1;
        while (end < run.size() && run[end].Key == run[begin].Key)
            ++end;
        const Run equals = run.subspan(begin, end - begin);
        const bool goesOn
            = m_columns[field].Type == FieldType::String && (equals.front().Key.Third & 0xff) != 0;
        begin = end;
        if (equals.size() == 1)
            continue;
        if (goesOn && from + SortKey::Bytes < mostBytes) {
            const SortKey key = equals.front().Key;
            SortRun(equals, field, from + SortKey::Bytes);
            unique = SettleEquals(equals, field, from + SortKey::Bytes, precedes) && unique;
            for (Keyed &record : equals)
                record.Key = key;
            continue;
        }
        std::sort(equals.begin(), equals.end(), [&](const Keyed &a, const Keyed &b) {
            const int order = CompareSlots(a.At, b.At, field);
            return order != 0 ? order < 0 : precedes(a.At, b.At);
        });
        unique = unique
            && std::adjacent_find(equals.begin(), equals.end(),
                   [&](const Keyed &a, const Keyed &b) {
                       return CompareSlots(a.At, b.At, field) == 0;
                   })
                == equals.end();
    }
    return unique;
}

/// The records ordered by a field; of equal values the one first that precedes.
RecordTable::Index RecordTable::Ordered(size_t field, const Precedence &precedes) const
{
    Index index;
    index.Built = true;
    index.Records.reserve(m_order.size());
    for (const Slot slot : m_order)
        index.Records.push_back({{}, slot});
    SortRun(index.Records, field, 0);
    index.Unique = SettleEquals(index.Records, field, 0, precedes);
    return index;
}

bool RecordTable::IsOrderedBy(const std::vector<size_t> &fields) const
{
    return std::is_sorted(m_order.begin(), m_order.end(), [&](Slot a, Slot b) {
        for (const size_t field : fields) {
            const int order = CompareSlots(a, b, field);
            if (order != 0)
                return order < 0;
        }
        return a < b;
    });
}

bool RecordTable::Sort(const std::vector<size_t> &fields)
{
    // Most often the order is asked for that stands already.
    if (m_orderedBy == fields)
        return false;
    const auto precedes = [&](Slot a, Slot b) {
        for (size_t i = 1; i < fields.size(); ++i) {
            const int order = CompareSlots(a, b, fields[i]);
            if (order != 0)
                return order < 0;
        }
        return a < b; // slots are numbered in stored order
    };
    const bool stands = IsOrderedBy(fields);
    m_orderedBy = fields;
    Index &leading = m_indexes[fields.front()];
    if (!leading.Built || (!leading.Unique && !stands))
        leading = Ordered(fields.front(), precedes);
    return !stands && TakeOrderOf(leading);
}

bool RecordTable::TakeOrderOf(const Index &leading)
{
    for (size_t i = 0; i < m_order.size(); ++i) {
        m_order[i] = leading.Records[i].At;
        m_places[m_order[i]] = static_cast<Slot>(i);
    }
    bool othersAreFound = !leading.Unique;
    for (Index &index : m_indexes) {
        if (&index == &leading || !index.Built || index.Unique)
            continue;
        index.Built = false; // its equals would have to change places
        othersAreFound = true;
    }
    return othersAreFound;
}

size_t RecordTable::Rank(const Index &index, size_t field, Slot slot) const
{
    const auto before = [&](const Keyed &a, const Keyed &b) {
        if (!(a.Key == b.Key))
            return a.Key < b.Key;
        const int order = CompareSlots(a.At, b.At, field);
        return order != 0 ? order < 0 : m_places[a.At] < m_places[b.At];
    };
    const Keyed record = {KeyOf(slot, field), slot};
    const auto at = std::lower_bound(index.Records.begin(), index.Records.end(), record, before);
    return static_cast<size_t>(at - index.Records.begin());
}

void RecordTable::InsertInto(Index &index, size_t field, Slot slot) const
{
    const size_t rank = Rank(index, field, slot);
    const auto equals = [&](size_t neighbour) {
        return CompareSlots(index.Records[neighbour].At, slot, field) == 0;
    };
    if ((rank > 0 && equals(rank - 1)) || (rank < index.Records.size() && equals(rank)))
        index.Unique = false;
    index.Records.insert(
        index.Records.begin() + static_cast<std::ptrdiff_t>(rank), {KeyOf(slot, field), slot});
}

void RecordTable::RemoveFrom(Index &index, Slot slot) const
{
    const size_t field = static_cast<size_t>(&index - m_indexes.data());
    const auto rank = static_cast<std::ptrdiff_t>(Rank(index, field, slot));
    index.Records.erase(index.Records.begin() + rank);
}

void RecordTable::BuildIndex(size_t field)
{
    Index &index = m_indexes[field];
    if (!index.Built)
        index = Ordered(field, [&](Slot a, Slot b) { return m_places[a] < m_places[b]; });
}

RecordTable::Found RecordTable::FindFirstNotBelow(size_t field, const StoredValue &key)
{
    BuildIndex(field);
    const Index &index = m_indexes[field];
    const bool isText = m_columns[field].Type == FieldType::String;
    const SortKey sortKey = isText ? TextKey(std::get<std::string>(key), 0)
                                   : SortKey{NumberKey(std::get<qint64>(key)), 0, 0};
    const auto isBelow = [&](const Keyed &record) {
        if (!isText || !(record.Key == sortKey))
            return record.Key < sortKey;
        return CompareTexts(TextAt(record.At, field), std::get<std::string>(key)) < 0;
    };
    const auto at = std::partition_point(index.Records.begin(), index.Records.end(), isBelow);
    if (at == index.Records.end())
        return {Count(), false};
    const bool exact
        = isText ? TextAt(at->At, field) == std::get<std::string>(key) : at->Key == sortKey;
    return {m_places[at->At], exact};
}
