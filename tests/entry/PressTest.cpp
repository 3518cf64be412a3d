// A press that leaves a box: its code is checked first, and the press then reaches only what is
// still there to be pressed.

#include "tests/entry/EntryWindow.h"
#include "tests/support/Modal.h"

#include <QAbstractItemView>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class APress : public EntryWindow
{
protected:
    APress()
    {
        Company.Options.Billing_Option_Switch = u"Y"_s;
        Company.Employee.Rate_Permission = u"4"_s;
        QApplication::setCursorFlashTime(0); // a caret that is shown does not blink
    }
    ~APress() override { QApplication::setCursorFlashTime(m_flashTime); }

    void EnterCode(const char *box, const QString &code)
    {
        GoTo(box);
        Type(code);
        Press(Qt::Key_Return);
    }

    /// A billable time entry with the focus in its activity.
    void StartInActivity()
    {
        Start();
        EnterCode("txtCustomer", u"0100"_s);
        EnterCode("txtActivity", u"CONS"_s);
        GoTo("txtActivity");
    }

    void Click(const char *name, Qt::MouseButton button)
    {
        QTest::mouseClick(&Any(name), button);
        LetEventsRun();
    }

    static bool IsOpen(const QComboBox &list) { return list.view()->isVisible(); }

private:
    int m_flashTime = QApplication::cursorFlashTime();
};

} // namespace

TEST_F(APress, OpensNoListThatItsOwnCheckHasHidden)
{
    StartInActivity();
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
        GoTo("txtActivity");
        Type(u"MILES"_s);
        Click("cboBOption", button);
        EXPECT_FALSE(List("cboBOption").isVisible());
        EXPECT_FALSE(IsOpen(List("cboBOption")));
        EXPECT_EQ(Text("txtRate"), u".450"_s);
        EnterCode("txtActivity", u"CONS"_s);
    }
}

TEST_F(APress, OpensNoListThatItsOwnCheckHasDisabled)
{
    StartInActivity();
    Type(u"TRAIN"_s); // not charged
    Click("cboBOption", Qt::LeftButton);
    EXPECT_FALSE(List("cboBOption").isEnabled());
    EXPECT_FALSE(IsOpen(List("cboBOption")));
    EXPECT_EQ(List("cboBStatus").currentText(), u"No Charge"_s);
}

TEST_F(APress, OnAFieldThatIsDisabledLeavesTheNextFieldToBeSelected)
{
    Company.Employee.Rate_Permission = u"2"_s;
    StartInActivity();
    GoTo("txtProject");
    Click("txtRate", Qt::LeftButton);
    EXPECT_FALSE(Any("txtRate").isEnabled());
    Press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(Focused(), u"txtCustomer"_s);
    EXPECT_EQ(Box("txtCustomer").selectedText(), u"0100"_s);
}

TEST_F(APress, TicksNoBoxAndOpensNoLookupThatItsOwnCheckHasHidden)
{
    StartInActivity();
    Type(u"MILES"_s);
    QTimer closing; // a lookup that opens must not hold up the test
    QObject::connect(&closing, &QTimer::timeout, &closing, [] {
        if (QWidget *dialog = QApplication::activeModalWidget()) {
            ADD_FAILURE() << dialog->objectName().toStdString() << " has opened";
            dialog->close();
        }
    });
    closing.start(0);
    ClickButton("cmdMultiplier");
    closing.stop();
    GoTo("txtHours");
    Type(u"3"_s);
    GoTo("txtActivity");
    Type(u"CONS"_s);
    ClickButton("chkReimburse");
    ClickButton("cmdOK");
    ASSERT_EQ(Stored().size(), 1U);
    EXPECT_EQ(Stored()[0].Reimburse, u"N"_s);
}

TEST_F(APress, OpensNoProjectLookupWhenTheCustomerHasBeenEmptied)
{
    StartInActivity();
    GoTo("txtCustomer");
    Press(Qt::Key_Delete);
    ClickButton("cmdProject");
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_FALSE(Any("cmdProject").isEnabled());
}

TEST_F(APress, ThatIsRefusedLeavesTheCodeSelectedWithItsCaretLikeTheTabKey)
{
    StartInActivity();
    const auto look = [&] { return Box("txtActivity").grab().toImage(); };
    Type(u"NONE"_s);
    Press(Qt::Key_Tab);
    const QImage refusedByTab = look();
    for (const char *elsewhere : {"txtDescription", "cboBStatus", "dtpDate", "cmdOK",
             "msgEntryList", "chkReimburse", "cmdProject"}) {
        SCOPED_TRACE(elsewhere);
        Type(u"NONE"_s);
        ClickButton(elsewhere);
        EXPECT_EQ(Focused(), u"txtActivity"_s);
        EXPECT_TRUE(Box("txtActivity").hasFocus());
        EXPECT_EQ(Box("txtActivity").selectedText(), u"CONS"_s);
        EXPECT_EQ(look(), refusedByTab);
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
    Type(u"TRAIN"_s);
    EXPECT_EQ(Text("txtActivity"), u"TRAIN"_s) << "in place of what was selected";
    EXPECT_THAT(Messages.Texts(), IsEmpty());
    EXPECT_THAT(Stored(), IsEmpty());
}

TEST_F(APress, OnAFieldsOwnButtonOpensItsLookupAlsoAfterAnUnknownCode)
{
    Start();
    EnterCode("txtCustomer", u"0100"_s);
    EnterCode("txtActivity", u"CONS"_s);
    for (const auto &[box, button, previous] : {std::tuple{"txtCustomer", "cmdCustomer", u"0100"_s},
             std::tuple{"txtProject", "cmdProject", QString()},
             std::tuple{"txtActivity", "cmdActivity", u"CONS"_s},
             std::tuple{"txtMultiplierCode", "cmdMultiplier", QString()}}) {
        SCOPED_TRACE(box);
        GoTo(box);
        Type(u"X"_s);
        WithModal([&] { ClickButton(button); },
            [](QWidget &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
        ASSERT_TRUE(ShowActive(Window()));
        EXPECT_EQ(Text(box), previous);
        EXPECT_EQ(Focused(), QString::fromLatin1(box));
    }
}

TEST_F(APress, OnAnotherFieldsButtonOpensNothingAfterAnUnknownCode)
{
    StartInActivity();
    Type(u"NONE"_s);
    ClickButton("cmdCustomer");
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(Text("txtActivity"), u"CONS"_s);
}

TEST_F(APress, AfterAMessageAFieldsOwnButtonOpensNothing)
{
    Company.Options.Expenses = u"N"_s;
    StartInActivity();
    Type(u"MILES"_s);
    ClickButton("cmdActivity");
    EXPECT_THAT(Messages.Texts(), ElementsAre(u"You are not allowed to enter expenses."_s));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(APress, OnTheMenuBarOpensTheMenuWhateverCodeIsBeingTyped)
{
    StartInActivity();
    Type(u"NONE"_s);
    QMenuBar &bar = *Window().menuBar();
    QMenu &options = *bar.actions().at(0)->menu();
    QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.actionGeometry(bar.actions().at(0)).center());
    LetEventsRun();
    EXPECT_TRUE(options.isVisible());
    EXPECT_EQ(Text("txtActivity"), u"NONE"_s) << "the field has not been left";
    QTest::keyClick(&options, Qt::Key_Escape);
    LetEventsRun();
    EXPECT_EQ(Text("txtActivity"), u"NONE"_s);
}
