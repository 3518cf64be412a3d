// The list in the upper half of the window.

#include "entry/EntryColumn.h"
#include "tests/entry/EntryWindow.h"
#include "tests/entry/OtherProgram.h"
#include "tests/support/Modal.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QDate Monday(2026, 3, 9);
const QString Invalid = u"*** invalid ***"_s;
const QString SaveQuestion = u"Do you want to save changes?"_s;

class EntryList : public EntryWindow
{
protected:
    void Add(const QString &activity, QDate date, const char *hours,
        const QString &customer = u"0100"_s, const QString &project = u"AUDIT"_s)
    {
        EntryRecord entry = SampleEntry(customer, project, activity, date,
            *CurrencyFromText(QString::fromLatin1(hours)), Currency::FromWhole(90));
        entry.Description = u"number "_s + QString::number(Company.Entries->size());
        Company.Entries->push_back(entry);
    }
};

} // namespace

TEST_F(EntryList, ShowsTenColumnsWithTheCompanysTermsAndTwoOfThemHidden)
{
    Company.Options.Customer_Term = u"Client"_s;
    Company.Options.Project_Term = u"Job"_s;
    Company.Options.Activity_Term = u"Task"_s;
    Start();
    QStringList headers;
    for (int column = 0; column < Grid().Cols(); ++column)
        headers.append(Grid().TextMatrix(0, column));
    EXPECT_THAT(headers,
        ElementsAre(u"UniqueID Hidden"_s, u"Date Hidden"_s, u"Date"_s, u"Client"_s, u"Job"_s,
            u"Task"_s, u"T/E"_s, u"Hours/Units"_s, u"Rate"_s, u"Amount"_s));
    EXPECT_TRUE(Grid().isColumnHidden(EntryColumn::UniqueId));
    EXPECT_TRUE(Grid().isColumnHidden(EntryColumn::DateHidden));
    const double pixelsPerTwip = Grid().logicalDpiX() / 1440.0;
    const std::array<int, 8> twips = {1110, 1762, 1762, 1762, 510, 1090, 982, 1150};
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(Grid().columnWidth(EntryColumn::Date + i),
            qRound(twips.at(static_cast<size_t>(i)) * pixelsPerTwip));
}

TEST_F(EntryList, WithoutEntriesHasOneEmptyRowThatNeverLooksMarked)
{
    Start();
    EXPECT_EQ(Grid().Rows(), 2);
    for (int column = 0; column < Grid().Cols(); ++column)
        EXPECT_EQ(Grid().TextMatrix(1, column), QString());
    EXPECT_EQ(Panel(1), u"Found 0 records"_s);
    EXPECT_EQ(Grid().palette().color(QPalette::Highlight), Grid().palette().color(QPalette::Base));
    ClickRow(1);
    EXPECT_EQ(Panel(1), u"Found 0 records"_s);
    ClickHeader(EntryColumn::Date);
    EXPECT_THAT(Messages.Texts(), IsEmpty());
}

TEST_F(EntryList, CountsOneRecordInTheSingular)
{
    Add(u"CONS"_s, Monday, "1");
    Start();
    EXPECT_EQ(Panel(1), u"Found 1 record"_s);
    EXPECT_EQ(Panel(2), Company.Employee.Employee_Number);
    EXPECT_EQ(Panel(3), u"ABC"_s);
    EXPECT_EQ(Panel(4), u"03/09/2026"_s);
    EXPECT_FALSE(AnythingMarked());
}

TEST_F(EntryList, ShowsATimeEntryWithItsNamesDatesAndNumbers)
{
    Company.Options.Billing_Option_Switch = u"Y"_s;
    Company.Employee.Rate_Permission = u"4"_s;
    Add(u"CONS"_s, Monday, ".5");
    Start();
    QStringList row;
    for (int column = 0; column < Grid().Cols(); ++column)
        row.append(Grid().TextMatrix(1, column));
    EXPECT_THAT(row,
        ElementsAre(u"0"_s, u"20260309"_s, u"03/09/2026"_s, u"Acme"_s, u"Yearly audit"_s,
            u"Consulting"_s, u"T"_s, u".50"_s, u"90.000"_s, u"45.00"_s));
}

