// Billing status, billing option and the default rate.

#include "tests/entry/EntryRules.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using enum EntryControl;

namespace {

class Billing : public EntryRules
{
protected:
    /// A billable time entry of 2 hours at the activity's rate, its multiplier 10.
    void StartBillable()
    {
        Start();
        EnterCodes(u"0100"_s, u"AUDIT"_s, u"CONS"_s);
        EnterHours(u"2"_s);
        EnterMultiplier(u"10"_s);
        Rules().RememberFocusTexts();
        Rules().Changed = false;
        Screen.Focus.reset();
    }
};

/// What the walk over the rate sources finds.
struct Walk
{
    const char *Name;
    QString Customer, Project, Activity;
    Currency EmployeeRate;
    QString Setting, Switch;
    QString Option;
    Currency Rate;
};

} // namespace

TEST_F(Billing, NoChargeAndDoNotBillClearTheBillingDataOfTime)
{
    for (const auto &[text, code] :
        {std::pair(u"No Charge"_s, u"2"_s), std::pair(u"Do Not Bill"_s, u"3"_s)}) {
        SCOPED_TRACE(code.toStdString());
        StartBillable();
        PickStatus(text);
        EXPECT_EQ(Entry.BillingStatus, code);
        EXPECT_EQ(Entry.BillingStatusText, text);
        EXPECT_EQ(Entry.MultiplierCode, QString());
        EXPECT_EQ(Entry.MultiplierFactor, Money(1));
        EXPECT_EQ(Entry.Rate, Money(0));
        EXPECT_EQ(Entry.Amount, Money(0));
        EXPECT_EQ(Entry.BillingOption, u"0"_s);
        EXPECT_EQ(Entry.Hours, Money(2));
        EXPECT_TRUE(Rules().Changed);
        EXPECT_EQ(Text(txtMultiplierCode), QString());
        EXPECT_EQ(Text(txtMultiplierFactor), u"1.0000"_s);
        EXPECT_EQ(Text(txtRate), u".000"_s);
        EXPECT_EQ(Text(txtAmount), u".00"_s);
        EXPECT_THAT(Screen[cboBOption].Items, ElementsAre(QString()));
        EXPECT_EQ(Screen[cboBOption].Index, 0);
        for (const EntryControl control : {cboBOption, txtMultiplierCode, txtRate})
            EXPECT_EQ(Look(control), u"closed"_s);
        EXPECT_FALSE(Screen[cmdMultiplier].Enabled);
    }
}

TEST_F(Billing, AnExpenseKeepsItsRateWhateverItsStatus)
{
    Start();
    EnterCodes(u"0100"_s, u""_s, u"MILES"_s);
    EnterHours(u"10"_s);
    PickStatus(u"No Charge"_s);
    EXPECT_EQ(Entry.BillingStatus, u"2"_s);
    EXPECT_EQ(Entry.Rate, Money(0, 45));
    EXPECT_EQ(Text(txtAmount), u"4.50"_s);
    EXPECT_EQ(Look(txtRate), u"open"_s);
    EXPECT_EQ(Look(cboBOption), u"hidden"_s);
    PickStatus(u"Billable"_s);
    EXPECT_EQ(Entry.BillingStatus, u"1"_s);
    EXPECT_EQ(Entry.Rate, Money(0, 45));
    EXPECT_EQ(Entry.BillingOption, QString());
    EXPECT_EQ(Look(txtRate), u"open"_s);
}

