// The keyboard flow through the fields of the window.

#include "tests/entry/EntryWindow.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QMenu>
#include <QMenuBar>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Keyboard : public EntryWindow
{
protected:
    Keyboard()
    {
        Company.Options.Billing_Option_Switch = u"Y"_s;
        Company.Options.Billing_Option_Setting = u"1"_s;
        Company.Options.Project_Required = u"N"_s;
        Company.Employee.Rate_Permission = u"4"_s;
    }

    void EnterCode(const QString &code)
    {
        Type(code);
        Press(Qt::Key_Return);
    }
};

} // namespace

TEST_F(Keyboard, CodeEnterCodeEnterHoursEnterTextOk)
{
    Start();
    ASSERT_EQ(Focused(), u"dtpDate"_s);
    Press(Qt::Key_Return);
    ASSERT_EQ(Focused(), u"txtCustomer"_s);
    EnterCode(u"0100"_s);
    ASSERT_EQ(Focused(), u"txtProject"_s);
    EnterCode(u"audit"_s);
    ASSERT_EQ(Focused(), u"txtActivity"_s);
    EnterCode(u"cons"_s);
    ASSERT_EQ(Focused(), u"txtHours"_s);
    EXPECT_EQ(Text("txtProject"), u"AUDIT"_s);
    EXPECT_EQ(List("cboBStatus").currentText(), u"Billable"_s);
    EXPECT_EQ(List("cboBOption").currentText(), u"Activity"_s);
    EXPECT_EQ(Text("txtRate"), u"90.000"_s);
    EnterCode(u"1.5"_s);
    ASSERT_EQ(Focused(), u"txtDescription"_s);
    EXPECT_EQ(Text("txtHours"), u"1.50"_s);
    EXPECT_EQ(Text("txtAmount"), u"135.00"_s);
    Type(u"The audit"_s);
    ClickButton("cmdOK");
    ASSERT_EQ(Stored().size(), 1U);
    const EntryRecord entry = Stored()[0];
    EXPECT_EQ(entry.Customer_Number, u"0100"_s);
    EXPECT_EQ(entry.Project_Number, u"AUDIT"_s);
    EXPECT_EQ(entry.Activity_Number, u"CONS"_s);
    EXPECT_EQ(entry.Date, QDateTime(QDate(2026, 3, 9), QTime(0, 0), Qt::UTC));
    EXPECT_EQ(entry.Billing_Status, u"1"_s);
    EXPECT_EQ(entry.Billing_Option, u"6"_s);
    EXPECT_EQ(entry.Hours, Currency::FromScaled(15000));
    EXPECT_EQ(entry.Rate, Currency::FromWhole(90));
    EXPECT_EQ(entry.Amount, Currency::FromWhole(135));
    EXPECT_EQ(entry.Description, u"The audit"_s);
    EXPECT_EQ(Text("txtCustomer"), QString()) << "a new entry follows";
    EXPECT_EQ(Focused(), u"dtpDate"_s);
    EXPECT_TRUE(List("cboCompany").isEnabled());
}

TEST_F(Keyboard, EnterInAnEmptyCodeMovesOnWithoutACheck)
{
    Start();
    GoTo("txtCustomer");
    Press(Qt::Key_Return);
    EXPECT_NE(Focused(), u"txtCustomer"_s);
    EXPECT_THAT(Messages.Texts(), IsEmpty());
}

TEST_F(Keyboard, EnterInAnUntouchedCodeMovesOnEvenIfItIsInvalid)
{
    Company.Entries->push_back(
        SampleEntry(u"GONE"_s, {}, u"CONS"_s, QDate(2026, 3, 9), Currency::FromWhole(1)));
    Start();
    ClickRow(1);
    GoTo("txtCustomer");
    Press(Qt::Key_Return);
    EXPECT_EQ(Focused(), u"txtProject"_s);
    EXPECT_EQ(Text("txtCustomer"), u"GONE"_s);
}

