// A field that is left while the menu bar has the keyboard focus is left like any other.

#include "tests/entry/EntryWindow.h"

#include <QMenuBar>
#include <QStatusBar>

using namespace Qt::StringLiterals;

namespace {

class MenuBar : public EntryWindow
{
protected:
    void StartIn(const char *box, const QString &typed)
    {
        Company.Entries = {SampleEntry(u"0100"_s, {}, u"CONS"_s, QDate(2026, 3, 2),
            Currency::FromWhole(2), Currency::FromWhole(90), u"first"_s)};
        Start();
        ClickRow(1);
        GoTo(box);
        Type(typed);
        QTest::keyClick(Window().windowHandle(), Qt::Key_Alt, Qt::AltModifier);
        LetEventsRun();
        ASSERT_EQ(Window().focusWidget(), Window().menuBar());
    }
};

} // namespace

TEST_F(MenuBar, AClickIntoAnotherFieldChecksTheCodeThatWasTyped)
{
    StartIn("txtCustomer", u"NONE"_s);
    ClickButton("txtDescription");
    EXPECT_EQ(Focused(), u"txtCustomer"_s);
    EXPECT_EQ(Text("txtCustomer"), u"0100"_s);
    ClickButton("txtDescription");
    EXPECT_EQ(Focused(), u"txtDescription"_s);
}

TEST_F(MenuBar, AMenuThatIsPassedOverLeavesTheNoticeThere)
{
    StartIn("txtCustomer", u"NONE"_s);
    ClickButton("txtDescription");
    const auto notice
        = [this] { return Control<QStatusBar>(Window(), "StatusBar1").currentMessage(); };
    const QString refusal = notice();
    ASSERT_FALSE(refusal.isEmpty());
    for (const Qt::Key key : {Qt::Key_Alt, Qt::Key_Down, Qt::Key_Right, Qt::Key_Escape}) {
        QWidget *menu = QApplication::activePopupWidget();
        QTest::keyClick((menu != nullptr ? *menu : Window()).windowHandle(), key,
            key == Qt::Key_Alt ? Qt::AltModifier : Qt::NoModifier);
        LetEventsRun();
        EXPECT_EQ(notice(), refusal) << key;
    }
}

TEST_F(MenuBar, AClickOnOkRefusesTheUnknownCodeThatWasTyped)
{
    StartIn("txtCustomer", u"NONE"_s);
    ClickButton("cmdOK");
    EXPECT_EQ(Text("txtCustomer"), u"0100"_s);
    EXPECT_EQ(Focused(), u"txtCustomer"_s);
    EXPECT_TRUE(Window().isWindowModified()) << "nothing has been saved";
    EXPECT_EQ(Stored().at(0).Customer_Number, u"0100"_s);
}

TEST_F(MenuBar, AClickOnOkSavesTheCodeThatWasTyped)
{
    StartIn("txtCustomer", u"0200"_s);
    ClickButton("cmdOK");
    EXPECT_EQ(Stored().at(0).Customer_Number, u"0200"_s);
}

TEST_F(MenuBar, YesToTheQuestionOfAnotherRowSavesTheCodeThatWasTyped)
{
    StartIn("txtCustomer", u"0200"_s);
    Messages.Answers = {MessageAnswer::Yes};
    ClickRow(1);
    EXPECT_EQ(Stored().at(0).Customer_Number, u"0200"_s);
}

TEST_F(MenuBar, YesToTheQuestionOfTheClosingWindowSavesTheCodeThatWasTyped)
{
    StartIn("txtCustomer", u"0200"_s);
    Messages.Answers = {MessageAnswer::Yes};
    Window().close();
    EXPECT_EQ(Stored().at(0).Customer_Number, u"0200"_s);
}
