// A new entry, a stored one, and what the window shows and opens of each.

#include "tests/entry/EntryRules.h"

#include "platform/clsRunTimeError.h"
#include "store/FieldText.h"
#include "store/StoreErrors.h"
#include "tests/support/Raised.h"

#include <utility>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using enum EntryControl;

namespace {

const QString ExpensesRefused = u"You are not allowed to enter expenses."_s;

constexpr std::array OptionFields = {lblBOption, cboBOption};
constexpr std::array MultiplierFields = {
    lblMultiplierCode, txtMultiplierCode, cmdMultiplier, lblMultiplierFactor, txtMultiplierFactor};
constexpr std::array AmountFields = {lblRate, txtRate, lblAmount, txtAmount};
constexpr std::array EditableFields = {dtpDate, txtCustomer, cmdCustomer, txtProject, cmdProject,
    txtActivity, cmdActivity, cboBStatus, cboBOption, txtMultiplierCode, cmdMultiplier, txtHours,
    txtRate, txtAmount, chkReimburse, txtDescription};

class ShowEntry : public EntryRules
{
protected:
    template <size_t Count>
    void ExpectVisible(const std::array<EntryControl, Count> &controls, bool visible)
    {
        for (const EntryControl control : controls)
            EXPECT_EQ(IsVisible(control), visible) << testing::PrintToString(control);
    }

    void ExpectLocked(bool locked)
    {
        if (locked) {
            for (const EntryControl control : EditableFields)
                EXPECT_FALSE(Screen[control].Enabled) << testing::PrintToString(control);
        } else {
            EXPECT_EQ(Look(txtCustomer), u"open"_s);
            EXPECT_EQ(Look(dtpDate), u"open"_s);
            EXPECT_EQ(Look(txtDescription), u"open"_s);
        }
    }
};

EntryRecord OfActivity(const QString &activity, const QString &status = u"1"_s)
{
    EntryRecord record = FullEntry();
    record.Activity_Number = activity;
    record.Billing_Status = status;
    return record;
}

EntryRecord Approved(const QString &mgmt, const QString &second = {})
{
    EntryRecord record = FullEntry();
    record.On_Hold = u"N"_s;
    record.Mgmt_Approval = mgmt;
    record.Sec_Approval = second;
    return record;
}

} // namespace

TEST_F(ShowEntry, ANewEntryHasItsValues)
{
    StartWith({FullEntry()});
    Rules().ClearEntry();
    EXPECT_TRUE(Rules().NewEntry);
    EXPECT_FALSE(Rules().EntryLoaded);
    EXPECT_FALSE(Rules().Changed);
    EXPECT_EQ(Entry.CustomerCode, QString());
    EXPECT_EQ(Entry.ProjectCode, QString());
    EXPECT_EQ(Entry.ActivityCode, QString());
    EXPECT_EQ(Entry.Date, WallClock(QDate(2026, 3, 9)));
    EXPECT_EQ(Entry.BillingStatus, QString());
    EXPECT_EQ(Entry.BillingStatusText, QString());
    EXPECT_EQ(Entry.MgmtApproval, QString());
    EXPECT_EQ(Entry.SecApproval, QString());
    EXPECT_EQ(Entry.OnHold, u"N"_s);
    EXPECT_EQ(Entry.BillingOption, QString());
    EXPECT_EQ(Entry.BillingOptionText, u"0"_s);
    EXPECT_EQ(Entry.MultiplierCode, QString());
    EXPECT_EQ(Entry.RateOverridden, u"N"_s);
    EXPECT_EQ(Entry.Reimburse, u"N"_s);
    EXPECT_EQ(Entry.Hours, Money(0));
    EXPECT_EQ(Entry.Rate, Money(0));
    EXPECT_EQ(Entry.Amount, Money(0));
    EXPECT_EQ(Entry.MultiplierFactor, Money(1));
    EXPECT_EQ(Entry.ExpMarkupPercent, Money(0));
    EXPECT_EQ(Entry.ExpMarkupAmount, Money(0));
    EXPECT_EQ(Entry.Description, QString());
    EXPECT_EQ(Entry.ExpenseActivity, u"N"_s);
    EXPECT_EQ(Entry.AmountOnly, u"N"_s);
}

TEST_F(ShowEntry, ANewEntryLooksEmpty)
{
    StartWith({FullEntry()});
    Rules().ClearEntry();
    EXPECT_EQ(Screen.Date, QDate(2026, 3, 9));
    for (const EntryControl box :
        {txtCustomer, txtProject, txtActivity, txtMultiplierCode, txtDescription})
        EXPECT_EQ(Text(box), QString()) << testing::PrintToString(box);
    EXPECT_EQ(Screen[cboBStatus].Index, -1);
    EXPECT_EQ(Screen[cboBOption].Index, -1);
    EXPECT_EQ(Text(txtHours), u".00"_s);
    EXPECT_EQ(Text(txtMultiplierFactor), u"1.0000"_s);
    EXPECT_EQ(Text(txtRate), u".000"_s);
    EXPECT_EQ(Text(txtAmount), u".00"_s);
    for (const EntryControl box : {chkReimburse, chkApproved, chkOnHold})
        EXPECT_FALSE(Screen[box].Checked) << testing::PrintToString(box);
    EXPECT_EQ(Focused(), dtpDate);
}

