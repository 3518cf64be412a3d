#include "exchange/CodeSet.h"

#include "store/FieldText.h"

#include <functional>

quint32 CodeSet::HashOf(std::string_view code)
{
    const size_t hash = std::hash<std::string_view>()(code);
    return static_cast<quint32>(hash ^ hash >> 32);
}

std::string_view CodeSet::FoldedCodeOf(const Item &item) const
{
    return std::string_view(m_bytes).substr(item.Begin, item.FoldedLength);
}

std::string_view CodeSet::CodeOf(const Item &item) const
{
    return std::string_view(m_bytes).substr(item.Begin + item.FoldedLength, item.Length);
}

size_t CodeSet::Find(std::string_view folded, quint32 hash) const
{
    const size_t mask = m_slots.size() - 1;
    size_t at = hash & mask;
    for (; m_slots[at].Number != 0; at = (at + 1) & mask) {
        if (m_slots[at].Hash == hash && FoldedCodeOf(m_items[m_slots[at].Number - 1]) == folded)
            break;
    }
    return at;
}

bool CodeSet::Contains(const QString &code) const
{
    if (m_slots.empty())
        return false;
    const std::string folded = Utf8(code.toCaseFolded());
    const Slot &slot = m_slots[Find(folded, HashOf(folded))];
    return slot.Number != 0 && CodeOf(m_items[slot.Number - 1]) == Utf8(code);
}

qint64 CodeSet::Insert(const QString &code, qint64 line)
{
    if ((m_items.size() + 1) * 2 > m_slots.size())
        Grow();
    const std::string folded = Utf8(code.toCaseFolded());
    const std::string bytes = Utf8(code);
    const quint32 hash = HashOf(folded);
    Slot &slot = m_slots[Find(folded, hash)];
    if (slot.Number != 0)
        return m_items[slot.Number - 1].Line;
    m_items.push_back({m_bytes.size(), static_cast<quint32>(folded.size()),
        static_cast<quint32>(bytes.size()), line});
    m_bytes += folded;
    m_bytes += bytes;
    slot = {hash, static_cast<quint32>(m_items.size())};
    return 0;
}

void CodeSet::Grow()
{
    constexpr size_t FirstSize = 64;
    std::vector<Slot> old(m_slots.empty() ? FirstSize : m_slots.size() * 2);
    old.swap(m_slots);
    const size_t mask = m_slots.size() - 1;
    for (const Slot &slot : old) {
        size_t at = slot.Hash & mask;
        while (m_slots[at].Number != 0)
            at = (at + 1) & mask;
        if (slot.Number != 0)
            m_slots[at] = slot;
    }
}
