// Why a field is closed, where a rate has come from, and what is said of a code that is not there.

#include "entry/FieldReasons.h"
#include "figures/CodeTexts.h"
#include "tests/support/PrintQt.h"

#include <gtest/gtest.h>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

struct ClosedCase
{
    const char *Name;
    EntryControl Control;
    std::function<void(FieldFacts &)> Change; ///< from an open entry of somebody who may do all
    QString Expected;
};

void PrintTo(const ClosedCase &tested, std::ostream *out)
{
    *out << tested.Name;
}

class WhyAFieldIsClosed : public testing::TestWithParam<ClosedCase>
{
};

const QString Locked = u"The entry is approved and locked."_s;
const QString Permission = u"Your rate permission does not cover it."_s;
const QString NoData = u"There is no data yet: synchronise first."_s;

const std::vector<ClosedCase> ClosedCases = {
    {"AnOpenFieldHasNone", EntryControl::txtCustomer, [](FieldFacts &) {}, {}},
    {"WithoutData", EntryControl::txtCustomer, [](FieldFacts &f) { f.NotSynchronised = true; },
        NoData},
    {"ButtonsWithoutData", EntryControl::cmdOK, [](FieldFacts &f) { f.NotSynchronised = true; },
        NoData},
    {"NoDataComesFirst", EntryControl::txtRate,
        [](FieldFacts &f) { f.NotSynchronised = f.ApprovedAndLocked = true; }, NoData},
    {"AnApprovedEntry", EntryControl::txtDescription,
        [](FieldFacts &f) { f.ApprovedAndLocked = true; }, Locked},
    {"AnApprovedEntryBeforeThePermission", EntryControl::txtRate,
        [](FieldFacts &f) {
            f.ApprovedAndLocked = true;
            f.RatePermission = u"1"_s;
        },
        Locked},
    {"ApprovalDoesNotLockTheCompany", EntryControl::cboCompany,
        [](FieldFacts &f) { f.ApprovedAndLocked = f.EntryLoaded = true; },
        u"Press Undo first, to leave the entry."_s},
    {"NoCustomerYet", EntryControl::txtProject, [](FieldFacts &f) { f.HasCustomer = false; },
        u"Enter the customer first."_s},
    {"NoClientYet", EntryControl::cmdProject,
        [](FieldFacts &f) {
            f.HasCustomer = false;
            f.CustomerTerm = u"Client"_s;
        },
        u"Enter the client first."_s},
    {"NotBilled", EntryControl::cboBOption, [](FieldFacts &f) { f.MayBeBilled = false; },
        u"Only a billable entry has it."_s},
    {"TheCompanysSwitch", EntryControl::txtMultiplierCode,
        [](FieldFacts &f) { f.BillingSwitchOn = false; },
        u"Your company does not let it be changed."_s},
    {"ThePermissionForTheOption", EntryControl::cboBOption,
        [](FieldFacts &f) { f.RatePermission = u"2"_s; }, Permission},
    {"ThePermissionForTheRate", EntryControl::txtRate,
        [](FieldFacts &f) { f.RatePermission = u"3"_s; }, Permission},
    {"APermissionThatReachesTheMultiplier", EntryControl::cmdMultiplier,
        [](FieldFacts &f) { f.RatePermission = u"3"_s; }, {}},
    {"AnExpensesRateNeedsNoPermission", EntryControl::txtRate,
        [](FieldFacts &f) {
            f.IsExpense = true;
            f.RatePermission = u"1"_s;
        },
        {}},
    {"AnAmountAlone", EntryControl::txtHours,
        [](FieldFacts &f) { f.IsExpense = f.AmountOnly = true; },
        u"The expense is entered by its amount alone."_s},
    {"TheAmountOfTime", EntryControl::txtAmount, [](FieldFacts &) {},
        u"Computed: hours times rate times factor."_s},
    {"TheAmountOfAnExpense", EntryControl::txtAmount, [](FieldFacts &f) { f.IsExpense = true; },
        u"Computed: units times rate."_s},
    {"TheFactor", EntryControl::txtMultiplierFactor, [](FieldFacts &) {},
        u"The factor belongs to the multiplier code."_s},
    {"TheUser", EntryControl::txtUser, [](FieldFacts &) {},
        u"Accounting says who works with this computer."_s},
    {"TheCompanyWithChanges", EntryControl::cboCompany,
        [](FieldFacts &f) { f.Changed = f.EntryLoaded = true; },
        u"Save or undo the changes first."_s},
    {"ApprovingWhatIsOnHold", EntryControl::chkApproved, [](FieldFacts &f) { f.OnHold = true; },
        u"The entry is on hold."_s},
    {"ApprovingWithoutLeave", EntryControl::chkApproved, [](FieldFacts &) {},
        u"You may not approve entries."_s},
    {"HoldingWhatIsApproved", EntryControl::chkOnHold, [](FieldFacts &f) { f.Approved = true; },
        u"The entry is approved."_s},
};

struct RateCase
{
    const char *Name;
    std::function<void(EntryBeingEdited &)> Change; ///< from billable time at the customer's rate
    const char *Setting;
    RateSource Expected;
    QString Text;
};

