// The drop-down lists of the window under a user's keys and clicks: they cannot be typed into,
// neither closed nor open, and what they show is what is saved.

#include "tests/entry/EntryWindow.h"

#include <QAbstractItemView>
#include <QDir>

using namespace Qt::StringLiterals;
using testing::IsEmpty;

namespace {

class DropDowns : public EntryWindow
{
protected:
    DropDowns()
    {
        Company.Options.Billing_Option_Switch = u"Y"_s;
        Company.Options.Billing_Option_Setting = u"1"_s;
        Company.Employee.Rate_Permission = u"4"_s;
    }

    void EnterCode(const char *box, const QString &code)
    {
        GoTo(box);
        Type(code);
        Press(Qt::Key_Return);
    }

    /// A billable time entry of one hour at a rate of 90, the focus in its billing status.
    void StartInStatus()
    {
        Start();
        EnterCode("txtCustomer", u"0100"_s);
        EnterCode("txtActivity", u"CONS"_s);
        Type(u"1"_s);
        GoTo("cboBStatus");
    }

    bool IsOpen(const char *list) { return List(list).view()->isVisible(); }

    /// A key while the list is open goes where the window system would send it.
    void PressInOpened(const char *list, Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(List(list).view(), key, modifiers);
        LetEventsRun();
    }

    void OpenWithMouse(const char *list)
    {
        QTest::mouseClick(&List(list), Qt::LeftButton);
        LetEventsRun();
        ASSERT_TRUE(IsOpen(list));
    }

    void PickWithMouse(const char *name, const QString &text)
    {
        OpenWithMouse(name);
        QAbstractItemView &view = *List(name).view();
        const QModelIndex item = view.model()->index(List(name).findText(text), 0);
        // The list takes no click for a moment, so that the one that opened it picks nothing.
        ASSERT_TRUE(QTest::qWaitFor([&] {
            QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(item).center());
            LetEventsRun();
            return !IsOpen(name);
        }));
        EXPECT_EQ(List(name).currentText(), text);
    }

    QString Status() { return List("cboBStatus").currentText(); }
    void ExpectRate(const QString &rate) { EXPECT_EQ(Text("txtRate"), rate); }
};

} // namespace

TEST_F(DropDowns, APickIsAppliedAtOnceAlsoWhenItsKeyCameLongBefore)
{
    StartInStatus();
    PickWithMouse("cboBStatus", u"No Charge"_s);
    ExpectRate(u".000"_s);
    PickWithMouse("cboBStatus", u"Billable"_s);
    ExpectRate(u"90.000"_s);
    Press(Qt::Key_X);
    Press(Qt::Key_Down); // the typed key no longer counts
    PressInOpened("cboBStatus", Qt::Key_Down);
    PressInOpened("cboBStatus", Qt::Key_Return);
    EXPECT_EQ(Status(), u"No Charge"_s);
    ExpectRate(u".000"_s);
}

TEST_F(DropDowns, APickAfterATypedKeyWaitsUntilTheListIsLeft)
{
    StartInStatus();
    Press(Qt::Key_X);
    EXPECT_EQ(Status(), u"Billable"_s);
    PickWithMouse("cboBStatus", u"No Charge"_s);
    ExpectRate(u"90.000"_s);
    Press(Qt::Key_Tab);
    ExpectRate(u".000"_s);
    EXPECT_EQ(Status(), u"No Charge"_s);
    ClickButton("cmdOK");
    ASSERT_EQ(Stored().size(), 1U);
    EXPECT_EQ(Stored()[0].Billing_Status, u"2"_s);
    EXPECT_EQ(Stored()[0].Rate, Currency());
}

TEST_F(DropDowns, OnlyTheFirstPickAfterATypedKeyWaits)
{
    StartInStatus();
    Press(Qt::Key_X);
    PickWithMouse("cboBStatus", u"No Charge"_s);
    ExpectRate(u"90.000"_s);
    PickWithMouse("cboBStatus", u"Do Not Bill"_s);
    ExpectRate(u".000"_s);
}

TEST_F(DropDowns, APickThatWaitsIsSavedByEveryWayOfSaving)
{
    for (const bool withMouse : {true, false}) {
        StartInStatus();
        Press(Qt::Key_X);
        PickWithMouse("cboBStatus", u"No Charge"_s);
        if (withMouse) {
            ClickButton("cmdOK");
        } else {
            Messages.Answers = {MessageAnswer::Yes};
            Press(Qt::Key_Escape);
        }
        ASSERT_EQ(Stored().size(), 1U);
        EXPECT_EQ(Stored()[0].Billing_Status, u"2"_s);
        EXPECT_EQ(Stored()[0].Rate, Currency());
        Program.reset();
        for (const QString &name : QDir(Folder.path()).entryList({u"*.db"_s}))
            QFile::remove(Folder.filePath(name));
    }
}

TEST_F(DropDowns, APickThatWaitsIsAppliedByEnter)
{
    StartInStatus();
    Press(Qt::Key_X);
    PickWithMouse("cboBStatus", u"No Charge"_s);
    Press(Qt::Key_Return);
    ExpectRate(u".000"_s);
    EXPECT_EQ(Focused(), u"cboBStatus"_s);
}