TEST_F(Keyboard, AnUnknownCodeComesBackSelectedAndKeepsTheFocusOnEnterAndTab)
{
    Start();
    GoTo("txtCustomer");
    EnterCode(u"0100"_s);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Tab, Qt::Key_Backtab}) {
        GoTo("txtCustomer");
        Type(u"none"_s);
        Press(key, key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
        EXPECT_EQ(Focused(), u"txtCustomer"_s);
        EXPECT_EQ(Text("txtCustomer"), u"0100"_s);
        EXPECT_EQ(Box("txtCustomer").selectedText(), u"0100"_s);
        GoTo("txtDescription");
    }
    EXPECT_THAT(Messages.Texts(), IsEmpty());
}

TEST_F(Keyboard, APressThatLeavesAnUnknownCodeIsNotCarriedOut)
{
    Start();
    GoTo("txtCustomer");
    Type(u"none"_s);
    ClickButton("cmdOK");
    EXPECT_THAT(Messages.Texts(), IsEmpty()) << "OK would have complained about the customer";
    EXPECT_EQ(Focused(), u"txtCustomer"_s);
    ClickButton("cmdOK");
    EXPECT_THAT(Messages.Texts(), ElementsAre(u"Invalid Customer Code."_s));
}

TEST_F(Keyboard, CodesArriveInUpperCaseAlsoWhenPasted)
{
    Start();
    GoTo("txtActivity");
    QApplication::clipboard()->setText(u"trän-x1"_s);
    Press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Text("txtActivity"), u"TRäN-X1"_s);
}

TEST_F(Keyboard, FocusByKeyboardSelectsTheCodeAndByMouseDoesNot)
{
    Start();
    GoTo("txtCustomer");
    EnterCode(u"0100"_s);
    GoTo("txtDescription");
    GoTo("txtCustomer");
    EXPECT_EQ(Box("txtCustomer").selectedText(), u"0100"_s);
    GoTo("txtDescription");
    ClickButton("txtCustomer");
    EXPECT_EQ(Box("txtCustomer").selectedText(), QString());
}

TEST_F(Keyboard, ADescriptionEnteredFromTheKeyboardIsContinuedAndNotReplaced)
{
    Company.Options.On_Hold_In_Use = u"Y"_s;
    Start();
    GoTo("txtDescription");
    Type(u"The audit"_s);
    for (const char *from : {"txtHours", "chkOnHold", "cmdOK"}) {
        Box("txtDescription").home(false);
        GoTo(from);
        const bool back = QLatin1String(from) == "cmdOK"_L1;
        Press(back ? Qt::Key_Backtab : Qt::Key_Tab, back ? Qt::ShiftModifier : Qt::NoModifier);
        ASSERT_EQ(Focused(), u"txtDescription"_s) << from;
        EXPECT_EQ(Box("txtDescription").selectedText(), QString()) << from;
        EXPECT_EQ(Box("txtDescription").cursorPosition(), Text("txtDescription").size()) << from;
    }
    Type(u"."_s);
    EXPECT_EQ(Text("txtDescription"), u"The audit."_s);
}

TEST_F(Keyboard, APressInAFieldCountsForTheNextOneToo)
{
    Start();
    GoTo("txtCustomer");
    EnterCode(u"0100"_s);
    EnterCode(u"audit"_s);
    GoTo("txtActivity");
    ClickButton("txtActivity"); // has the focus already
    Press(Qt::Key_Backtab, Qt::ShiftModifier);
    ASSERT_EQ(Focused(), u"txtProject"_s);
    EXPECT_EQ(Box("txtProject").selectedText(), QString());
    Press(Qt::Key_Backtab, Qt::ShiftModifier);
    ASSERT_EQ(Focused(), u"txtCustomer"_s);
    EXPECT_EQ(Box("txtCustomer").selectedText(), u"0100"_s) << "once";
}

TEST_F(Keyboard, APressThatGivesTheFocusCountsForItsOwnFieldOnly)
{
    Start();
    GoTo("txtCustomer");
    EnterCode(u"0100"_s);
    EnterCode(u"audit"_s);
    ClickButton("txtActivity"); // from the hours or the activity
    GoTo("txtDescription");
    ClickButton("txtActivity");
    ASSERT_EQ(Focused(), u"txtActivity"_s);
    Press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(Box("txtProject").selectedText(), u"AUDIT"_s);
}