void PrintTo(const RateCase &tested, std::ostream *out)
{
    *out << tested.Name;
}

class WhereARateComesFrom : public testing::TestWithParam<RateCase>
{
};

const std::vector<RateCase> RateCases = {
    {"Employee", [](EntryBeingEdited &e) { e.BillingOption = u"2"_s; }, "1", RateSource::Employee,
        u"The rate of the consultant."_s},
    {"EmployeeUnderAnySetting", [](EntryBeingEdited &e) { e.BillingOption = u"2"_s; }, "5",
        RateSource::Employee, u"The rate of the consultant."_s},
    {"Division", [](EntryBeingEdited &e) { e.BillingOption = u"3"_s; }, "2", RateSource::Division,
        u"The rate of the division."_s},
    {"Customer", [](EntryBeingEdited &) {}, "3", RateSource::Customer,
        u"The rate of the client."_s},
    {"Project", [](EntryBeingEdited &e) { e.BillingOption = u"5"_s; }, "1", RateSource::Project,
        u"The rate of the job number."_s},
    {"Activity", [](EntryBeingEdited &e) { e.BillingOption = u"6"_s; }, "1", RateSource::Activity,
        u"The rate of the MAS task."_s},
    {"ASettingThatTakesNoRates", [](EntryBeingEdited &) {}, "4", RateSource::Unknown, {}},
    {"Multiplied", [](EntryBeingEdited &e) { e.MultiplierFactor = Currency::FromWhole(2); }, "1",
        RateSource::Customer, u"The rate of the client, times the factor."_s},
    {"Zero", [](EntryBeingEdited &e) { e.Rate = Currency(); }, "1", RateSource::Customer,
        u"No rate: the client has none, or is not charged."_s},
    {"Typed", [](EntryBeingEdited &e) { e.RateOverridden = u"Y"_s; }, "1", RateSource::Typed,
        u"The rate was typed."_s},
    {"TypedForAnExpense",
        [](EntryBeingEdited &e) {
            e.RateOverridden = u"Y"_s;
            e.ExpenseActivity = u"Y"_s;
        },
        "1", RateSource::Typed, u"The rate was typed."_s},
    {"UnitCost", [](EntryBeingEdited &e) { e.ExpenseActivity = u"Y"_s; }, "1", RateSource::UnitCost,
        u"The unit cost of the MAS task."_s},
    {"NoActivityYet", [](EntryBeingEdited &e) { e.ActivityCode.clear(); }, "1", RateSource::None,
        {}},
    {"Application", [](EntryBeingEdited &e) { e.BillingOption = u"1"_s; }, "1", RateSource::None,
        {}},
    {"NoCharge", [](EntryBeingEdited &e) { e.BillingStatus = u"2"_s; }, "1", RateSource::None, {}},
    {"AnOptionThatNobodyKnows", [](EntryBeingEdited &e) { e.BillingOption = u"9"_s; }, "1",
        RateSource::None, {}},
};

OptionsRecord Words()
{
    OptionsRecord options;
    options.Customer_Term = u"Client"_s;
    options.Project_Term = u"Job Number"_s;
    options.Activity_Term = u"MAS Task"_s;
    options.Employee_Term = u"Consultant"_s;
    return options;
}

} // namespace

TEST_P(WhyAFieldIsClosed, IsToldInOneSentence)
{
    FieldFacts facts;
    GetParam().Change(facts);
    EXPECT_EQ(WhyClosed(GetParam().Control, facts), GetParam().Expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, WhyAFieldIsClosed, testing::ValuesIn(ClosedCases),
    [](const auto &tested) { return std::string(tested.param.Name); });

TEST_P(WhereARateComesFrom, IsToldInTheCompanysWords)
{
    EntryBeingEdited entry;
    entry.ActivityCode = u"CONS"_s;
    entry.BillingStatus = u"1"_s;
    entry.BillingOption = u"4"_s;
    entry.Rate = Currency::FromWhole(80);
    GetParam().Change(entry);
    const RateSource source = RateSourceOf(entry, QString::fromLatin1(GetParam().Setting));
    EXPECT_EQ(source, GetParam().Expected);
    EXPECT_EQ(RateSourceText(source, entry, Words()), GetParam().Text);
}

INSTANTIATE_TEST_SUITE_P(Cases, WhereARateComesFrom, testing::ValuesIn(RateCases),
    [](const auto &tested) { return std::string(tested.param.Name); });

TEST(NoSuchCode, NamesTheCodeWithTheCompanysWord)
{
    EXPECT_EQ(NoSuchCode(u"Customer"_s, u"ABD"_s), u"No customer ABD."_s);
    EXPECT_EQ(NoSuchCode(u"  Job Number "_s, u"7"_s), u"No job number 7."_s);
    EXPECT_EQ(NoSuchCode(u"WBS Element"_s, u"<B>"_s), u"No WBS element <B>."_s);
    EXPECT_EQ(NoSuchCode(QString(), u"7"_s), u"No code 7."_s);
    EXPECT_EQ(NoSuchProject(Words(), u"1000"_s, u"ABC"_s), u"No job number 1000 for client ABC."_s);
}
