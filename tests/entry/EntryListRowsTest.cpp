// What is highlighted in the list is what is in the editor, whatever the mouse and the keys do.

#include "tests/entry/EntryListWindow.h"
#include "tests/entry/OtherProgram.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QString SaveQuestion = u"Do you want to save changes?"_s;

class EntryListRows : public EntryListWindow
{
protected:
    void Change()
    {
        GoTo("txtDescription");
        Press(Qt::Key_End);
        Type(u"!"_s);
        ASSERT_TRUE(Window().isWindowModified());
    }

    QString FileOfEntries() const { return Folder.path() + u"/ABCEntries-WkLg.db"_s; }
};

} // namespace

TEST_F(EntryListRows, OnlyTheLeftButtonChoosesARow)
{
    AddHours({"1", "2", "3", "4"});
    StartList();
    ClickCell(2, Qt::LeftButton);
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton, Qt::BackButton}) {
        ClickCell(4, button);
        ExpectLoaded(2, 1);
    }
    Watched.Answers = {MessageAnswer::Yes};
    ClickButton("cmdDel");
    QStringList left;
    for (const EntryRecord &entry : Stored())
        left.append(entry.Description);
    EXPECT_THAT(left, ElementsAre(Number(0), Number(2), Number(3)));
}

TEST_F(EntryListRows, ModifiersDoNotChangeWhatAClickDoes)
{
    AddHours({"1", "2", "3", "4"});
    StartList();
    ClickCell(2, Qt::LeftButton, Qt::ControlModifier);
    ExpectLoaded(2, 1);
    ClickCell(2, Qt::LeftButton, Qt::ControlModifier);
    ExpectLoaded(2, 1);
    ClickCell(4, Qt::LeftButton, Qt::ShiftModifier);
    ExpectLoaded(4, 3);
}

TEST_F(EntryListRows, APressThatIsReleasedInAnotherRowChoosesNone)
{
    AddHours({"1", "2", "3", "4"});
    StartList();
    Drag(Cell(1), Cell(3));
    ExpectNoRow();
    ClickCell(2, Qt::LeftButton);
    Drag(Cell(3), Cell(4));
    ExpectLoaded(2, 1);
    Drag(Cell(3), {Cell(3).x(), -40});
    ExpectLoaded(2, 1);
    PressInList(Qt::Key_Down);
    ExpectLoaded(3, 2);
}

TEST_F(EntryListRows, APressThatSlipsOverACellsBorderChoosesItsRow)
{
    AddHours({"1", "2", "3"});
    StartList();
    Drag(Cell(3, EntryColumn::Date), Cell(3, EntryColumn::Customer));
    ExpectLoaded(3, 2);
    Drag(Cell(1, EntryColumn::Amount), Cell(1, EntryColumn::Project));
    ExpectLoaded(1, 0);
}

TEST_F(EntryListRows, ARowIsHighlightedWhenTheButtonComesUpAndNotBefore)
{
    AddHours({"1", "2", "3"});
    StartList();
    ClickCell(1, Qt::LeftButton);
    QTest::mousePress(Grid().viewport(), Qt::LeftButton, {}, Cell(3));
    LetEventsRun();
    ExpectLoaded(1, 0);
    QTest::mouseRelease(Grid().viewport(), Qt::LeftButton, {}, Cell(3));
    LetEventsRun();
    ExpectLoaded(3, 2);
}

TEST_F(EntryListRows, ADoubleClickIsOneClick)
{
    Company.Options.Expenses = u"N"_s;
    Add(u"CONS"_s, Monday, "1");
    Add(u"MILES"_s, Monday, "2");
    StartList();
    QWidget &viewport = *Grid().viewport();
    QTest::mouseClick(&viewport, Qt::LeftButton, {}, Cell(2));
    QTest::mouseDClick(&viewport, Qt::LeftButton, {}, Cell(2));
    QTest::mouseRelease(&viewport, Qt::LeftButton, {}, Cell(2));
    LetEventsRun();
    EXPECT_THAT(Watched.Texts(), ElementsAre(u"You are not allowed to enter expenses."_s));
    ExpectLoaded(2, 1);
}

