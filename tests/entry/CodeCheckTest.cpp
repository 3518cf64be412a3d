// The checks of the four code boxes.

#include "tests/entry/EntryRules.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using enum EntryControl;

namespace {

const QString ExpensesRefused = u"You are not allowed to enter expenses."_s;

class CodeCheckOf : public EntryRules
{
protected:
    /// The box shows its former code again, selected; nobody is told.
    void ExpectRefused(EntryControl box, const QString &former)
    {
        EXPECT_EQ(Text(box), former);
        EXPECT_EQ(Focused(), box);
        EXPECT_TRUE(SelectsText());
        EXPECT_THAT(Messages.Texts(), IsEmpty());
    }

    /// A billable time entry of 1.5 hours with its codes checked.
    void EnterBillableTime()
    {
        EnterCodes(u"0100"_s, u"AUDIT"_s, u"CONS"_s);
        EnterHours(u"1.5"_s);
        Screen.Focus.reset();
    }

    /// Everything of the entry that a refused code must leave alone.
    EntryRecord Remembered() const
    {
        EntryRecord record;
        record.Customer_Number = Entry.CustomerCode;
        record.Project_Number = Entry.ProjectCode;
        record.Activity_Number = Entry.ActivityCode;
        record.Date = Entry.Date;
        record.Billing_Status = Entry.BillingStatus;
        record.Billing_Option = Entry.BillingOption;
        record.Multiplier_Number = Entry.MultiplierCode;
        record.Rate_Overridden = Entry.RateOverridden;
        record.Reimburse = Entry.Reimburse;
        record.Hours = Entry.Hours;
        record.Rate = Entry.Rate;
        record.Amount = Entry.Amount;
        record.Multiplier_Factor = Entry.MultiplierFactor;
        record.Description = Entry.ExpenseActivity;
        return record;
    }
};

} // namespace

TEST_F(CodeCheckOf, AKnownCustomerOpensTheProject)
{
    Start();
    EXPECT_EQ(EnterCustomer(u"0100"_s), CodeCheck::Accepted);
    EXPECT_EQ(Entry.CustomerCode, u"0100"_s);
    EXPECT_FALSE(Screen[txtProject].ButtonFace);
    EXPECT_TRUE(Screen[txtProject].InTabOrder);
    EXPECT_TRUE(Screen[cmdProject].Enabled);
}

TEST_F(CodeCheckOf, ABlankCustomerEmptiesAndClosesTheProject)
{
    Start();
    EnterCustomer(u"0100"_s);
    EnterProject(u"MOVE"_s);
    EXPECT_EQ(EnterCustomer(QString()), CodeCheck::Accepted);
    EXPECT_EQ(Entry.CustomerCode, QString());
    EXPECT_EQ(Entry.ProjectCode, QString());
    EXPECT_EQ(Text(txtProject), QString());
    EXPECT_TRUE(Screen[txtProject].ButtonFace);
    EXPECT_FALSE(Screen[txtProject].InTabOrder);
    EXPECT_FALSE(Screen[cmdProject].Enabled);
}

TEST_F(CodeCheckOf, UnknownCustomersGiveWayToTheFormerOne)
{
    Start();
    EnterBillableTime();
    const EntryRecord before = Remembered();
    for (const QString &code : {u"9999"_s, u"010"_s, u"01000"_s, u" 0100"_s, u"ZZZ"_s, u"0"_s}) {
        SCOPED_TRACE(code.toStdString());
        EXPECT_EQ(EnterCustomer(code), CodeCheck::Refused);
        ExpectRefused(txtCustomer, u"0100"_s);
        EXPECT_EQ(Remembered(), before);
        EXPECT_TRUE(Screen[cmdProject].Enabled);
    }
}

