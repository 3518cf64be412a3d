// The dialogs as the main window opens them, and what they leave behind in it.

#include "entry/EntryColumn.h"
#include "platform/Paths.h"
#include "tests/entry/EntryWindow.h"
#include "tests/support/Modal.h"

#include <QAction>
#include <QRadioButton>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QDate Monday(2026, 3, 9);

class Dialogs : public EntryWindow
{
protected:
    Dialogs()
    {
        Company.Options.Billing_Option_Switch = u"Y"_s;
        Company.Employee.Rate_Permission = u"4"_s;
        Company.Entries = std::vector{
            SampleEntry(u"0100"_s, u"AUDIT"_s, u"CONS"_s, Monday, Currency::FromWhole(1)),
            SampleEntry(u"0200"_s, u"AUDIT"_s, u"CONS"_s, Monday, Currency::FromWhole(2)),
            SampleEntry(u"0200"_s, {}, u"TRAIN"_s, Monday.addDays(1), Currency::FromWhole(4))};
    }

    /// Runs the steps in the dialog that the action opens.
    void InDialog(const std::function<void()> &action, const std::function<void(QWidget &)> &steps);
};

void Dialogs::InDialog(
    const std::function<void()> &action, const std::function<void(QWidget &)> &steps)
{
    WithModal(action, steps);
    Window().activateWindow();
    EXPECT_TRUE(WaitUntilActive(Window()));
    LetEventsRun();
}

} // namespace

TEST_F(Dialogs, AButtonLooksUpACustomerAndTheFocusMovesOn)
{
    Start();
    InDialog([this] { ClickButton("cmdCustomer"); },
        [](QWidget &dialog) {
            EXPECT_EQ(dialog.objectName(), u"frmLookup"_s);
            EXPECT_EQ(dialog.windowTitle(), u"Customer Lookup"_s);
            QWidget &grid = Control<QWidget>(dialog, "msgLookup");
            QTest::keyClick(&grid, Qt::Key_Down);
            QTest::keyClick(&grid, Qt::Key_Return);
        });
    EXPECT_EQ(Text("txtCustomer"), u"0200"_s);
    EXPECT_EQ(Focused(), u"txtProject"_s);
    EXPECT_FALSE(List("cboCompany").isEnabled()) << "a choice is an edit";
    EXPECT_THAT(Messages.Texts(), IsEmpty());
}

