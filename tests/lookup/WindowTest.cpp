// The lookup's window: focus, keys, the list of columns to search by, the mouse, its size.

#include "platform/Twips.h"
#include "tests/lookup/LookupFixture.h"

#include <QAbstractItemView>

using namespace Qt::StringLiterals;
using testing::Each;
using testing::ElementsAre;

namespace {

class LookupWindow : public LookupFixture
{
protected:
    void InWindowOf(int count, const std::function<void()> &steps)
    {
        Company.Customers = NumberedCustomers(count);
        Start();
        LookUp(u"Customer"_s, [&] {
            steps();
            Press("msgLookup", Qt::Key_Escape);
        });
    }
};

} // namespace

TEST_F(LookupWindow, OpensOnTheFirstRecordWithTheGridInFocus)
{
    InWindowOf(100, [this] {
        EXPECT_TRUE(Window().isModal());
        EXPECT_EQ(Focused(), u"msgLookup"_s);
        EXPECT_TRUE(Grid().isEnabled());
        EXPECT_EQ(SelectedCode(), u"C001"_s);
        ExpectOneRowAndItsRecord();
        EXPECT_EQ(Box("txtLookup").text(), QString());
    });
}

TEST_F(LookupWindow, EveryOpeningStartsAnew)
{
    Company.Customers = NumberedCustomers(100);
    Start();
    frmLookup form(*Module, Messages, Keys);
    Lookup.LookupKind = u"Customer"_s;
    WithModal([&] { form.ShowModal(); },
        [&](QWidget &window) {
            InWindow(window, [this] {
                Type("txtLookup", u"C070"_s);
                Press(Qt::Key_Escape);
            });
        });
    Lookup.LookupKind = LookupKinds::BillingRateMultiplier;
    WithModal([&] { form.ShowModal(); },
        [&](QWidget &window) {
            InWindow(window, [this] {
                EXPECT_EQ(Box("txtLookup").text(), QString());
                EXPECT_EQ(By().count(), 3);
                EXPECT_FALSE(Bar().isVisible());
                EXPECT_EQ(Bar().value(), 0);
                EXPECT_EQ(Focused(), u"msgLookup"_s);
                EXPECT_EQ(SelectedCode(), u"1"_s);
                Press(Qt::Key_Escape);
            });
        });
}

TEST_F(LookupWindow, ComingBackToItIsNoOpening)
{
    InWindowOf(100, [this] {
        Type("txtLookup", u"C070"_s);
        QWidget other(&Window(), Qt::Window); // as the help would stand over it
        ASSERT_TRUE(ShowActive(other));
        other.close();
        Window().activateWindow();
        ASSERT_TRUE(WaitUntilActive(Window()));
        EXPECT_EQ(Box("txtLookup").text(), u"C070"_s);
        EXPECT_EQ(SelectedCode(), u"C070"_s);
    });
}

TEST_F(LookupWindow, EnterInTheTextGoesOnToTheNextControlAndTabGoesRound)
{
    InWindowOf(20, [this] {
        Type("txtLookup", u"C005"_s);
        Press(Qt::Key_Return);
        EXPECT_EQ(Focused(), u"msgLookup"_s);
        EXPECT_EQ(SelectedCode(), u"C005"_s);
        QStringList visited;
        for (int i = 0; i < 6; ++i) {
            Press(Qt::Key_Tab);
            visited.append(Focused());
        }
        EXPECT_THAT(visited,
            ElementsAre(u"cboLookupBy"_s, u"cmdSelect"_s, u"cmdCancel"_s, u"cmdHelp"_s,
                u"txtLookup"_s, u"msgLookup"_s));
        Press("cboLookupBy", Qt::Key_Tab, Qt::ShiftModifier);
        EXPECT_EQ(Focused(), u"msgLookup"_s);
    });
}

TEST_F(LookupWindow, TheTextIsSelectedWhenItIsEnteredAndWhenItIsClicked)
{
    InWindowOf(20, [this] {
        QLineEdit &box = Box("txtLookup");
        Type("txtLookup", u"C005"_s);
        EXPECT_FALSE(box.hasSelectedText());
        Press("msgLookup", Qt::Key_Tab, Qt::ShiftModifier);
        EXPECT_EQ(Focused(), u"txtLookup"_s);
        EXPECT_EQ(box.selectedText(), u"C005"_s);
        QTest::keyClick(&box, Qt::Key_End);
        EXPECT_FALSE(box.hasSelectedText());
        QTest::mouseClick(&box, Qt::LeftButton, {}, {8, box.height() / 2});
        EXPECT_EQ(box.selectedText(), u"C005"_s);
    });
}