TEST_F(CodeCheckOf, SpacesAfterACodeAreCutBeforeItIsChecked)
{
    Start();
    EXPECT_EQ(EnterCustomer(u"0100  "_s), CodeCheck::Accepted);
    EXPECT_EQ(Entry.CustomerCode, u"0100"_s);
    EXPECT_EQ(Text(txtCustomer), u"0100"_s);
    EXPECT_EQ(EnterProject(u"AUDIT "_s), CodeCheck::Accepted);
    EXPECT_EQ(Entry.ProjectCode, u"AUDIT"_s);
    EXPECT_EQ(Text(txtProject), u"AUDIT"_s);
    EXPECT_EQ(EnterActivity(u"CONS "_s), CodeCheck::Accepted);
    EXPECT_EQ(Entry.ActivityCode, u"CONS"_s);
    EXPECT_EQ(Text(txtActivity), u"CONS"_s);
    EXPECT_EQ(EnterMultiplier(u"5 "_s), CodeCheck::Accepted);
    EXPECT_EQ(Entry.MultiplierCode, u"05"_s);
    EXPECT_EQ(Text(txtMultiplierCode), u"05"_s);
    EXPECT_EQ(EnterMultiplier(u"05 "_s), CodeCheck::Accepted);
    EXPECT_EQ(Text(txtMultiplierCode), u"05"_s);
}

TEST_F(CodeCheckOf, SpacesAloneAreABlankCode)
{
    Start();
    EnterBillableTime();
    EXPECT_EQ(EnterProject(u"  "_s), CodeCheck::Accepted);
    EXPECT_EQ(Entry.ProjectCode, QString());
    EXPECT_EQ(Text(txtProject), QString());
    EXPECT_EQ(EnterCustomer(u" "_s), CodeCheck::Accepted);
    EXPECT_EQ(Entry.CustomerCode, QString());
    EXPECT_EQ(Text(txtCustomer), QString());
    EXPECT_FALSE(Screen[cmdProject].Enabled);
    EXPECT_EQ(EnterMultiplier(u" "_s), CodeCheck::Accepted);
    EXPECT_EQ(Text(txtMultiplierCode), QString());
    EXPECT_EQ(EnterActivity(u" "_s), CodeCheck::Accepted);
    EXPECT_EQ(Text(txtActivity), QString());
}

TEST_F(CodeCheckOf, AnUnknownFirstCustomerLeavesTheBoxEmpty)
{
    Start();
    EXPECT_EQ(EnterCustomer(u"NONE"_s), CodeCheck::Refused);
    ExpectRefused(txtCustomer, QString());
    EXPECT_EQ(Entry.CustomerCode, QString());
    EXPECT_FALSE(Screen[cmdProject].Enabled);
    EXPECT_TRUE(Rules().Changed); // something was typed
}

TEST_F(CodeCheckOf, ACodeIsCutAtTheWidthOfItsKey)
{
    Company.Customers.push_back(SampleCustomer(u"ABCDEFGHIJKLMNO"_s, u"Fifteen letters"_s));
    Start();
    EXPECT_EQ(EnterCustomer(u"ABCDEFGHIJKLMN"_s), CodeCheck::Refused);
    EXPECT_EQ(EnterCustomer(u"ABCDEFGHIJKLMNOP"_s), CodeCheck::Accepted);
    EXPECT_EQ(Entry.CustomerCode, u"ABCDEFGHIJKLMNOP"_s);
}

TEST_F(CodeCheckOf, CaseCounts)
{
    Company.Customers.push_back(SampleCustomer(u"lower"_s, u"From elsewhere"_s));
    Start();
    EXPECT_EQ(EnterCustomer(u"LOWER"_s), CodeCheck::Refused);
    EXPECT_EQ(EnterProject(u"audit"_s), CodeCheck::Refused);
}

TEST_F(CodeCheckOf, AnotherCustomerLeavesTheProjectCodeAsItWas)
{
    Start();
    EnterCustomer(u"0100"_s);
    EnterProject(u"AUDIT"_s);
    EXPECT_EQ(EnterCustomer(u"0200"_s), CodeCheck::Accepted);
    EXPECT_EQ(Entry.ProjectCode, u"AUDIT"_s); // though it is no project of that customer
    EXPECT_EQ(Text(txtProject), u"AUDIT"_s);
}

TEST_F(CodeCheckOf, AProjectIsKnownUnderItsCustomerOnly)
{
    Start();
    EnterCustomer(u"0200"_s);
    EXPECT_EQ(EnterProject(u"AUDIT"_s), CodeCheck::Refused);
    ExpectRefused(txtProject, QString());
    EXPECT_EQ(Entry.ProjectCode, QString());
    EXPECT_EQ(EnterProject(u"MILL"_s), CodeCheck::Accepted);
    EXPECT_EQ(Entry.ProjectCode, u"MILL"_s);
    EXPECT_EQ(EnterProject(u"MOVE"_s), CodeCheck::Refused);
    ExpectRefused(txtProject, u"MILL"_s);
    EXPECT_EQ(Entry.ProjectCode, u"MILL"_s);
}