TEST_F(ShowEntry, AStoredEntryIsReadFieldByField)
{
    StartWith({FullEntry()});
    EXPECT_FALSE(Rules().NewEntry);
    EXPECT_TRUE(Rules().EntryLoaded);
    EXPECT_FALSE(Rules().Changed);
    EXPECT_EQ(Entry.CustomerCode, u"0100"_s);
    EXPECT_EQ(Entry.ProjectCode, u"AUDIT"_s);
    EXPECT_EQ(Entry.ActivityCode, u"CONS"_s);
    EXPECT_EQ(Entry.Date, WallClock(QDate(2026, 2, 3), QTime(8, 15)));
    EXPECT_EQ(Entry.BillingStatus, u"1"_s);
    EXPECT_EQ(Entry.BillingStatusText, u"Billable"_s);
    EXPECT_EQ(Entry.OnHold, u"Y"_s);
    EXPECT_EQ(Entry.BillingOption, u"4"_s);
    EXPECT_EQ(Entry.BillingOptionText, u"Customer"_s);
    EXPECT_EQ(Entry.MultiplierCode, u"05"_s);
    EXPECT_EQ(Entry.RateOverridden, u"Y"_s);
    EXPECT_EQ(Entry.Reimburse, u"Y"_s);
    EXPECT_EQ(Entry.Hours, Money(1, 50));
    EXPECT_EQ(Entry.Rate, Money(100));
    EXPECT_EQ(Entry.Amount, Money(187, 50));
    EXPECT_EQ(Entry.MultiplierFactor, Money(1, 25));
    EXPECT_EQ(Entry.ExpMarkupPercent, Money(7));
    EXPECT_EQ(Entry.ExpMarkupAmount, Money(8));
    EXPECT_EQ(Entry.Description, u"The audit"_s);
    EXPECT_EQ(Entry.ExpenseActivity, u"N"_s);
}

TEST_F(ShowEntry, AStoredEntryIsShownInItsBoxes)
{
    List.SelectedIndex = 2;
    StartWith({FullEntry()});
    EXPECT_EQ(Screen.Date, QDate(2026, 2, 3));
    EXPECT_EQ(Text(txtCustomer), u"0100"_s);
    EXPECT_EQ(Text(txtProject), u"AUDIT"_s);
    EXPECT_EQ(Text(txtActivity), u"CONS"_s);
    EXPECT_EQ(Item(cboBStatus), u"Billable"_s);
    EXPECT_EQ(Item(cboBOption), u"Customer"_s);
    EXPECT_EQ(Text(txtMultiplierCode), u"05"_s);
    EXPECT_EQ(Text(txtMultiplierFactor), u"1.2500"_s);
    EXPECT_EQ(Text(txtHours), u"1.50"_s);
    EXPECT_EQ(Text(txtRate), u"125.000"_s);
    EXPECT_EQ(Text(txtAmount), u"187.50"_s);
    EXPECT_EQ(Text(txtDescription), u"The audit"_s);
    EXPECT_TRUE(Screen[chkReimburse].Checked);
    EXPECT_TRUE(Screen[chkOnHold].Checked);
    EXPECT_THAT(
        Screen.Panels, ElementsAre(u"Record 3 of 1"_s, u"JRD"_s, u"ABC"_s, u"02/03/2026"_s));
    EXPECT_THAT(Messages.Texts(), IsEmpty());
}

TEST_F(ShowEntry, TheKindComesFromTheActivityAndIsTimeForAnUnknownOne)
{
    StartWith({OfActivity(u"MILES"_s), OfActivity(u"GONE"_s), OfActivity(u"CONS"_s)});
    EXPECT_TRUE(Entry.IsExpense());
    Rules().LoadEntry(1);
    EXPECT_FALSE(Entry.IsExpense());
    Rules().LoadEntry(2);
    EXPECT_FALSE(Entry.IsExpense());
}

TEST_F(ShowEntry, ReadsTheStoredEntryAnewAndDropsTheEdits)
{
    StartWith({FullEntry()});
    Entry.Description = u"something else"_s;
    Rules().ShowEntry();
    EXPECT_EQ(Entry.Description, u"The audit"_s);
    EXPECT_EQ(Text(txtDescription), u"The audit"_s);
}

TEST_F(ShowEntry, DoesNotReadANewEntryFromTheStore)
{
    StartWith({FullEntry()});
    Rules().ClearEntry();
    Entry.Description = u"not stored yet"_s;
    Rules().ShowEntry();
    EXPECT_EQ(Text(txtDescription), u"not stored yet"_s);
    EXPECT_EQ(Text(txtCustomer), QString());
}

TEST_F(ShowEntry, PositionZeroIsARealEntry)
{
    StartWith({FullEntry(), OfActivity(u"MILES"_s)});
    Rules().LoadEntry(1);
    Rules().LoadEntry(0);
    EXPECT_EQ(Entry.ActivityCode, u"CONS"_s);
    EXPECT_TRUE(Rules().EntryLoaded);
}