TEST_F(EntryList, ShowsRatesOfTimeOnlyWithSwitchAndPermission)
{
    struct Case
    {
        const char *Switch;
        const char *Level;
        bool Shown;
    };
    for (const Case &c : {Case{"Y", "4", true}, Case{"Y", "2", true}, Case{"Y", "1", false},
             Case{"N", "4", false}, Case{"", "4", false}}) {
        Company.Options.Billing_Option_Switch = QString::fromLatin1(c.Switch);
        Company.Employee.Rate_Permission = QString::fromLatin1(c.Level);
        Company.Entries->clear();
        Add(u"CONS"_s, Monday, "1");
        Add(u"MILES"_s, Monday, "1");
        QTemporaryDir folder;
        BuildSampleCompanies(folder.path(), {Company});
        clsProgram program(folder.path(), {Messages, Keys, Process, Clock, Settings, Browser});
        program.StartUp();
        const auto &grid = Control<clsGrid>(*program.MainWindow(), "msgEntryList");
        EXPECT_EQ(grid.TextMatrix(1, EntryColumn::Rate).isEmpty(), !c.Shown) << c.Switch << c.Level;
        EXPECT_EQ(grid.TextMatrix(1, EntryColumn::Amount).isEmpty(), !c.Shown);
        EXPECT_EQ(grid.TextMatrix(2, EntryColumn::TimeOrExpense), u"E"_s);
        EXPECT_EQ(grid.TextMatrix(2, EntryColumn::Rate), u"90.000"_s)
            << "an expense always shows it";
        EXPECT_EQ(grid.TextMatrix(2, EntryColumn::Amount), u"90.00"_s);
    }
}

TEST_F(EntryList, AnUnknownCustomerShowsTheNameOfTheNextOne)
{
    Add(u"CONS"_s, Monday, "1", u"0150"_s, {});
    Start();
    EXPECT_EQ(Grid().TextMatrix(1, EntryColumn::Customer), u"Brightwater Ltd"_s);
}

TEST_F(EntryList, AProjectOfAnotherCustomerIsInvalidAndAnEmptyOneIsEmpty)
{
    Add(u"CONS"_s, Monday, "1", u"0200"_s, u"MOVE"_s);
    Add(u"CONS"_s, Monday, "1", u"0200"_s, {});
    Start();
    EXPECT_THAT(Column(EntryColumn::Project), ElementsAre(Invalid, QString()));
}

TEST_F(EntryList, AnUnknownActivityTakesItsKindFromTheOneBefore)
{
    Add(u"NONE"_s, Monday, "1");
    Add(u"MILES"_s, Monday, "1");
    Add(u"NONE"_s, Monday, "1");
    Add(u"CONS"_s, Monday, "1");
    Add(u"NONE"_s, Monday, "1");
    Add(u"MILES"_s, Monday, "1");
    Start();
    EXPECT_THAT(Column(EntryColumn::TimeOrExpense),
        ElementsAre(u"T"_s, u"E"_s, u"E"_s, u"T"_s, u"T"_s, u"E"_s));
    EXPECT_EQ(Grid().TextMatrix(1, EntryColumn::Activity), Invalid);
    // The flag lives on over the refresh: the first entry now follows the last expense.
    ClickButton("cmdUndo");
    EXPECT_EQ(Column(EntryColumn::TimeOrExpense).first(), u"E"_s);
}

TEST_F(EntryList, SelectingARowShowsTheEntryAndItsPlace)
{
    Add(u"CONS"_s, Monday, "1");
    Add(u"CONS"_s, Monday.addDays(1), "2");
    Start();
    ClickRow(2);
    EXPECT_EQ(Text("txtHours"), u"2.00"_s);
    EXPECT_EQ(Text("txtDescription"), u"number 1"_s);
    EXPECT_EQ(Control<QDateEdit>(Window(), "dtpDate").date(), Monday.addDays(1));
    EXPECT_EQ(Panel(1), u"Record 2 of 2"_s);
    EXPECT_EQ(Panel(4), u"03/10/2026"_s);
    EXPECT_TRUE(IsMarked(2));
    EXPECT_FALSE(List("cboCompany").isEnabled());
    EXPECT_EQ(Focused(), u"dtpDate"_s);
}