TEST_F(CodeCheckOf, WithoutACustomerEveryProjectIsRefused)
{
    Start();
    EXPECT_EQ(EnterProject(u"AUDIT"_s), CodeCheck::Refused);
    ExpectRefused(txtProject, QString());
}

TEST_F(CodeCheckOf, ABlankProjectIsAcceptedAndNothingElseIsTouched)
{
    Start();
    EnterBillableTime();
    EntryRecord before = Remembered();
    EXPECT_EQ(EnterProject(QString()), CodeCheck::Accepted);
    before.Project_Number.clear();
    EXPECT_EQ(Remembered(), before);
}

TEST_F(CodeCheckOf, AnUnknownActivityChangesNothing)
{
    Start();
    EnterBillableTime();
    const EntryRecord before = Remembered();
    EXPECT_EQ(EnterActivity(u"CON"_s), CodeCheck::Refused);
    ExpectRefused(txtActivity, u"CONS"_s);
    EXPECT_EQ(Remembered(), before);
    EXPECT_EQ(Item(cboBStatus), u"Billable"_s);
}

TEST_F(CodeCheckOf, AnActivityBringsItsStatusAndABlankDefaultMeansBillable)
{
    Start();
    EnterActivity(u"CONS"_s);
    EXPECT_EQ(Entry.BillingStatus, u"1"_s);
    EnterActivity(u"TRAIN"_s);
    EXPECT_EQ(Entry.BillingStatus, u"2"_s);
    EXPECT_EQ(Item(cboBStatus), u"No Charge"_s);
    EnterActivity(u"ADMIN"_s);
    EXPECT_EQ(Entry.BillingStatus, u"3"_s);
    EXPECT_EQ(Item(cboBStatus), u"Do Not Bill"_s);
    EnterActivity(u"NODEF"_s);
    EXPECT_EQ(Entry.BillingStatus, u"1"_s);
    EXPECT_EQ(Item(cboBStatus), u"Billable"_s);
}

TEST_F(CodeCheckOf, AnActivityReplacesTheStatusThatTheUserChose)
{
    Start();
    EnterBillableTime();
    PickStatus(u"No Charge"_s);
    EnterActivity(u"CONS"_s);
    EXPECT_EQ(Entry.BillingStatus, u"1"_s);
}

TEST_F(CodeCheckOf, AnExpenseTakesItsUnitCostAndForgetsReimburse)
{
    Start();
    Entry.Reimburse = u"Y"_s;
    Entry.AmountOnly = u"Y"_s;
    EXPECT_EQ(EnterActivity(u"MILES"_s), CodeCheck::Accepted);
    EXPECT_TRUE(Entry.IsExpense());
    EXPECT_EQ(Entry.AmountOnly, u"N"_s);
    EXPECT_EQ(Entry.Reimburse, u"N"_s);
    EXPECT_FALSE(Screen[chkReimburse].Checked);
    EXPECT_EQ(Entry.Rate, Money(0, 45));
    EXPECT_EQ(Text(txtRate), u".450"_s);
    EXPECT_EQ(Text(lblHours), u"Units"_s);
    EnterHours(u"100"_s);
    EXPECT_EQ(Text(txtAmount), u"45.00"_s);
}

TEST_F(CodeCheckOf, AnExpenseMayHaveAnyStatus)
{
    Start();
    EnterActivity(u"MEALS"_s);
    EXPECT_EQ(Entry.BillingStatus, u"3"_s);
    EXPECT_EQ(Entry.Rate, Money(20)); // only time loses its rate
    EXPECT_EQ(Text(txtRate), u"20.000"_s);
}

TEST_F(CodeCheckOf, FromTimeToExpenseTheMultiplierNoLongerCounts)
{
    Start();
    EnterBillableTime();
    EnterMultiplier(u"10"_s);
    ASSERT_EQ(Entry.MultiplierFactor, Money(2));
    EnterActivity(u"MILES"_s);
    EXPECT_EQ(Entry.MultiplierFactor, Money(1));
    EXPECT_EQ(Text(txtMultiplierFactor), u"1.0000"_s);
    EXPECT_EQ(Text(txtRate), u".450"_s);
    EXPECT_EQ(Look(txtMultiplierCode), u"hidden"_s);
}

