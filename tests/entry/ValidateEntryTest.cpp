// The check of the whole entry: its order, and what it tells, focuses and names.

#include "tests/entry/EntryRules.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using enum EntryControl;

namespace {

/// An entry that passes, with one thing wrong; and what is said of it.
struct Fault
{
    const char *Name;
    std::function<void(EntryBeingEdited &)> Break;
    QString Message;
    EntryControl Focus;
    bool SelectsText;
    QString Key;
};

class ValidateEntry : public EntryRules
{
protected:
    ValidateEntry()
    {
        Company.Options.Project_Required = u"Y"_s;
        Company.Options.Customer_Term = u" Client "_s;
        Company.Options.Project_Term = u"Matter "_s;
        Company.Options.Activity_Term = u" Task"_s;
    }

    void ShowTime()
    {
        Rules().ClearEntry();
        Entry.CustomerCode = u"0100"_s;
        Entry.ProjectCode = u"AUDIT"_s;
        Entry.ActivityCode = u"CONS"_s;
        Entry.BillingStatus = u"1"_s;
        Entry.BillingOption = u"4"_s;
        Entry.Hours = Money(2);
        Entry.Rate = Money(100);
    }

    void ShowExpense()
    {
        ShowTime();
        Entry.ActivityCode = u"MILES"_s;
        Entry.ExpenseActivity = u"Y"_s;
        Entry.Rate = Money(0, 45);
    }

    void ExpectPasses()
    {
        Rules().FailedField = u"left over"_s;
        EXPECT_TRUE(Rules().ValidateEntry());
        EXPECT_EQ(Rules().FailedField, QString());
        EXPECT_THAT(Messages.Texts(), IsEmpty());
        EXPECT_EQ(Focused(), std::nullopt);
    }

    void ExpectFault(const Fault &fault)
    {
        SCOPED_TRACE(fault.Name);
        fault.Break(Entry);
        Rules().ShowEntry();
        Screen.Focus.reset();
        Messages.Shown.clear();
        const bool changed = Rules().Changed;
        EXPECT_FALSE(Rules().ValidateEntry());
        EXPECT_THAT(Messages.Texts(), ElementsAre(fault.Message));
        EXPECT_EQ(Messages.Shown.value(0).Icon, MessageIcon::Exclamation);
        EXPECT_EQ(Messages.Shown.value(0).Buttons, MessageButtons::OK);
        EXPECT_EQ(Focused(), fault.Focus);
        EXPECT_EQ(SelectsText(), fault.SelectsText);
        EXPECT_EQ(Rules().FailedField, fault.Key);
        EXPECT_EQ(Rules().Changed, changed);
    }
};

const Fault NoCustomer = {"no customer", [](EntryBeingEdited &e) { e.CustomerCode.clear(); },
    u"Invalid Client Code."_s, txtCustomer, false, u"Cust"_s};
const Fault NoProject = {"no project", [](EntryBeingEdited &e) { e.ProjectCode.clear(); },
    u"Invalid Matter Code."_s, txtProject, false, u"Proj"_s};
const Fault NoActivity = {"no activity", [](EntryBeingEdited &e) { e.ActivityCode.clear(); },
    u"Invalid Task Code."_s, txtActivity, false, u"Acti"_s};
const Fault NoStatus = {"no status", [](EntryBeingEdited &e) { e.BillingStatus.clear(); },
    u"Invalid Billing Status."_s, cboBStatus, false, u"BSta"_s};
const Fault NoHours = {"no hours", [](EntryBeingEdited &e) { e.Hours = {}; }, u"Invalid Hours."_s,
    txtHours, true, u"Hrs"_s};

} // namespace

TEST_F(ValidateEntry, ReportsTheFaultsOfATimeEntryOneByOneInTheirOrder)
{
    Start();
    ShowTime();
    for (const Fault &fault : {NoHours, NoStatus, NoActivity, NoProject, NoCustomer})
        ExpectFault(fault); // each one goes before those already there
}

TEST_F(ValidateEntry, AGoodTimeEntryPasses)
{
    Start();
    ShowTime();
    Rules().ShowEntry();
    Screen.Focus.reset();
    ExpectPasses();
}

TEST_F(ValidateEntry, AnEntryWithoutCustomerAndActivityReportsOnlyTheCustomer)
{
    Start();
    ExpectFault({"new", [](EntryBeingEdited &) {}, u"Invalid Client Code."_s, txtCustomer, false,
        u"Cust"_s});
}

TEST_F(ValidateEntry, AProjectIsAskedForWhereTheCompanyRequiresIt)
{
    for (const QString &required : {u"N"_s, u""_s}) {
        Company.Options.Project_Required = required;
        Start();
        ShowTime();
        Entry.ProjectCode.clear();
        Rules().ShowEntry();
        Screen.Focus.reset();
        ExpectPasses();
    }
}