TEST_F(EntryList, SortsByDateInTimeAndTogglesWithTheArrowInTheVisibleHeader)
{
    Add(u"CONS"_s, QDate(2026, 2, 1), "1");
    Add(u"CONS"_s, QDate(2025, 12, 31), "2");
    Add(u"CONS"_s, QDate(2026, 1, 15), "3");
    Start();
    ClickHeader(EntryColumn::Date);
    EXPECT_THAT(
        Column(EntryColumn::Date), ElementsAre(u"12/31/2025"_s, u"01/15/2026"_s, u"02/01/2026"_s));
    ClickHeader(EntryColumn::Date);
    EXPECT_THAT(
        Column(EntryColumn::Date), ElementsAre(u"02/01/2026"_s, u"01/15/2026"_s, u"12/31/2025"_s));
    ClickHeader(EntryColumn::Hours);
    EXPECT_THAT(Column(EntryColumn::Hours), ElementsAre(u"1.00"_s, u"2.00"_s, u"3.00"_s));
}

TEST_F(EntryList, SortsNumbersByTheirValue)
{
    for (const char *hours : {"10", "9.5", ".5", "-2"})
        Add(u"CONS"_s, Monday, hours);
    Start();
    ClickHeader(EntryColumn::Hours);
    EXPECT_THAT(
        Column(EntryColumn::Hours), ElementsAre(u"-2.00"_s, u".50"_s, u"9.50"_s, u"10.00"_s));
}

TEST_F(EntryList, SortsExpensesBeforeTimeByTheLettersOfTheirKinds)
{
    for (const char *activity : {"CONS", "MILES", "CONS", "MILES"})
        Add(QString::fromLatin1(activity), Monday, "1");
    Start();
    ClickHeader(EntryColumn::TimeOrExpense);
    EXPECT_THAT(Column(EntryColumn::TimeOrExpense), ElementsAre(u"E"_s, u"E"_s, u"T"_s, u"T"_s));
    ClickHeader(EntryColumn::TimeOrExpense);
    EXPECT_THAT(Column(EntryColumn::TimeOrExpense), ElementsAre(u"T"_s, u"T"_s, u"E"_s, u"E"_s));
}

TEST_F(EntryList, SortsRatesAndAmountsThatAreNotShownAfterAllOthers)
{
    Company.Employee.Rate_Permission = u"1"_s;
    Add(u"CONS"_s, Monday, "1");
    Add(u"MILES"_s, Monday, "2");
    Add(u"CONS"_s, Monday, "3");
    Add(u"MILES"_s, Monday, "-2");
    Start();
    ClickHeader(EntryColumn::Rate);
    EXPECT_THAT(Column(EntryColumn::Rate), ElementsAre(u"90.000"_s, u"90.000"_s, u""_s, u""_s));
    ClickHeader(EntryColumn::Amount);
    EXPECT_THAT(Column(EntryColumn::Amount), ElementsAre(u"-180.00"_s, u"180.00"_s, u""_s, u""_s));
    ClickHeader(EntryColumn::Amount);
    EXPECT_THAT(Column(EntryColumn::Amount), ElementsAre(u""_s, u""_s, u"180.00"_s, u"-180.00"_s));
}

TEST_F(EntryList, SortsNumbersThatLookEqualAsEqual)
{
    for (const char *hours : {"1.004", "1.001", "1.003", ".5"})
        Add(u"CONS"_s, Monday, hours);
    Start();
    ClickHeader(EntryColumn::Hours);
    EXPECT_THAT(Column(EntryColumn::UniqueId), ElementsAre(u"3"_s, u"0"_s, u"1"_s, u"2"_s));
}

TEST_F(EntryList, KeepsTheEntryOfTheEditorMarkedOverASort)
{
    Add(u"CONS"_s, Monday, "3");
    Add(u"CONS"_s, Monday, "2");
    Add(u"CONS"_s, Monday, "1");
    Start();
    ClickRow(1);
    ClickHeader(EntryColumn::Hours);
    EXPECT_TRUE(IsMarked(3));
    EXPECT_EQ(Text("txtDescription"), u"number 0"_s);
    ClickRow(1);
    EXPECT_EQ(Text("txtDescription"), u"number 2"_s) << "rows are found by their hidden position";
}

TEST_F(EntryList, ARefreshReturnsToTheStoredOrderAndTheNextClickToggles)
{
    Add(u"CONS"_s, Monday, "2");
    Add(u"CONS"_s, Monday, "1");
    Start();
    ClickHeader(EntryColumn::Hours);
    EXPECT_THAT(Column(EntryColumn::Hours), ElementsAre(u"1.00"_s, u"2.00"_s));
    ClickButton("cmdUndo");
    EXPECT_THAT(Column(EntryColumn::Hours), ElementsAre(u"2.00"_s, u"1.00"_s));
    ClickHeader(EntryColumn::Hours);
    EXPECT_THAT(Column(EntryColumn::Hours), ElementsAre(u"2.00"_s, u"1.00"_s)) << "descending";
}

