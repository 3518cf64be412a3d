#pragma once

#include "entry/EntryTexts.h"
#include "store/Tables.h"

#include <memory>
#include <unordered_map>
#include <vector>

/// Finds the texts that the entry list shows for an entry's codes, and whether its activity is an
/// expense.
///
/// Shape:  codes come as the numbers of their texts (see EntryNumbers), texts are given as places
///         in Texts().
/// Costs:  a code is looked up once and remembered until a table changes, because every save fills
///         the list anew.
/// Tables: after EndList the records in memory are those that were read last, as if every entry's
///         codes had been looked up one by one.
/// Errors: those of the record store.
class EntryReferences
{
public:
    explicit EntryReferences(Tables &tables); // outlives it

    void BeginList(); ///< the Entries table and the reference tables are open
    quint32 CustomerOf(const EntryNumbers &entry);
    quint32 ProjectOf(const EntryNumbers &entry);
    quint32 ActivityOf(const EntryNumbers &entry);
    /// Whether the activity found last is an expense. An unknown one leaves it as it was for the
    /// entry before; it is kept over lists.
    bool IsExpense() const { return m_isExpense; }
    void EndList();

    std::shared_ptr<const EntryTexts> Texts() const { return m_texts; }

private:
    struct Versions
    {
        quint64 Entries = 0;
        RecordStore::TableVersion Customers;
        RecordStore::TableVersion Projects;
        RecordStore::TableVersion Activities;

        friend bool operator==(const Versions &, const Versions &) = default;
    };
    struct Project
    {
        qint64 Customer = -1; // of whom Text is known
        quint32 Text = 0;
    };
    struct Activity
    {
        quint32 Text = 0;
        bool IsExpense = false;
    };

    void Forget();
    bool ReadCustomer(qint64 number); ///< false when the search ended past the last record
    quint32 FindProject(const EntryNumbers &entry);
    bool ReadActivity(qint64 number); ///< false when it is not there
    QString CodeOf(qint32 field, qint64 number) const;

    Tables &m_tables;
    Versions m_versions;
    std::shared_ptr<EntryTexts> m_texts;
    std::vector<quint32> m_customers; // by the code's number
    std::vector<Project> m_projects; // likewise, for the customer it was first seen with
    std::unordered_map<quint64, quint32> m_otherProjects; // by both numbers
    std::vector<Activity> m_activities; // by the code's number
    qint64 m_lastCustomer = -1; // numbers of the codes whose record was read last in this list
    qint64 m_lastActivity = -1;
    quint32 m_customerText = 0; // of the entry before
    bool m_isExpense = false;
};