TEST_F(ValidateEntry, TimeNeedsHoursWhateverItsStatus)
{
    Start();
    for (const QString &status : {u"1"_s, u"2"_s, u"3"_s}) {
        SCOPED_TRACE(status.toStdString());
        ShowTime();
        Entry.BillingStatus = status;
        ExpectFault(NoHours);
    }
}

TEST_F(ValidateEntry, HoursAreTakenFromTheBoxFirst)
{
    Start();
    ShowTime();
    Rules().ShowEntry();
    Screen.Focus.reset();
    Screen[txtHours].Text = u"3.5"_s;
    ExpectPasses();
    EXPECT_EQ(Entry.Hours, Money(3, 50));
    EXPECT_EQ(Text(txtHours), u"3.50"_s);
    EXPECT_EQ(Entry.Amount, Money(350));
}

TEST_F(ValidateEntry, EveryWayToWriteZeroFailsAndIsTaken)
{
    Start();
    for (const QString &text : {u"0"_s, u"0.00"_s, u".00"_s, u"-0"_s, u""_s, u"."_s, u"00"_s}) {
        SCOPED_TRACE(text.toStdString());
        ShowTime();
        Rules().ShowEntry();
        Screen[txtHours].Text = text;
        Messages.Shown.clear();
        EXPECT_FALSE(Rules().ValidateEntry());
        EXPECT_THAT(Messages.Texts(), ElementsAre(u"Invalid Hours."_s));
        EXPECT_EQ(Entry.Hours, Money(0));
        EXPECT_EQ(Text(txtHours), u".00"_s);
    }
}

TEST_F(ValidateEntry, HoursThatShowAsZeroAreZero)
{
    Start();
    ShowTime();
    ExpectFault({"less than shown", [](EntryBeingEdited &e) { e.Hours = Currency::FromScaled(49); },
        u"Invalid Hours."_s, txtHours, true, u"Hrs"_s});
}

TEST_F(ValidateEntry, NegativeHoursPass)
{
    Start();
    ShowTime();
    Entry.Hours = Money(-1);
    Rules().ShowEntry();
    Screen.Focus.reset();
    ExpectPasses();
}

TEST_F(ValidateEntry, ATimeEntryNeedsNoRate)
{
    Start();
    ShowTime();
    Entry.Rate = {};
    Rules().ShowEntry();
    Screen.Focus.reset();
    ExpectPasses();
}

TEST_F(ValidateEntry, ReportsTheFaultsOfABillableExpenseInTheirOrder)
{
    Start();
    ShowExpense();
    const std::vector<Fault> faults = {
        // An amount of zero sends the user to the units.
        {"an amount that shows as zero",
            [](EntryBeingEdited &e) {
                e.Hours = Money(0, 1);
                e.Rate = Money(0, 10);
            },
            u"Invalid Amount."_s, txtHours, true, u"Hrs"_s},
        {"no rate", [](EntryBeingEdited &e) { e.Rate = {}; }, u"Invalid Rate."_s, txtRate, true,
            u"Rate"_s},
        {"a rate that shows as zero", [](EntryBeingEdited &e) { e.Rate = Currency::FromScaled(4); },
            u"Invalid Rate."_s, txtRate, true, u"Rate"_s},
        {"no units", [](EntryBeingEdited &e) { e.Hours = {}; }, u"Invalid Units."_s, txtHours, true,
            u"Hrs"_s},
    };
    for (const Fault &fault : faults)
        ExpectFault(fault);
    for (const Fault &fault : {NoStatus, NoActivity, NoProject, NoCustomer})
        ExpectFault(fault);
}

TEST_F(ValidateEntry, AGoodExpensePasses)
{
    Start();
    ShowExpense();
    Rules().ShowEntry();
    Screen.Focus.reset();
    ExpectPasses();
}

TEST_F(ValidateEntry, AnExpenseThatIsNotBilledNeedsNoQuantity)
{
    Start();
    for (const QString &status : {u"2"_s, u"3"_s}) {
        ShowExpense();
        Entry.BillingStatus = status;
        Entry.Hours = {};
        Entry.Rate = {};
        Rules().ShowEntry();
        Screen.Focus.reset();
        ExpectPasses();
    }
}

TEST_F(ValidateEntry, AnExpenseByAmountNeedsItsAmountWhateverItsStatus)
{
    Start();
    for (const QString &status : {u"1"_s, u"2"_s}) {
        ShowExpense();
        Entry.BillingStatus = status;
        Entry.AmountOnly = u"Y"_s;
        Entry.Hours = {};
        Entry.Rate = {};
        Entry.Amount = {};
        ExpectFault({"no amount", [](EntryBeingEdited &) {}, u"Invalid Amount."_s, txtAmount, true,
            u"Amt"_s});
        Messages.Shown.clear();
        Screen.Focus.reset();
        Screen[txtAmount].Text = u"12.5"_s;
        ExpectPasses();
        EXPECT_EQ(Entry.Amount, Money(12, 50));
    }
}