TEST_F(ShowEntry, NeverMarksTheEntryChanged)
{
    StartWith({OfActivity(u"MILES"_s), OfActivity(u"CONS"_s, u"2"_s), FullEntry()});
    for (const qint32 position : {0, 1, 2}) {
        Rules().LoadEntry(position);
        EXPECT_FALSE(Rules().Changed) << position;
        Rules().ShowEntry();
        EXPECT_FALSE(Rules().Changed) << position;
    }
}

TEST_F(ShowEntry, AStoredAmountThatIsNotTheProductIsRecomputedInMemoryOnly)
{
    EntryRecord record = FullEntry();
    record.Amount = Money(5);
    StartWith({record});
    EXPECT_EQ(Entry.Amount, Money(187, 50));
    EXPECT_EQ(Text(txtAmount), u"187.50"_s);
    EXPECT_FALSE(Rules().Changed);
    EXPECT_EQ(Stored()[0].Amount, Money(5));
}

TEST_F(ShowEntry, WithoutACustomerTheProjectIsClosedAndOutOfTheTabOrder)
{
    Start();
    EXPECT_TRUE(Screen[txtProject].ButtonFace);
    EXPECT_FALSE(Screen[txtProject].InTabOrder);
    EXPECT_FALSE(Screen[cmdProject].Enabled);
    Entry.CustomerCode = u"0100"_s;
    Rules().ShowEntry();
    EXPECT_FALSE(Screen[txtProject].ButtonFace);
    EXPECT_TRUE(Screen[txtProject].InTabOrder);
    EXPECT_TRUE(Screen[cmdProject].Enabled);
}

TEST_F(ShowEntry, TheStatusListIsFilledInCodeOrder)
{
    StartWith({FullEntry(), OfActivity(u"CONS"_s, u"3"_s), OfActivity(u"CONS"_s, u"9"_s)});
    EXPECT_THAT(
        Screen[cboBStatus].Items, ElementsAre(u"Billable"_s, u"No Charge"_s, u"Do Not Bill"_s));
    EXPECT_EQ(Screen[cboBStatus].Index, 0);
    Rules().LoadEntry(1);
    EXPECT_EQ(Screen[cboBStatus].Index, 2);
    Rules().LoadEntry(2);
    EXPECT_EQ(Screen[cboBStatus].Index, -1); // no such status
}

TEST_F(ShowEntry, WithoutAnActivityTheEntryIsTime)
{
    Start();
    Entry.ExpenseActivity = u"Y"_s;
    Rules().ShowEntry();
    EXPECT_EQ(Entry.ExpenseActivity, u"N"_s);
    EXPECT_EQ(Text(lblHours), u"Hours"_s);
}

TEST_F(ShowEntry, ShowsAndOpensTheFieldsByLevelSwitchStatusAndKind)
{
    StartWith({FullEntry()});
    for (const QString &level : {u"1"_s, u"2"_s, u"3"_s, u"4"_s}) {
        for (const QString &switched : {u"Y"_s, u"N"_s}) {
            for (const QString &status : {u""_s, u"1"_s, u"2"_s, u"3"_s}) {
                for (const QString &option : {u"1"_s, u"4"_s}) {
                    SCOPED_TRACE("level " + level.toStdString() + ", switch "
                        + switched.toStdString() + ", status " + status.toStdString() + ", option "
                        + option.toStdString());
                    Employee().Rate_Permission = level;
                    Options().Billing_Option_Switch = switched;
                    Rules().ClearEntry();
                    Entry.ActivityCode = u"CONS"_s;
                    Entry.BillingStatus = status;
                    Entry.BillingOption = option;
                    Rules().ShowEntry();

                    const bool any = level != u"1"_s;
                    ExpectVisible(OptionFields, any);
                    ExpectVisible(MultiplierFields, any && option != u"1"_s);
                    ExpectVisible(AmountFields, any && option != u"1"_s);
                    EXPECT_FALSE(IsVisible(chkReimburse));
                    EXPECT_EQ(Text(lblHours), u"Hours"_s);
                    EXPECT_EQ(Look(txtHours), u"open"_s);

                    const bool billable = status.isEmpty() || status == u"1"_s;
                    const bool opens = billable && switched == u"Y"_s;
                    const bool opensOptions = opens && (level == u"3"_s || level == u"4"_s);
                    for (const EntryControl control :
                        {cboBOption, txtMultiplierCode, cmdMultiplier}) {
                        EXPECT_EQ(Screen[control].Enabled, opensOptions);
                        EXPECT_EQ(Screen[control].ButtonFace, !opensOptions);
                    }
                    EXPECT_EQ(Screen[txtRate].Enabled, opens && level == u"4"_s);
                    EXPECT_EQ(Screen[txtRate].ButtonFace, !Screen[txtRate].Enabled);
                    EXPECT_TRUE(Screen[txtAmount].Locked);
                    EXPECT_FALSE(Screen[txtAmount].InTabOrder);
                    EXPECT_TRUE(Screen[txtAmount].ButtonFace);
                }
            }
        }
    }
}

