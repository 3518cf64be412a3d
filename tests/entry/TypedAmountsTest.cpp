// Expenses, rates, and amounts as a user types them into the main window.

#include "tests/entry/EntryWindow.h"

#include <QAbstractItemView>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class TypedAmounts : public EntryWindow
{
protected:
    TypedAmounts()
    {
        Company.Options.Billing_Option_Switch = u"Y"_s;
        Company.Options.Billing_Option_Setting = u"1"_s;
        Company.Employee.Rate_Permission = u"4"_s;
        Company.Customers = {SampleCustomer(u"0100"_s, u"Acme"_s)};
        Company.Activities = {SampleActivity(u"CONS"_s, u"Consulting"_s, Currency::FromWhole(100)),
            SampleExpense(u"MILES"_s, u"Mileage"_s, Currency::FromScaled(4500)),
            SampleExpense(u"FREE"_s, u"Free of charge"_s),
            SampleExpense(u"MEALS"_s, u"Meals"_s, Currency::FromWhole(20), u"3"_s)};
        Company.Multipliers = {SampleMultiplier(u"05"_s, u"Evening"_s, Currency::FromScaled(12500)),
            SampleMultiplier(u"11"_s, u"Night"_s, Currency::FromScaled(11000))};
    }

    void Enter(const char *box, const QString &text)
    {
        GoTo(box);
        Type(text);
        Press(Qt::Key_Return);
    }

    void StartWith(const QString &activity)
    {
        Start();
        Enter("txtCustomer", u"0100"_s);
        Enter("txtActivity", activity);
    }

    QCheckBox &Reimburse() { return Control<QCheckBox>(Window(), "chkReimburse"); }

    /// OK is refused with that message, and the field is ready for another text.
    void ExpectRefused(const QString &message, const char *field)
    {
        Messages.Shown.clear();
        ClickButton("cmdOK");
        EXPECT_THAT(Messages.Texts(), ElementsAre(message));
        EXPECT_EQ(Focused(), QString::fromLatin1(field));
        EXPECT_EQ(Box(field).selectedText(), Text(field));
        EXPECT_THAT(Stored(), IsEmpty());
        EXPECT_TRUE(Window().isWindowModified());
    }
};

} // namespace

TEST_F(TypedAmounts, AnExpenseIsReimbursedWhenItsBoxIsChecked)
{
    StartWith(u"MILES"_s);
    Enter("txtHours", u"10"_s);
    ClickButton("chkReimburse");
    ClickButton("cmdOK");
    ASSERT_EQ(Stored().size(), 1U);
    EXPECT_EQ(Stored()[0].Reimburse, u"Y"_s);
    EXPECT_EQ(Stored()[0].Hours, Currency::FromWhole(10));
    EXPECT_EQ(Stored()[0].Rate, Currency::FromScaled(4500));
    EXPECT_EQ(Stored()[0].Amount, Currency::FromScaled(45000));
    ClickRow(1);
    EXPECT_TRUE(Reimburse().isChecked());
    GoTo("chkReimburse");
    Press(Qt::Key_Space);
    ClickButton("cmdOK");
    EXPECT_EQ(Stored()[0].Reimburse, u"N"_s);
}

TEST_F(TypedAmounts, AnotherActivityTakesTheReimbursementBack)
{
    StartWith(u"MILES"_s);
    Enter("txtHours", u"10"_s);
    ClickButton("chkReimburse");
    Enter("txtActivity", u"CONS"_s);
    EXPECT_FALSE(Reimburse().isVisible());
    Enter("txtActivity", u"MILES"_s);
    EXPECT_FALSE(Reimburse().isChecked());
    ClickButton("cmdOK");
    ASSERT_EQ(Stored().size(), 1U);
    EXPECT_EQ(Stored()[0].Reimburse, u"N"_s);
}

TEST_F(TypedAmounts, ABillableExpenseNeedsUnitsARateAndAnAmount)
{
    StartWith(u"FREE"_s);
    ExpectRefused(u"Invalid Units."_s, "txtHours");
    Type(u"."_s);
    ExpectRefused(u"Invalid Units."_s, "txtHours");
    EXPECT_EQ(Text("txtHours"), u".00"_s);
    Type(u".01"_s);
    ExpectRefused(u"Invalid Rate."_s, "txtRate");
    Type(u".001"_s);
    ExpectRefused(u"Invalid Amount."_s, "txtHours"); // on purpose not the amount
    EXPECT_EQ(Text("txtAmount"), u".00"_s);
    Type(u"1000"_s);
    Messages.Shown.clear();
    ClickButton("cmdOK");
    EXPECT_THAT(Messages.Texts(), IsEmpty());
    ASSERT_EQ(Stored().size(), 1U);
    EXPECT_EQ(Stored()[0].Amount, Currency::FromWhole(1));
}

TEST_F(TypedAmounts, AnExpenseThatIsNotBilledNeedsNoUnits)
{
    StartWith(u"MEALS"_s);
    EXPECT_EQ(List("cboBStatus").currentText(), u"Do Not Bill"_s);
    EXPECT_EQ(Text("txtRate"), u"20.000"_s);
    ClickButton("cmdOK");
    EXPECT_THAT(Messages.Texts(), IsEmpty());
    ASSERT_EQ(Stored().size(), 1U);
    EXPECT_EQ(Stored()[0].Hours, Currency());
    EXPECT_EQ(Stored()[0].Amount, Currency());
}