TEST_F(Billing, BillableAgainProposesAnOptionByLevelAndSwitch)
{
    struct Row
    {
        QString Level, Switch;
        bool Proposes, OpensOptions, OpensRate;
    };
    const std::vector<Row> rows = {
        {u"1"_s, u"Y"_s, false, false, false},
        {u"2"_s, u"Y"_s, true, false, false},
        {u"3"_s, u"Y"_s, true, true, false},
        {u"4"_s, u"Y"_s, true, true, true},
        {u"1"_s, u"N"_s, false, false, false},
        {u"2"_s, u"N"_s, false, false, false},
        {u"3"_s, u"N"_s, false, false, false},
        {u"4"_s, u"N"_s, false, false, false},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE("level " + row.Level.toStdString() + ", switch " + row.Switch.toStdString());
        StartBillable();
        PickStatus(u"Do Not Bill"_s);
        Employee().Rate_Permission = row.Level;
        Options().Billing_Option_Switch = row.Switch;
        PickStatus(u"Billable"_s);
        EXPECT_EQ(Entry.BillingStatus, u"1"_s);
        EXPECT_EQ(Entry.BillingOption, row.Proposes ? u"6"_s : u"0"_s);
        EXPECT_EQ(Entry.Rate, row.Proposes ? Money(90) : Money(0));
        EXPECT_EQ(Entry.Amount, row.Proposes ? Money(180) : Money(0));
        EXPECT_EQ(Screen[cboBOption].Items.size(), 6);
        EXPECT_EQ(Item(cboBOption), row.Proposes ? u"Activity"_s : QString());
        for (const EntryControl control : {cboBOption, txtMultiplierCode, cmdMultiplier})
            EXPECT_EQ(Screen[control].Enabled, row.OpensOptions);
        EXPECT_EQ(Screen[txtRate].Enabled, row.OpensRate);
        EXPECT_EQ(Screen[txtRate].ButtonFace, !row.OpensRate);
    }
}

TEST_F(Billing, BillableForACustomerOfNoChargeGetsNoRate)
{
    StartBillable();
    EnterCustomer(u"0300"_s);
    PickStatus(u"Do Not Bill"_s);
    PickStatus(u"Billable"_s);
    EXPECT_EQ(Entry.BillingStatus, u"1"_s);
    EXPECT_EQ(Entry.BillingOption, u"6"_s);
    EXPECT_EQ(Entry.Rate, Money(0));
    EXPECT_EQ(Text(txtRate), u".000"_s);
}

TEST_F(Billing, TheSameStatusAgainIsNoChange)
{
    StartBillable();
    PickStatus(u"Billable"_s);
    EXPECT_FALSE(Rules().Changed);
    EXPECT_EQ(Entry.MultiplierCode, u"10"_s);
    EXPECT_EQ(Entry.Amount, Money(360));
}

TEST_F(Billing, TheSameStatusCountsWhileTheActivityIsAskedFor)
{
    Company.Options.Expenses = u"N"_s;
    EntryRecord record = FullEntry();
    record.Activity_Number = u"MILES"_s;
    StartWith({record}); // its activity is taken out
    Rules().Changed = false;
    PickStatus(u"Billable"_s);
    EXPECT_TRUE(Rules().Changed);
}

TEST_F(Billing, AStatusAppliedOnceIsTheFormerOneFromThenOn)
{
    StartBillable();
    PickStatus(u"No Charge"_s);
    Rules().Changed = false;
    Rules().ApplyBillingStatus();
    EXPECT_FALSE(Rules().Changed);
}

TEST_F(Billing, AnOptionIsMappedBackToItsCodeAndLooksUpItsRate)
{
    struct Row
    {
        QString Text, Option;
        Currency Rate;
    };
    const std::vector<Row> rows = {
        {u"Associate"_s, u"2"_s, Money(80)},
        {u"Division"_s, u"3"_s, Money(70)},
        {u"Client"_s, u"4"_s, Money(100)},
        {u"Matter"_s, u"5"_s, Money(120)},
        {u"Task"_s, u"6"_s, Money(90)},
    };
    Company.Options.Employee_Term = u"Associate"_s;
    Company.Options.Customer_Term = u"Client"_s;
    Company.Options.Project_Term = u"Matter"_s;
    Company.Options.Activity_Term = u"Task"_s;
    for (const Row &row : rows) {
        SCOPED_TRACE(row.Text.toStdString());
        StartBillable();
        Entry.BillingOption = u"1"_s;
        Rules().ShowEntry();
        Screen.Focus.reset();
        PickOption(row.Text);
        EXPECT_EQ(Entry.BillingOption, row.Option);
        EXPECT_EQ(Entry.Rate, row.Rate);
        EXPECT_EQ(Entry.Amount, Money(4) * row.Rate); // two hours, twice
        EXPECT_EQ(Item(cboBOption), row.Text);
        EXPECT_EQ(Look(txtRate), u"open"_s);
        EXPECT_TRUE(Rules().Changed);
        EXPECT_EQ(Look(cboCompany), u"closed"_s);
        EXPECT_EQ(Focused(), txtMultiplierCode);
    }
}