TEST_F(Keyboard, APressInTheDescriptionDoesNotReachTheNextEntry)
{
    Start();
    GoTo("txtCustomer");
    EnterCode(u"0100"_s);
    EnterCode({});
    EnterCode(u"cons"_s);
    EnterCode(u"1"_s);
    ClickButton("txtDescription");
    ClickButton("txtDescription");
    QTest::keyClick(&Window(), Qt::Key_U, Qt::AltModifier);
    ASSERT_TRUE(QTest::qWaitFor([&] { return Text("txtCustomer").isEmpty(); }));
    ASSERT_EQ(Focused(), u"dtpDate"_s);
    auto &date = Control<QDateEdit>(Window(), "dtpDate");
    Press(Qt::Key_Up);
    EXPECT_EQ(date.date(), QDate(2026, 4, 9));
    EXPECT_FALSE(List("cboCompany").isEnabled()) << "the change is the entry's";
}

TEST_F(Keyboard, TabFromActivityGoesToHoursAndFromHoursToTheDescription)
{
    Start();
    GoTo("txtActivity");
    Press(Qt::Key_Tab);
    EXPECT_EQ(Focused(), u"txtHours"_s);
    Type(u"2"_s);
    Press(Qt::Key_Tab);
    EXPECT_EQ(Focused(), u"txtDescription"_s);
    EXPECT_EQ(Text("txtHours"), u"2.00"_s);
}

TEST_F(Keyboard, ShiftTabGoesBackPlainly)
{
    Start();
    GoTo("txtCustomer");
    EnterCode(u"0100"_s);
    GoTo("txtHours");
    Press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(Focused(), u"txtMultiplierCode"_s);
    GoTo("txtActivity");
    Press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(Focused(), u"txtProject"_s);
}

TEST_F(Keyboard, EnterInTheRateAppliesItAndMovesOn)
{
    Start();
    GoTo("txtCustomer");
    EnterCode(u"0100"_s);
    EnterCode({});
    EnterCode(u"cons"_s);
    EnterCode(u"2"_s);
    GoTo("txtRate");
    EnterCode(u"80"_s);
    EXPECT_EQ(Text("txtRate"), u"80.000"_s);
    EXPECT_EQ(Text("txtAmount"), u"160.00"_s);
    EXPECT_NE(Focused(), u"txtRate"_s);
}

TEST_F(Keyboard, ListsCannotBeTypedIntoAndOpenOnDownAndRight)
{
    Start();
    QComboBox &list = List("cboBStatus");
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Right}) {
        GoTo("cboBStatus");
        Type(u"n"_s);
        EXPECT_EQ(list.currentText(), QString());
        Press(key);
        EXPECT_TRUE(list.view()->isVisible());
        QTest::keyClick(list.view(), Qt::Key_Escape);
        LetEventsRun();
    }
}

TEST_F(Keyboard, AStatusPickedFromTheListIsTheEntrysAndClearsItsRate)
{
    Start();
    GoTo("txtActivity");
    EnterCode(u"cons"_s);
    GoTo("cboBStatus");
    Press(Qt::Key_Down);
    QTest::keyClick(List("cboBStatus").view(), Qt::Key_Down);
    QTest::keyClick(List("cboBStatus").view(), Qt::Key_Return);
    LetEventsRun();
    EXPECT_EQ(List("cboBStatus").currentText(), u"No Charge"_s);
    EXPECT_EQ(Text("txtRate"), u".000"_s);
    EXPECT_FALSE(Any("txtRate").isEnabled());
    EXPECT_EQ(List("cboBOption").currentText(), QString());
}