TEST_F(ShowEntry, AnExpenseShowsRateAndAmountOnEveryLevel)
{
    StartWith({FullEntry()});
    for (const QString &level : {u"1"_s, u"2"_s, u"3"_s, u"4"_s}) {
        for (const QString &switched : {u"Y"_s, u"N"_s}) {
            for (const QString &status : {u"1"_s, u"2"_s, u"3"_s}) {
                SCOPED_TRACE("level " + level.toStdString() + ", switch " + switched.toStdString()
                    + ", status " + status.toStdString());
                Employee().Rate_Permission = level;
                Options().Billing_Option_Switch = switched;
                Rules().ClearEntry();
                Entry.ActivityCode = u"MILES"_s;
                Entry.ExpenseActivity = u"Y"_s;
                Entry.BillingStatus = status;
                Entry.BillingOption = u"1"_s;
                Rules().ShowEntry();
                ExpectVisible(OptionFields, false);
                ExpectVisible(MultiplierFields, false);
                ExpectVisible(AmountFields, true);
                EXPECT_TRUE(IsVisible(chkReimburse));
                EXPECT_EQ(Text(lblHours), u"Units"_s);
                EXPECT_EQ(Look(txtHours), u"open"_s);
                EXPECT_EQ(Look(txtRate), u"open"_s);
                EXPECT_EQ(Look(txtAmount), u"locked"_s);
                EXPECT_FALSE(Screen[txtAmount].InTabOrder);
            }
        }
    }
}

TEST_F(ShowEntry, AnAmountOnlyExpenseOpensTheAmountAndClosesTheRest)
{
    Start();
    Entry.ActivityCode = u"MILES"_s;
    Entry.ExpenseActivity = u"Y"_s;
    Entry.AmountOnly = u"Y"_s;
    Entry.Amount = Money(12, 34);
    Rules().ShowEntry();
    EXPECT_EQ(Look(txtHours), u"closed"_s);
    EXPECT_EQ(Look(txtRate), u"closed"_s);
    EXPECT_EQ(Look(txtAmount), u"open"_s);
    EXPECT_TRUE(Screen[txtAmount].InTabOrder);
    EXPECT_EQ(Text(txtAmount), u"12.34"_s); // not recomputed
    EXPECT_EQ(Entry.Amount, Money(12, 34));
    Entry.AmountOnly = u"N"_s;
    Rules().ShowEntry();
    EXPECT_EQ(Look(txtAmount), u"locked"_s);
}

TEST_F(ShowEntry, OptionApplicationHidesTheRateAndKeepsIt)
{
    EntryRecord record = FullEntry();
    record.Billing_Option = u"1"_s;
    StartWith({record});
    ExpectVisible(OptionFields, true);
    ExpectVisible(MultiplierFields, false);
    ExpectVisible(AmountFields, false);
    EXPECT_EQ(Item(cboBOption), u"Application"_s);
    EXPECT_EQ(Entry.Rate, Money(100));
}

TEST_F(ShowEntry, TheOptionListIsBlankForATimeEntryThatIsNotBillable)
{
    EntryRecord record = OfActivity(u"TRAIN"_s, u"2"_s);
    record.Billing_Option = u"0"_s;
    StartWith({record, FullEntry()});
    EXPECT_THAT(Screen[cboBOption].Items, ElementsAre(QString()));
    EXPECT_EQ(Screen[cboBOption].Index, 0);
    Rules().LoadEntry(1);
    EXPECT_THAT(Screen[cboBOption].Items,
        ElementsAre(u"Application"_s, u"Employee"_s, u"Division"_s, u"Customer"_s, u"Project"_s,
            u"Activity"_s));
    EXPECT_EQ(Screen[cboBOption].Index, 3);
}

TEST_F(ShowEntry, AHalfHourAndANegativeValueShowWithoutALeadingZero)
{
    EntryRecord record = FullEntry();
    record.Hours = Money(0, 50);
    record.Rate = Currency::FromScaled(-5000);
    record.Multiplier_Factor = Money(1);
    StartWith({record});
    EXPECT_EQ(Text(txtHours), u".50"_s);
    EXPECT_EQ(Text(txtRate), u"-.500"_s);
    EXPECT_EQ(Text(txtAmount), u"-.25"_s);
}

TEST_F(ShowEntry, ANegativeValueThatRoundsToZeroShowsWithoutASign)
{
    EntryRecord record = FullEntry();
    record.Hours = Currency::FromScaled(-49);
    record.Rate = Currency::FromScaled(4);
    record.Multiplier_Factor = Money(1);
    StartWith({record});
    EXPECT_EQ(Text(txtHours), u".00"_s);
    EXPECT_EQ(Text(txtRate), u".000"_s);
    EXPECT_EQ(Text(txtAmount), u".00"_s);
}

TEST_F(ShowEntry, AnExpenseThatIsNotAllowedIsTakenOutWithOneMessage)
{
    Company.Options.Expenses = u"N"_s;
    StartWith({OfActivity(u"MILES"_s)});
    EXPECT_THAT(Messages.Texts(), ElementsAre(ExpensesRefused));
    EXPECT_EQ(Messages.Shown[0].Icon, MessageIcon::Exclamation);
    EXPECT_EQ(Messages.Shown[0].Buttons, MessageButtons::OK);
    EXPECT_EQ(Entry.ActivityCode, QString());
    EXPECT_EQ(Text(txtActivity), QString());
    EXPECT_EQ(Entry.ExpenseActivity, u"N"_s);
    EXPECT_EQ(Entry.Rate, Money(0));
    EXPECT_EQ(Entry.Amount, Money(0));
    EXPECT_EQ(Text(txtRate), u".000"_s);
    EXPECT_TRUE(Rules().Changed);
    EXPECT_EQ(Look(cboCompany), u"closed"_s);
    EXPECT_EQ(Focused(), txtActivity);
    EXPECT_EQ(Text(lblHours), u"Hours"_s);
    EXPECT_EQ(Stored()[0].Activity_Number, u"MILES"_s);
}

