// Saving, undoing and deleting the entry.

#include "entry/modEntryInfo.h"

#include "store/StoreErrors.h"

#include <QScopeGuard>

using namespace Qt::StringLiterals;

EntryRecord modEntryInfo::StoredForm() const
{
    EntryRecord record;
    record.Customer_Number = Entry.CustomerCode;
    record.Project_Number = Entry.ProjectCode;
    record.Activity_Number = Entry.ActivityCode;
    record.Date = Entry.Date;
    record.Billing_Status = Entry.BillingStatus;
    record.Mgmt_Approval = Entry.MgmtApproval;
    record.Sec_Approval = Entry.SecApproval;
    record.On_Hold = Entry.OnHold;
    record.Billing_Option = Entry.BillingOption;
    record.Multiplier_Number = Entry.MultiplierCode;
    record.Rate_Overridden = Entry.RateOverridden;
    record.Reimburse = Entry.Reimburse;
    record.Hours = Entry.Hours;
    record.Rate = Entry.Rate;
    record.Amount = Entry.Amount;
    record.Multiplier_Factor = Entry.MultiplierFactor;
    record.Exp_Markup_Percent = Entry.ExpMarkupPercent;
    record.Exp_Markup_Amount = Entry.ExpMarkupAmount;
    record.Description = Entry.Description;
    return record;
}

void modEntryInfo::MoveToShownEntry()
{
    modDBEntr &entries = m_tables.Entries;
    EntryRecord found;
    // After another program's change the same place may hold another entry, or none.
    if (m_position < entries.GetRecordCount()) {
        entries.MoveToPosition(m_position);
        entries.ReadEntry(found);
        if (found.Fields() == m_stored.Fields())
            return;
    }
    RaiseStoreError(StoreErrors::ChangedOutside,
        u"Another program has changed the entry meanwhile: "_s
            + m_tables.Main.CompanyName(m_session.CurrentCompanyCode, DatabasePrefix::Entries));
}

void modEntryInfo::WriteEntry()
{
    modDBEntr &entries = m_tables.Entries;
    if (NewEntry) {
        entries.MoveCursor();
        entries.AddEntry(StoredForm());
        // Also when the list cannot be reloaded, the next save must not store it twice.
        NewEntry = false;
        EntryLoaded = true;
        m_position = entries.GetRecordPosition();
    } else {
        MoveToShownEntry();
        entries.UpdateEntry(StoredForm());
    }
    entries.ReadEntry(m_stored);
}

void modEntryInfo::SaveEntry()
{
    SaveSucceeded = true;
    if (Changed || StoredWithoutDate()) {
        // Until the record is on the disk nothing counts as saved, also when writing raises.
        SaveSucceeded = false;
        if (!ValidateEntry())
            return;
        WriteEntry();
        SaveSucceeded = true;
        Changed = false;
    }
    if (!m_list.CompanyChangeInProgress)
        ReloadList();
}

void modEntryInfo::UndoEntry()
{
    ReloadList();
}

void modEntryInfo::DeleteEntry()
{
    if (!EntryLoaded) {
        ReloadList();
        return;
    }
    if (m_messages.Ask(u"Delete this Entry?"_s, MessageIcon::Question, MessageButtons::YesNo,
            MessageAnswer::No)
        != MessageAnswer::Yes)
        return;
    // What is deleted is what is shown, whatever has moved the cursor since.
    MoveToShownEntry();
    m_tables.Entries.DeleteRecord();
    // Also when the list cannot be reloaded, what is still shown stands in the table no more.
    EntryLoaded = false;
    NewEntry = true;
    m_list.DeletingEntry = true;
    const auto reloaded = qScopeGuard([this] { m_list.DeletingEntry = false; });
    ReloadList();
}

bool modEntryInfo::SaveBeforeLeaving()
{
    SaveSucceeded = false;
    if (TakeFocusedBox())
        SaveEntry();
    return SaveSucceeded;
}

bool modEntryInfo::MayLeaveEntry()
{
    if (!Changed)
        return true;
    switch (m_messages.AskSaveChanges()) {
    case MessageAnswer::Yes:
        return SaveBeforeLeaving();
    case MessageAnswer::No:
        return true;
    default:
        return false;
    }
}
