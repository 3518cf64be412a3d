// Reference tables that cannot be read while a code is checked: the code from before is back, the
// check is due again, and nothing of the code that was not checked stays in this entry or the next.

#include "tests/entry/EntryWindow.h"
#include "tests/entry/OtherProgram.h"
#include "tests/support/Modal.h"

#include <QDir>

using namespace Qt::StringLiterals;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

/// A code that cannot be checked, and what must have been entered before.
struct Code
{
    const char *Box;
    const char *Button;
    const char *Table;
    QStringList Entered; ///< customer, project and activity
    QString Before;
    QString Typed;
};

/// How a box is left.
enum class Way
{
    Enter,
    Tab,
    ShiftTab,
    Mouse,
    OK,
    Mnemonic
};

class FailingStore : public EntryWindow
{
protected:
    FailingStore()
    {
        Company.Options.Billing_Option_Switch = u"Y"_s;
        Company.Options.Billing_Option_Setting = u"1"_s;
        Company.Employee.Rate_Permission = u"4"_s;
        Company.Multipliers = {SampleMultiplier(u"05"_s, u"Evening"_s, Currency::FromScaled(12500)),
            SampleMultiplier(u"10"_s, u"Sunday"_s, Currency::FromWhole(2))};
        Company.Customers
            = {SampleCustomer(u"0100"_s, u"Acme"_s, u"01"_s, Currency::FromWhole(100)),
                SampleCustomer(u"0200"_s, u"Brightwater Ltd"_s, u"02"_s)};
        Company.Projects
            = {SampleProject(u"0200"_s, u"AUDIT"_s, u"Yearly audit"_s, Currency::FromWhole(95)),
                SampleProject(u"0200"_s, u"MOVE"_s, u"Office move"_s)};
        Company.Activities = {SampleActivity(u"CONS"_s, u"Consulting"_s),
            SampleActivity(u"TRAIN"_s, u"Training"_s, {}, u"2"_s)};
    }

    const std::array<Code, 4> Codes = {{{"txtCustomer", "cmdCustomer", "Divisions",
                                            {u"0100"_s, {}, u"CONS"_s}, u"0100"_s, u"0200"_s},
        {"txtProject", "cmdProject", "Divisions", {u"0200"_s, u"AUDIT"_s, u"CONS"_s}, u"AUDIT"_s,
            u"MOVE"_s},
        {"txtActivity", "cmdActivity", "Divisions", {u"0200"_s, {}, u"TRAIN"_s}, u"TRAIN"_s,
            u"CONS"_s},
        {"txtMultiplierCode", "cmdMultiplier", "Multiplier", {u"0100"_s, {}, u"CONS"_s}, {},
            u"99"_s}}};

    void EnterCode(const char *box, const QString &code)
    {
        GoTo(box);
        Type(code);
        Press(Qt::Key_Return);
    }

    void StartAgain()
    {
        Program.reset();
        for (const QString &name : QDir(Folder.path()).entryList({u"*.db"_s}))
            QFile::remove(Folder.filePath(name));
        Messages.Shown.clear();
        Start();
    }

    /// An entry of two hours with these codes.
    void StartWith(const QStringList &codes)
    {
        StartAgain();
        const std::array boxes = {"txtCustomer", "txtProject", "txtActivity"};
        for (size_t i = 0; i < boxes.size(); ++i) {
            if (const QString code = codes.at(static_cast<qsizetype>(i)); !code.isEmpty())
                EnterCode(boxes.at(i), code);
        }
        GoTo("txtHours");
        Type(u"2"_s);
        GoTo("txtDescription");
        ASSERT_THAT(Messages.Texts(), IsEmpty());
    }

    /// The table cannot be read for as long as the object lives.
    std::unique_ptr<OtherProgram> Lock(const char *table)
    {
        ForgetRecords();
        auto other = std::make_unique<OtherProgram>(
            Folder.path() + u"/ABC"_s + QString::fromLatin1(table) + u"-WkLg.db"_s);
        other->Execute("BEGIN EXCLUSIVE");
        return other;
    }

