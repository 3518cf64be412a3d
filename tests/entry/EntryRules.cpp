#include "tests/entry/EntryRules.h"

#include "store/FieldText.h"

using namespace Qt::StringLiterals;

/// Three customers and every kind of activity, with a rate on each level.
EntryRules::EntryRules()
{
    Company.Employee.Rate_Permission = u"4"_s;
    Company.Employee.Approval = u"Y"_s;
    Company.Employee.Mgmt_Approver = u"Y"_s;
    Company.Multipliers = {SampleMultiplier(u"05"_s, u"Evening"_s, Money(1, 25)),
        SampleMultiplier(u"10"_s, u"Sunday"_s, Money(2)),
        SampleMultiplier(u"A"_s, u"Abroad"_s, Money(3))};
    Company.Divisions = {SampleDivision(u"01"_s, u"East"_s, Money(70))};
    Company.Customers = {SampleCustomer(u"0100"_s, u"Acme"_s, u"01"_s, Money(100)),
        SampleCustomer(u"0200"_s, u"Brightwater Ltd"_s, u"01"_s),
        SampleCustomer(u"0300"_s, u"Caldera & Sons"_s, u"01"_s, Money(100), u"Y"_s)};
    Company.Projects = {SampleProject(u"0100"_s, u"AUDIT"_s, u"Yearly audit"_s, Money(120)),
        SampleProject(u"0100"_s, u"MOVE"_s, u"Office move"_s),
        SampleProject(u"0200"_s, u"MILL"_s, u"Audit of the mill"_s, Money(95))};
    Company.Activities = {SampleActivity(u"CONS"_s, u"Consulting"_s, Money(90)),
        SampleActivity(u"PLAIN"_s, u"Plain work"_s),
        SampleActivity(u"NODEF"_s, u"Without a default status"_s, {}, QString()),
        SampleActivity(u"TRAIN"_s, u"Training"_s, Money(60), u"2"_s),
        SampleActivity(u"ADMIN"_s, u"Office"_s, {}, u"3"_s),
        SampleExpense(u"MILES"_s, u"Mileage"_s, Money(0, 45)),
        SampleExpense(u"MEALS"_s, u"Meals"_s, Money(20), u"3"_s)};
}

void EntryRules::Start()
{
    m_folder.emplace(std::vector{Company});
    m_folder->OpenAll();
    Data().Options.LoadOptions();
    Data().Employee.LoadEmployee();
    Session.CurrentCompanyCode = Company.Code;
    m_rules.emplace(Data(), Session, Entry, Lookup, List, Screen, Messages, Clock);
    m_rules->ReloadList = [this] { ++Reloads; };
    m_rules->ClearEntry();
    Reloads = 0;
    Messages.Shown.clear();
}

void EntryRules::StartWith(const std::vector<EntryRecord> &entries)
{
    Company.Entries = entries;
    Start();
    m_rules->LoadEntry(0);
}

std::vector<EntryRecord> EntryRules::Stored() const
{
    RecordStore store;
    store.SetCreator(CodeNumber(SampleCodes().Creator));
    const RecordStore::Handle handle
        = store.OpenDatabase(1, m_folder->Path() + u"/ABCEntries-WkLg"_s, 0, 0, 0, 0, 3);
    std::vector<EntryRecord> entries;
    for (store.MoveFirst(handle); !store.IsEndOfTable(handle); store.MoveNext(handle))
        store.ReadRecord(handle, entries.emplace_back());
    return entries;
}

void EntryRules::Type(EntryControl box, const QString &text)
{
    m_rules->RememberFocusTexts();
    Screen[box].Text = text;
    m_rules->FieldEdited();
}

void EntryRules::Pick(EntryControl list, const QString &text)
{
    m_rules->RememberFocusTexts();
    const qsizetype index = Screen[list].Items.indexOf(text);
    ASSERT_GE(index, 0) << "no such item: " << text.toStdString();
    Screen[list].Index = static_cast<int>(index);
}