TEST_F(Keyboard, TabAndShiftTabLeaveAListAndUpMovesItsChoice)
{
    Start();
    GoTo("txtActivity");
    EnterCode(u"train"_s); // no charge
    GoTo("cboBStatus");
    Press(Qt::Key_Up);
    EXPECT_EQ(List("cboBStatus").currentText(), u"Billable"_s);
    Press(Qt::Key_Down);
    QTest::keyClick(List("cboBStatus").view(), Qt::Key_Down);
    QTest::keyClick(List("cboBStatus").view(), Qt::Key_Return);
    LetEventsRun();
    ASSERT_EQ(List("cboBStatus").currentText(), u"No Charge"_s);
    Press(Qt::Key_Left);
    EXPECT_EQ(List("cboBStatus").currentText(), u"Billable"_s) << "Left moves like Up";
    Press(Qt::Key_Tab);
    EXPECT_NE(Focused(), u"cboBStatus"_s);
    GoTo("cboBStatus");
    Press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(Focused(), u"txtActivity"_s);
}

TEST_F(Keyboard, TheFirstEditClosesTheCompanyListWithTheBackgroundOfButtons)
{
    Start();
    EXPECT_TRUE(List("cboCompany").isEnabled());
    GoTo("txtCustomer");
    Type(u"0"_s);
    EXPECT_FALSE(List("cboCompany").isEnabled());
    EXPECT_EQ(List("cboCompany").palette().color(QPalette::Base),
        Window().palette().color(QPalette::Button));
}

TEST_F(Keyboard, EnterInACheckBoxMovesOn)
{
    Company.Options.On_Hold_In_Use = u"Y"_s;
    Start();
    GoTo("chkOnHold");
    Press(Qt::Key_Return);
    EXPECT_EQ(Focused(), u"txtDescription"_s);
    EXPECT_FALSE(Control<QCheckBox>(Window(), "chkOnHold").isChecked());
}

TEST_F(Keyboard, EscapeClosesAnUnchangedWindowWithoutAQuestion)
{
    Start();
    Press(Qt::Key_Escape);
    EXPECT_FALSE(Window().isVisible());
    EXPECT_THAT(Messages.Texts(), IsEmpty());
}

TEST_F(Keyboard, EscapeInTheMenuBarLeavesTheMenuBarAlone)
{
    Start();
    GoTo("txtCustomer");
    Type(u"0"_s);
    QMenuBar &menus = *Window().menuBar();
    QTest::keyClick(Window().windowHandle(), Qt::Key_Alt, Qt::AltModifier);
    LetEventsRun();
    ASSERT_EQ(Window().focusWidget(), &menus);
    QTest::keyClick(Window().windowHandle(), Qt::Key_Escape);
    LetEventsRun();
    EXPECT_TRUE(Window().isVisible());
    EXPECT_THAT(Messages.Texts(), IsEmpty());
    EXPECT_EQ(Focused(), u"txtCustomer"_s);
    EXPECT_EQ(Text("txtCustomer"), u"0"_s);
    Press(Qt::Key_Return);
    EXPECT_EQ(Text("txtCustomer"), QString()) << "the code is still to be checked";
}

TEST_F(Keyboard, EscapeInAnOpenMenuClosesTheMenuAlone)
{
    Start();
    QTest::keyClick(Window().windowHandle(), Qt::Key_Alt, Qt::AltModifier);
    QTest::keyClick(Window().windowHandle(), Qt::Key_Down);
    LetEventsRun();
    auto &menu = Control<QMenu>(Window(), "mnuOptions");
    ASSERT_TRUE(menu.isVisible());
    for (int i = 0; i < 3 && QApplication::focusWidget() != nullptr; ++i) {
        QWidget *popup = QApplication::activePopupWidget();
        QTest::keyClick(popup != nullptr ? popup : QApplication::focusWidget(), Qt::Key_Escape);
        LetEventsRun();
        if (Focused() == u"dtpDate"_s)
            break;
    }
    EXPECT_FALSE(menu.isVisible());
    EXPECT_TRUE(Window().isVisible());
    EXPECT_EQ(Focused(), u"dtpDate"_s);
}

