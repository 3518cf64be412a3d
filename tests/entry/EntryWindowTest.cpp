// The main window as a whole: its size, its background, the locked window, one-line text.

#include "tests/entry/EntryListWindow.h"
#include "tests/entry/OtherProgram.h"

#include <QClipboard>
#include <QFile>
#include <QStatusBar>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::array RateControls = {"lblBOption", "cboBOption", "lblMultiplierCode",
    "txtMultiplierCode", "cmdMultiplier", "lblMultiplierFactor", "txtMultiplierFactor", "lblRate",
    "txtRate", "lblAmount", "txtAmount"};

class MainWindow : public EntryListWindow
{
protected:
    MainWindow()
    {
        Company.Options.Billing_Option_Switch = u"Y"_s;
        Company.Employee.Rate_Permission = u"4"_s;
    }

    void Remove(const QString &database)
    {
        ASSERT_TRUE(QFile::remove(Folder.path() + u'/' + database + u".db"_s));
    }

    QStringList VisibleRateControls()
    {
        QStringList names;
        for (const char *name : RateControls) {
            if (Any(name).isVisible())
                names.append(QString::fromLatin1(name));
        }
        return names;
    }

    /// Starts over databases one or more of which are missing.
    void StartLocked(const QStringList &missing)
    {
        BuildSampleCompanies(Folder.path(), {Company});
        for (const QString &database : missing)
            Remove(database);
        Program = std::make_unique<clsProgram>(
            Folder.path(), ProgramServices{Messages, Keys, Process, Clock, Settings, Browser});
        Program->StartUp();
        ASSERT_TRUE(ShowActive(Window()));
        EXPECT_THAT(Messages.Texts(), ElementsAre(u"Please perform a synchronization first."_s));
        EXPECT_FALSE(Any("txtCustomer").isEnabled());
    }

    void Paste(const QString &text)
    {
        QGuiApplication::clipboard()->setText(text);
        Press(Qt::Key_V, Qt::ControlModifier);
    }
};

} // namespace

TEST_F(MainWindow, TheGridHasItsShareOfTheWindowInEverySize)
{
    Start();
    for (const QSize &size : {QSize(1000, 700), QSize(880, 480), QSize(880, 400), QSize(10, 10),
             Window().minimumSizeHint(), QSize(1200, 900)}) {
        Window().resize(size);
        LetEventsRun();
        EXPECT_NEAR(Grid().height(), Window().height() / 2.85, 1) << Window().height();
    }
}

TEST_F(MainWindow, TheGridHasItsShareAlsoWithLargerLetters)
{
    Start();
    QFont font = Window().font();
    font.setPointSizeF(font.pointSizeF() * 1.6);
    Window().setFont(font);
    LetEventsRun();
    for (const QSize &size : {QSize(1000, 1000), QSize(10, 10)}) {
        Window().resize(size);
        LetEventsRun();
        EXPECT_NEAR(Grid().height(), Window().height() / 2.85, 1) << Window().height();
    }
}

TEST_F(MainWindow, LockedItHidesTheRatesFromAnEmployeeWhoSeesNone)
{
    Company.Employee.Rate_Permission = u"1"_s;
    StartLocked({u"ABCActivities-WkLg"_s});
    EXPECT_THAT(VisibleRateControls(), IsEmpty());
}

TEST_F(MainWindow, LockedItShowsTheRateFieldsToEveryoneElse)
{
    StartLocked({u"ABCActivities-WkLg"_s});
    EXPECT_EQ(VisibleRateControls().size(), qsizetype(RateControls.size()));
}

TEST_F(MainWindow, LockedWithoutTheEmployeeItAsksForASynchronizationAllTheSame)
{
    StartLocked({u"ABCEmployee-WkLg"_s});
    EXPECT_EQ(VisibleRateControls().size(), qsizetype(RateControls.size()));
}

TEST_F(MainWindow, EveryReloadHidesTheRatesFromAnEmployeeWhoSeesNone)
{
    Company.Employee.Rate_Permission = u"1"_s;
    for (int i = 0; i < 3; ++i)
        Add(u"MILES"_s, Monday, "1");
    Start();
    EXPECT_THAT(VisibleRateControls(), IsEmpty());
    const auto rateAndAmount
        = ElementsAre(u"lblRate"_s, u"txtRate"_s, u"lblAmount"_s, u"txtAmount"_s);
    ClickRow(1);
    EXPECT_THAT(VisibleRateControls(), rateAndAmount) << "of an expense";

    Messages.Answers = {MessageAnswer::Yes};
    ClickButton("cmdDel");
    EXPECT_EQ(Panel(1), u"Record 1 of 2"_s);
    EXPECT_EQ(Text("txtActivity"), u"MILES"_s);
    EXPECT_THAT(VisibleRateControls(), IsEmpty()) << "also with the next entry in the editor";
    ClickRow(2);
    EXPECT_THAT(VisibleRateControls(), rateAndAmount);
    ClickButton("cmdUndo");
    EXPECT_THAT(VisibleRateControls(), IsEmpty());
}

TEST_F(MainWindow, ReloadsHideNoRatesOfAnExpenseFromEveryoneElse)
{
    for (int i = 0; i < 2; ++i)
        Add(u"MILES"_s, Monday, "1");
    Start();
    ClickRow(1);
    Messages.Answers = {MessageAnswer::Yes};
    ClickButton("cmdDel");
    EXPECT_EQ(Panel(1), u"Record 1 of 1"_s);
    EXPECT_THAT(VisibleRateControls(),
        ElementsAre(u"lblRate"_s, u"txtRate"_s, u"lblAmount"_s, u"txtAmount"_s));
}

TEST_F(MainWindow, APastedLineBreakInTheDescriptionIsASpace)
{
    Start();
    GoTo("txtDescription");
    Type(u"<>"_s);
    Press(Qt::Key_Left);
    Paste(u"one\ntwo\r\nthree\rfour\u2028five\n"_s);
    EXPECT_EQ(Text("txtDescription"), u"<one two three four five >"_s);
    EXPECT_EQ(Box("txtDescription").cursorPosition(), 25) << "after what was pasted";
    Type(u"!"_s);
    EXPECT_EQ(Text("txtDescription"), u"<one two three four five !>"_s);
}

TEST_F(MainWindow, APastedLineBreakIsStoredAsTheSpaceThatIsShown)
{
    Add(u"CONS"_s, Monday, "1");
    Start();
    ClickRow(1);
    GoTo("txtDescription");
    Box("txtDescription").selectAll();
    Paste(u"one\r\ntwo"_s);
    ClickButton("cmdOK");
    EXPECT_EQ(Stored()[0].Description, u"one two"_s);
}

TEST_F(MainWindow, AClickOnTheStatusBarIsNoLeavingOfTheField)
{
    Start();
    GoTo("txtCustomer");
    Type(u"NON"_s);
    auto &bar = Control<QStatusBar>(Window(), "StatusBar1");
    QTest::mouseClick(&bar, Qt::LeftButton, {}, {1, 1});
    for (QWidget *part : bar.findChildren<QWidget *>()) {
        QTest::mouseClick(part, Qt::LeftButton);
        LetEventsRun();
        EXPECT_EQ(Text("txtCustomer"), u"NON"_s) << part->metaObject()->className();
    }
    EXPECT_EQ(Focused(), u"txtCustomer"_s);
    Type(u"E"_s);
    EXPECT_EQ(Text("txtCustomer"), u"NONE"_s);
}