TEST_F(EntryList, DownAndUpInTheListLoadTheNextEntry)
{
    Add(u"CONS"_s, Monday, "1");
    Add(u"CONS"_s, Monday, "2");
    Add(u"CONS"_s, Monday, "3");
    Start();
    ClickRow(1);
    GoTo("msgEntryList");
    Press(Qt::Key_Down);
    EXPECT_EQ(Text("txtHours"), u"2.00"_s);
    EXPECT_TRUE(IsMarked(2));
    EXPECT_FALSE(IsMarked(1));
    GoTo("msgEntryList");
    Press(Qt::Key_Up);
    EXPECT_EQ(Text("txtHours"), u"1.00"_s);
    GoTo("msgEntryList");
    Press(Qt::Key_Up);
    EXPECT_EQ(Text("txtHours"), u"1.00"_s) << "there is nothing above the first";
    EXPECT_EQ(Panel(1), u"Record 1 of 3"_s);
}

TEST_F(EntryList, AnotherRowAsksAboutChangesAndNoDropsThem)
{
    Add(u"CONS"_s, Monday, "1");
    Add(u"CONS"_s, Monday, "2");
    Start();
    ClickRow(1);
    GoTo("txtDescription");
    Type(u"changed"_s);
    Messages.Answers = {MessageAnswer::No};
    ClickRow(2);
    EXPECT_THAT(Messages.Texts(), ElementsAre(SaveQuestion));
    EXPECT_EQ(Text("txtDescription"), u"number 1"_s);
    EXPECT_EQ(Stored()[0].Description, u"number 0"_s);
}

TEST_F(EntryList, AnotherRowAsksAboutChangesAndYesSavesThemFirst)
{
    Add(u"CONS"_s, Monday, "1");
    Add(u"CONS"_s, Monday, "2");
    Start();
    ClickRow(1);
    GoTo("txtDescription");
    Type(u"changed"_s);
    Messages.Answers = {MessageAnswer::Yes};
    ClickRow(2);
    EXPECT_EQ(Stored()[0].Description, u"number 0changed"_s);
    EXPECT_EQ(Text("txtDescription"), u"number 1"_s);
    EXPECT_TRUE(IsMarked(2));
    EXPECT_EQ(Panel(1), u"Record 2 of 2"_s);
}

TEST_F(EntryList, AnotherRowAsksAboutChangesAndCancelGoesBackToTheEntry)
{
    Add(u"CONS"_s, Monday, "1");
    Add(u"CONS"_s, Monday, "2");
    Start();
    ClickRow(1);
    GoTo("txtDescription");
    Type(u"changed"_s);
    Messages.Answers = {MessageAnswer::Cancel};
    ClickRow(2);
    EXPECT_EQ(Text("txtDescription"), u"number 0changed"_s);
    EXPECT_TRUE(IsMarked(1));
    EXPECT_EQ(Stored()[0].Description, u"number 0"_s);
}

TEST_F(EntryList, CancelOnANewEntryMarksNoRow)
{
    Add(u"CONS"_s, Monday, "1");
    Start();
    GoTo("txtDescription");
    Type(u"new"_s);
    Messages.Answers = {MessageAnswer::Cancel};
    ClickRow(1);
    EXPECT_EQ(Text("txtDescription"), u"new"_s);
    EXPECT_FALSE(AnythingMarked());
}

TEST_F(EntryList, CancelOnANewEntryAfterALoadedOneMarksNoRowEither)
{
    Add(u"CONS"_s, Monday, "1");
    Add(u"CONS"_s, Monday, "2");
    Start();
    ClickRow(2);
    ClickButton("cmdUndo");
    GoTo("txtDescription");
    Type(u"new"_s);
    Messages.Answers = {MessageAnswer::Cancel};
    ClickRow(1);
    EXPECT_EQ(Text("txtDescription"), u"new"_s);
    EXPECT_FALSE(AnythingMarked());
    EXPECT_EQ(Panel(1), u"Found 2 records"_s);
}