TEST_F(ShowEntry, TakingOutAnExpenseRunsTheStatusRules)
{
    Company.Options.Expenses = u"N"_s;
    StartWith({OfActivity(u"MEALS"_s, u"3"_s)});
    EXPECT_EQ(Entry.BillingStatus, u"3"_s);
    EXPECT_EQ(Entry.BillingOption, u"0"_s);
    EXPECT_EQ(Entry.MultiplierCode, QString());
    EXPECT_THAT(Screen[cboBOption].Items, ElementsAre(QString()));
}

TEST_F(ShowEntry, TheNextEntryWithdrawsTheFocusRequest)
{
    Company.Options.Expenses = u"N"_s;
    StartWith({OfActivity(u"MILES"_s), FullEntry()});
    ASSERT_EQ(Focused(), txtActivity);
    Rules().LoadEntry(1);
    EXPECT_EQ(Focused(), dtpDate);
    EXPECT_EQ(Messages.Shown.size(), 1);
}

TEST_F(ShowEntry, AnApprovedExpenseThatIsLockedStays)
{
    Company.Options.Expenses = u"N"_s;
    Company.Options.Lock_Approved = u"Y"_s;
    EntryRecord record = Approved(u"JRD"_s);
    record.Activity_Number = u"MILES"_s;
    StartWith({record});
    EXPECT_THAT(Messages.Texts(), ElementsAre(ExpensesRefused));
    EXPECT_EQ(Entry.ActivityCode, u"MILES"_s);
    EXPECT_TRUE(Entry.IsExpense());
    EXPECT_EQ(Entry.Rate, Money(100));
    EXPECT_FALSE(Rules().Changed);
    ExpectLocked(true);
}

TEST_F(ShowEntry, AnApprovedExpenseThatIsNotLockedIsTakenOut)
{
    Company.Options.Expenses = u"N"_s;
    EntryRecord record = Approved(u"JRD"_s);
    record.Activity_Number = u"MILES"_s;
    for (const auto &[mgmtInUse, locks] : {std::pair(u"N"_s, u"Y"_s), std::pair(u"Y"_s, u"N"_s)}) {
        Company.Options.Mgmt_Approval_In_Use = mgmtInUse;
        Company.Options.Lock_Approved = locks;
        StartWith({record});
        EXPECT_EQ(Entry.ActivityCode, QString()) << mgmtInUse.toStdString();
        EXPECT_TRUE(Rules().Changed);
    }
}

TEST_F(ShowEntry, ARefusedExpenseThatOnlyTheSecondApprovalApprovedLosesItsActivityThoughItIsLocked)
{
    Company.Options.Expenses = u"N"_s;
    Company.Options.Billing_Option_Setting = u"1"_s;
    Company.Options.Mgmt_Approval_In_Use = Company.Options.Sec_Approval_In_Use = u"Y"_s;
    Company.Options.Lock_Approved = u"Y"_s;
    EntryRecord record = FullEntry();
    record.Activity_Number = u"MILES"_s;
    record.Mgmt_Approval = QString();
    record.Sec_Approval = u"007"_s;
    StartWith({record});
    EXPECT_THAT(Messages.Texts(), ElementsAre(u"You are not allowed to enter expenses."_s));
    EXPECT_EQ(Entry.ActivityCode, QString());
    EXPECT_EQ(Text(txtActivity), QString());
    EXPECT_FALSE(Entry.IsExpense());
    EXPECT_TRUE(Rules().Changed);
    EXPECT_TRUE(Screen[chkApproved].Checked);
    EXPECT_EQ(Look(txtActivity), u"closed"_s);
    EXPECT_EQ(Stored()[0].Activity_Number, u"MILES"_s) << "until it is saved";
}

TEST_F(ShowEntry, AfterARefusedExpenseTheStatusThatIsShownCanBePickedAgainWithoutEffect)
{
    Company.Options.Expenses = u"N"_s;
    EntryRecord record = FullEntry();
    record.Activity_Number = u"MILES"_s;
    StartWith({record});
    Screen.Focus.reset(); // the window has moved the focus
    EnterRate(u"33"_s);
    PickStatus(u"Billable"_s);
    EXPECT_EQ(Entry.Rate, Money(33));
    EXPECT_EQ(Entry.RateOverridden, u"Y"_s);
}

TEST_F(ShowEntry, ExpensesAreRefusedByTheSettingNOnly)
{
    for (const QString &setting : {u"Y"_s, u""_s, u"n"_s}) {
        Company.Options.Expenses = setting;
        StartWith({OfActivity(u"MILES"_s)});
        EXPECT_THAT(Messages.Texts(), IsEmpty()) << setting.toStdString();
        EXPECT_EQ(Entry.ActivityCode, u"MILES"_s);
    }
}