TEST_F(Billing, OptionApplicationHidesTheRateKeepsItAndGoesToTheHours)
{
    StartBillable();
    PickOption(u"Application"_s);
    EXPECT_EQ(Entry.BillingOption, u"1"_s);
    EXPECT_EQ(Entry.Rate, Money(90));
    EXPECT_EQ(Entry.MultiplierCode, u"10"_s);
    for (const EntryControl control : {txtMultiplierCode, txtMultiplierFactor, txtRate, txtAmount})
        EXPECT_EQ(Look(control), u"hidden"_s);
    EXPECT_EQ(Look(cboBOption), u"open"_s);
    EXPECT_EQ(Focused(), txtHours);
}

TEST_F(Billing, TheSameOptionAgainIsNoChange)
{
    StartBillable();
    Entry.Rate = Money(33);
    PickOption(u"Activity"_s);
    EXPECT_FALSE(Rules().Changed);
    EXPECT_EQ(Entry.Rate, Money(33));
    EXPECT_EQ(Focused(), std::nullopt);
}

TEST_F(Billing, AnOptionForACustomerOfNoChargeLooksUpNothing)
{
    StartBillable();
    EnterCustomer(u"0300"_s);
    EnterRate(u"33"_s);
    PickOption(u"Employee"_s);
    EXPECT_EQ(Entry.BillingOption, u"2"_s);
    EXPECT_EQ(Entry.Rate, Money(33));
}

TEST_F(Billing, ARateIsTakenFromTheOptionsRecordForSettingsUpToThreeOnly)
{
    const std::array<Currency, 5> rates = {Money(80), Money(70), Money(100), Money(120), Money(90)};
    const QStringList texts
        = {u"Employee"_s, u"Division"_s, u"Customer"_s, u"Project"_s, u"Activity"_s};
    for (const QString &setting : {u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s}) {
        Company.Options.Billing_Option_Setting = setting;
        StartBillable();
        for (int i = 0; i < texts.size(); ++i) {
            SCOPED_TRACE("setting " + setting.toStdString() + ", " + texts[i].toStdString());
            PickOption(u"Application"_s);
            Entry.Rate = Money(33);
            PickOption(texts[i]);
            const bool found = setting <= u"3"_s || i == 0;
            EXPECT_EQ(Entry.Rate, found ? rates.at(static_cast<size_t>(i)) : Money(33));
        }
    }
}