TEST_F(EntryListRows, ASecondQuickClickInAnotherRowChoosesThatRow)
{
    AddHours({"1", "2", "3"});
    StartList();
    QWidget &viewport = *Grid().viewport();
    QTest::mouseClick(&viewport, Qt::LeftButton, {}, Cell(1));
    // The system sends the second press of two quick ones as a double click.
    QTest::mouseDClick(&viewport, Qt::LeftButton, {}, Cell(2));
    QTest::mouseRelease(&viewport, Qt::LeftButton, {}, Cell(2));
    LetEventsRun();
    ExpectLoaded(2, 1);
}

TEST_F(EntryListRows, ASecondQuickClickInARowAfterAHeadingChoosesTheRow)
{
    AddHours({"3", "2"});
    StartList();
    ClickHeader(EntryColumn::Hours);
    QTest::mouseDClick(Grid().viewport(), Qt::LeftButton, {}, Cell(2));
    QTest::mouseRelease(Grid().viewport(), Qt::LeftButton, {}, Cell(2));
    LetEventsRun();
    EXPECT_THAT(Column(EntryColumn::Hours), ElementsAre(u"2.00"_s, u"3.00"_s));
    ExpectLoaded(2, 0);
}

TEST_F(EntryListRows, TwoQuickClicksOnAHeadingSortUpAndThenDown)
{
    AddHours({"2", "3", "1"});
    StartList();
    ClickHeader(EntryColumn::Hours);
    QHeaderView &header = *Grid().horizontalHeader();
    const QPoint heading(
        header.sectionViewportPosition(EntryColumn::Hours) + 5, header.height() / 2);
    QTest::mouseDClick(header.viewport(), Qt::LeftButton, {}, heading);
    QTest::mouseRelease(header.viewport(), Qt::LeftButton, {}, heading);
    LetEventsRun();
    EXPECT_THAT(Column(EntryColumn::Hours), ElementsAre(u"3.00"_s, u"2.00"_s, u"1.00"_s));
}

TEST_F(EntryListRows, AClickOutsideOfTheRowsMovesNothing)
{
    AddHours({"1", "2"});
    StartList();
    ClickCell(2, Qt::LeftButton);
    const QRect viewport = Grid().viewport()->rect();
    ASSERT_LT(Grid().rowViewportPosition(1) + Grid().rowHeight(1), viewport.height() - 4);
    for (const Qt::KeyboardModifiers modifiers : {Qt::NoModifier, Qt::ControlModifier}) {
        QTest::mouseClick(
            Grid().viewport(), Qt::LeftButton, modifiers, {20, viewport.height() - 2});
        LetEventsRun();
        ExpectLoaded(2, 1);
    }
    Drag({20, viewport.height() - 2}, Cell(1));
    ExpectLoaded(2, 1);
}

TEST_F(EntryListRows, PageKeysHomeAndEndLoadTheRowTheyReach)
{
    AddMany(40);
    StartList();
    PressInList(Qt::Key_PageDown);
    const int page = Highlighted();
    EXPECT_EQ(page, Grid().viewport()->height() / Grid().rowHeight(0));
    ExpectLoaded(page, page - 1);
    PressInList(Qt::Key_PageDown);
    ExpectLoaded(2 * page, 2 * page - 1);
    PressInList(Qt::Key_PageUp);
    ExpectLoaded(page, page - 1);
    for (const Qt::KeyboardModifiers modifiers : {Qt::NoModifier, Qt::ControlModifier}) {
        PressInList(Qt::Key_End, modifiers);
        ExpectLoaded(40, 39);
        EXPECT_EQ(Grid().rowAt(Grid().viewport()->height() - Grid().rowHeight(0)), 39)
            << "the row is scrolled into view";
        PressInList(Qt::Key_Home, modifiers);
        ExpectLoaded(1, 0);
        EXPECT_EQ(TopRow(), 1);
    }
    PressInList(Qt::Key_PageUp);
    ExpectLoaded(1, 0);
    PressInList(Qt::Key_End);
    PressInList(Qt::Key_PageDown);
    ExpectLoaded(40, 39);
}