TEST_F(CodeCheckOf, AnActivityThatIsNotBilledClearsTheBillingData)
{
    for (const QString &level : {u"1"_s, u"2"_s, u"3"_s, u"4"_s}) {
        for (const QString &activity : {u"TRAIN"_s, u"ADMIN"_s}) {
            SCOPED_TRACE(level.toStdString());
            Company.Employee.Rate_Permission = level;
            Start();
            EnterBillableTime();
            EnterMultiplier(u"10"_s);
            EnterActivity(activity);
            EXPECT_EQ(Entry.MultiplierCode, QString());
            EXPECT_EQ(Entry.MultiplierFactor, Money(1));
            EXPECT_EQ(Entry.Rate, Money(0));
            EXPECT_EQ(Entry.Amount, Money(0));
            EXPECT_EQ(Entry.BillingOption, u"0"_s);
            EXPECT_EQ(Text(txtMultiplierCode), QString());
            EXPECT_EQ(Text(txtRate), u".000"_s);
            EXPECT_EQ(Text(txtAmount), u".00"_s);
            EXPECT_THAT(Screen[cboBOption].Items, ElementsAre(QString()));
            EXPECT_FALSE(Screen[cboBOption].Enabled);
            EXPECT_FALSE(Screen[txtRate].Enabled);
            EXPECT_EQ(Entry.Hours, Money(1, 50));
        }
    }
}

TEST_F(CodeCheckOf, ABlankActivityIsTimeWithoutARate)
{
    Start();
    EnterActivity(u"MILES"_s);
    Entry.Reimburse = u"Y"_s;
    EXPECT_EQ(EnterActivity(QString()), CodeCheck::Accepted);
    EXPECT_FALSE(Entry.IsExpense());
    EXPECT_EQ(Entry.AmountOnly, u"N"_s);
    EXPECT_EQ(Entry.Reimburse, u"N"_s);
    EXPECT_EQ(Entry.Rate, Money(0));
    EXPECT_EQ(Text(lblHours), u"Hours"_s);
}

TEST_F(CodeCheckOf, EveryAcceptedCodeOfABillableTimeEntryLooksUpTheDefaultRate)
{
    for (const QString &level : {u"1"_s, u"2"_s, u"3"_s, u"4"_s}) {
        for (const QString &switched : {u"Y"_s, u"N"_s}) {
            SCOPED_TRACE("level " + level.toStdString() + ", switch " + switched.toStdString());
            Company.Employee.Rate_Permission = level;
            Company.Options.Billing_Option_Switch = switched;
            Start();
            EnterCodes(u"0200"_s, u""_s, u"PLAIN"_s);
            const bool divisions = switched == u"Y"_s;
            EXPECT_EQ(Entry.BillingOption, divisions ? u"3"_s : u"2"_s);
            EXPECT_EQ(Entry.Rate, divisions ? Money(70) : Money(80));
            EnterCustomer(u"0100"_s);
            EXPECT_EQ(Entry.BillingOption, u"4"_s);
            EXPECT_EQ(Entry.Rate, Money(100));
            EnterProject(u"AUDIT"_s);
            EXPECT_EQ(Entry.BillingOption, u"5"_s);
            EXPECT_EQ(Entry.Rate, Money(120));
            EnterActivity(u"CONS"_s);
            EXPECT_EQ(Entry.BillingOption, u"6"_s);
            EXPECT_EQ(Entry.Rate, Money(90));
            EXPECT_EQ(Item(cboBOption), u"Activity"_s);
        }
    }
}

TEST_F(CodeCheckOf, CodesOfAnEntryThatIsNotBilledLeaveItsBillingAlone)
{
    Start();
    EnterBillableTime();
    PickStatus(u"No Charge"_s);
    Entry.Rate = Money(33); // as another program may have stored it
    EnterCustomer(u"0200"_s);
    EnterProject(u"MILL"_s);
    EXPECT_EQ(Entry.Rate, Money(33));
    EXPECT_EQ(Entry.BillingOption, u"0"_s);
    EXPECT_EQ(Entry.BillingStatus, u"2"_s);
}

