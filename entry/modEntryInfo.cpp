#include "entry/modEntryInfo.h"

#include "figures/BillingTexts.h"
#include "store/FieldText.h"
#include "store/PadKey.h"

#include <QScopeGuard>

using namespace Qt::StringLiterals;

namespace {

bool IsYes(const QString &flag)
{
    return flag == "Y"_L1;
}

QString YesNo(bool yes)
{
    return yes ? u"Y"_s : u"N"_s;
}

constexpr std::array RateControls = {
    EntryControl::lblRate, EntryControl::txtRate, EntryControl::lblAmount, EntryControl::txtAmount};

} // namespace

modEntryInfo::modEntryInfo(Tables &tables, const SessionState &session, EntryBeingEdited &entry,
    LookupState &lookup, EntryListState &list, EntryScreen &screen, clsMessageBox &messages,
    const clsClock &clock)
    : Entry(entry)
    , m_tables(tables)
    , m_session(session)
    , m_lookup(lookup)
    , m_list(list)
    , m_screen(screen)
    , m_messages(messages)
    , m_clock(clock)
{
}

void modEntryInfo::ClearEntry()
{
    Entry = EntryBeingEdited();
    Entry.Date = WallClock(m_clock.Today());
    m_pendingLookup.reset();
    NewEntry = true;
    EntryLoaded = false;
    Changed = false;
    ShowEntry();
}

void modEntryInfo::LoadEntry(qint32 position)
{
    ReadStoredEntry(position);
    EntryLoaded = true;
    Changed = false;
    NewEntry = false;
    Show(Reading::Stored);
}

void modEntryInfo::ShowEntry()
{
    if (EntryLoaded && !m_list.SuppressRowSelect)
        ReadStoredEntry(m_position);
    Show(Reading::Stored);
}

void modEntryInfo::Show(Reading reading)
{
    m_loading = true;
    const auto shown = qScopeGuard([this] {
        m_loading = false;
        m_activityFocusRequested = false;
    });
    if (reading == Reading::Stored)
        m_screen.PutBack.reset();
    if (reading == Reading::Stored)
        m_screen.Date = Entry.Date.date(); // else a date that is held back stays
    ShowClosedState();
    OpenBillingFields();
    ShowCodes();
    ShowBillingStatus();
    m_screen[EntryControl::txtDescription].Text = Entry.Description;
    if (Entry.ActivityCode.isEmpty())
        Entry.ExpenseActivity = YesNo(false);
    if (ExpenseIsRefused())
        RefuseExpense();
    LayOutQuantities();
    ShowApproval();
    ShowOnHold();
    ShowCompanySelector();
    if (reading == Reading::AfterLookup)
        RequestFocusAfterLookup();
    else if (reading == Reading::Stored)
        RequestEntryFocus();
    else if (m_activityFocusRequested)
        m_screen.Focus = {EntryControl::txtActivity};
    RememberFocusTexts();
}

void modEntryInfo::ReadStoredEntry(qint32 position)
{
    EntryRecord record;
    m_tables.Entries.MoveToPosition(position);
    m_tables.Entries.ReadEntry(record);
    modDBActi &activities = m_tables.Activities;
    const bool isKnown = activities.Find(0, PadKey(record.Activity_Number, KeyWidth::Activity));
    if (isKnown)
        activities.ReadActivity(activities.Record);

    // From here on nothing raises.
    m_position = position;
    m_stored = record;
    Entry = EntryBeingEdited();
    Entry.CustomerCode = record.Customer_Number;
    Entry.ProjectCode = record.Project_Number;
    Entry.ActivityCode = record.Activity_Number;
    Entry.Date = record.Date.isValid() ? record.Date : WallClock(m_clock.Today());
    Entry.BillingStatus = record.Billing_Status;
    Entry.MgmtApproval = record.Mgmt_Approval;
    Entry.SecApproval = record.Sec_Approval;
    Entry.OnHold = record.On_Hold;
    Entry.BillingOption = record.Billing_Option;
    Entry.BillingOptionText = BillingOptionText(record.Billing_Option, m_tables.Options.Working);
    Entry.MultiplierCode = record.Multiplier_Number;
    Entry.RateOverridden = record.Rate_Overridden;
    Entry.Reimburse = record.Reimburse;
    Entry.Hours = record.Hours;
    Entry.Rate = record.Rate;
    Entry.Amount = record.Amount;
    Entry.MultiplierFactor = record.Multiplier_Factor;
    Entry.ExpMarkupPercent = record.Exp_Markup_Percent;
    Entry.ExpMarkupAmount = record.Exp_Markup_Amount;
    Entry.Description = record.Description;
    if (isKnown)
        Entry.ExpenseActivity = activities.Record.Expense;
    ShowRecordStatus();
}