TEST_F(ShowEntry, TheApprovalBoxIsShownAndOpenedByTheEmployeeAndTheCompany)
{
    struct Row
    {
        const char *Name;
        QString MgmtInUse, MgmtApprover, SecApprover, Approval, OnHold;
        bool Visible, Enabled;
    };
    const std::vector<Row> rows = {
        {"a management approver", u"Y"_s, u"Y"_s, u"N"_s, u"Y"_s, u"N"_s, true, true},
        {"a second approver", u"Y"_s, u"N"_s, u"Y"_s, u"Y"_s, u"N"_s, true, true},
        {"no approver", u"Y"_s, u"N"_s, u"N"_s, u"Y"_s, u"N"_s, false, true},
        {"a company without approval", u"N"_s, u"Y"_s, u"Y"_s, u"Y"_s, u"N"_s, false, true},
        {"approval Y on hold", u"Y"_s, u"Y"_s, u"N"_s, u"Y"_s, u"Y"_s, true, true},
        {"approval N", u"Y"_s, u"Y"_s, u"N"_s, u"N"_s, u"N"_s, true, true},
        {"approval N on hold", u"Y"_s, u"Y"_s, u"N"_s, u"N"_s, u"Y"_s, true, false},
        {"approval neither", u"Y"_s, u"Y"_s, u"N"_s, u""_s, u"N"_s, true, false},
    };
    Start();
    for (const Row &row : rows) {
        SCOPED_TRACE(row.Name);
        Options().Mgmt_Approval_In_Use = row.MgmtInUse;
        Employee().Mgmt_Approver = row.MgmtApprover;
        Employee().Sec_Approver = row.SecApprover;
        Employee().Approval = row.Approval;
        Rules().ClearEntry();
        Entry.OnHold = row.OnHold;
        Rules().ShowEntry();
        EXPECT_EQ(IsVisible(chkApproved), row.Visible);
        if (row.Visible) {
            EXPECT_EQ(Screen[chkApproved].Enabled, row.Enabled);
        }
    }
}

TEST_F(ShowEntry, TheApprovalBoxIsTickedByEitherApprovalAndLocks)
{
    struct Row
    {
        const char *Name;
        QString MgmtInUse, SecInUse, Setting, Mgmt, Second;
        bool Ticked;
    };
    const std::vector<Row> rows = {
        {"approved", u"Y"_s, u"N"_s, u"6"_s, u"BOS"_s, u""_s, true},
        {"approved, approval not in use", u"N"_s, u"N"_s, u"1"_s, u"BOS"_s, u""_s, false},
        {"not approved", u"Y"_s, u"Y"_s, u"1"_s, u""_s, u""_s, false},
        {"second approval, setting 1", u"Y"_s, u"Y"_s, u"1"_s, u""_s, u"CEO"_s, true},
        {"second approval, setting 2", u"N"_s, u"Y"_s, u"2"_s, u""_s, u"CEO"_s, true},
        {"second approval, setting 3", u"Y"_s, u"Y"_s, u"3"_s, u""_s, u"CEO"_s, true},
        {"second approval, setting 4", u"Y"_s, u"Y"_s, u"4"_s, u""_s, u"CEO"_s, false},
        {"second approval, setting 5", u"Y"_s, u"Y"_s, u"5"_s, u""_s, u"CEO"_s, false},
        {"second approval, setting 6", u"Y"_s, u"Y"_s, u"6"_s, u""_s, u"CEO"_s, false},
        {"second approval not in use", u"Y"_s, u"N"_s, u"1"_s, u""_s, u"CEO"_s, false},
        {"both", u"Y"_s, u"Y"_s, u"1"_s, u"BOS"_s, u"CEO"_s, true},
    };
    for (const Row &row : rows) {
        for (const QString &locks : {u"Y"_s, u"N"_s}) {
            SCOPED_TRACE(row.Name);
            Company.Options.Mgmt_Approval_In_Use = row.MgmtInUse;
            Company.Options.Sec_Approval_In_Use = row.SecInUse;
            Company.Options.Billing_Option_Setting = row.Setting;
            Company.Options.Lock_Approved = locks;
            StartWith({Approved(row.Mgmt, row.Second)});
            EXPECT_EQ(Screen[chkApproved].Checked, row.Ticked);
            ExpectLocked(row.Ticked && locks == u"Y"_s);
        }
    }
}

TEST_F(ShowEntry, ALockedEntryIsFollowedByAnOpenOne)
{
    Company.Options.Lock_Approved = u"Y"_s;
    StartWith({Approved(u"BOS"_s)});
    ExpectLocked(true);
    EXPECT_TRUE(Screen[chkApproved].Enabled);
    Rules().ClearEntry();
    ExpectLocked(false);
    Entry.CustomerCode = u"0100"_s;
    Rules().ShowEntry();
    EXPECT_TRUE(Screen[txtProject].Enabled);
    EXPECT_TRUE(Screen[cmdProject].Enabled);
    EXPECT_EQ(Look(txtHours), u"open"_s);
    EXPECT_EQ(Look(cboBStatus), u"open"_s);
}

TEST_F(ShowEntry, TheOnHoldBoxIsShownWhereTheCompanyUsesIt)
{
    StartWith({FullEntry()});
    EXPECT_TRUE(IsVisible(chkOnHold));
    EXPECT_TRUE(Screen[chkOnHold].Checked);
    Options().On_Hold_In_Use = u"N"_s;
    Rules().ShowEntry();
    EXPECT_FALSE(IsVisible(chkOnHold));
}

