// Approving an entry and putting it on hold, with a user's clicks and keys in the main window.

#include "tests/entry/EntryWindow.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Approval : public EntryWindow
{
protected:
    Approval()
    {
        Company.Employee.Mgmt_Approver = u"Y"_s;
        Company.Employee.Approval = u"Y"_s;
        Company.Options.Mgmt_Approval_In_Use = u"Y"_s;
        Company.Options.On_Hold_In_Use = u"Y"_s;
        Company.Options.Lock_Approved = u"Y"_s;
        Add(u"CONS"_s);
    }

    void Add(const QString &activity)
    {
        Company.Entries->push_back(SampleEntry(u"0100"_s, {}, activity, QDate(2026, 3, 9),
            Currency::FromWhole(2), Currency::FromWhole(90)));
    }

    QCheckBox &Tick(const char *name) { return Control<QCheckBox>(Window(), name); }

    bool IsOpen(const char *name)
    {
        return Any(name).isEnabled()
            && Any(name).palette().color(QPalette::Base)
            == Window().palette().color(QPalette::Base);
    }

    static constexpr std::array Fields = {"txtCustomer", "txtProject", "txtActivity", "cboBStatus",
        "txtMultiplierCode", "txtHours", "txtRate", "txtDescription"};
    static constexpr std::array Buttons = {"cmdCustomer", "cmdProject", "cmdActivity"};
};

} // namespace

TEST_F(Approval, OfAnEntryWithoutHoursIsRefusedAndLeadsToTheHours)
{
    Start();
    ClickRow(1);
    GoTo("txtHours");
    Type(u"0"_s);
    ClickButton("chkApproved");
    EXPECT_THAT(Messages.Texts(), ElementsAre(u"Invalid Hours."_s));
    EXPECT_FALSE(Tick("chkApproved").isChecked());
    EXPECT_EQ(Focused(), u"txtHours"_s);
    EXPECT_EQ(Box("txtHours").selectedText(), u".00"_s);
    EXPECT_TRUE(IsOpen("txtCustomer"));
    EXPECT_TRUE(Tick("chkOnHold").isEnabled());
    EXPECT_EQ(Stored()[0].Mgmt_Approval, QString());
}

TEST_F(Approval, IsRefusedByEachMissingFieldInTurn)
{
    const std::vector<std::tuple<QString, const char *, QString>> steps = {
        {u"Invalid Customer Code."_s, "txtCustomer", u"0100"_s},
        {u"Invalid Activity Code."_s, "txtActivity", u"CONS"_s},
        {u"Invalid Hours."_s, "txtHours", u"2"_s},
    };
    Start();
    for (const auto &[message, field, text] : steps) {
        Messages.Shown.clear();
        GoTo("chkApproved");
        Press(Qt::Key_Space);
        EXPECT_THAT(Messages.Texts(), ElementsAre(message));
        EXPECT_FALSE(Tick("chkApproved").isChecked());
        ASSERT_EQ(Focused(), QString::fromLatin1(field));
        Type(text);
        Press(Qt::Key_Return);
    }
    Messages.Shown.clear();
    GoTo("chkApproved");
    Press(Qt::Key_Space);
    EXPECT_THAT(Messages.Texts(), IsEmpty());
    EXPECT_TRUE(Tick("chkApproved").isChecked());
}

TEST_F(Approval, TakesTheEntryOffHoldAndClosesEveryFieldUntilItIsTakenBack)
{
    Company.Entries->back().On_Hold = u"Y"_s;
    Start();
    ClickRow(1);
    ASSERT_TRUE(Tick("chkOnHold").isChecked());
    ClickButton("chkApproved");
    EXPECT_TRUE(Tick("chkApproved").isChecked());
    EXPECT_FALSE(Tick("chkOnHold").isChecked());
    EXPECT_FALSE(Tick("chkOnHold").isEnabled());
    for (const char *name : Fields)
        EXPECT_FALSE(Any(name).isEnabled()) << name;
    for (const char *name : Buttons)
        EXPECT_FALSE(Any(name).isEnabled()) << name;
    ClickButton("cmdOK");
    ASSERT_EQ(Stored()[0].Mgmt_Approval, u"JRD"_s);
    EXPECT_EQ(Stored()[0].On_Hold, u"N"_s);

    ClickRow(1);
    EXPECT_EQ(Focused(), u"cmdUndo"_s);
    EXPECT_FALSE(Any("txtCustomer").isEnabled());
    ClickButton("chkApproved");
    EXPECT_FALSE(Tick("chkApproved").isChecked());
    EXPECT_TRUE(Tick("chkOnHold").isEnabled());
    for (const char *name : {"txtCustomer", "txtProject", "txtActivity", "txtHours"})
        EXPECT_TRUE(IsOpen(name)) << name;
    for (const char *name : Buttons)
        EXPECT_TRUE(Any(name).isEnabled()) << name;
    ClickButton("cmdOK");
    EXPECT_EQ(Stored()[0].Mgmt_Approval, QString());
    EXPECT_EQ(Stored()[0].Sec_Approval, QString());
}

TEST_F(Approval, LeavesTheFieldsOpenWhereApprovedEntriesAreNotLocked)
{
    Company.Options.Lock_Approved = u"N"_s;
    Start();
    ClickRow(1);
    ClickButton("chkApproved");
    GoTo("txtHours");
    Type(u"3"_s);
    ClickButton("cmdOK");
    EXPECT_EQ(Stored()[0].Mgmt_Approval, u"JRD"_s);
    EXPECT_EQ(Stored()[0].Hours, Currency::FromWhole(3));
}

TEST_F(Approval, CannotBeGivenOnHoldByAnEmployeeWithoutThePermission)
{
    Company.Employee.Approval = u"N"_s;
    Start();
    ClickRow(1);
    ASSERT_TRUE(Tick("chkApproved").isEnabled());
    ClickButton("chkOnHold");
    EXPECT_FALSE(Tick("chkApproved").isEnabled());
    ClickButton("cmdOK");
    EXPECT_EQ(Stored()[0].On_Hold, u"Y"_s);
    ClickRow(1);
    EXPECT_FALSE(Tick("chkApproved").isEnabled());
    ClickButton("chkOnHold");
    EXPECT_TRUE(Tick("chkApproved").isEnabled());
    ClickButton("chkApproved");
    EXPECT_TRUE(Tick("chkApproved").isChecked());
    ClickButton("cmdOK");
    EXPECT_EQ(Stored()[0].On_Hold, u"N"_s);
    EXPECT_EQ(Stored()[0].Mgmt_Approval, u"JRD"_s);
}

TEST_F(Approval, ChecksAnUnknownCodeFirst)
{
    Start();
    ClickRow(1);
    GoTo("txtCustomer");
    Type(u"NONE"_s);
    ClickButton("chkApproved");
    EXPECT_FALSE(Tick("chkApproved").isChecked());
    EXPECT_EQ(Focused(), u"txtCustomer"_s);
    EXPECT_EQ(Box("txtCustomer").selectedText(), u"0100"_s);
    EXPECT_THAT(Messages.Texts(), IsEmpty());
}
