#include "figures/EntryReferences.h"

#include "store/PadKey.h"

EntryReferences::EntryReferences(Tables &tables)
    : m_tables(tables)
{
}

void EntryReferences::BeginList()
{
    // Every save fills the list anew; what was found for the list before mostly still holds. A
    // list that is still shown keeps the texts that it was given.
    if (!m_texts || !m_texts->IsCurrent())
        m_texts = std::make_shared<EntryTexts>(m_tables);
    m_lastActivity = -1;
}

bool EntryReferences::IsExpense(const EntryNumbers &entry)
{
    if (m_texts->IsKnown(entry.Activity)) {
        m_isExpense = m_texts->IsExpense(entry.Activity);
        m_lastActivity = entry.Activity;
    }
    return m_isExpense;
}

void EntryReferences::EndList(std::optional<qint64> lastCustomer)
{
    if (lastCustomer) {
        modDBCust &customers = m_tables.Customers;
        customers.Find(0, PadKey(m_texts->CustomerCode(*lastCustomer), KeyWidth::Customer));
        customers.ReadCustomer(customers.Record);
    }
    if (m_lastActivity >= 0) {
        modDBActi &activities = m_tables.Activities;
        activities.Find(0, PadKey(m_texts->ActivityCode(m_lastActivity), KeyWidth::Activity));
        activities.ReadActivity(activities.Record);
    }
}