TEST_F(EntryList, ASaveThatEmptiesTheFilteredListShowsANewEntry)
{
    Add(u"CONS"_s, Monday, "1");
    Add(u"CONS"_s, Monday, "2", u"0200"_s);
    Start();
    WithModal([this] { ClickButton("cmdTransFilter"); },
        [](QWidget &filter) {
            filter.activateWindow();
            EXPECT_TRUE(QTest::qWaitFor([&] { return filter.isActiveWindow(); }));
            QTest::keyClicks(&Control<QLineEdit>(filter, "txtCustomer"), u"0100"_s);
            QTest::mouseClick(&Control<QPushButton>(filter, "cmdOK"), Qt::LeftButton);
        });
    ASSERT_TRUE(ShowActive(Window()));
    ASSERT_THAT(Column(EntryColumn::Hours), ElementsAre(u"1.00"_s));
    ClickRow(1);
    GoTo("txtCustomer");
    Type(u"0200"_s);
    Press(Qt::Key_Return);
    Messages.Answers = {MessageAnswer::Yes};
    ClickRow(1);
    EXPECT_THAT(Messages.Texts(), ElementsAre(SaveQuestion));
    EXPECT_EQ(Stored()[0].Customer_Number, u"0200"_s);
    EXPECT_EQ(Panel(1), u"Found 0 records"_s);
    EXPECT_FALSE(AnythingMarked());
    EXPECT_EQ(Text("txtCustomer"), QString());
    EXPECT_TRUE(List("cboCompany").isEnabled()) << "a new entry";
}

TEST_F(EntryList, DraggingOverTheRowsMarksNone)
{
    for (const char *hours : {"1", "2", "3"})
        Add(u"CONS"_s, Monday, hours);
    Start();
    const auto centre
        = [this](int row) { return Grid().visualRect(Grid().model()->index(row - 1, 2)).center(); };
    QWidget &viewport = *Grid().viewport();
    QTest::mousePress(&viewport, Qt::LeftButton, {}, centre(1));
    for (const int row : {2, 3}) {
        QMouseEvent drag(QEvent::MouseMove, centre(row), viewport.mapToGlobal(centre(row)),
            Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&viewport, &drag);
        EXPECT_FALSE(AnythingMarked()) << "no entry has been loaded yet";
    }
    QTest::mouseRelease(&viewport, Qt::LeftButton, {}, centre(1));
    LetEventsRun();
    EXPECT_TRUE(IsMarked(1));
    EXPECT_EQ(Text("txtHours"), u"1.00"_s);
}

TEST_F(EntryList, ARowThatCannotBeLoadedLeavesTheOneInTheEditor)
{
    for (const char *hours : {"1", "2", "3"})
        Add(u"CONS"_s, Monday, hours);
    Start();
    ClickRow(1);
    GoTo("txtDescription");
    Type(u"changed"_s);
    // Another program takes all but the first away; the refused save makes it known.
    OtherProgram(Folder.path() + u"/ABCEntries-WkLg.db"_s)
        .Execute("UPDATE \"ABCEntries-WkLg\" SET Description = 'theirs';"
                 "DELETE FROM \"ABCEntries-WkLg\" WHERE Hours > 10000");
    ClickButton("cmdOK");
    ASSERT_EQ(Messages.Shown.size(), 1);
    Messages.Shown.clear();
    Messages.Answers = {MessageAnswer::No};
    ClickRow(3);
    ASSERT_EQ(Messages.Shown.size(), 2);
    EXPECT_EQ(Messages.Shown[0].Text, SaveQuestion);
    EXPECT_TRUE(Messages.Shown[1].Text.startsWith(u"Error #"_s));
    EXPECT_EQ(Text("txtDescription"), u"number 0changed"_s);
    EXPECT_EQ(Text("txtHours"), u"1.00"_s);
    EXPECT_EQ(Panel(1), u"Record 1 of 3"_s);
    // It is still the first row's entry that is edited.
    Messages.Answers = {MessageAnswer::Cancel};
    ClickRow(2);
    EXPECT_TRUE(IsMarked(1));
}

TEST_F(EntryList, ARefusedSaveKeepsTheEditor)
{
    Add(u"CONS"_s, Monday, "1");
    Start();
    GoTo("txtDescription");
    Type(u"new"_s);
    Messages.Answers = {MessageAnswer::Yes};
    ClickRow(1);
    EXPECT_THAT(Messages.Texts(), ElementsAre(SaveQuestion, u"Invalid Customer Code."_s));
    EXPECT_EQ(Text("txtDescription"), u"new"_s);
    EXPECT_EQ(Stored().size(), 1U);
}