TEST_F(ShowEntry, TickingApprovedApprovesAndTakesTheEntryOffHold)
{
    StartWith({FullEntry()});
    Tick(chkApproved, true);
    EXPECT_TRUE(Screen[chkApproved].Checked);
    EXPECT_EQ(Entry.MgmtApproval, u"JRD"_s);
    EXPECT_EQ(Entry.SecApproval, QString());
    EXPECT_EQ(Entry.OnHold, u"N"_s);
    EXPECT_FALSE(Screen[chkOnHold].Checked);
    EXPECT_FALSE(Screen[chkOnHold].Enabled);
    EXPECT_TRUE(Rules().Changed);
    ExpectLocked(false);
    EXPECT_THAT(Messages.Texts(), IsEmpty());
}

TEST_F(ShowEntry, TickingApprovedLocksWhereTheCompanyLocks)
{
    Company.Options.Lock_Approved = u"Y"_s;
    StartWith({FullEntry()});
    Tick(chkApproved, true);
    ExpectLocked(true);
    EXPECT_TRUE(Screen[chkApproved].Enabled);
}

TEST_F(ShowEntry, UntickingApprovedEmptiesBothApprovalsAndOpensTheFields)
{
    Company.Options.Lock_Approved = u"Y"_s;
    StartWith({Approved(u"BOS"_s, u"CEO"_s)});
    ExpectLocked(true);
    EXPECT_FALSE(Screen[chkOnHold].Enabled);
    Screen.Focus.reset();
    Tick(chkApproved, false);
    EXPECT_FALSE(Screen[chkApproved].Checked);
    EXPECT_EQ(Entry.MgmtApproval, QString());
    EXPECT_EQ(Entry.SecApproval, QString());
    EXPECT_TRUE(Rules().Changed);
    ExpectLocked(false);
    EXPECT_TRUE(Screen[chkOnHold].Enabled);
    EXPECT_EQ(Look(txtRate), u"open"_s);
    EXPECT_EQ(Look(txtAmount), u"locked"_s);
    EXPECT_EQ(Focused(), std::nullopt); // the focus stays on the box
}

TEST_F(ShowEntry, AnEntryThatFailsItsCheckIsNotApproved)
{
    EntryRecord record = FullEntry();
    record.Hours = Money(0);
    StartWith({record});
    Tick(chkApproved, true);
    EXPECT_FALSE(Screen[chkApproved].Checked);
    EXPECT_EQ(Entry.MgmtApproval, QString());
    EXPECT_EQ(Entry.OnHold, u"Y"_s);
    EXPECT_TRUE(Screen[chkOnHold].Checked);
    EXPECT_THAT(Messages.Texts(), ElementsAre(u"Invalid Hours."_s));
    EXPECT_EQ(Rules().FailedField, u"Hrs"_s);
    EXPECT_EQ(Focused(), txtHours);
}

TEST_F(ShowEntry, TickingOnHoldClosesTheApprovalOfWhoMayNotApprove)
{
    struct Row
    {
        QString Approval;
        bool ClosesApproval;
    };
    for (const Row &row : {Row{u"N"_s, true}, Row{u"Y"_s, false}}) {
        SCOPED_TRACE(row.Approval.toStdString());
        Company.Employee.Approval = row.Approval;
        Start();
        Tick(chkOnHold, true);
        EXPECT_EQ(Entry.OnHold, u"Y"_s);
        EXPECT_TRUE(Rules().Changed);
        EXPECT_EQ(Screen[chkApproved].Enabled, !row.ClosesApproval);
        Tick(chkOnHold, false);
        EXPECT_EQ(Entry.OnHold, u"N"_s);
        EXPECT_TRUE(Screen[chkApproved].Enabled);
    }
}

TEST_F(ShowEntry, TheCompanyListIsOpenOnAnUnchangedNewEntryOnly)
{
    StartWith({FullEntry()});
    EXPECT_EQ(Look(cboCompany), u"closed"_s);
    Rules().ClearEntry();
    EXPECT_EQ(Look(cboCompany), u"open"_s);
    Rules().FieldEdited();
    EXPECT_EQ(Look(cboCompany), u"closed"_s);
    Rules().ClearEntry();
    EXPECT_EQ(Look(cboCompany), u"open"_s);
    List.SuppressRowSelect = true;
    Rules().ClearEntry();
    EXPECT_EQ(Look(cboCompany), u"closed"_s);
}

TEST_F(ShowEntry, ACheckedCodeOfAChangedEntryDoesNotOpenTheCompanyList)
{
    Start();
    EnterCustomer(u"0100"_s);
    EXPECT_EQ(Look(cboCompany), u"closed"_s);
}

TEST_F(ShowEntry, TheFocusGoesToTheDateOrOfAnApprovedEntryToAButton)
{
    StartWith({FullEntry(), Approved(u"BOS"_s), Approved(u""_s, u"CEO"_s)});
    EXPECT_EQ(Focused(), dtpDate);
    EXPECT_FALSE(SelectsText());
    Rules().LoadEntry(1);
    EXPECT_EQ(Focused(), cmdUndo);
    Rules().LoadEntry(2); // the second approval alone counts for the tick, not for the focus
    EXPECT_EQ(Focused(), dtpDate);
}