    /// The records are in memory from the start on. Opened again, these tables are read when one of
    /// their records is needed.
    void ForgetRecords()
    {
        Tables &data = Program->Data();
        const auto openAgain = [&](auto &table, QStringView prefix) {
            data.Main.CloseTable(table.Handle);
            table.Handle = data.Main.OpenTable(data.Main.CompanyName(u"ABC"_s, prefix));
        };
        openAgain(data.Divisions, DatabasePrefix::Divisions);
        openAgain(data.Multiplier, DatabasePrefix::Multiplier);
    }

    void Leave(Way way)
    {
        switch (way) {
        case Way::Enter:
            Press(Qt::Key_Return);
            break;
        case Way::Tab:
            Press(Qt::Key_Tab);
            break;
        case Way::ShiftTab:
            Press(Qt::Key_Backtab, Qt::ShiftModifier);
            break;
        case Way::Mouse:
            ClickButton("txtDescription");
            break;
        case Way::OK:
            ClickButton("cmdOK");
            break;
        case Way::Mnemonic:
            Press(Qt::Key_U, Qt::AltModifier); // Undo
            break;
        }
    }

    /// What the entry shows, the box that is about to be checked among it.
    QStringList Shown()
    {
        QStringList texts;
        for (const char *box : {"txtCustomer", "txtProject", "txtActivity", "txtMultiplierCode",
                 "txtMultiplierFactor", "txtHours", "txtRate", "txtAmount", "txtDescription"})
            texts.append(Text(box));
        texts.append(List("cboBStatus").currentText());
        texts.append(List("cboBOption").currentText());
        return texts;
    }

    void InLookup(const char *button, const std::function<void(QWidget &)> &steps)
    {
        WithModal([&] { ClickButton(button); }, steps);
        Window().activateWindow();
        EXPECT_TRUE(WaitUntilActive(Window()));
        LetEventsRun();
    }

    static void PickRow(QWidget &dialog, int row)
    {
        auto &grid = Control<clsGrid>(dialog, "msgLookup");
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {},
            grid.visualRect(grid.model()->index(row - 1, 1)).center());
        QTest::mouseClick(&Control<QPushButton>(dialog, "cmdSelect"), Qt::LeftButton);
    }
};

class FailingCheck : public FailingStore, public testing::WithParamInterface<Way>
{
};

std::string NameOf(const testing::TestParamInfo<Way> &way)
{
    static const std::array names = {"Enter", "Tab", "ShiftTab", "Mouse", "OK", "Mnemonic"};
    return names.at(static_cast<size_t>(way.param));
}

} // namespace

TEST_P(FailingCheck, BringsTheCodeFromBeforeBackWithAllThatBelongsToIt)
{
    for (const Code &code : Codes) {
        SCOPED_TRACE(code.Box);
        StartWith(code.Entered);
        const QStringList before = Shown();
        GoTo(code.Box);
        Type(code.Typed);
        const auto lock = Lock(code.Table);
        Leave(GetParam());
        EXPECT_EQ(Shown(), before);
        EXPECT_EQ(Text(code.Box), code.Before);
        EXPECT_THAT(Messages.Texts(), SizeIs(1));
        EXPECT_EQ(Focused(), QString::fromLatin1(code.Box));
        EXPECT_EQ(Box(code.Box).selectedText(), code.Before);
        EXPECT_THAT(Stored(), IsEmpty());
        Press(Qt::Key_Tab);
        ClickButton("cmdOK");
        ASSERT_EQ(Stored().size(), 1U);
        EXPECT_EQ(Stored()[0].Customer_Number, code.Entered.at(0));
        EXPECT_EQ(Stored()[0].Project_Number, code.Entered.at(1));
        EXPECT_EQ(Stored()[0].Activity_Number, code.Entered.at(2));
        EXPECT_EQ(Stored()[0].Multiplier_Number, QString());
        EXPECT_EQ(Stored()[0].Multiplier_Factor, Currency::FromWhole(1));
    }
}

INSTANTIATE_TEST_SUITE_P(OfEveryCode, FailingCheck,
    testing::Values(Way::Enter, Way::Tab, Way::ShiftTab, Way::Mouse, Way::OK, Way::Mnemonic),
    NameOf);