TEST_F(Keyboard, EscapeAsksAboutChangesAndCancelStays)
{
    Start();
    GoTo("txtDescription");
    Type(u"x"_s);
    Messages.Answers = {MessageAnswer::Cancel, MessageAnswer::No};
    Press(Qt::Key_Escape);
    EXPECT_TRUE(Window().isVisible());
    EXPECT_EQ(Text("txtDescription"), u"x"_s);
    Press(Qt::Key_Escape);
    EXPECT_FALSE(Window().isVisible());
    EXPECT_EQ(Messages.Shown.size(), 2);
    EXPECT_THAT(Stored(), IsEmpty());
}

TEST_F(Keyboard, ClosingWithARefusedSaveStays)
{
    Start();
    GoTo("txtDescription");
    Type(u"x"_s);
    Messages.Answers = {MessageAnswer::Yes};
    Window().close();
    EXPECT_TRUE(Window().isVisible());
    EXPECT_EQ(Messages.Shown.size(), 2);
}

TEST_F(Keyboard, TheSaveQuestionsYesTakesInTheBoxWithTheFocus)
{
    Start();
    GoTo("txtCustomer");
    EnterCode(u"0100"_s);
    EnterCode({});
    EnterCode(u"cons"_s);
    Type(u"3"_s); // still in the hours
    Messages.Answers = {MessageAnswer::Yes};
    Press(Qt::Key_Escape);
    EXPECT_FALSE(Window().isVisible());
    ASSERT_EQ(Stored().size(), 1U);
    EXPECT_EQ(Stored()[0].Hours, Currency::FromWhole(3));
    EXPECT_EQ(Stored()[0].Amount, Currency::FromWhole(270));
}

TEST_F(Keyboard, TheSaveQuestionsYesTakesInAHalfTypedDate)
{
    Company.Entries->push_back(
        SampleEntry(u"0100"_s, {}, u"CONS"_s, QDate(2026, 3, 9), Currency::FromWhole(1)));
    Start();
    ClickRow(1);
    GoTo("txtDescription");
    Type(u"x"_s);
    GoTo("dtpDate");
    Type(u"1"_s); // could still become October to December
    Messages.Answers = {MessageAnswer::Yes};
    Press(Qt::Key_Escape);
    EXPECT_FALSE(Window().isVisible());
    EXPECT_EQ(Stored()[0].Date.date(), QDate(2026, 1, 9));
}

TEST_F(Keyboard, TheTabOrderIsTheOrderOfTheFields)
{
    Company.Options.On_Hold_In_Use = u"Y"_s;
    Start();
    GoTo("txtCustomer");
    EnterCode(u"0100"_s); // opens the project
    QStringList order;
    QWidget *control = &Any("cboCompany");
    for (int i = 0; i < 200; ++i) {
        if ((control->focusPolicy() & Qt::TabFocus) && !control->objectName().startsWith(u"qt_"_s))
            order.append(control->objectName());
        control = control->nextInFocusChain();
        if (control == &Any("cboCompany"))
            break;
    }
    EXPECT_THAT(order,
        ElementsAre(u"cboCompany"_s, u"msgEntryList"_s, u"dtpDate"_s, u"txtCustomer"_s,
            u"txtProject"_s, u"txtActivity"_s, u"cboBStatus"_s, u"cboBOption"_s,
            u"txtMultiplierCode"_s, u"txtHours"_s, u"txtRate"_s, u"chkReimburse"_s,
            u"chkApproved"_s, u"chkOnHold"_s, u"txtDescription"_s, u"cmdOK"_s, u"cmdUndo"_s,
            u"cmdDel"_s, u"cmdHrsSumm"_s, u"cmdTransFilter"_s, u"cmdSync"_s, u"cmdHelp"_s));
}

TEST_F(Keyboard, TheGridTakesItsShareOfTheWindowOnEveryResize)
{
    Start();
    for (const QSize size : {QSize(1000, 700), QSize(1200, 900)}) {
        Window().resize(size);
        LetEventsRun();
        const int margin = qRound(540 * Window().logicalDpiX() / 1440.0);
        EXPECT_NEAR(Grid().width(), size.width() - margin, 1);
        EXPECT_NEAR(Grid().height(), size.height() / 2.85, 1);
    }
}
