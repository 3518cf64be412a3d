#pragma once

#include "session/FilterState.h"
#include "store/Tables.h"

#include <unordered_map>
#include <vector>

/// Adds up the time entries of the current company, day by day and by billing status.
///
/// Shape:  one record a day, in the order in which the days come up among the entries.
/// Tables: Entries and Activities are moved over; the activity in memory is the one that was read
///         last, as if every entry's had been looked up.
/// Errors: those of the record store, and Overflow.
class HoursByDay
{
public:
    HoursByDay(Tables &tables, const FilterState &filter); // both outlive it

    void Accumulate(); ///< the entries that pass the filter

    const std::vector<HoursSummaryRecord> &Days() const { return m_days; }

private:
    enum class Expense
    {
        NotAsked,
        No,
        Yes,
        PastTheLast
    };
    enum class Status
    {
        NotAsked,
        Billable,
        NoCharge,
        DoNotBill,
        Other
    };

    bool ReadActivity(qint64 number);
    bool IsExpense(const EntryNumbers &entry);
    Status StatusOf(const EntryNumbers &entry);
    void SplitHours(const EntryNumbers &entry);
    HoursSummaryRecord &DayOf(const EntryNumbers &entry);

    Tables &m_tables;
    const FilterState &m_filter;
    std::vector<HoursSummaryRecord> m_days;
    std::unordered_map<qint64, size_t> m_dayIndexes; // by the entry's date
    std::vector<Expense> m_expenses; // by the number of the activity's code
    std::vector<Status> m_statuses; // by the number of the status' text
    qint64 m_lastActivity = -1; // number of the code whose record was read last
    bool m_isExpense = false; // of the record read last
    HoursSummaryRecord m_split; // hours of the entry counted last
};
