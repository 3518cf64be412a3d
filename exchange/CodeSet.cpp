#include "exchange/CodeSet.h"

#include "store/FieldText.h"

#include <functional>

quint32 CodeSet::HashOf(std::string_view code)
{
    const size_t hash = std::hash<std::string_view>()(code);
    return static_cast<quint32>(hash ^ hash >> 32);
}

std::string_view CodeSet::CodeOf(const Item &item) const
{
    return std::string_view(m_bytes).substr(item.Begin, item.Length);
}

size_t CodeSet::Find(std::string_view code, quint32 hash) const
{
    const size_t mask = m_slots.size() - 1;
    size_t at = hash & mask;
    for (; m_slots[at].Number != 0; at = (at + 1) & mask) {
        if (m_slots[at].Hash == hash && CodeOf(m_items[m_slots[at].Number - 1]) == code)
            break;
    }
    return at;
}

bool CodeSet::Contains(const QString &code) const
{
    const std::string bytes = Utf8(code);
    return !m_slots.empty() && m_slots[Find(bytes, HashOf(bytes))].Number != 0;
}

qint64 CodeSet::Insert(const QString &code, qint64 line)
{
    if ((m_items.size() + 1) * 2 > m_slots.size())
        Grow();
    const std::string bytes = Utf8(code);
    const quint32 hash = HashOf(bytes);
    Slot &slot = m_slots[Find(bytes, hash)];
    if (slot.Number != 0)
        return m_items[slot.Number - 1].Line;
    m_items.push_back({m_bytes.size(), static_cast<quint32>(bytes.size()), line});
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