TEST_F(LookupWindow, TheGridsFrameShowsWhetherItTakesTheKeys)
{
    InWindowOf(20, [this] {
        const auto frame = [this] { return Window().grab().toImage().pixelColor(Grid().pos()); };
        const QColor focused = frame();
        EXPECT_EQ(focused, Window().palette().color(QPalette::Highlight));
        Press(Qt::Key_Tab);
        EXPECT_NE(frame(), focused);
    });
}

TEST_F(LookupWindow, KeysThatAreLeftToTheGridMoveNoRow)
{
    InWindowOf(20, [this] {
        Press("msgLookup", Qt::Key_Down);
        QTest::keyClicks(&Grid(), u"C005"_s);
        for (const Qt::Key key : {Qt::Key_Home, Qt::Key_End, Qt::Key_Space, Qt::Key_A})
            for (const auto modifiers : {Qt::NoModifier, Qt::ControlModifier})
                Press("msgLookup", key, modifiers);
        EXPECT_EQ(SelectedCode(), u"C002"_s);
        EXPECT_EQ(Grid().currentIndex().row() + 1, Grid().Row());
        ExpectOneRowAndItsRecord();
        EXPECT_EQ(Box("txtLookup").text(), QString());
        Press("msgLookup", Qt::Key_Down);
        EXPECT_EQ(SelectedCode(), u"C003"_s);
    });
}

TEST_F(LookupWindow, ALetterMovesTheChoiceAndEnterAppliesIt)
{
    InWindowOf(20, [this] {
        Press("cboLookupBy", Qt::Key_N);
        EXPECT_EQ(By().currentText(), u"Name"_s);
        EXPECT_EQ(SelectedCode(), u"C001"_s) << "not ordered yet";
        EXPECT_EQ(Focused(), u"cboLookupBy"_s);
        EXPECT_EQ(Lookup.LookupByChoice[LookupKinds::Customers], QString());
        Press(Qt::Key_Return);
        EXPECT_EQ(SelectedCode(), u"C020"_s);
        EXPECT_EQ(Lookup.LookupByChoice[LookupKinds::Customers], u"Name"_s);
        EXPECT_EQ(Focused(), u"msgLookup"_s);
        ExpectOneRowAndItsRecord();
    });
}

TEST_F(LookupWindow, LeftAndUpMoveTheChoiceAndApplyItAtOnce)
{
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Left}) {
        Lookup.LookupByChoice[LookupKinds::Customers] = u"Name"_s;
        InWindowOf(20, [&] {
            EXPECT_EQ(SelectedCode(), u"C020"_s);
            Press("cboLookupBy", key);
            EXPECT_EQ(By().currentText(), u"Customer"_s);
            EXPECT_EQ(SelectedCode(), u"C001"_s);
            EXPECT_EQ(Lookup.LookupByChoice[LookupKinds::Customers], u"Customer"_s);
            EXPECT_EQ(Focused(), u"msgLookup"_s);
        });
    }
}

TEST_F(LookupWindow, RightAndDownDropTheListWhoseEnterApplies)
{
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Right}) {
        Lookup.LookupByChoice[LookupKinds::Customers].clear();
        InWindowOf(20, [&] {
            Press("cboLookupBy", key);
            ASSERT_TRUE(By().view()->isVisible());
            EXPECT_EQ(By().currentText(), u"Customer"_s);
            QTest::keyClick(By().view(), Qt::Key_Down);
            EXPECT_EQ(SelectedCode(), u"C001"_s);
            QTest::keyClick(By().view(), Qt::Key_Return);
            LetEventsRun();
            EXPECT_FALSE(By().view()->isVisible());
            EXPECT_EQ(By().currentText(), u"Name"_s);
            EXPECT_EQ(SelectedCode(), u"C020"_s);
        });
    }
}

TEST_F(LookupWindow, APickWithTheMouseAppliesAtOnceUnlessALetterHasBeenTyped)
{
    InWindowOf(20, [this] {
        ChooseBy(u"Name"_s);
        EXPECT_EQ(SelectedCode(), u"C020"_s);
        EXPECT_EQ(Focused(), u"msgLookup"_s);
        Press("cboLookupBy", Qt::Key_X);
        ChooseBy(u"Customer"_s);
        EXPECT_EQ(By().currentText(), u"Customer"_s);
        EXPECT_EQ(SelectedCode(), u"C020"_s) << "not ordered yet";
        Press("cboLookupBy", Qt::Key_Return);
        EXPECT_EQ(SelectedCode(), u"C001"_s);
        Press("cboLookupBy", Qt::Key_X);
        ChooseBy(u"Customer"_s);
        ChooseBy(u"Name"_s);
        EXPECT_EQ(SelectedCode(), u"C020"_s) << "the first pick has used up the letter";
    });
}