TEST_F(ShowEntry, AnOpenDialogKeepsTheFocus)
{
    Start();
    Screen.Focus.reset();
    List.SuppressRowSelect = true;
    Rules().ClearEntry();
    EXPECT_EQ(Focused(), std::nullopt);
}

TEST_F(ShowEntry, AnEditMarksTheEntryChangedAndClosesTheCompanyList)
{
    Start();
    Screen[txtDescription].Text = u"Lunch"_s;
    Rules().TakeDescription();
    EXPECT_EQ(Entry.Description, u"Lunch"_s);
    EXPECT_TRUE(Rules().Changed);
    EXPECT_EQ(Look(cboCompany), u"closed"_s);
}

TEST_F(ShowEntry, ADateKeepsTheTimeOfDayThatWasStored)
{
    StartWith({FullEntry()});
    Screen.Date = QDate(2026, 2, 5);
    Rules().TakeDate();
    EXPECT_EQ(Entry.Date, WallClock(QDate(2026, 2, 5), QTime(8, 15)));
    EXPECT_TRUE(Rules().Changed);
}

TEST_F(ShowEntry, ReimburseIsWrittenAsYesAndNo)
{
    StartWith({OfActivity(u"MILES"_s)});
    Tick(chkReimburse, false);
    EXPECT_EQ(Entry.Reimburse, u"N"_s);
    EXPECT_TRUE(Rules().Changed);
    Tick(chkReimburse, true);
    EXPECT_EQ(Entry.Reimburse, u"Y"_s);
}

TEST_F(ShowEntry, AnEntryThatCannotBeComputedIsReportedAndStillTakesEdits)
{
    EntryRecord huge = FullEntry();
    huge.Hours = Money(2000000000);
    huge.Rate = Money(2000000000);
    StartWith({FullEntry(), huge});
    EXPECT_EQ(RaisedBy([&] { Rules().LoadEntry(1); }).Number, RunTimeErrors::Overflow);
    EXPECT_FALSE(Rules().Changed);
    Rules().FieldEdited();
    EXPECT_TRUE(Rules().Changed);
}

TEST_F(ShowEntry, AnEntryThatIsNotThereLeavesTheOneInTheEditorAsItWas)
{
    StartWith({FullEntry()});
    Screen[txtDescription].Text = u"edited"_s;
    Rules().TakeDescription();
    EXPECT_EQ(RaisedBy([&] { Rules().LoadEntry(7); }).Number, StoreErrors::BadPosition);
    EXPECT_TRUE(Rules().Changed);
    EXPECT_EQ(Entry.Description, u"edited"_s);
    Rules().SaveEntry();
    EXPECT_EQ(Stored()[0].Description, u"edited"_s);
    Rules().ClearEntry();
    EXPECT_EQ(RaisedBy([&] { Rules().LoadEntry(7); }).Number, StoreErrors::BadPosition);
    EXPECT_TRUE(Rules().NewEntry);
    EXPECT_FALSE(Rules().EntryLoaded);
}

TEST_F(ShowEntry, AnEntryThatCannotBeReadLeavesTheOneInTheEditor)
{
    EntryRecord other = FullEntry();
    other.Customer_Number = u"0200"_s;
    StartWith({FullEntry(), other});
    const RecordStore::Handle activities = std::exchange(Data().Activities.Handle, 0);
    EXPECT_EQ(RaisedBy([&] { Rules().LoadEntry(1); }).Number, StoreErrors::BadHandle);
    Data().Activities.Handle = activities;
    EXPECT_EQ(Entry.CustomerCode, u"0100"_s);
    EXPECT_EQ(Text(txtCustomer), u"0100"_s);
    Screen[txtDescription].Text = u"edited"_s;
    Rules().TakeDescription();
    Rules().SaveEntry();
    EXPECT_EQ(Stored()[0].Description, u"edited"_s);
    EXPECT_EQ(Stored()[1], other);
}

TEST_F(ShowEntry, WhileADialogIsOpenTheStoredEntryIsNotReadAnew)
{
    StartWith({FullEntry()});
    Entry.Description = u"edited"_s;
    List.SuppressRowSelect = true;
    Rules().ShowEntry();
    EXPECT_EQ(Text(txtDescription), u"edited"_s);
    List.SuppressRowSelect = false;
    Rules().ShowEntry();
    EXPECT_EQ(Text(txtDescription), u"The audit"_s);
}

TEST_F(ShowEntry, UntickingALockedExpenseThatIsNotAllowedTakesItOutAndAsksForTheActivity)
{
    Company.Options.Expenses = u"N"_s;
    Company.Options.Lock_Approved = u"Y"_s;
    EntryRecord record = Approved(u"BOS"_s);
    record.Activity_Number = u"MILES"_s;
    StartWith({record});
    Messages.Shown.clear();
    Screen.Focus.reset();
    Tick(chkApproved, false);
    EXPECT_THAT(Messages.Texts(), ElementsAre(ExpensesRefused));
    EXPECT_EQ(Entry.ActivityCode, QString());
    EXPECT_EQ(Focused(), txtActivity);
    ExpectLocked(false);
}