TEST_F(Billing, TheWalkTakesTheMostSpecificRateThatIsNotZero)
{
    Company.Customers = {SampleCustomer(u"RATED"_s, u"With a rate"_s, u"01"_s, Money(100)),
        SampleCustomer(u"PLAIN"_s, u"Of a division with a rate"_s, u"01"_s),
        SampleCustomer(u"POOR"_s, u"Of a division without a rate"_s, u"02"_s),
        SampleCustomer(u"LOST"_s, u"Of a division that is not there"_s, u"09"_s),
        SampleCustomer(u"FREE"_s, u"Never charged"_s, u"01"_s, Money(100), u"Y"_s)};
    Company.Divisions
        = {SampleDivision(u"01"_s, u"East"_s, Money(70)), SampleDivision(u"02"_s, u"West"_s)};
    Company.Projects.clear();
    for (const QString &customer : {u"RATED"_s, u"PLAIN"_s, u"FREE"_s}) {
        Company.Projects.push_back(SampleProject(customer, u"DEAR"_s, u"Dear"_s, Money(120)));
        Company.Projects.push_back(SampleProject(customer, u"FLAT"_s, u"Flat"_s));
    }
    ActivityRecord free = SampleActivity(u"FREE"_s, u"Never charged"_s, Money(90));
    free.No_Charge = u"Y"_s;
    Company.Activities = {SampleActivity(u"RATED"_s, u"With a rate"_s, Money(90)),
        SampleActivity(u"PLAIN"_s, u"Without"_s), free};
    const Currency none;
    const Currency eighty = Money(80);
    const std::vector<Walk> rows = {
        {"activity", u"RATED"_s, u"DEAR"_s, u"RATED"_s, eighty, u"1"_s, u"Y"_s, u"6"_s, Money(90)},
        {"project", u"RATED"_s, u"DEAR"_s, u"PLAIN"_s, eighty, u"1"_s, u"Y"_s, u"5"_s, Money(120)},
        {"customer, flat project", u"RATED"_s, u"FLAT"_s, u"PLAIN"_s, eighty, u"1"_s, u"Y"_s,
            u"4"_s, Money(100)},
        {"customer, no project", u"RATED"_s, u""_s, u"PLAIN"_s, eighty, u"1"_s, u"Y"_s, u"4"_s,
            Money(100)},
        {"division", u"PLAIN"_s, u""_s, u"PLAIN"_s, eighty, u"1"_s, u"Y"_s, u"3"_s, Money(70)},
        {"division, setting 2", u"PLAIN"_s, u""_s, u"PLAIN"_s, eighty, u"2"_s, u"Y"_s, u"3"_s,
            Money(70)},
        {"division, setting 3", u"PLAIN"_s, u""_s, u"PLAIN"_s, eighty, u"3"_s, u"Y"_s, u"3"_s,
            Money(70)},
        {"division, setting 4", u"PLAIN"_s, u""_s, u"PLAIN"_s, eighty, u"4"_s, u"Y"_s, u"2"_s,
            eighty},
        {"division, switch off", u"PLAIN"_s, u""_s, u"PLAIN"_s, eighty, u"1"_s, u"N"_s, u"2"_s,
            eighty},
        {"division without a rate", u"POOR"_s, u""_s, u"PLAIN"_s, eighty, u"1"_s, u"Y"_s, u"2"_s,
            eighty},
        {"no such division", u"LOST"_s, u""_s, u"PLAIN"_s, eighty, u"1"_s, u"Y"_s, u"2"_s, eighty},
        {"employee, setting 6", u"POOR"_s, u""_s, u"PLAIN"_s, eighty, u"6"_s, u"N"_s, u"2"_s,
            eighty},
        {"nothing", u"POOR"_s, u""_s, u"PLAIN"_s, none, u"1"_s, u"Y"_s, u"1"_s, none},
        {"proposed but not looked up", u"RATED"_s, u"DEAR"_s, u"RATED"_s, eighty, u"4"_s, u"Y"_s,
            u"6"_s, none},
        {"project proposed, setting 5", u"RATED"_s, u"DEAR"_s, u"PLAIN"_s, eighty, u"5"_s, u"Y"_s,
            u"5"_s, none},
        {"customer proposed, setting 6", u"RATED"_s, u""_s, u"PLAIN"_s, eighty, u"6"_s, u"Y"_s,
            u"4"_s, none},
        {"customer of no charge", u"FREE"_s, u"DEAR"_s, u"PLAIN"_s, eighty, u"1"_s, u"Y"_s, u"5"_s,
            none},
        {"activity of no charge", u"RATED"_s, u"DEAR"_s, u"FREE"_s, eighty, u"1"_s, u"Y"_s, u"6"_s,
            none},
        {"no customer", u""_s, u""_s, u"PLAIN"_s, eighty, u"1"_s, u"Y"_s, u"2"_s, eighty},
    };
    for (const Walk &row : rows) {
        SCOPED_TRACE(row.Name);
        Company.Employee.Rate = row.EmployeeRate;
        Company.Options.Billing_Option_Setting = row.Setting;
        Company.Options.Billing_Option_Switch = row.Switch;
        Start();
        EnterCodes(row.Customer, row.Project, row.Activity);
        EXPECT_EQ(Entry.BillingOption, row.Option);
        EXPECT_EQ(Entry.Rate, row.Rate);
        EXPECT_EQ(Item(cboBOption), Screen[cboBOption].Items.value(row.Option.toInt() - 1));
    }
}

