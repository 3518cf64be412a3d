// Taking a code from the lookup window.

#include "entry/modEntryInfo.h"

#include <QScopeGuard>

#include <array>

using namespace Qt::StringLiterals;

namespace {

/// Where a code stands, and which field follows it.
EntryControl BoxOf(size_t kind)
{
    constexpr std::array boxes = {EntryControl::txtCustomer, EntryControl::txtProject,
        EntryControl::txtActivity, EntryControl::txtMultiplierCode};
    return boxes.at(kind);
}

} // namespace

QString modEntryInfo::LookupKindText(size_t kind) const
{
    const OptionsRecord &options = m_tables.Options.Working;
    const std::array texts = {options.Customer_Term, options.Project_Term, options.Activity_Term,
        LookupKinds::BillingRateMultiplier};
    return texts.at(kind);
}

bool modEntryInfo::LookUp(size_t kind, LookupStart start)
{
    if (kind == LookupKinds::Projects && Entry.CustomerCode.isEmpty())
        return false;
    m_lookup.LookupKind = LookupKindText(kind);
    m_lookup.LookupFromFilter = false;
    m_lookup.LookupStartText = m_screen[BoxOf(kind)].Text;
    m_lookup.LookupStartPending = start == LookupStart::AtTheText;
    m_lookup.LookupPending = true;
    m_lookup.LookupSelected = false;
    m_lookup.LookupRecordTaken = false;
    m_lookup.LookupCustomerCode = Entry.CustomerCode;
    m_lookup.LookupActivityCode = Entry.ActivityCode;
    m_list.SuppressRowSelect = true;
    const Before before = Now(); // the lookup writes some codes straight into the entry
    bool chosen = false;
    {
        const auto closed = qScopeGuard([this] {
            m_list.SuppressRowSelect = false;
            m_lookup.LookupStartPending = false;
            m_lookup.LookupPending = false;
            m_lookup.LookupSelected = false;
            m_lookup.LookupCancelled = false;
            m_lookup.LookupKind.clear();
        });
        ShowLookup();
        chosen = m_lookup.LookupSelected && m_lookup.LookupRecordTaken && !m_lookup.LookupCancelled;
    }
    if (!chosen) {
        SelectFieldText(BoxOf(kind));
        return false;
    }
    m_pendingLookup = kind;
    const auto taken = qScopeGuard([this] { m_pendingLookup.reset(); });
    try {
        TakeLookedUpCode(kind);
    } catch (...) {
        GoBackTo(before, BoxOf(kind));
        throw;
    }
    return true;
}

void modEntryInfo::TakeLookedUpCode(size_t kind)
{
    // The project and the multiplier stand in the entry already.
    if (kind == LookupKinds::Customers)
        Entry.CustomerCode = m_lookup.LookupCustomerCode;
    else if (kind == LookupKinds::Activities)
        Entry.ActivityCode = m_lookup.LookupActivityCode;
    const EntryControl box = BoxOf(kind);
    m_screen[box].Text = CodeOf(box);
    FieldEdited();
    if (CheckCode(box) != CodeCheck::Accepted)
        return;
    const QString statusBefore = m_previousStatusText;
    Show(Reading::AfterLookup);
    if (kind == LookupKinds::Projects)
        ApplyBillingRules(statusBefore);
}

void modEntryInfo::RequestFocusAfterLookup()
{
    switch (*m_pendingLookup) {
    case LookupKinds::Customers:
        m_screen.Focus = {EntryControl::txtProject};
        break;
    case LookupKinds::Projects:
        m_screen.Focus = {EntryControl::txtActivity};
        break;
    case LookupKinds::Activities:
        m_screen.Focus = {AfterActivity()};
        break;
    default:
        m_screen.Focus = {EntryControl::txtHours};
        break;
    }
}

EntryControl modEntryInfo::AfterActivity() const
{
    return Entry.IsExpense() && Entry.AmountOnly == "Y"_L1 ? EntryControl::txtAmount
                                                           : EntryControl::txtHours;
}

void modEntryInfo::TakeProjectFromBox()
{
    Entry.ProjectCode = m_screen[EntryControl::txtProject].Text;
}
