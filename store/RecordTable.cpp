#include "store/RecordTable.h"

#include "store/FieldText.h"
#include "store/StoreErrors.h"

#include <algorithm>
#include <limits>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

/// Numbers as unsigned ones of the same order.
quint64 NumberKey(qint64 number)
{
    return static_cast<quint64>(number) ^ (quint64(1) << 63);
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

quint32 RecordTable::NumberFor(Numbering &numbering, std::string_view text)
{
    const auto known = numbering.Numbers.find(text);
    if (known != numbering.Numbers.end())
        return known->second;
    const auto number = static_cast<quint32>(numbering.Texts.size());
    const auto added = numbering.Numbers.emplace(text, number).first;
    numbering.Texts.push_back(&added->first);
    return number;
}

void RecordTable::Build(Numbering &numbering, size_t field) const
{
    numbering.Slots.reserve(m_rowIds.size());
    for (Slot slot = 0; slot < m_rowIds.size(); ++slot)
        numbering.Slots.push_back(NumberFor(numbering, TextAt(slot, field)));
    numbering.Built = true;
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

const std::string &RecordTable::TextOfNumber(size_t field, quint32 number) const
{
    return *m_numberings[field].Texts[number];
}

std::optional<quint32> RecordTable::NumberOfText(size_t field, std::string_view text)
{
    const Numbering &numbering = Numbered(field);
    const auto known = numbering.Numbers.find(text);
    if (known == numbering.Numbers.end())
        return {};
    return known->second;
}

void RecordTable::PutText(Column &column, size_t slot, std::string_view text)
{
    constexpr size_t most = std::numeric_limits<quint32>::max();
    if (column.Bytes.size() + text.size() > most)
        RaiseStoreError(StoreErrors::BadRecord, u"The table's texts exceed 4 GB"_s);
    column.Cells[slot]
        = {static_cast<quint32>(column.Bytes.size()), static_cast<quint32>(text.size())};
    column.Bytes.append(text);
}

RecordTable::Slot RecordTable::NewSlot(qint64 rowId)
{
    const Slot slot = static_cast<Slot>(m_rowIds.size());
    for (Column &column : m_columns) {
        if (column.Type == FieldType::String)
            column.Cells.emplace_back();
        else
            column.Numbers.push_back(0);
    }
    m_rowIds.push_back(rowId);
    m_places.push_back(static_cast<Slot>(m_order.size()));
    m_order.push_back(slot);
    return slot;
}

void RecordTable::Append(const DatabaseFile::RowSource &source)
{
    const Slot slot = NewSlot(source.RowId());
    for (size_t field = 0; field < m_columns.size(); ++field) {
        if (m_columns[field].Type == FieldType::String)
            PutText(m_columns[field], slot, source.Text(static_cast<int>(field)));
        else
            m_columns[field].Numbers[slot] = source.Number(static_cast<int>(field));
    }
}

void RecordTable::Append(qint64 rowId, const StoredRow &row)
{
    NewSlot(rowId);
    const size_t position = m_order.size() - 1;
    const Slot slot = m_order[position];
    for (size_t field = 0; field < m_columns.size(); ++field) {
        if (m_columns[field].Type == FieldType::String)
            PutText(m_columns[field], slot, std::get<std::string>(row[field]));
        else
            m_columns[field].Numbers[slot] = std::get<qint64>(row[field]);
        if (m_indexes[field].Built)
            InsertInto(m_indexes[field], field, slot);
        if (m_numberings[field].Built)
            m_numberings[field].Slots.push_back(
                NumberFor(m_numberings[field], TextAt(slot, field)));
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
        if (index.Built)
            RemoveFrom(index, slot);
        if (isText)
            PutText(column, slot, std::get<std::string>(row[field]));
        else
            column.Numbers[slot] = std::get<qint64>(row[field]);
        if (index.Built)
            InsertInto(index, field, slot);
        if (m_numberings[field].Built)
            m_numberings[field].Slots[slot] = NumberFor(m_numberings[field], TextAt(slot, field));
    }
}

void RecordTable::Remove(size_t position)
{
    const Slot slot = m_order[position];
    for (Index &index : m_indexes) {
        if (index.Built)
            RemoveFrom(index, slot);
    }
    m_order.erase(m_order.begin() + static_cast<std::ptrdiff_t>(position));
    for (size_t i = position; i < m_order.size(); ++i)
        m_places[m_order[i]] = static_cast<Slot>(i);
}

quint64 RecordTable::SortKey(Slot slot, size_t field) const
{
    const Column &column = m_columns[field];
    return column.Type == FieldType::String ? TextPrefix(TextAt(slot, field))
                                            : NumberKey(column.Numbers[slot]);
}

int RecordTable::CompareSlots(Slot a, Slot b, size_t field) const
{
    const Column &column = m_columns[field];
    if (column.Type == FieldType::String)
        return CompareTexts(TextAt(a, field), TextAt(b, field));
    return column.Numbers[a] < column.Numbers[b] ? -1 : column.Numbers[a] > column.Numbers[b];
}

bool RecordTable::Sort(const std::vector<size_t> &fields)
{
    struct Keyed
    {
        quint64 Key;
        Slot At;
    };
    std::vector<Keyed> records;
    records.reserve(m_order.size());
    for (const Slot slot : m_order)
        records.push_back({SortKey(slot, fields.front()), slot});
    const auto before = [&](const Keyed &a, const Keyed &b) {
        if (a.Key != b.Key)
            return a.Key < b.Key;
        for (const size_t field : fields) {
            const int order = CompareSlots(a.At, b.At, field);
            if (order != 0)
                return order < 0;
        }
        return a.At < b.At; // slots are numbered in stored order
    };
    // Most often the order is asked for that stands already.
    if (std::is_sorted(records.begin(), records.end(), before)) {
        TakeOrderAsIndex(fields.front());
        return false;
    }
    std::sort(records.begin(), records.end(), before);
    for (size_t i = 0; i < records.size(); ++i) {
        m_order[i] = records[i].At;
        m_places[records[i].At] = static_cast<Slot>(i);
    }
    bool othersAreFound = false;
    for (Index &index : m_indexes) {
        othersAreFound = othersAreFound || (index.Built && !index.Unique);
        index.Built = index.Built && index.Unique;
    }
    TakeOrderAsIndex(fields.front());
    return othersAreFound;
}

void RecordTable::TakeOrderAsIndex(size_t field)
{
    Index &index = m_indexes[field];
    if (index.Built)
        return;
    index = Index();
    index.Built = true;
    index.Slots = m_order;
    index.Keys.reserve(m_order.size());
    for (const Slot slot : m_order) {
        const quint64 key = SortKey(slot, field);
        if (!index.Keys.empty() && index.Keys.back() == key
            && CompareSlots(m_order[index.Keys.size() - 1], slot, field) == 0)
            index.Unique = false;
        index.Keys.push_back(key);
    }
}

void RecordTable::Build(Index &index, size_t field) const
{
    struct Keyed
    {
        quint64 Key;
        Slot At;
    };
    std::vector<Keyed> records;
    records.reserve(m_order.size());
    for (const Slot slot : m_order)
        records.push_back({SortKey(slot, field), slot});
    std::sort(records.begin(), records.end(), [&](const Keyed &a, const Keyed &b) {
        if (a.Key != b.Key)
            return a.Key < b.Key;
        const int order = CompareSlots(a.At, b.At, field);
        return order != 0 ? order < 0 : m_places[a.At] < m_places[b.At];
    });
    index = Index();
    index.Built = true;
    index.Keys.reserve(records.size());
    index.Slots.reserve(records.size());
    for (size_t i = 0; i < records.size(); ++i) {
        index.Keys.push_back(records[i].Key);
        index.Slots.push_back(records[i].At);
        if (i > 0 && records[i - 1].Key == records[i].Key
            && CompareSlots(records[i - 1].At, records[i].At, field) == 0)
            index.Unique = false;
    }
}

size_t RecordTable::Rank(const Index &index, size_t field, Slot slot) const
{
    const quint64 key = SortKey(slot, field);
    const auto [first, last] = std::equal_range(index.Keys.begin(), index.Keys.end(), key);
    const auto begin = index.Slots.begin() + (first - index.Keys.begin());
    const auto end = index.Slots.begin() + (last - index.Keys.begin());
    const auto at = std::lower_bound(begin, end, slot, [&](Slot a, Slot b) {
        const int order = CompareSlots(a, b, field);
        return order != 0 ? order < 0 : m_places[a] < m_places[b];
    });
    return static_cast<size_t>(at - index.Slots.begin());
}

void RecordTable::InsertInto(Index &index, size_t field, Slot slot) const
{
    const size_t rank = Rank(index, field, slot);
    const auto equals
        = [&](size_t neighbour) { return CompareSlots(index.Slots[neighbour], slot, field) == 0; };
    if ((rank > 0 && equals(rank - 1)) || (rank < index.Slots.size() && equals(rank)))
        index.Unique = false;
    const auto offset = static_cast<std::ptrdiff_t>(rank);
    index.Keys.insert(index.Keys.begin() + offset, SortKey(slot, field));
    index.Slots.insert(index.Slots.begin() + offset, slot);
}

void RecordTable::RemoveFrom(Index &index, Slot slot) const
{
    const size_t field = static_cast<size_t>(&index - m_indexes.data());
    const auto rank = static_cast<std::ptrdiff_t>(Rank(index, field, slot));
    index.Keys.erase(index.Keys.begin() + rank);
    index.Slots.erase(index.Slots.begin() + rank);
}

RecordTable::Found RecordTable::FindFirstNotBelow(size_t field, const StoredValue &key)
{
    Index &index = m_indexes[field];
    if (!index.Built)
        Build(index, field);
    const bool isText = m_columns[field].Type == FieldType::String;
    const quint64 sortKey
        = isText ? TextPrefix(std::get<std::string>(key)) : NumberKey(std::get<qint64>(key));
    const auto [first, last] = std::equal_range(index.Keys.begin(), index.Keys.end(), sortKey);
    auto at = index.Slots.begin() + (first - index.Keys.begin());
    const auto end = index.Slots.begin() + (last - index.Keys.begin());
    if (isText) {
        const std::string &text = std::get<std::string>(key);
        at = std::lower_bound(at, end, text, [&](Slot slot, const std::string &wanted) {
            return CompareTexts(TextAt(slot, field), wanted) < 0;
        });
    }
    if (at == index.Slots.end())
        return {Count(), false};
    const bool exact = at != end
        && (!isText || TextAt(*at, field) == std::string_view(std::get<std::string>(key)));
    return {m_places[*at], exact};
}
