#pragma once

#include "session/FilterState.h"
#include "store/modDBEntr.h"

#include <optional>

/// The applied transaction filter over one walk through the Entries table. Comparisons are exact:
/// case and blanks count.
class EntryFilter
{
public:
    EntryFilter(const FilterState &filter, const modDBEntr &entries)
        : m_customer(entries, EntryField::Customer_Number, filter.AppliedFilterCustomer)
        , m_project(entries, EntryField::Project_Number, filter.AppliedFilterProject)
        , m_activity(entries, EntryField::Activity_Number, filter.AppliedFilterActivity)
    {
    }

    bool Passes(const EntryNumbers &entry) const
    {
        return m_customer.Allows(entry.Customer) && m_project.Allows(entry.Project)
            && m_activity.Allows(entry.Activity);
    }

private:
    struct Code
    {
        Code(const modDBEntr &entries, qint32 field, const QString &text)
            : Restricts(!text.isEmpty())
        {
            if (Restricts)
                Number = entries.NumbersOf(field)->Find(text);
        }
        bool Allows(qint64 number) const { return !Restricts || Number == number; }

        bool Restricts = false;
        std::optional<qint64> Number; ///< nothing when no entry has the code
    };

    Code m_customer;
    Code m_project;
    Code m_activity;
};