TEST_F(Dialogs, F2SearchesForTheTypedTextAndCancelGoesBackToIt)
{
    Start();
    GoTo("txtActivity");
    Type(u"tr"_s);
    InDialog([this] { QTest::keyClick(&Any("txtActivity"), Qt::Key_F2); },
        [](QWidget &dialog) {
            auto &grid = Control<clsGrid>(dialog, "msgLookup");
            EXPECT_EQ(grid.TextMatrix(grid.Row(), 1), u"TRAIN"_s);
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
    EXPECT_EQ(Text("txtActivity"), u"TR"_s);
    EXPECT_EQ(Focused(), u"txtActivity"_s);
}

TEST_F(Dialogs, ALookedUpActivityBringsItsStatusAndRateAndLeadsToTheHours)
{
    Start();
    GoTo("txtActivity");
    Type(u"cons"_s);
    InDialog([this] { QTest::keyClick(&Any("txtActivity"), Qt::Key_F2); },
        [](QWidget &dialog) {
            QTest::keyClick(&Control<QWidget>(dialog, "msgLookup"), Qt::Key_Return);
        });
    EXPECT_EQ(Text("txtActivity"), u"CONS"_s);
    EXPECT_EQ(List("cboBStatus").currentText(), u"Billable"_s);
    EXPECT_EQ(Text("txtRate"), u"90.000"_s);
    EXPECT_EQ(Focused(), u"txtHours"_s);
}

TEST_F(Dialogs, AProjectWithoutACustomerOpensNoLookup)
{
    Start();
    GoTo("txtProject");
    QTest::keyClick(&Any("txtProject"), Qt::Key_F2);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_FALSE(Any("cmdProject").isEnabled());
}

TEST_F(Dialogs, ALookedUpProjectRunsItsRatesOnce)
{
    Start();
    GoTo("txtCustomer");
    Type(u"0100"_s);
    Press(Qt::Key_Return);
    GoTo("txtActivity");
    Type(u"cons"_s);
    Press(Qt::Key_Return);
    GoTo("txtProject");
    InDialog([this] { QTest::keyClick(&Any("txtProject"), Qt::Key_F2); },
        [](QWidget &dialog) {
            QTest::keyClick(&Control<QWidget>(dialog, "msgLookup"), Qt::Key_Return);
        });
    EXPECT_EQ(Text("txtProject"), u"AUDIT"_s);
    EXPECT_EQ(Focused(), u"txtActivity"_s);
    EXPECT_EQ(Text("txtRate"), u"90.000"_s) << "the activity's rate is nearer than the project's";
}

TEST_F(Dialogs, AfterALookupByNameTheListStillFindsItsNames)
{
    Start();
    const QStringList before = Column(EntryColumn::Customer);
    InDialog([this] { ClickButton("cmdCustomer"); },
        [](QWidget &dialog) {
            auto &by = Control<QComboBox>(dialog, "cboLookupBy");
            by.setFocus();
            QTest::keyClick(&by, Qt::Key_N); // a letter moves the choice
            QTest::keyClick(&by, Qt::Key_Return);
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
    ClickButton("cmdUndo");
    EXPECT_EQ(Column(EntryColumn::Customer), before);
    GoTo("txtCustomer");
    Type(u"0200"_s);
    Press(Qt::Key_Return);
    EXPECT_EQ(Text("txtCustomer"), u"0200"_s);
    EXPECT_EQ(Focused(), u"txtProject"_s);
}

TEST_F(Dialogs, TheFilterNarrowsTheListAndClearingItBringsEverythingBack)
{
    Start();
    InDialog([this] { ClickButton("cmdTransFilter"); },
        [](QWidget &dialog) {
            EXPECT_EQ(dialog.objectName(), u"frmTransFilter"_s);
            QTest::keyClicks(&Control<QLineEdit>(dialog, "txtCustomer"), u"0200"_s);
            QTest::keyClick(&Control<QLineEdit>(dialog, "txtCustomer"), Qt::Key_Return);
            QTest::mouseClick(&Control<QPushButton>(dialog, "cmdOK"), Qt::LeftButton);
        });
    EXPECT_THAT(Column(EntryColumn::Hours), ElementsAre(u"2.00"_s, u"4.00"_s));
    InDialog([this] { ClickButton("cmdTransFilter"); },
        [](QWidget &dialog) {
            QTest::mouseClick(&Control<QPushButton>(dialog, "cmdClear"), Qt::LeftButton);
            QTest::mouseClick(&Control<QPushButton>(dialog, "cmdCancel"), Qt::LeftButton);
        });
    EXPECT_EQ(Grid().Rows(), 4) << "Clear counts, although Cancel followed";
}

TEST_F(Dialogs, CancelAloneLeavesTheListAsItIs)
{
    Start();
    InDialog([this] { ClickButton("cmdTransFilter"); },
        [](QWidget &dialog) {
            QTest::keyClicks(&Control<QLineEdit>(dialog, "txtCustomer"), u"0200"_s);
            QTest::mouseClick(&Control<QPushButton>(dialog, "cmdCancel"), Qt::LeftButton);
        });
    EXPECT_EQ(Grid().Rows(), 4);
}

TEST_F(Dialogs, TheSummaryHonoursTheFilterAndTakesTheListsArrowAway)
{
    Start();
    ClickHeader(EntryColumn::Hours);
    InDialog([this] { ClickButton("cmdHrsSumm"); },
        [](QWidget &dialog) {
            EXPECT_EQ(dialog.objectName(), u"frmHrsSumm"_s);
            EXPECT_EQ(Control<QLineEdit>(dialog, "txtTotHours").text(), u"7.00"_s);
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
    ClickHeader(EntryColumn::Date);
    EXPECT_THAT(
        Column(EntryColumn::Date), ElementsAre(u"03/09/2026"_s, u"03/09/2026"_s, u"03/10/2026"_s))
        << "ascending, whatever was sorted before";
}

TEST_F(Dialogs, AnActivityPastTheLastCountsInTheSummaryLikeTheLastOneInTheList)
{
    // The summary takes over the activity that the list has read last.
    const QDate day(2026, 3, 9);
    Company.Entries = {SampleEntry(u"0100"_s, {}, u"ZZZ"_s, day, Currency::FromWhole(2)),
        SampleEntry(u"0100"_s, {}, u"MILES"_s, day, Currency::FromWhole(3))};
    Start();
    InDialog([this] { ClickButton("cmdHrsSumm"); },
        [](QWidget &dialog) {
            EXPECT_EQ(Control<QLineEdit>(dialog, "txtTotHours").text(), u"0.00"_s);
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
}

TEST_F(Dialogs, ASortInTheSummaryDecidesWhatAClickInTheListToggles)
{
    Start();
    InDialog([this] { ClickButton("cmdHrsSumm"); },
        [](QWidget &dialog) {
            auto &grid = Control<clsGrid>(dialog, "msgHrsSumm");
            QHeaderView &header = *grid.horizontalHeader();
            // Its third column is the list's "Date".
            QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                {header.sectionViewportPosition(EntryColumn::Date) + 20, header.height() / 2});
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
    ClickHeader(EntryColumn::Date);
    EXPECT_THAT(
        Column(EntryColumn::Date), ElementsAre(u"03/10/2026"_s, u"03/09/2026"_s, u"03/09/2026"_s));
}

TEST_F(Dialogs, ASummaryThatCannotBeBuiltIsToldAndTheListGoesOn)
{
    Start();
    const QString scratch = JoinPath(Folder.path(), u"ABCHoursSummary-WkLg.db"_s);
    ASSERT_TRUE(QDir().mkpath(scratch + u"/in the way"_s));
    ClickButton("cmdHrsSumm");
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    ASSERT_EQ(Messages.Shown.size(), 1);
    EXPECT_TRUE(Messages.Shown[0].Text.startsWith(u"Error #"_s));
    EXPECT_TRUE(Messages.Shown[0].Text.contains(scratch));
    EXPECT_EQ(Messages.Shown[0].Icon, MessageIcon::Exclamation);
    ClickRow(2);
    EXPECT_EQ(Text("txtHours"), u"2.00"_s);
}

TEST_F(Dialogs, TheListTakesTheFirstClickAfterADialogOfTheMenu)
{
    Start();
    for (const char *entry : {"mnuConfigure", "mnuSync"}) {
        InDialog([&] { Control<QAction>(Window(), entry).trigger(); },
            [](QWidget &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
        ClickButton("cmdUndo");
        EXPECT_EQ(Text("txtHours"), u".00"_s);
        ClickRow(3);
        EXPECT_EQ(Text("txtHours"), u"4.00"_s) << entry;
    }
}

TEST_F(Dialogs, CancellingTheSaveQuestionOpensNeitherSummaryNorFilter)
{
    Start();
    for (const char *button : {"cmdHrsSumm", "cmdTransFilter"}) {
        GoTo("txtDescription");
        Type(u"x"_s);
        Messages.Answers = {MessageAnswer::Cancel};
        ClickButton(button);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_FALSE(Text("txtDescription").isEmpty());
    }
}

TEST_F(Dialogs, TheSynchronisationOptionIsStoredWhereAccountingReadsIt)
{
    Start();
    InDialog([this] { Control<QAction>(Window(), "mnuSync").trigger(); },
        [](QWidget &dialog) {
            EXPECT_EQ(dialog.objectName(), u"frmSyncOptions"_s);
            QTest::keyClick(&Control<QRadioButton>(dialog, "optSyncOption1"), Qt::Key_Space);
            QTest::keyClick(&Control<QPushButton>(dialog, "cmdAccept"), Qt::Key_Space);
        });
    RecordStore store;
    store.SetCreator(CodeNumber(SampleCodes().Creator));
    OptionsRecord options;
    ASSERT_TRUE(store.ReadRecord(
        store.OpenDatabase(1, Folder.path() + u"/ABCOptions-WkLg"_s, 0, 0, 0, 0, 3), options));
    EXPECT_EQ(options.Sync_Option, u"1"_s);
}

TEST_F(Dialogs, ConfiguringOpensTheSettings)
{
    Start();
    InDialog([this] { Control<QAction>(Window(), "mnuConfigure").trigger(); },
        [](QWidget &dialog) {
            EXPECT_EQ(dialog.objectName(), u"frmConfigure"_s);
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
    EXPECT_EQ(Messages.Shown.size(), 1) << "there is no launch file yet";
}