TEST_F(CodeCheckOf, CodesOfAnExpenseLeaveItsRateAlone)
{
    Start();
    EnterActivity(u"MILES"_s);
    EnterCustomer(u"0100"_s);
    EnterProject(u"AUDIT"_s);
    EXPECT_EQ(Entry.Rate, Money(0, 45));
    EXPECT_EQ(Entry.BillingOption, QString());
}

TEST_F(CodeCheckOf, ACheckKeepsTheEditsOfAStoredEntryAndTheFocus)
{
    StartWith({FullEntry()});
    Screen.Focus.reset();
    Screen[txtDescription].Text = u"edited"_s;
    Rules().TakeDescription();
    EnterHours(u"3"_s);
    EXPECT_EQ(EnterCustomer(u"0200"_s), CodeCheck::Accepted);
    EXPECT_EQ(Entry.Description, u"edited"_s);
    EXPECT_EQ(Entry.Hours, Money(3));
    EXPECT_EQ(Text(txtCustomer), u"0200"_s);
    EXPECT_TRUE(Rules().Changed);
    EXPECT_EQ(Focused(), std::nullopt);
}

TEST_F(CodeCheckOf, WithoutAStatusACodeChangesNoBilling)
{
    Start();
    EnterCustomer(u"0100"_s);
    EXPECT_EQ(Entry.BillingStatus, QString());
    EXPECT_EQ(Entry.BillingOption, QString());
    EXPECT_EQ(Entry.Rate, Money(0));
}

TEST_F(CodeCheckOf, AnExpenseThatIsNotAllowedIsTakenOutWithOneMessage)
{
    Company.Options.Expenses = u"N"_s;
    Start();
    EnterBillableTime();
    EXPECT_EQ(EnterActivity(u"MILES"_s), CodeCheck::Refused);
    EXPECT_THAT(Messages.Texts(), ElementsAre(ExpensesRefused));
    EXPECT_EQ(Messages.Shown[0].Icon, MessageIcon::Exclamation);
    EXPECT_EQ(Messages.Shown[0].Buttons, MessageButtons::OK);
    EXPECT_EQ(Entry.ActivityCode, QString()); // not the former one
    EXPECT_EQ(Text(txtActivity), QString());
    EXPECT_FALSE(Entry.IsExpense());
    EXPECT_EQ(Text(lblHours), u"Hours"_s);
    EXPECT_TRUE(Rules().Changed);
    EXPECT_EQ(Focused(), txtActivity);
    EXPECT_EQ(EnterActivity(u"NONE"_s), CodeCheck::Refused);
    EXPECT_EQ(Text(txtActivity), QString()); // the former code is forgotten
}

TEST_F(CodeCheckOf, AfterARefusedExpenseTheStatusListShowsTheStatusHeld)
{
    Company.Options.Expenses = u"N"_s;
    Start();
    EnterActivity(u"MEALS"_s);
    EXPECT_EQ(Entry.BillingStatus, u"3"_s);
    EXPECT_EQ(Item(cboBStatus), u"Do Not Bill"_s);
    EXPECT_EQ(Entry.BillingOption, u"0"_s);
    EnterActivity(u"MILES"_s);
    EXPECT_EQ(Entry.BillingStatus, u"1"_s);
    EXPECT_EQ(Item(cboBStatus), u"Billable"_s);
}

TEST_F(CodeCheckOf, AMultiplierBringsItsFactor)
{
    Start();
    EnterBillableTime();
    EXPECT_EQ(EnterMultiplier(u"10"_s), CodeCheck::Accepted);
    EXPECT_EQ(Entry.MultiplierCode, u"10"_s);
    EXPECT_EQ(Entry.MultiplierFactor, Money(2));
    EXPECT_EQ(Text(txtMultiplierFactor), u"2.0000"_s);
    EXPECT_EQ(Text(txtRate), u"180.000"_s);
    EXPECT_EQ(Entry.Rate, Money(90));
    EXPECT_EQ(Text(txtAmount), u"270.00"_s);
}

TEST_F(CodeCheckOf, AMultiplierOfOneDigitGetsAZeroInFront)
{
    Start();
    EnterBillableTime();
    EXPECT_EQ(EnterMultiplier(u"5"_s), CodeCheck::Accepted);
    EXPECT_EQ(Entry.MultiplierCode, u"05"_s);
    EXPECT_EQ(Text(txtMultiplierCode), u"05"_s);
    EXPECT_EQ(Entry.MultiplierFactor, Money(1, 25));
}