void modEntryInfo::ShowClosedState()
{
    for (const EntryControl control : {EntryControl::dtpDate, EntryControl::txtCustomer,
             EntryControl::cmdCustomer, EntryControl::txtActivity, EntryControl::cmdActivity,
             EntryControl::cboBStatus, EntryControl::txtHours, EntryControl::txtAmount,
             EntryControl::chkReimburse, EntryControl::txtDescription})
        m_screen[control].Open();
    EnableBillingFields(false, false);
    m_screen[EntryControl::txtMultiplierFactor].ButtonFace = true;
    m_screen[EntryControl::txtMultiplierCode].Text = Entry.MultiplierCode;
    m_screen[EntryControl::chkReimburse].Checked = IsYes(Entry.Reimburse);
    if (!Entry.IsExpense()) {
        for (const EntryControl control : RateControls)
            m_screen[control].Visible = false;
    }
}

void modEntryInfo::EnableBillingFields(bool options, bool rate)
{
    m_screen[EntryControl::cboBOption].Enable(options);
    m_screen[EntryControl::txtMultiplierCode].Enable(options);
    m_screen[EntryControl::cmdMultiplier].Enable(options);
    m_screen[EntryControl::txtRate].Enable(rate);
}

void modEntryInfo::OpenBillingFields()
{
    const bool billable = Entry.BillingStatus == "1"_L1 || Entry.BillingStatus.isEmpty();
    if (!billable || !IsYes(m_tables.Options.Working.Billing_Option_Switch))
        return;
    const QString level = RateLevel();
    EnableBillingFields(level == "3"_L1 || level == "4"_L1, level == "4"_L1);
}

void modEntryInfo::OpenProject(bool open)
{
    m_screen[EntryControl::txtProject].ButtonFace = !open;
    m_screen[EntryControl::txtProject].InTabOrder = open;
    m_screen[EntryControl::cmdProject].Enabled = open;
}

void modEntryInfo::ShowCodes()
{
    if (m_pendingLookup == LookupKinds::Customers) {
        Entry.CustomerCode = m_lookup.LookupCustomerCode;
        Entry.ProjectCode.clear();
    }
    m_screen[EntryControl::txtCustomer].Text = Entry.CustomerCode;
    m_screen[EntryControl::txtProject].Text = Entry.ProjectCode;
    m_screen[EntryControl::txtProject].Enabled = true;
    OpenProject(!Entry.CustomerCode.isEmpty());
    m_screen[EntryControl::txtActivity].Text = Entry.ActivityCode;
}

void modEntryInfo::ShowBillingStatus()
{
    ControlState &list = m_screen[EntryControl::cboBStatus];
    list.Items = BillingStatusTexts();
    list.Index = -1;
    Entry.BillingStatusText = BillingStatusText(Entry.BillingStatus);
    if (!Entry.BillingStatusText.isEmpty())
        SelectComboItem(list, Entry.BillingStatusText);
}

bool modEntryInfo::LocksApproved() const
{
    return IsYes(m_tables.Options.Working.Lock_Approved);
}

bool modEntryInfo::ExpenseIsRefused() const
{
    return m_tables.Options.Working.Expenses == "N"_L1 && Entry.IsExpense();
}

void modEntryInfo::RefuseExpense()
{
    DrawScreen();
    m_messages.Tell(u"You are not allowed to enter expenses."_s);
    m_activityFocusRequested = true;
    const bool locked = !Entry.MgmtApproval.isEmpty()
        && IsYes(m_tables.Options.Working.Mgmt_Approval_In_Use) && LocksApproved();
    if (locked)
        return;
    m_screen[EntryControl::txtActivity].Text.clear();
    Entry.ActivityCode.clear();
    Entry.ExpenseActivity = YesNo(false);
    TakeRate(Currency());
    Entry.Amount = Currency();
    Changed = true;
    ApplyBillingStatus();
}

