#pragma once

#include <QString>

#include <string>
#include <string_view>
#include <vector>

/// The codes of a table, each with its line, to find one that comes twice. Codes that differ only
/// in the case of their letters are one code here: users and Windows do not tell them apart.
///
/// Costs: a million codes are looked up one by one, so they lie side by side in one buffer, under
///        a table of hashes; a set of strings would take as long as writing the database.
class CodeSet
{
public:
    /// The line under which the code is known already; 0 when it is new, and from then on known.
    qint64 Insert(const QString &code, qint64 line);
    /// Whether the code is known with exactly these letters.
    bool Contains(const QString &code) const;

private:
    struct Item
    {
        size_t Begin = 0; // in m_bytes: the code without its case, then as it is
        quint32 FoldedLength = 0;
        quint32 Length = 0;
        qint64 Line = 0;
    };
    struct Slot
    {
        quint32 Hash = 0;
        quint32 Number = 0; // of the item, from 1; 0 is a free slot
    };

    static quint32 HashOf(std::string_view code);
    /// The slot that holds the code without its case, or the free one for it.
    size_t Find(std::string_view folded, quint32 hash) const;
    std::string_view FoldedCodeOf(const Item &item) const;
    std::string_view CodeOf(const Item &item) const;
    void Grow();

    std::string m_bytes;
    std::vector<Item> m_items;
    std::vector<Slot> m_slots; // as many as a power of two, never more than half of them in use
};