TEST_F(CodeCheckOf, AMultiplierOfOneLetterStaysAsItIs)
{
    Start();
    EnterBillableTime();
    EXPECT_EQ(EnterMultiplier(u"A"_s), CodeCheck::Accepted);
    EXPECT_EQ(Entry.MultiplierCode, u"A"_s);
    EXPECT_EQ(Entry.MultiplierFactor, Money(3));
}

TEST_F(CodeCheckOf, ABlankMultiplierHasTheFactorOne)
{
    Start();
    EnterBillableTime();
    EnterMultiplier(u"10"_s);
    EXPECT_EQ(EnterMultiplier(QString()), CodeCheck::Accepted);
    EXPECT_EQ(Entry.MultiplierCode, QString());
    EXPECT_EQ(Entry.MultiplierFactor, Money(1));
    EXPECT_EQ(Text(txtRate), u"90.000"_s);
    EXPECT_EQ(Text(txtAmount), u"135.00"_s);
}

TEST_F(CodeCheckOf, ARefusedMultiplierComesBackButItsFactorDoesNot)
{
    Start();
    EnterBillableTime();
    EnterMultiplier(u"10"_s);
    EXPECT_EQ(EnterMultiplier(u"99"_s), CodeCheck::Refused);
    ExpectRefused(txtMultiplierCode, u"10"_s);
    EXPECT_EQ(Entry.MultiplierCode, u"10"_s);
    EXPECT_EQ(Entry.MultiplierFactor, Money(1));
    EXPECT_EQ(Text(txtMultiplierFactor), u"1.0000"_s);
    EXPECT_EQ(Text(txtRate), u"90.000"_s);
    EXPECT_EQ(Text(txtAmount), u"135.00"_s);
}

TEST_F(CodeCheckOf, AnUnchangedMultiplierIsNotLookedUp)
{
    Start();
    EnterBillableTime();
    EnterMultiplier(u"10"_s);
    Entry.MultiplierFactor = Money(9); // as another program may have stored it
    EXPECT_EQ(EnterMultiplier(u"10"_s), CodeCheck::Accepted);
    EXPECT_EQ(Entry.MultiplierFactor, Money(9));
}

TEST_F(CodeCheckOf, TheFormerMultiplierIsComparedBeforeTheZeroIsPutInFront)
{
    Start();
    EnterBillableTime();
    EnterMultiplier(u"05"_s);
    Entry.MultiplierFactor = Money(9);
    EXPECT_EQ(EnterMultiplier(u"5"_s), CodeCheck::Accepted);
    EXPECT_EQ(Entry.MultiplierFactor, Money(1, 25));
}

TEST_F(CodeCheckOf, ARefusedExpenseLeavesNoRateWhateverTheLevel)
{
    Company.Options.Expenses = u"N"_s;
    for (const QString &level : {u"1"_s, u"2"_s, u"3"_s, u"4"_s}) {
        SCOPED_TRACE(level.toStdString());
        Company.Employee.Rate_Permission = level;
        Start();
        EnterBillableTime();
        EXPECT_EQ(EnterActivity(u"MILES"_s), CodeCheck::Refused);
        EXPECT_EQ(Entry.Rate, Money(0));
        EXPECT_EQ(Entry.Amount, Money(0));
        EXPECT_EQ(Text(txtAmount), u".00"_s);
        EXPECT_EQ(Entry.Hours, Money(1, 50));
    }
}

TEST_F(CodeCheckOf, ABlankActivityLeavesNoStatusAndNoBillingIsCleared)
{
    Start();
    EnterBillableTime();
    EnterMultiplier(u"10"_s);
    EXPECT_EQ(EnterActivity(QString()), CodeCheck::Accepted);
    EXPECT_EQ(Entry.BillingStatus, QString()); // no activity, no default
    EXPECT_EQ(Screen[cboBStatus].Index, -1);
    EXPECT_EQ(Entry.MultiplierCode, u"10"_s);
    EXPECT_EQ(Entry.BillingOption, u"6"_s);
    EXPECT_EQ(Look(cboBOption), u"open"_s);
    EXPECT_EQ(EnterActivity(u"CONS"_s), CodeCheck::Accepted);
    EXPECT_EQ(Entry.BillingStatus, u"1"_s);
    EXPECT_EQ(Entry.Rate, Money(90));
}
