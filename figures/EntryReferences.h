#pragma once

#include "figures/EntryTexts.h"

#include <memory>
#include <optional>

/// What a walk through the entries takes from the reference tables.
///
/// Tables: after EndList the customer and the activity in memory are those that were read last, as
///         if every entry's codes had been looked up one by one.
/// Errors: those of the record store.
class EntryReferences
{
public:
    explicit EntryReferences(Tables &tables); // outlives it

    void BeginList(); ///< the Entries table and the reference tables are open
    /// Whether the entry is an expense. An unknown activity leaves the answer as it was for the
    /// entry before; it is kept over lists.
    bool IsExpense(const EntryNumbers &entry);
    /// `lastCustomer`: the number of the last customer for whom a record was read.
    void EndList(std::optional<qint64> lastCustomer);

    std::shared_ptr<EntryTexts> Texts() const { return m_texts; }

private:
    Tables &m_tables;
    std::shared_ptr<EntryTexts> m_texts;
    qint64 m_lastActivity = -1; // number of the code whose record was read last in this list
    bool m_isExpense = false;
};
