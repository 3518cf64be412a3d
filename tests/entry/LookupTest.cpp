// The lookup and the filter as the main window opens them: what every way out leaves in the entry
// and in the list.

#include "entry/EntryColumn.h"
#include "tests/entry/EntryWindow.h"
#include "tests/entry/OtherProgram.h"
#include "tests/support/Modal.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QDate Monday(2026, 3, 9);

class EntryLookups : public EntryWindow
{
protected:
    EntryLookups()
    {
        Company.Options.Billing_Option_Switch = u"Y"_s;
        Company.Employee.Rate_Permission = u"4"_s;
    }

    void InDialog(const std::function<void()> &open, const std::function<void(QWidget &)> &steps)
    {
        WithModal(open, [&](QWidget &dialog) {
            dialog.activateWindow(); // from the main window
            EXPECT_TRUE(QTest::qWaitFor([&] { return dialog.isActiveWindow(); }));
            steps(dialog);
        });
        Window().activateWindow();
        EXPECT_TRUE(WaitUntilActive(Window()));
        LetEventsRun();
    }

    static clsGrid &ListOf(QWidget &dialog) { return Control<clsGrid>(dialog, "msgLookup"); }
    static void ClickRecord(QWidget &dialog, int row)
    {
        clsGrid &grid = ListOf(dialog);
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {},
            grid.visualRect(grid.model()->index(row - 1, 1)).center());
    }
    static void Click(QWidget &dialog, const char *button)
    {
        QTest::mouseClick(&Control<QPushButton>(dialog, button), Qt::LeftButton);
    }

    void EnterCode(const char *box, const QString &code)
    {
        GoTo(box);
        Type(code);
        Press(Qt::Key_Return);
    }

    /// Picks that code in the lookup that the button opens.
    void PickWith(const char *button, const QString &code)
    {
        InDialog([&] { ClickButton(button); },
            [&](QWidget &dialog) {
                clsGrid &grid = ListOf(dialog);
                for (int row = 1; row < grid.Rows(); ++row) {
                    if (grid.TextMatrix(row, 1) == code)
                        ClickRecord(dialog, row);
                }
                Click(dialog, "cmdSelect");
            });
    }

    void ExpectChanged(bool changed) { EXPECT_EQ(Window().isWindowModified(), changed); }

    QString FileOfEntries() const { return Folder.path() + u"/ABCEntries-WkLg.db"_s; }
};

} // namespace

TEST_F(EntryLookups, HoursAreTypedRightAfterALookedUpActivity)
{
    Start();
    GoTo("txtActivity");
    InDialog([this] { Press(Qt::Key_F2); },
        [](QWidget &dialog) { QTest::keyClick(&ListOf(dialog), Qt::Key_Return); });
    EXPECT_EQ(Focused(), u"txtHours"_s);
    EXPECT_EQ(Box("txtHours").selectedText(), u".00"_s);
    Type(u"7.5"_s);
    EXPECT_EQ(Text("txtHours"), u"7.5"_s) << "in place of what stood there, by the box's own mask";
}

TEST_F(EntryLookups, ACodeTypedAfterALookupIsCheckedAgainstTheOneLookedUp)
{
    Start();
    GoTo("txtCustomer");
    Type(u"02"_s);
    InDialog([this] { Press(Qt::Key_F2); },
        [](QWidget &dialog) { QTest::keyClick(&ListOf(dialog), Qt::Key_Return); });
    EXPECT_EQ(Text("txtCustomer"), u"0200"_s);
    GoTo("txtCustomer");
    Type(u"NONE"_s);
    Press(Qt::Key_Return);
    EXPECT_EQ(Text("txtCustomer"), u"0200"_s);
    EXPECT_EQ(Focused(), u"txtCustomer"_s);
}