TEST_F(EntryListRows, OtherKeysMoveNothing)
{
    AddMany(30);
    StartList();
    ClickCell(2, Qt::LeftButton);
    GoTo("msgEntryList");
    QTest::keyClicks(&Grid(), u"0Ac"_s);
    for (const Qt::Key key :
        {Qt::Key_Space, Qt::Key_A, Qt::Key_Left, Qt::Key_Right, Qt::Key_F2, Qt::Key_Select})
        for (const Qt::KeyboardModifiers modifiers :
            {Qt::NoModifier, Qt::ControlModifier, Qt::ShiftModifier}) {
            PressInList(key, modifiers);
            ExpectLoaded(2, 1);
        }
    PressInList(Qt::Key_Down);
    ExpectLoaded(3, 2);
}

TEST_F(EntryListRows, LeftAndRightShowWhatLiesBesideTheVisibleColumns)
{
    AddHours({"1", "2"});
    StartList();
    Window().resize(Window().minimumSizeHint());
    Grid().setMaximumWidth(300);
    LetEventsRun();
    ClickCell(2, Qt::LeftButton);
    PressInList(Qt::Key_Right);
    EXPECT_GT(Grid().horizontalScrollBar()->value(), 0);
    PressInList(Qt::Key_Left);
    EXPECT_EQ(Grid().horizontalScrollBar()->value(), 0);
    ExpectLoaded(2, 1);
}

TEST_F(EntryListRows, TheFirstDownLoadsTheFirstRow)
{
    AddHours({"1", "2", "3"});
    StartList();
    ExpectNoRow();
    GoTo("msgEntryList");
    ExpectNoRow();
    Press(Qt::Key_Down);
    ExpectLoaded(1, 0);
    EXPECT_EQ(Panel(1), u"Record 1 of 3"_s);
    PressInList(Qt::Key_Down);
    ExpectLoaded(2, 1);
}

TEST_F(EntryListRows, EnterLoadsAndHighlights)
{
    AddHours({"1", "2", "3"});
    StartList();
    PressInList(Qt::Key_Return);
    ExpectLoaded(1, 0);
    ClickCell(3, Qt::LeftButton);
    ClickButton("cmdUndo");
    ExpectNoRow();
    PressInList(Qt::Key_Enter);
    ExpectLoaded(3, 2);
    EXPECT_EQ(Panel(1), u"Record 3 of 3"_s);
}

TEST_F(EntryListRows, ANewEntryHasNoRowAlsoAfterASort)
{
    AddHours({"3", "1", "2"});
    StartList();
    ClickCell(2, Qt::LeftButton);
    ClickButton("cmdUndo");
    ClickHeader(EntryColumn::Hours);
    ExpectNoRow();
    Change();
    Watched.Answers = {MessageAnswer::Cancel};
    ClickCell(3, Qt::LeftButton);
    EXPECT_THAT(Watched.Texts(), ElementsAre(SaveQuestion));
    ExpectNoRow();
    EXPECT_EQ(Text("txtDescription"), u"!"_s);
    // The header is the current row.
    Watched.Answers = {MessageAnswer::No};
    PressInList(Qt::Key_Down);
    ExpectLoaded(1, 1);
}

TEST_F(EntryListRows, CancelGoesBackToTheRowThatTheEntryHasAfterASort)
{
    AddHours({"3", "1", "2"});
    StartList();
    ClickCell(1, Qt::LeftButton);
    ClickHeader(EntryColumn::Hours);
    ExpectLoaded(3, 0);
    Change();
    Watched.Answers = {MessageAnswer::Cancel};
    ClickCell(1, Qt::LeftButton);
    EXPECT_THAT(Watched.Texts(), ElementsAre(SaveQuestion));
    EXPECT_EQ(Highlighted(), 3);
    EXPECT_EQ(Text("txtDescription"), u"number 0!"_s);
    Watched.Answers = {MessageAnswer::No};
    PressInList(Qt::Key_Up);
    ExpectLoaded(2, 2);
}