TEST_F(DropDowns, AnOptionThatWaitedDoesNotTakeTheFocusFromWhereTheUserGoes)
{
    StartInStatus();
    GoTo("cboBOption");
    Press(Qt::Key_X);
    PickWithMouse("cboBOption", u"Customer"_s);
    ExpectRate(u"90.000"_s);
    ClickButton("txtDescription");
    ExpectRate(u"100.000"_s);
    EXPECT_EQ(Focused(), u"txtDescription"_s);
}

TEST_F(DropDowns, ATypedKeyInOneListDoesNotHoldBackAPickInAnother)
{
    StartInStatus();
    Press(Qt::Key_X);
    PickWithMouse("cboBOption", u"Customer"_s);
    ExpectRate(u"100.000"_s);
}

TEST_F(DropDowns, AnOpenListCannotBeTypedInto)
{
    StartInStatus();
    for (const Qt::Key key : {Qt::Key_D, Qt::Key_N, Qt::Key_Space, Qt::Key_End, Qt::Key_PageDown}) {
        Press(Qt::Key_Down);
        ASSERT_TRUE(IsOpen("cboBStatus"));
        PressInOpened("cboBStatus", key);
        ASSERT_TRUE(IsOpen("cboBStatus")) << key;
        PressInOpened("cboBStatus", Qt::Key_Return);
        EXPECT_FALSE(IsOpen("cboBStatus"));
        EXPECT_EQ(Status(), u"Billable"_s) << key;
    }
    ExpectRate(u"90.000"_s);
}

TEST_F(DropDowns, RightAndLeftMoveInAnOpenListLikeDownAndUp)
{
    StartInStatus();
    Press(Qt::Key_Right);
    PressInOpened("cboBStatus", Qt::Key_Right);
    EXPECT_TRUE(IsOpen("cboBStatus"));
    PressInOpened("cboBStatus", Qt::Key_Right);
    EXPECT_TRUE(IsOpen("cboBStatus"));
    PressInOpened("cboBStatus", Qt::Key_Left);
    EXPECT_TRUE(IsOpen("cboBStatus"));
    PressInOpened("cboBStatus", Qt::Key_Return);
    EXPECT_EQ(Status(), u"No Charge"_s);
    ExpectRate(u".000"_s);
}

TEST_F(DropDowns, TabAndShiftTabLeaveAnOpenListWithWhatItHighlights)
{
    StartInStatus();
    Press(Qt::Key_Down);
    PressInOpened("cboBStatus", Qt::Key_Tab);
    EXPECT_FALSE(IsOpen("cboBStatus"));
    EXPECT_EQ(Focused(), u"cboBOption"_s);
    EXPECT_EQ(Status(), u"Billable"_s);
    ExpectRate(u"90.000"_s);
    GoTo("cboBStatus");
    Press(Qt::Key_Down);
    PressInOpened("cboBStatus", Qt::Key_Down);
    PressInOpened("cboBStatus", Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_FALSE(IsOpen("cboBStatus"));
    EXPECT_EQ(Focused(), u"txtActivity"_s);
    EXPECT_EQ(Status(), u"No Charge"_s);
    ExpectRate(u".000"_s);
}

TEST_F(DropDowns, TabOutOfAListThatWasOnlyOpenedPicksNothing)
{
    Start();
    GoTo("cboBStatus");
    Press(Qt::Key_Down);
    PressInOpened("cboBStatus", Qt::Key_Tab);
    EXPECT_FALSE(IsOpen("cboBStatus"));
    EXPECT_EQ(Status(), QString());
    EXPECT_NE(Focused(), u"cboBStatus"_s);
    EXPECT_FALSE(Window().isWindowModified());
}

TEST_F(DropDowns, EscapeClosesAnOpenListAndKeepsItsItem)
{
    StartInStatus();
    Press(Qt::Key_Down);
    PressInOpened("cboBStatus", Qt::Key_Down);
    PressInOpened("cboBStatus", Qt::Key_Escape);
    EXPECT_FALSE(IsOpen("cboBStatus"));
    EXPECT_TRUE(Window().isVisible());
    EXPECT_EQ(Status(), u"Billable"_s);
    EXPECT_THAT(Messages.Texts(), IsEmpty());
}

TEST_F(DropDowns, TheCompanyListIsNoMoreTypedIntoThanTheOthers)
{
    Start();
    GoTo("cboCompany");
    Press(Qt::Key_X);
    Press(Qt::Key_Down);
    ASSERT_TRUE(IsOpen("cboCompany"));
    PressInOpened("cboCompany", Qt::Key_A);
    EXPECT_TRUE(IsOpen("cboCompany"));
    PressInOpened("cboCompany", Qt::Key_Tab);
    EXPECT_FALSE(IsOpen("cboCompany"));
    EXPECT_NE(Focused(), u"cboCompany"_s);
    EXPECT_EQ(List("cboCompany").currentText(), u"ABC"_s);
}