TEST_F(EntryLookups, TextThatACancelledF2LeavesIsCheckedOnEnter)
{
    Start();
    GoTo("txtActivity");
    Type(u"tr"_s);
    InDialog([this] { Press(Qt::Key_F2); },
        [](QWidget &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_EQ(Text("txtActivity"), u"TR"_s);
    EXPECT_EQ(Box("txtActivity").selectedText(), u"TR"_s);
    Press(Qt::Key_Return);
    EXPECT_EQ(Text("txtActivity"), QString());
    EXPECT_EQ(Focused(), u"txtActivity"_s);
}

TEST_F(EntryLookups, ALookedUpCustomerTakesTheFormerOnesProjectAway)
{
    Start();
    EnterCode("txtCustomer", u"0100"_s);
    EnterCode("txtProject", u"AUDIT"_s);
    InDialog([this] { ClickButton("cmdCustomer"); },
        [](QWidget &dialog) {
            ClickRecord(dialog, 2);
            Click(dialog, "cmdSelect");
        });
    EXPECT_EQ(Text("txtCustomer"), u"0200"_s);
    EXPECT_EQ(Text("txtProject"), QString());
    EXPECT_EQ(Focused(), u"txtProject"_s);
    InDialog([this] { ClickButton("cmdProject"); },
        [](QWidget &dialog) {
            EXPECT_EQ(Control<QLabel>(dialog, "Panel1").text(), u"Found 1 record"_s);
            QTest::keyClick(&ListOf(dialog), Qt::Key_Return);
        });
    EXPECT_EQ(Text("txtProject"), u"AUDIT"_s);
    EXPECT_EQ(Focused(), u"txtActivity"_s);
}

TEST_F(EntryLookups, UnitsHaveTheirFiveDigitsAsSoonAsAnExpenseIsLookedUp)
{
    Start();
    EnterCode("txtCustomer", u"0100"_s);
    EnterCode("txtActivity", u"CONS"_s);
    ASSERT_EQ(Focused(), u"txtHours"_s);
    PickWith("cmdActivity", u"MILES"_s);
    ASSERT_EQ(Focused(), u"txtHours"_s);
    Press(Qt::Key_A, Qt::ControlModifier);
    Type(u"250"_s);
    EXPECT_EQ(Text("txtHours"), u"250"_s);
    ClickButton("cmdOK");
    ASSERT_EQ(Stored().size(), 1U);
    EXPECT_EQ(Stored()[0].Hours, Currency::FromWhole(250));
}

TEST_F(EntryLookups, HoursKeepToTwoDigitsAsSoonAsATimeActivityIsLookedUp)
{
    Start();
    EnterCode("txtCustomer", u"0100"_s);
    EnterCode("txtActivity", u"MILES"_s);
    ASSERT_EQ(Focused(), u"txtHours"_s);
    PickWith("cmdActivity", u"CONS"_s);
    ASSERT_EQ(Focused(), u"txtHours"_s);
    Press(Qt::Key_A, Qt::ControlModifier);
    Type(u"12345"_s);
    EXPECT_EQ(Text("txtHours"), u"12"_s);
    ClickButton("cmdOK");
    ASSERT_EQ(Stored().size(), 1U);
    EXPECT_EQ(Stored()[0].Hours, Currency::FromWhole(12));
}

TEST_F(EntryLookups, AMultiplierBringsItsFactorAndLeadsToTheHours)
{
    Company.Multipliers = {SampleMultiplier(u"01"_s, u"Standard"_s, Currency::FromWhole(1)),
        SampleMultiplier(u"02"_s, u"Overtime"_s, Currency::FromScaled(15000))};
    Start();
    EnterCode("txtActivity", u"CONS"_s);
    GoTo("txtHours");
    Type(u"2"_s);
    InDialog([this] { ClickButton("cmdMultiplier"); },
        [](QWidget &dialog) {
            EXPECT_EQ(dialog.windowTitle(), u"Billing Rate Multiplier Lookup"_s);
            ClickRecord(dialog, 2);
            Click(dialog, "cmdSelect");
        });
    EXPECT_EQ(Text("txtMultiplierCode"), u"02"_s);
    EXPECT_EQ(Text("txtMultiplierFactor"), u"1.5000"_s);
    EXPECT_EQ(Text("txtAmount"), u"270.00"_s);
    EXPECT_EQ(Focused(), u"txtHours"_s);
}

TEST_F(EntryLookups, AfterALookedUpMultiplierItsBoxIsEnteredLikeAnyOther)
{
    Company.Multipliers = {SampleMultiplier(u"02"_s, u"Overtime"_s, Currency::FromScaled(15000))};
    Start();
    EnterCode("txtCustomer", u"0100"_s);
    EnterCode("txtActivity", u"CONS"_s);
    PickWith("cmdMultiplier", u"02"_s);
    ASSERT_EQ(Focused(), u"txtHours"_s);
    Press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(Focused(), u"txtMultiplierCode"_s);
    GoTo("txtHours");
    Type(u"1"_s);
    ClickButton("cmdOK");
    ASSERT_EQ(Stored().size(), 1U);

    EnterCode("txtCustomer", u"0100"_s);
    EnterCode("txtActivity", u"CONS"_s);
    ClickButton("txtMultiplierCode");
    ASSERT_EQ(Focused(), u"txtMultiplierCode"_s);
    Type(u"02"_s);
    EXPECT_EQ(Text("txtMultiplierCode"), u"02"_s);
    EXPECT_EQ(Text("txtHours"), u".00"_s);
    GoTo("cboBOption");
    Press(Qt::Key_Tab);
    EXPECT_EQ(Focused(), u"txtMultiplierCode"_s);
}

TEST_F(EntryLookups, ACancelledLookupLeavesAClickedProjectAndMultiplierInTheEntry)
{
    Start();
    EnterCode("txtCustomer", u"0100"_s);
    EnterCode("txtActivity", u"CONS"_s);
    for (const char *button : {"cmdProject", "cmdMultiplier"})
        InDialog([&] { ClickButton(button); },
            [](QWidget &dialog) {
                ClickRecord(dialog, 2);
                Click(dialog, "cmdCancel");
            });
    EXPECT_EQ(Text("txtProject"), QString()) << "the box is not drawn anew";
    GoTo("txtHours");
    Type(u"1"_s);
    ClickButton("cmdOK");
    ASSERT_EQ(Stored().size(), 1U);
    EXPECT_EQ(Stored()[0].Project_Number, u"MOVE"_s);
    EXPECT_EQ(Stored()[0].Multiplier_Number, u"2"_s);
}

TEST_F(EntryLookups, ACancelledLookupLeavesNoClickedCustomerOrActivityAndGoesBackToItsBox)
{
    Start();
    EnterCode("txtCustomer", u"0100"_s);
    EnterCode("txtActivity", u"CONS"_s);
    struct Case
    {
        const char *Button;
        const char *Box;
        QString Code;
    };
    for (const Case &c : {Case{"cmdCustomer", "txtCustomer", u"0100"_s},
             Case{"cmdActivity", "txtActivity", u"CONS"_s}}) {
        GoTo("txtDescription");
        InDialog([&] { ClickButton(c.Button); },
            [](QWidget &dialog) {
                ClickRecord(dialog, 2);
                dialog.close(); // as its title bar does
            });
        EXPECT_EQ(Text(c.Box), c.Code);
        EXPECT_EQ(Focused(), QString::fromLatin1(c.Box));
        EXPECT_EQ(Box(c.Box).selectedText(), c.Code);
    }
    GoTo("txtHours");
    Type(u"1"_s);
    ClickButton("cmdOK");
    ASSERT_EQ(Stored().size(), 1U);
    EXPECT_EQ(Stored()[0].Customer_Number, u"0100"_s);
    EXPECT_EQ(Stored()[0].Activity_Number, u"CONS"_s);
}

TEST_F(EntryLookups, ACancelledLookupIsNoEdit)
{
    Start();
    InDialog([this] { ClickButton("cmdCustomer"); },
        [](QWidget &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_TRUE(List("cboCompany").isEnabled());
    Press(Qt::Key_Escape);
    EXPECT_FALSE(Window().isVisible());
    EXPECT_THAT(Messages.Texts(), IsEmpty());
}

TEST_F(EntryLookups, SelectInAnEmptyListChangesNothing)
{
    Company.Activities.clear();
    Start();
    const auto selectNothing = [](QWidget &dialog) {
        EXPECT_EQ(ListOf(dialog).Rows(), 1);
        Click(dialog, "cmdSelect");
    };
    InDialog([this] { ClickButton("cmdActivity"); }, selectNothing);
    EXPECT_TRUE(List("cboCompany").isEnabled()) << "an entry that was not edited";
    EXPECT_EQ(Focused(), u"txtActivity"_s);
    Type(u"px"_s);
    InDialog([this] { Press(Qt::Key_F2); }, selectNothing);
    EXPECT_EQ(Text("txtActivity"), u"PX"_s) << "what was typed is still to be checked";
    EXPECT_EQ(Focused(), u"txtActivity"_s);
    Press(Qt::Key_Return);
    EXPECT_EQ(Text("txtActivity"), QString());
}

TEST_F(EntryLookups, AnExpenseThatIsNotAllowedIsRefusedWhenItIsLookedUp)
{
    Company.Options.Expenses = u"N"_s;
    Start();
    GoTo("txtActivity");
    Type(u"mil"_s);
    InDialog([this] { Press(Qt::Key_F2); },
        [](QWidget &dialog) { QTest::keyClick(&ListOf(dialog), Qt::Key_Return); });
    EXPECT_THAT(Messages.Texts(), ElementsAre(u"You are not allowed to enter expenses."_s));
    EXPECT_EQ(Text("txtActivity"), QString());
    EXPECT_EQ(Focused(), u"txtActivity"_s);
}

TEST_F(EntryLookups, AProjectPickedForTheFilterDoesNotStayInTheEntry)
{
    Start();
    for (const char *leave : {"cmdCancel", "cmdOK"}) {
        InDialog([this] { ClickButton("cmdTransFilter"); },
            [&](QWidget &dialog) {
                auto &customer = Control<QLineEdit>(dialog, "txtCustomer");
                customer.selectAll();
                QTest::keyClicks(&customer, u"0100"_s);
                QTest::keyClick(&customer, Qt::Key_Return);
                WithModal([&] { Click(dialog, "cmdProject"); },
                    [](QWidget &lookup) { QTest::keyClick(&ListOf(lookup), Qt::Key_Return); });
                EXPECT_EQ(Control<QLineEdit>(dialog, "txtProject").text(), u"AUDIT"_s);
                Click(dialog, leave);
            });
        EnterCode("txtCustomer", u"0100"_s);
        EXPECT_EQ(Text("txtProject"), QString()) << leave;
        ClickButton("cmdUndo");
    }
}

TEST_F(EntryLookups, TheListIsReadAnewAfterTheFilterUnlessItWasCancelledAlone)
{
    Company.Entries = std::vector{
        SampleEntry(u"0100"_s, u"AUDIT"_s, u"CONS"_s, Monday, Currency::FromWhole(1))};
    Start();
    OtherProgram other(FileOfEntries());
    int expected = 1;
    const auto anotherEntryMeanwhile = [&](const std::vector<const char *> &buttons) {
        InDialog([this] { ClickButton("cmdTransFilter"); },
            [&](QWidget &dialog) {
                other.Execute(
                    "INSERT INTO \"ABCEntries-WkLg\" SELECT * FROM \"ABCEntries-WkLg\" LIMIT 1");
                for (const char *button : buttons)
                    Click(dialog, button);
            });
    };
    anotherEntryMeanwhile({"cmdCancel"});
    EXPECT_EQ(Grid().Rows() - 1, expected);
    expected = 3; // what the opening read, and what came meanwhile
    anotherEntryMeanwhile({"cmdOK"});
    EXPECT_EQ(Grid().Rows() - 1, expected);
    anotherEntryMeanwhile({"cmdClear", "cmdCancel"});
    EXPECT_EQ(Grid().Rows() - 1, ++expected);
    anotherEntryMeanwhile({"cmdCancel"});
    EXPECT_EQ(Grid().Rows() - 1, expected) << "a former Clear does not count";
    expected = 6;
    anotherEntryMeanwhile({"cmdOK"});
    EXPECT_EQ(Grid().Rows() - 1, expected) << "a former Cancel does not count";
}

TEST_F(EntryLookups, AClearedFilterThatIsSetAgainAndCancelledStaysCleared)
{
    Company.Entries
        = std::vector{SampleEntry(u"0100"_s, u"AUDIT"_s, u"CONS"_s, Monday, Currency::FromWhole(1)),
            SampleEntry(u"0200"_s, u"AUDIT"_s, u"CONS"_s, Monday, Currency::FromWhole(2))};
    Start();
    InDialog([this] { ClickButton("cmdTransFilter"); },
        [](QWidget &dialog) {
            QTest::keyClicks(&Control<QLineEdit>(dialog, "txtCustomer"), u"0200"_s);
            Click(dialog, "cmdOK");
        });
    EXPECT_THAT(Column(EntryColumn::Hours), ElementsAre(u"2.00"_s));
    InDialog([this] { ClickButton("cmdTransFilter"); },
        [](QWidget &dialog) {
            EXPECT_EQ(Control<QLineEdit>(dialog, "txtCustomer").text(), u"0200"_s);
            Click(dialog, "cmdClear");
            QTest::keyClicks(&Control<QLineEdit>(dialog, "txtCustomer"), u"0100"_s);
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
    EXPECT_THAT(Column(EntryColumn::Hours), ElementsAre(u"1.00"_s, u"2.00"_s));
}