TEST_F(TypedAmounts, AMultipliedRateIsShownAndTheRateItselfIsStored)
{
    StartWith(u"CONS"_s);
    Enter("txtMultiplierCode", u"5"_s);
    Enter("txtHours", u"1.5"_s);
    EXPECT_EQ(Text("txtMultiplierCode"), u"05"_s);
    EXPECT_EQ(Text("txtMultiplierFactor"), u"1.2500"_s);
    EXPECT_EQ(Text("txtRate"), u"125.000"_s);
    EXPECT_EQ(Text("txtAmount"), u"187.50"_s);
    ClickButton("cmdOK");
    ASSERT_EQ(Stored().size(), 1U);
    EXPECT_EQ(Stored()[0].Rate, Currency::FromWhole(100));
    EXPECT_EQ(Stored()[0].Amount, Currency::FromScaled(1875000));
    EXPECT_EQ(Stored()[0].Multiplier_Number, u"05"_s);
}

TEST_F(TypedAmounts, ATypedRateCancelsTheMultiplierAndIsStoredAsTyped)
{
    StartWith(u"CONS"_s);
    Enter("txtMultiplierCode", u"11"_s);
    Enter("txtHours", u"2"_s);
    ASSERT_EQ(Text("txtRate"), u"110.000"_s);
    Enter("txtRate", u"80"_s);
    EXPECT_EQ(Text("txtMultiplierCode"), QString());
    EXPECT_EQ(Text("txtMultiplierFactor"), u"1.0000"_s);
    EXPECT_EQ(Text("txtAmount"), u"160.00"_s);
    ClickButton("cmdOK");
    ASSERT_EQ(Stored().size(), 1U);
    EXPECT_EQ(Stored()[0].Rate, Currency::FromWhole(80));
    EXPECT_EQ(Stored()[0].Multiplier_Number, QString());
    EXPECT_EQ(Stored()[0].Multiplier_Factor, Currency::FromWhole(1));
    EXPECT_EQ(Stored()[0].Rate_Overridden, u"Y"_s);
}

TEST_F(TypedAmounts, AnExpenseThatWasTimeIsNotMultiplied)
{
    StartWith(u"CONS"_s);
    Enter("txtMultiplierCode", u"05"_s);
    Enter("txtHours", u"10"_s);
    Enter("txtActivity", u"MILES"_s);
    EXPECT_FALSE(Any("txtMultiplierCode").isVisible());
    EXPECT_EQ(Text("txtRate"), u".450"_s);
    EXPECT_EQ(Text("txtAmount"), u"4.50"_s);
    ClickButton("cmdOK");
    ASSERT_EQ(Stored().size(), 1U);
    EXPECT_EQ(Stored()[0].Multiplier_Factor, Currency::FromWhole(1));
    EXPECT_EQ(Stored()[0].Amount, Currency::FromScaled(45000));
}

TEST_F(TypedAmounts, NoChargeClearsTheRateAndBillableProposesItAgain)
{
    StartWith(u"CONS"_s);
    Enter("txtMultiplierCode", u"05"_s);
    Enter("txtHours", u"2"_s);
    GoTo("cboBStatus");
    const auto pick = [&](Qt::Key key) {
        Press(Qt::Key_Down); // opens the list
        QTest::keyClick(List("cboBStatus").view(), key);
        QTest::keyClick(List("cboBStatus").view(), Qt::Key_Return);
        LetEventsRun();
    };
    pick(Qt::Key_Down);
    EXPECT_EQ(List("cboBStatus").currentText(), u"No Charge"_s);
    EXPECT_EQ(Text("txtMultiplierCode"), QString());
    EXPECT_EQ(Text("txtRate"), u".000"_s);
    EXPECT_EQ(Text("txtAmount"), u".00"_s);
    for (const char *name : {"cboBOption", "txtMultiplierCode", "cmdMultiplier", "txtRate"})
        EXPECT_FALSE(Any(name).isEnabled()) << name;
    GoTo("cboBStatus");
    pick(Qt::Key_Up);
    EXPECT_EQ(List("cboBStatus").currentText(), u"Billable"_s);
    EXPECT_EQ(List("cboBOption").currentText(), u"Activity"_s);
    EXPECT_EQ(Text("txtRate"), u"100.000"_s);
    EXPECT_EQ(Text("txtAmount"), u"200.00"_s);
    for (const char *name : {"cboBOption", "txtMultiplierCode", "cmdMultiplier", "txtRate"})
        EXPECT_TRUE(Any(name).isEnabled()) << name;
}

TEST_F(TypedAmounts, TheExpenseOfACompanyThatTakesNoneIsRemovedWithItsCost)
{
    Company.Options.Expenses = u"N"_s;
    StartWith(u"MILES"_s);
    EXPECT_THAT(Messages.Texts(), ElementsAre(u"You are not allowed to enter expenses."_s));
    EXPECT_EQ(Text("txtActivity"), QString());
    EXPECT_EQ(Focused(), u"txtActivity"_s);
    EXPECT_EQ(Control<QLabel>(Window(), "lblHours").text().remove(u'&'), u"Hours"_s);
    Enter("txtActivity", u"CONS"_s);
    Enter("txtHours", u"1"_s);
    EXPECT_EQ(Text("txtRate"), u"100.000"_s);
}