void modEntryInfo::ShowApproval()
{
    const OptionsRecord &options = m_tables.Options.Working;
    const EmployeeRecord &employee = m_tables.Employee.Working;
    ControlState &box = m_screen[EntryControl::chkApproved];
    const bool mgmtInUse = IsYes(options.Mgmt_Approval_In_Use);
    box.Visible = mgmtInUse && (IsYes(employee.Mgmt_Approver) || IsYes(employee.Sec_Approver));
    box.Enabled
        = IsYes(employee.Approval) || (employee.Approval == "N"_L1 && Entry.OnHold == "N"_L1);
    const bool mgmt = mgmtInUse && !Entry.MgmtApproval.isEmpty();
    const bool second = SettingIsUpToThree() && IsYes(options.Sec_Approval_In_Use)
        && !Entry.SecApproval.isEmpty();
    box.Checked = mgmt || second;
    if (box.Checked && LocksApproved())
        LockEntryFields();
}

void modEntryInfo::ShowOnHold()
{
    ControlState &box = m_screen[EntryControl::chkOnHold];
    box.Visible = IsYes(m_tables.Options.Working.On_Hold_In_Use);
    box.Enabled = !m_screen[EntryControl::chkApproved].Checked;
    box.Checked = IsYes(Entry.OnHold);
}

void modEntryInfo::ShowCompanySelector()
{
    m_screen[EntryControl::cboCompany].Enable(
        !EntryLoaded && !m_list.SuppressRowSelect && !Changed);
}

void modEntryInfo::RequestEntryFocus()
{
    if (!Entry.MgmtApproval.isEmpty())
        m_screen.Focus = {EntryControl::cmdUndo};
    else if (!m_list.SuppressRowSelect)
        m_screen.Focus
            = {m_activityFocusRequested ? EntryControl::txtActivity : EntryControl::dtpDate};
}

void modEntryInfo::LockEntryFields()
{
    for (const EntryControl control : {EntryControl::dtpDate, EntryControl::txtCustomer,
             EntryControl::cmdCustomer, EntryControl::txtProject, EntryControl::cmdProject,
             EntryControl::txtActivity, EntryControl::cmdActivity, EntryControl::cboBStatus,
             EntryControl::cboBOption, EntryControl::txtMultiplierCode, EntryControl::cmdMultiplier,
             EntryControl::txtHours, EntryControl::txtRate, EntryControl::txtAmount,
             EntryControl::chkReimburse, EntryControl::txtDescription})
        m_screen[control].Close();
}

void modEntryInfo::ShowRecordStatus()
{
    m_screen.Panels = {u"Record "_s + QString::number(m_list.SelectedIndex + 1) + u" of "_s
            + QString::number(m_tables.Entries.GetRecordCount()),
        m_tables.Employee.Working.Employee_Number, m_session.CurrentCompanyCode,
        Entry.Date.toString(u"MM/dd/yyyy"_s)};
}

void modEntryInfo::ShowFieldCaptions()
{
    const OptionsRecord &options = m_tables.Options.Working;
    m_screen[EntryControl::lblCustomer].Text = options.Customer_Term;
    m_screen[EntryControl::lblProject].Text = options.Project_Term;
    m_screen[EntryControl::lblActivity].Text = options.Activity_Term;
}

FieldFacts modEntryInfo::Facts() const
{
    const OptionsRecord &options = m_tables.Options.Working;
    FieldFacts facts;
    facts.NotSynchronised = m_session.NotSynchronised;
    facts.Approved = m_screen[EntryControl::chkApproved].Checked;
    facts.ApprovedAndLocked = facts.Approved && LocksApproved();
    facts.HasCustomer = !Entry.CustomerCode.isEmpty();
    facts.IsExpense = Entry.IsExpense();
    facts.AmountOnly = IsYes(Entry.AmountOnly);
    facts.MayBeBilled = !IsNotBilled();
    facts.BillingSwitchOn = IsYes(options.Billing_Option_Switch);
    facts.RatePermission = RateLevel();
    facts.Changed = Changed;
    facts.EntryLoaded = EntryLoaded;
    facts.OnHold = IsYes(Entry.OnHold);
    facts.CustomerTerm = options.Customer_Term;
    return facts;
}

