#pragma once

#include <QString>

#include <string>
#include <string_view>
#include <vector>

/// The codes of a table, each with the line on which it stands, to find one that comes twice.
///
/// Costs: a million codes are looked up one by one, so they lie side by side in one buffer, under
///        a table of hashes; a set of strings would take as long as writing the database.
class CodeSet
{
public:
    /// The line under which the code is known already; 0 when it is new, and from then on known.
    qint64 Insert(const QString &code, qint64 line);
    bool Contains(const QString &code) const;

private:
    struct Item
    {
        size_t Begin = 0; // in m_bytes
        quint32 Length = 0;
        qint64 Line = 0;
    };
    struct Slot
    {
        quint32 Hash = 0;
        quint32 Number = 0; // of the item, from 1; 0 is a free slot
    };

    static quint32 HashOf(std::string_view code);
    /// The slot that holds the code, or the free one in which it would have to be put.
    size_t Find(std::string_view code, quint32 hash) const;
    std::string_view CodeOf(const Item &item) const;
    void Grow();

    std::string m_bytes;
    std::vector<Item> m_items;
    std::vector<Slot> m_slots; // as many as a power of two, never more than half of them in use
};