TEST_F(LookupWindow, AnotherButtonDuringAClickTakesNothingAndKeepsTheDrawingOff)
{
    InWindowOf(20, [this] {
        const QPoint row = Grid().visualRect(Grid().model()->index(3, 1)).center();
        QTest::mousePress(Grid().viewport(), Qt::LeftButton, {}, row);
        QTest::mouseClick(Grid().viewport(), Qt::RightButton, {}, row);
        EXPECT_FALSE(Grid().updatesEnabled());
        EXPECT_EQ(Lookup.LookupCustomerCode, QString());
        QTest::mouseRelease(Grid().viewport(), Qt::LeftButton, {}, row);
        EXPECT_TRUE(Grid().updatesEnabled());
        EXPECT_EQ(Lookup.LookupCustomerCode, u"C004"_s);
    });
}

TEST_F(LookupWindow, OtherKeysAndTheWheelLeaveTheChoiceAlone)
{
    Lookup.LookupByChoice[LookupKinds::Customers] = u"Name"_s;
    InWindowOf(20, [this] {
        for (const Qt::Key key :
            {Qt::Key_Home, Qt::Key_PageUp, Qt::Key_Space, Qt::Key_F4, Qt::Key_End})
            Press("cboLookupBy", key);
        const QPointF at(5, 5);
        QWheelEvent wheel(at, By().mapToGlobal(at), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
            Qt::NoScrollPhase, false);
        QApplication::sendEvent(&By(), &wheel);
        EXPECT_EQ(By().currentText(), u"Name"_s);
        EXPECT_FALSE(By().view()->isVisible());
        EXPECT_EQ(Focused(), u"cboLookupBy"_s);
    });
}

TEST_F(LookupWindow, AChangeOfTheChoiceStartsFromTheFirstPage)
{
    InWindowOf(100, [this] {
        Type("txtLookup", u"C080"_s);
        EXPECT_EQ(Bar().value(), 79);
        ChooseBy(u"Name"_s);
        EXPECT_EQ(Bar().value(), 0);
        EXPECT_EQ(Module->LookupWindowStart, 0);
        EXPECT_EQ(SelectedCode(), u"C100"_s);
        ExpectOneRowAndItsRecord();
        EXPECT_EQ(Bar().maximum(), 89);
        Press("msgLookup", Qt::Key_PageDown);
        EXPECT_EQ(SelectedCode(), u"C090"_s);
    });
}

TEST_F(LookupWindow, AClickTakesTheRowAndNeitherControlNorDraggingChangesThat)
{
    InWindowOf(20, [this] {
        ClickRow(4);
        EXPECT_EQ(SelectedCode(), u"C004"_s);
        ExpectOneRowAndItsRecord();
        EXPECT_EQ(Lookup.LookupCustomerCode, u"C004"_s);

        const auto centre = [this](int row) {
            return Grid().visualRect(Grid().model()->index(row - 1, 1)).center();
        };
        QTest::mouseClick(Grid().viewport(), Qt::LeftButton, Qt::ControlModifier, centre(4));
        EXPECT_EQ(SelectedCode(), u"C004"_s);
        QTest::mouseClick(Grid().viewport(), Qt::LeftButton, Qt::ShiftModifier, centre(7));
        EXPECT_EQ(SelectedCode(), u"C007"_s);

        QTest::mousePress(Grid().viewport(), Qt::LeftButton, {}, centre(2));
        EXPECT_FALSE(Grid().updatesEnabled()) << "nothing is drawn while the button is down";
        QMouseEvent drag(QEvent::MouseMove, centre(6), Grid().viewport()->mapToGlobal(centre(6)),
            Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(Grid().viewport(), &drag);
        QTest::mouseRelease(Grid().viewport(), Qt::LeftButton, {}, centre(6));
        EXPECT_TRUE(Grid().updatesEnabled());
        EXPECT_EQ(SelectedCode(), u"C002"_s);
        ExpectOneRowAndItsRecord();
        EXPECT_EQ(Lookup.LookupCustomerCode, u"C002"_s);

        QTest::mouseClick(Grid().viewport(), Qt::RightButton, {}, centre(9));
        EXPECT_EQ(SelectedCode(), u"C002"_s);
    });
}

TEST_F(LookupWindow, ADoubleClickTakesTheRowUnderItAndOnlyTheLeftButtonMakesOne)
{
    const auto centre
        = [this](int row) { return Grid().visualRect(Grid().model()->index(row - 1, 1)).center(); };
    InWindowOf(20, [&] {
        ClickRow(4);
        for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton})
            for (const int row : {4, 9}) {
                QTest::mouseClick(Grid().viewport(), button, {}, centre(row));
                DoubleClick(*Grid().viewport(), centre(row), button);
                LetEventsRun();
            }
        EXPECT_TRUE(Window().isVisible());
        EXPECT_EQ(SelectedCode(), u"C004"_s);
        ExpectOneRowAndItsRecord();
    });
    LookUp(u"Customer"_s, [&] {
        ClickRow(4);
        // The second press has met the next row.
        DoubleClick(*Grid().viewport(), centre(5));
        LetEventsRun();
        EXPECT_FALSE(Window().isVisible());
    });
    EXPECT_TRUE(Lookup.LookupSelected);
    EXPECT_EQ(Lookup.LookupCustomerCode, u"C005"_s);
}