void EntryRules::Tick(EntryControl box, bool ticked)
{
    Screen[box].Checked = ticked;
    if (box == EntryControl::chkApproved)
        m_rules->ApprovedClicked();
    else if (box == EntryControl::chkOnHold)
        m_rules->OnHoldClicked();
    else
        m_rules->ReimburseClicked();
}

CodeCheck EntryRules::EnterCustomer(const QString &code)
{
    Type(EntryControl::txtCustomer, code);
    return m_rules->CheckCode(EntryControl::txtCustomer);
}

CodeCheck EntryRules::EnterProject(const QString &code)
{
    Type(EntryControl::txtProject, code);
    return m_rules->CheckCode(EntryControl::txtProject);
}

CodeCheck EntryRules::EnterActivity(const QString &code)
{
    Type(EntryControl::txtActivity, code);
    return m_rules->CheckCode(EntryControl::txtActivity);
}

CodeCheck EntryRules::EnterMultiplier(const QString &code)
{
    Type(EntryControl::txtMultiplierCode, code);
    return m_rules->CheckCode(EntryControl::txtMultiplierCode);
}

void EntryRules::EnterCodes(
    const QString &customer, const QString &project, const QString &activity)
{
    EXPECT_EQ(EnterCustomer(customer), CodeCheck::Accepted);
    EXPECT_EQ(EnterProject(project), CodeCheck::Accepted);
    EXPECT_EQ(EnterActivity(activity), CodeCheck::Accepted);
}

void EntryRules::EnterHours(const QString &text)
{
    Type(EntryControl::txtHours, text);
    m_rules->ApplyHoursText();
}

void EntryRules::EnterRate(const QString &text)
{
    Type(EntryControl::txtRate, text);
    m_rules->ApplyRateText();
}

void EntryRules::PickStatus(const QString &text)
{
    Pick(EntryControl::cboBStatus, text);
    m_rules->ApplyBillingStatus();
}

void EntryRules::PickOption(const QString &text)
{
    Pick(EntryControl::cboBOption, text);
    m_rules->ApplyBillingOption();
}

QString EntryRules::Look(EntryControl control) const
{
    const ControlState &state = Screen[control];
    if (!state.Visible)
        return u"hidden"_s;
    const bool editable = state.Enabled && !state.Locked;
    EXPECT_EQ(state.ButtonFace, !editable) << "background of " << testing::PrintToString(control);
    return editable ? u"open"_s : state.Enabled ? u"locked"_s : u"closed"_s;
}

std::optional<EntryControl> EntryRules::Focused() const
{
    if (!Screen.Focus)
        return {};
    return Screen.Focus->Control;
}

EntryRecord FullEntry()
{
    EntryRecord record;
    record.Customer_Number = u"0100"_s;
    record.Project_Number = u"AUDIT"_s;
    record.Activity_Number = u"CONS"_s;
    record.Date = WallClock(QDate(2026, 2, 3), QTime(8, 15));
    record.Billing_Status = u"1"_s;
    record.On_Hold = u"Y"_s;
    record.Billing_Option = u"4"_s;
    record.Multiplier_Number = u"05"_s;
    record.Rate_Overridden = u"Y"_s;
    record.Reimburse = u"Y"_s;
    record.Hours = Money(1, 50);
    record.Rate = Money(100);
    record.Amount = Money(187, 50);
    record.Multiplier_Factor = Money(1, 25);
    record.Exp_Markup_Percent = Money(7);
    record.Exp_Markup_Amount = Money(8);
    record.Description = u"The audit"_s;
    return record;
}

void PrintTo(EntryControl control, std::ostream *out)
{
    *out << "control " << static_cast<int>(control);
}

bool operator==(const EntryRecord &a, const EntryRecord &b)
{
    return a.Fields() == b.Fields();
}

void PrintTo(const EntryRecord &record, std::ostream *out)
{
    *out << testing::PrintToString(record.Fields());
}