void modEntryInfo::ExplainFields()
{
    const FieldFacts facts = Facts();
    for (size_t i = 0; i < EntryControls; ++i) {
        const auto control = static_cast<EntryControl>(i);
        ControlState &state = m_screen[control];
        const bool closed = !state.Enabled || state.Locked || state.ButtonFace;
        state.ToolTip = closed ? WhyClosed(control, facts) : QString();
    }
    if (facts.NotSynchronised)
        return;
    const OptionsRecord &options = m_tables.Options.Working;
    QString &rate = m_screen[EntryControl::txtRate].ToolTip;
    const QString source
        = RateSourceText(RateSourceOf(Entry, options.Billing_Option_Setting), Entry, options);
    rate = source.isEmpty() || rate.isEmpty() ? source + rate : source + u'\n' + rate;
}

void modEntryInfo::GoBackTo(const Before &before, EntryControl control)
{
    Entry = before.Entry;
    m_screen = before.Screen;
    Changed = before.Changed;
    if (control == EntryControl::cboBStatus) {
        SelectComboItem(m_screen[control], m_previousStatusText);
    } else if (control == EntryControl::cboBOption) {
        SelectComboItem(m_screen[control], m_previousOptionText);
    } else {
        m_screen[control].Text = CodeOf(control);
        m_screen.Focus = {control, true, true};
    }
}

void modEntryInfo::AllOrNothing(EntryControl control, const std::function<void()> &change)
{
    const Before before = Now();
    try {
        change();
    } catch (...) {
        GoBackTo(before, control);
        throw;
    }
}

void modEntryInfo::RememberFocusTexts()
{
    m_previousCustomer = m_screen[EntryControl::txtCustomer].Text;
    m_previousProject = m_screen[EntryControl::txtProject].Text;
    m_previousActivity = m_screen[EntryControl::txtActivity].Text;
    m_previousMultiplier = m_screen[EntryControl::txtMultiplierCode].Text;
    m_previousStatusText = m_screen[EntryControl::cboBStatus].ItemText();
    m_previousOptionText = m_screen[EntryControl::cboBOption].ItemText();
}

void modEntryInfo::FieldEdited()
{
    if (m_loading)
        return;
    Changed = true;
    m_screen.PutBack.reset();
    m_screen[EntryControl::cboCompany].Close();
}

bool modEntryInfo::DateIsHeldBack() const
{
    return !m_session.NotSynchronised && m_screen.Date != Entry.Date.date();
}

bool modEntryInfo::StoredWithoutDate() const
{
    return EntryLoaded && !m_stored.Date.isValid();
}

QString modEntryInfo::DateNotice() const
{
    if (DateIsHeldBack())
        return u"The date counts once the field has been entered with the keyboard."_s;
    if (StoredWithoutDate())
        return u"This entry was stored without a date. OK stores the date that is shown."_s;
    return {};
}

void modEntryInfo::TakeDate()
{
    FieldEdited();
    // The time of day of a stored date belongs to the program that stored it.
    Entry.Date = WallClock(m_screen.Date, Entry.Date.time());
}

void modEntryInfo::TakeDescription()
{
    FieldEdited();
    Entry.Description = m_screen[EntryControl::txtDescription].Text;
}

void modEntryInfo::ReimburseClicked()
{
    FieldEdited();
    Entry.Reimburse = YesNo(m_screen[EntryControl::chkReimburse].Checked);
}

void modEntryInfo::ApprovedClicked()
{
    FieldEdited();
    ControlState &box = m_screen[EntryControl::chkApproved];
    if (!box.Checked) {
        Entry.MgmtApproval.clear();
        Entry.SecApproval.clear();
        ShowAgain();
        return;
    }
    if (!ValidateEntry()) {
        box.Checked = false;
        return;
    }
    Entry.MgmtApproval = m_tables.Employee.Working.Employee_Number;
    Entry.OnHold = YesNo(false);
    ControlState &onHold = m_screen[EntryControl::chkOnHold];
    onHold.Checked = false;
    onHold.Enabled = false;
    if (LocksApproved())
        LockEntryFields();
}

void modEntryInfo::OnHoldClicked()
{
    FieldEdited();
    const bool onHold = m_screen[EntryControl::chkOnHold].Checked;
    Entry.OnHold = YesNo(onHold);
    ControlState &approved = m_screen[EntryControl::chkApproved];
    if (!onHold)
        approved.Enabled = true;
    else if (m_tables.Employee.Working.Approval == "N"_L1)
        approved.Enabled = false;
}