TEST_F(LookupWindow, AClickBesideTheRowsOrOnTheHeaderTakesNothing)
{
    InWindowOf(3, [this] {
        Lookup.LookupCustomerCode = u"X"_s;
        QTest::mouseClick(
            Grid().viewport(), Qt::LeftButton, {}, {10, Grid().viewport()->height() - 2});
        QHeaderView &header = *Grid().horizontalHeader();
        QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, {20, header.height() / 2});
        DoubleClick(*header.viewport(), {20, header.height() / 2});
        LetEventsRun();
        EXPECT_TRUE(Window().isVisible());
        EXPECT_EQ(Lookup.LookupCustomerCode, u"X"_s);
        EXPECT_EQ(SelectedCode(), u"C001"_s);
        ExpectOneRowAndItsRecord();
    });
}

TEST_F(LookupWindow, WhatTheStoreRefusesIsToldAndNothingMoves)
{
    InWindowOf(100, [this] {
        Type("txtLookup", u"C050"_s);
        Folder->Tables.Customers.Handle = 0; // as if it were not open
        QTest::keyClick(&Box("txtLookup"), Qt::Key_Backspace);
        ASSERT_EQ(Messages.Shown.size(), 1);
        EXPECT_TRUE(Messages.Shown[0].Text.startsWith(u"Error #"_s));
        EXPECT_EQ(Messages.Shown[0].Icon, MessageIcon::Exclamation);
        EXPECT_TRUE(Window().isVisible());
        EXPECT_EQ(SelectedCode(), u"C050"_s);
        ClickButton("cmdSelect");
        EXPECT_EQ(Messages.Shown.size(), 2);
        EXPECT_TRUE(Window().isVisible()) << "nothing was taken";
    });
    EXPECT_FALSE(Lookup.LookupSelected);
    EXPECT_TRUE(Lookup.LookupCancelled);
}

TEST_F(LookupWindow, HelpSendsF1)
{
    InWindowOf(3, [this] {
        const HelpKeys keys;
        ClickButton("cmdHelp");
        EXPECT_EQ(keys.Count, 1);
        Press("cmdHelp", Qt::Key_Return);
        EXPECT_EQ(keys.Count, 2);
        Press("cboLookupBy", Qt::Key_F1);
        EXPECT_EQ(keys.Count, 3);
    });
}

TEST_F(LookupWindow, TheGridFollowsTheWindowsSizeAndNothingElseMoves)
{
    InWindowOf(100, [this] {
        const char *const others[] = {"lblLookup", "txtLookup", "lblBy", "cboLookupBy", "scrLookup",
            "cmdSelect", "cmdCancel", "cmdHelp"};
        std::vector<QRect> before;
        for (const char *name : others)
            before.push_back(Control<QWidget>(Window(), name).geometry());
        for (const QSize size :
            {Window().size(), QSize(700, 500), QSize(1000, 800), Window().minimumSize()}) {
            Window().resize(size);
            LetEventsRun();
            EXPECT_EQ(Grid().width(), Window().width() - PixelsFromTwips(240, Window()));
            EXPECT_EQ(Grid().height(), static_cast<int>(Window().height() / 1.35));
            EXPECT_TRUE(Grid().geometry().contains(Bar().geometry()));
            const QWidget &status = Control<QWidget>(Window(), "StatusBar1");
            EXPECT_LT(Grid().geometry().bottom(), status.geometry().top());
            for (size_t i = 0; i < before.size(); ++i)
                EXPECT_EQ(Control<QWidget>(Window(), others[i]).geometry(), before[i]);
            const QRect last = Grid().visualRect(Grid().model()->index(10, 1));
            EXPECT_LE(last.bottom(), Grid().viewport()->height()) << "a page always fits";
        }
    });
}