TEST_F(FailingStore, TheCheckIsDueAgainAlthoughNothingIsTyped)
{
    StartWith({u"0100"_s, {}, u"CONS"_s});
    EnterCode("txtRate", u"80"_s);
    GoTo("txtCustomer");
    Type(u"0200"_s);
    auto lock = Lock("Divisions");
    Press(Qt::Key_Tab);
    EXPECT_EQ(Text("txtRate"), u"80.000"_s);
    lock.reset();
    Press(Qt::Key_Tab);
    EXPECT_EQ(Text("txtRate"), u"100.000"_s) << "an accepted customer brings its rate";
    EXPECT_EQ(Focused(), u"txtProject"_s);
}

TEST_F(FailingStore, ACodeTakenFromALookupIsPutBackAndPoisonsNoLaterEntry)
{
    Company.Entries = std::vector{
        SampleEntry(u"0200"_s, u"AUDIT"_s, u"CONS"_s, QDate(2026, 3, 2), Currency::FromWhole(3))};
    for (const Code &code : {Codes[0], Codes[1]}) { // customer and project
        SCOPED_TRACE(code.Box);
        StartWith(code.Entered);
        const QStringList before = Shown();
        auto lock = Lock(code.Table);
        InLookup(code.Button, [](QWidget &dialog) { PickRow(dialog, 2); });
        EXPECT_THAT(Messages.Texts(), SizeIs(1));
        EXPECT_EQ(Shown(), before);
        EXPECT_EQ(Focused(), QString::fromLatin1(code.Box));
        lock.reset();
        Messages.Answers = {MessageAnswer::No};
        ClickRow(1);
        EXPECT_EQ(Text("txtCustomer"), u"0200"_s);
        EXPECT_EQ(Text("txtProject"), u"AUDIT"_s);
        EXPECT_EQ(Focused(), u"dtpDate"_s);
        ClickButton("cmdUndo");
        EXPECT_EQ(Text("txtCustomer"), QString());
        EXPECT_EQ(Focused(), u"dtpDate"_s);
        EXPECT_EQ(Stored()[0].Project_Number, u"AUDIT"_s);
    }
}

TEST_F(FailingStore, AnOptionWhoseRateCannotBeReadIsPutBack)
{
    StartWith({u"0100"_s, {}, u"CONS"_s});
    GoTo("cboBOption");
    ASSERT_EQ(List("cboBOption").currentText(), u"Customer"_s);
    const QStringList before = Shown();
    auto lock = Lock("Divisions");
    Press(Qt::Key_Up);
    EXPECT_EQ(Shown(), before);
    EXPECT_THAT(Messages.Texts(), SizeIs(1));
    lock.reset();
    Press(Qt::Key_Up);
    EXPECT_EQ(List("cboBOption").currentText(), u"Division"_s);
}

TEST_F(FailingStore, AStatusWhoseRateCannotBeReadIsPutBack)
{
    StartWith({u"0200"_s, {}, u"TRAIN"_s});
    GoTo("cboBStatus");
    ASSERT_EQ(List("cboBStatus").currentText(), u"No Charge"_s);
    const QStringList before = Shown();
    auto lock = Lock("Divisions");
    Press(Qt::Key_Up);
    EXPECT_EQ(Shown(), before);
    EXPECT_THAT(Messages.Texts(), SizeIs(1));
    lock.reset();
    Press(Qt::Key_Up);
    EXPECT_EQ(List("cboBStatus").currentText(), u"Billable"_s);
    EXPECT_EQ(List("cboBOption").currentText(), u"Division"_s);
}

TEST_F(FailingStore, TheSameCompanyPickedWhileItsEntriesAreLockedIsOpenedAgainAfterwards)
{
    Company.Entries = std::vector{
        SampleEntry(u"0200"_s, u"AUDIT"_s, u"CONS"_s, QDate(2026, 3, 2), Currency::FromWhole(3))};
    Start();
    GoTo("cboCompany");
    auto lock = Lock("Entries");
    Press(Qt::Key_Return);
    ASSERT_FALSE(Messages.Shown.isEmpty());
    EXPECT_EQ(List("cboCompany").currentText(), u"ABC"_s);
    lock.reset();
    Messages.Shown.clear();
    ClickButton("cmdUndo");
    EXPECT_THAT(Messages.Texts(), IsEmpty());
    EXPECT_EQ(Panel(1), u"Found 1 record"_s);
    ClickRow(1);
    EXPECT_EQ(Text("txtProject"), u"AUDIT"_s);
}