TEST_F(EntryListRows, YesWithTheListSortedLoadsAndHighlightsTheRowOfThatNumber)
{
    AddHours({"3", "1", "2"});
    StartList();
    ClickHeader(EntryColumn::Hours);
    ClickCell(1, Qt::LeftButton);
    ExpectLoaded(1, 1);
    Change();
    Watched.Answers = {MessageAnswer::Yes};
    ClickCell(3, Qt::LeftButton);
    EXPECT_EQ(Stored()[1].Description, u"number 1!"_s);
    EXPECT_THAT(Column(EntryColumn::Hours), ElementsAre(u"3.00"_s, u"1.00"_s, u"2.00"_s));
    ExpectLoaded(3, 2);
    EXPECT_EQ(Panel(1), u"Record 3 of 3"_s);
}

TEST_F(EntryListRows, ARefusedYesLeavesTheRowOfTheEntry)
{
    AddHours({"0", "1", "2", "3"});
    StartList();
    ClickCell(1, Qt::LeftButton);
    Change();
    std::vector<int> whileOpen;
    Watched.WhileOpen = [&] { whileOpen.push_back(Highlighted()); };
    Watched.Answers = {MessageAnswer::Yes};
    ClickCell(3, Qt::LeftButton);
    EXPECT_THAT(Watched.Texts(), ElementsAre(SaveQuestion, u"Invalid Hours."_s));
    EXPECT_THAT(whileOpen, ElementsAre(1, 1));
    EXPECT_EQ(Highlighted(), 1);
    EXPECT_EQ(Text("txtDescription"), u"number 0!"_s);
    EXPECT_EQ(Panel(1), u"Record 1 of 4"_s);
    Watched.Answers = {MessageAnswer::No};
    PressInList(Qt::Key_Down);
    ExpectLoaded(2, 1);
}

TEST_F(EntryListRows, DownGoesOnFromTheEntryWhoseRowCouldNotBeLeft)
{
    AddHours({"1", "2", "3", "4"});
    StartList();
    ClickCell(1, Qt::LeftButton);
    Change();
    Watched.Answers = {MessageAnswer::Cancel};
    ClickCell(3, Qt::LeftButton);
    Watched.Answers = {MessageAnswer::No};
    PressInList(Qt::Key_Down);
    ExpectLoaded(2, 1);
}

TEST_F(EntryListRows, RowTenIsShownFromTheTopAndRowElevenAtTheTop)
{
    AddMany(60);
    StartList();
    for (const int row : {10, 11}) {
        Grid().scrollTo(Grid().model()->index(row - 1, 2));
        ClickCell(row, Qt::LeftButton);
        Change();
        Grid().verticalScrollBar()->setValue(30);
        Watched.Answers = {MessageAnswer::Cancel};
        ClickCell(33, Qt::LeftButton);
        EXPECT_EQ(Highlighted(), row);
        EXPECT_EQ(TopRow(), row == 10 ? 1 : 11);

        Watched.Answers = {MessageAnswer::Yes};
        Grid().scrollTo(Grid().model()->index(row - 1, 2));
        ClickCell(row, Qt::LeftButton);
        EXPECT_EQ(Highlighted(), row) << "after the save";
        EXPECT_EQ(TopRow(), row == 10 ? 1 : 11);
    }
}

TEST_F(EntryListRows, DeletingTheLastRowShowsTheOneThatIsNowTheLast)
{
    AddHours({"1", "2", "3"});
    StartList();
    ClickCell(3, Qt::LeftButton);
    Watched.Answers = {MessageAnswer::Yes};
    ClickButton("cmdDel");
    ExpectLoaded(2, 1);
    EXPECT_EQ(Panel(1), u"Record 2 of 2"_s);
    PressInList(Qt::Key_Up);
    ExpectLoaded(1, 0);
}

