#include "figures/HoursByDay.h"

#include "figures/EntryFilter.h"
#include "store/FieldText.h"
#include "store/PadKey.h"

using namespace Qt::StringLiterals;

namespace {

/// The element of that number; the vector grows to hold it.
template <class Value>
Value &At(std::vector<Value> &values, qint64 number)
{
    const auto index = static_cast<size_t>(number);
    if (index >= values.size())
        values.resize(index + 1, Value::NotAsked);
    return values[index];
}

} // namespace

HoursByDay::HoursByDay(Tables &tables, const FilterState &filter)
    : m_tables(tables)
    , m_filter(filter)
{
}

void HoursByDay::Accumulate()
{
    modDBEntr &entries = m_tables.Entries;
    m_isExpense = m_tables.Activities.Record.Expense == "Y"_L1;
    entries.MoveFirst();
    const EntryFilter filter(m_filter, entries);
    for (; !entries.IsEndOfTable(); entries.MoveNext()) {
        const EntryNumbers entry = entries.ReadNumbers();
        if (!filter.Passes(entry) || IsExpense(entry))
            continue;
        SplitHours(entry);
        HoursSummaryRecord &day = DayOf(entry);
        day.Billable += m_split.Billable;
        day.NoCharge += m_split.NoCharge;
        day.DoNotBill += m_split.DoNotBill;
        day.Amount += entry.Amount;
    }
    if (m_lastActivity >= 0)
        ReadActivity(m_lastActivity);
}

bool HoursByDay::ReadActivity(qint64 number)
{
    modDBActi &activities = m_tables.Activities;
    activities.Find(0,
        PadKey(m_tables.Entries.NumbersOf(EntryField::Activity_Number)->Text(number),
            KeyWidth::Activity));
    return activities.ReadActivity(activities.Record);
}

bool HoursByDay::IsExpense(const EntryNumbers &entry)
{
    // Whether the activity is found is not asked: the record that the search ends on counts, and
    // past the last one the record read before. This is kept.
    Expense &expense = At(m_expenses, entry.Activity);
    if (expense == Expense::NotAsked) {
        if (!ReadActivity(entry.Activity))
            expense = Expense::PastTheLast;
        else
            expense = m_tables.Activities.Record.Expense == "Y"_L1 ? Expense::Yes : Expense::No;
    }
    if (expense != Expense::PastTheLast) {
        m_isExpense = expense == Expense::Yes;
        m_lastActivity = entry.Activity;
    }
    return m_isExpense;
}

HoursByDay::Status HoursByDay::StatusOf(const EntryNumbers &entry)
{
    Status &status = At(m_statuses, entry.BillingStatus);
    if (status == Status::NotAsked) {
        const QString code
            = m_tables.Entries.NumbersOf(EntryField::Billing_Status)->Text(entry.BillingStatus);
        status = code == "1"_L1 ? Status::Billable
            : code == "2"_L1    ? Status::NoCharge
            : code == "3"_L1    ? Status::DoNotBill
                                : Status::Other;
    }
    return status;
}

void HoursByDay::SplitHours(const EntryNumbers &entry)
{
    const Status status = StatusOf(entry);
    // Any other status leaves the split of the entry counted before as it is; this is kept.
    if (status == Status::Other)
        return;
    m_split.Billable = status == Status::Billable ? entry.Hours : Currency();
    m_split.NoCharge = status == Status::NoCharge ? entry.Hours : Currency();
    m_split.DoNotBill = status == Status::DoNotBill ? entry.Hours : Currency();
}

HoursSummaryRecord &HoursByDay::DayOf(const EntryNumbers &entry)
{
    const auto [day, isNew] = m_dayIndexes.try_emplace(entry.Date, m_days.size());
    if (isNew) {
        m_days.emplace_back();
        m_days.back().Date = DateFromSeconds(entry.Date);
    }
    return m_days[day->second];
}