TEST_F(Billing, CodesThatAreNotThereHaveNoRateAndNoFlag)
{
    Start();
    EnterCodes(u"0200"_s, u""_s, u"PLAIN"_s);
    Entry.ProjectCode = u"GONE"_s;
    Entry.CustomerCode = u"0301"_s; // a search ends on no record behind the last one
    PickStatus(u"No Charge"_s);
    PickStatus(u"Billable"_s);
    EXPECT_EQ(Entry.BillingOption, u"2"_s);
    EXPECT_EQ(Entry.Rate, Money(80));
    Entry.CustomerCode = u"0299"_s; // a search ends on the customer of no charge
    PickStatus(u"No Charge"_s);
    PickStatus(u"Billable"_s);
    EXPECT_EQ(Entry.BillingOption, u"2"_s);
    EXPECT_EQ(Entry.Rate, Money(80));
}

TEST_F(Billing, AnOptionLookedUpInALostRecordHasNoRate)
{
    StartBillable();
    Entry.ProjectCode = u"GONE"_s;
    PickOption(u"Project"_s);
    EXPECT_EQ(Entry.Rate, Money(0));
}

TEST_F(Billing, ANoChargeCustomerTakesTheRateAwayBeforeTheWalk)
{
    StartBillable();
    EnterCustomer(u"0300"_s);
    EXPECT_EQ(Entry.Rate, Money(0));
    EXPECT_EQ(Entry.Amount, Money(0));
    EXPECT_EQ(Entry.BillingStatus, u"1"_s); // though it is not charged
    EXPECT_EQ(Entry.BillingOption, u"6"_s);
}

TEST_F(Billing, ABillableEntryKeepsTheMultiplierThatItHas)
{
    StartBillable();
    EnterCustomer(u"0200"_s);
    EXPECT_EQ(Entry.MultiplierCode, u"10"_s);
    EXPECT_EQ(Entry.MultiplierFactor, Money(2));
    Rules().ClearEntry();
    EnterCodes(u"0100"_s, u""_s, u"CONS"_s);
    EXPECT_EQ(Entry.MultiplierCode, QString()); // and a new one gets none
    EXPECT_EQ(Entry.MultiplierFactor, Money(1));
}

TEST_F(Billing, ALookedUpRateIsNotOverridden)
{
    StartBillable();
    EXPECT_EQ(Entry.RateOverridden, u"N"_s);
    EnterRate(u"33"_s);
    EXPECT_EQ(Entry.RateOverridden, u"Y"_s);
    PickOption(u"Customer"_s);
    EXPECT_EQ(Entry.RateOverridden, u"N"_s);
    EnterRate(u"33"_s);
    EnterCustomer(u"0200"_s);
    EXPECT_EQ(Entry.RateOverridden, u"N"_s);
}

TEST_F(Billing, ARateThatIsNotLookedUpStaysOverridden)
{
    StartBillable();
    EnterRate(u"33"_s);
    PickOption(u"Application"_s);
    EXPECT_EQ(Entry.Rate, Money(33));
    EXPECT_EQ(Entry.RateOverridden, u"Y"_s);
}

TEST_F(Billing, ARateThatARuleReplacesIsNoLongerTheUsers)
{
    const std::vector<std::pair<const char *, std::function<void()>>> rules = {
        {"the cost of an expense", [this] { EnterActivity(u"MILES"_s); }},
        {"no activity", [this] { EnterActivity(QString()); }},
        {"an activity that is not billed", [this] { EnterActivity(u"TRAIN"_s); }},
        {"a customer of no charge", [this] { EnterCustomer(u"0300"_s); }},
        {"another status", [this] { PickStatus(u"Do Not Bill"_s); }},
    };
    for (const auto &[name, replace] : rules) {
        SCOPED_TRACE(name);
        StartBillable();
        EnterRate(u"33"_s);
        ASSERT_EQ(Entry.RateOverridden, u"Y"_s);
        replace();
        EXPECT_NE(Entry.Rate, Money(33));
        EXPECT_EQ(Entry.RateOverridden, u"N"_s);
    }
}