TEST_F(EntryListRows, DeletingInASortedListShowsTheEntryOfThatRowInStoredOrder)
{
    AddHours({"3", "1", "2"});
    StartList();
    ClickHeader(EntryColumn::Hours);
    ClickCell(1, Qt::LeftButton);
    ExpectLoaded(1, 1);
    Watched.Answers = {MessageAnswer::Yes};
    ClickButton("cmdDel");
    EXPECT_EQ(Highlighted(), 1);
    EXPECT_EQ(Text("txtDescription"), Number(0));
}

TEST_F(EntryListRows, AnUndoThatCannotReadTheEntriesLeavesNoRowAndNoPlace)
{
    AddHours({"1", "2", "3", "4"});
    StartList();
    ClickCell(1, Qt::LeftButton);
    OtherProgram other(FileOfEntries());
    other.Execute("BEGIN EXCLUSIVE");
    ClickButton("cmdUndo");
    ASSERT_EQ(Watched.Shown.size(), 1);
    EXPECT_TRUE(Watched.Shown[0].Text.startsWith(u"Error #"_s));
    EXPECT_EQ(Text("txtDescription"), QString());
    EXPECT_EQ(Panel(1), u"Found 4 records"_s);
    ExpectNoRow();
    other.Execute("COMMIT");
    ClickCell(2, Qt::LeftButton);
    ExpectLoaded(2, 1);
}

TEST_F(EntryListRows, ADeletionAfterWhichTheListCannotBeReadLeavesNoRows)
{
    AddHours({"1", "2", "3"});
    StartList();
    ClickCell(2, Qt::LeftButton);
    OtherProgram other(Folder.path() + u"/Company-WkLg.db"_s);
    other.Execute("BEGIN EXCLUSIVE");
    Watched.Answers = {MessageAnswer::Yes};
    ClickButton("cmdDel");
    ASSERT_EQ(Watched.Shown.size(), 2);
    EXPECT_TRUE(Watched.Shown[1].Text.startsWith(u"Error #"_s));
    EXPECT_EQ(Stored().size(), 2U);
    ExpectNoRow();
    EXPECT_EQ(Grid().Rows(), 1) << "the rows would lead to other entries than they show";
    other.Execute("COMMIT");
    Watched.Answers = {MessageAnswer::No};
    ClickButton("cmdUndo");
    ClickCell(2, Qt::LeftButton);
    EXPECT_EQ(Highlighted(), 2);
    EXPECT_EQ(Text("txtDescription"), Number(2));
}

TEST_F(EntryListRows, ARefusedExpenseIsShownBeforeTheMessage)
{
    Company.Options.Expenses = u"N"_s;
    Add(u"CONS"_s, Monday, "1");
    Add(u"MILES"_s, Monday, "2", u"0200"_s, {});
    StartList();
    ClickCell(1, Qt::LeftButton);
    QStringList whileOpen;
    int highlighted = 0;
    Watched.WhileOpen = [&] {
        whileOpen = {Text("txtCustomer"), Text("txtProject"), Text("txtActivity"),
            List("cboBStatus").currentText(), Panel(1)};
        highlighted = Highlighted();
    };
    ClickCell(2, Qt::LeftButton);
    EXPECT_THAT(Watched.Texts(), ElementsAre(u"You are not allowed to enter expenses."_s));
    EXPECT_THAT(whileOpen,
        ElementsAre(u"0200"_s, QString(), u"MILES"_s, u"Billable"_s, u"Record 2 of 2"_s));
    EXPECT_EQ(highlighted, 2);
    EXPECT_EQ(Text("txtActivity"), QString());
    EXPECT_EQ(Highlighted(), 2);
}

TEST_F(EntryListRows, ThePointerOnAHeadingMakesTheKeysSort)
{
    AddHours({"3", "1", "2"});
    StartList();
    ClickCell(1, Qt::LeftButton);
    QHeaderView &header = *Grid().horizontalHeader();
    QTest::mouseMove(header.viewport(),
        {header.sectionViewportPosition(EntryColumn::Hours) + 5, header.height() / 2});
    LetEventsRun();
    PressInList(Qt::Key_Down);
    EXPECT_THAT(Column(EntryColumn::Hours), ElementsAre(u"1.00"_s, u"2.00"_s, u"3.00"_s));
    ExpectLoaded(3, 0);
}