TEST_F(EntryList, DeletingShowsTheEntryThatTakesTheRow)
{
    for (const char *hours : {"1", "2", "3"})
        Add(u"CONS"_s, Monday, hours);
    Start();
    ClickRow(2);
    Messages.Answers = {MessageAnswer::Yes};
    ClickButton("cmdDel");
    EXPECT_THAT(Messages.Texts(), ElementsAre(u"Delete this Entry?"_s));
    EXPECT_EQ(Messages.Shown[0].Icon, MessageIcon::Question);
    EXPECT_EQ(Messages.Shown[0].Buttons, MessageButtons::YesNo);
    EXPECT_EQ(Messages.Shown[0].Preset, MessageAnswer::No);
    EXPECT_EQ(Text("txtHours"), u"3.00"_s);
    EXPECT_EQ(Panel(1), u"Record 2 of 2"_s);
    EXPECT_TRUE(IsMarked(2));

    Messages.Answers = {MessageAnswer::Yes};
    ClickButton("cmdDel");
    EXPECT_EQ(Text("txtHours"), u"1.00"_s) << "the row number is cut to the last";
    Messages.Answers = {MessageAnswer::Yes};
    ClickButton("cmdDel");
    EXPECT_EQ(Text("txtHours"), u".00"_s) << "a new entry when none is left";
    EXPECT_THAT(Stored(), IsEmpty());
    Messages.Shown.clear();
    ClickButton("cmdDel");
    EXPECT_THAT(Messages.Texts(), IsEmpty()) << "a new entry is cleared without a question";
}

TEST_F(EntryList, DeletingByItsLetterLeavesTheNextEntryAlone)
{
    Company.Options.Billing_Option_Switch = u"Y"_s;
    Company.Employee.Rate_Permission = u"4"_s;
    Add(u"CONS"_s, Monday, "1");
    Add(u"TRAIN"_s, Monday, "2");
    (*Company.Entries)[1].Reimburse = u"Y"_s;
    Start();
    ClickRow(1);
    GoTo("txtActivity");
    QTest::keyClicks(&Box("txtActivity"), u"cons"_s);
    Messages.Answers = {MessageAnswer::Yes};
    QTest::keyClick(&Window(), Qt::Key_E, Qt::AltModifier);
    // A button that is pressed by its letter shows that for a moment before it clicks.
    ASSERT_TRUE(QTest::qWaitFor([this] { return Stored().size() == 1; }));
    LetEventsRun();
    EXPECT_EQ(Text("txtHours"), u"2.00"_s);
    EXPECT_EQ(Text("txtActivity"), u"TRAIN"_s);
    GoTo("txtDescription");
    QTest::keyClicks(&Box("txtDescription"), u"!"_s);
    ClickButton("cmdOK");
    EXPECT_EQ(Stored()[0].Reimburse, u"Y"_s);
}

TEST_F(EntryList, APressThatLeavesAnUnknownCodeLoadsNoRow)
{
    Add(u"CONS"_s, Monday, "1");
    Add(u"CONS"_s, Monday, "2");
    Start();
    ClickRow(2);
    GoTo("txtCustomer");
    Type(u"none"_s);
    ClickRow(2);
    EXPECT_THAT(Messages.Texts(), IsEmpty());
    EXPECT_EQ(Text("txtCustomer"), u"0100"_s);
}

TEST_F(EntryList, TermsAndNamesWithMarkupAreShownAsTheyStand)
{
    Company.Options.Customer_Term = u"<b>R&D</b>"_s;
    Company.Customers[0].Customer_Name = u"<i>Acme</i>"_s;
    Add(u"CONS"_s, Monday, "1");
    Start();
    EXPECT_EQ(Grid().TextMatrix(0, EntryColumn::Customer), u"<b>R&D</b>"_s);
    EXPECT_EQ(Grid().TextMatrix(1, EntryColumn::Customer), u"<i>Acme</i>"_s);
    const QLabel &label = Control<QLabel>(Window(), "lblCustomer");
    EXPECT_EQ(label.textFormat(), Qt::PlainText);
    EXPECT_EQ(label.text(), u"<b>R&&D</b>"_s) << "doubled, so that it is no shortcut";
}
