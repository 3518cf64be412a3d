// Start-up, and the restart after a synchronisation, with the real window on real databases; only
// the accounting client, the message boxes and the clock are stand-ins.

#include "app/clsProgram.h"

#include "platform/clsGrid.h"

#include "platform/clsRunTimeError.h"
#include "store/StoreErrors.h"
#include "tests/support/Modal.h"
#include "tests/support/Native.h"
#include "tests/support/Raised.h"
#include "tests/support/Recorded.h"
#include "tests/support/SampleCompany.h"
#include "tests/support/Windows.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QString SynchroniseFirst = u"Please perform a synchronization first."_s;

class Program : public testing::Test
{
protected:
    QString Folder() const { return Native(m_folder.path()); }
    QString File(const QString &name) const { return Native(Folder() + u'/' + name + u".db"_s); }
    QStringList Databases() const
    {
        return QDir(Folder()).entryList({u"*.db"_s, u"*.db-journal"_s}, QDir::Files);
    }
    ProgramServices Services()
    {
        return {m_messages, m_keys, m_process, m_clock, m_settings, m_browser};
    }

    /// An accounting installation, so that a run reaches the client.
    void MakeInstallation()
    {
        const QString root = Folder() + u"/mas90"_s;
        QDir().mkpath(root + u"/soa"_s);
        QDir().mkpath(root + u"/Home"_s);
        for (const QString &name : {root + u"/soa/startup.m4p"_s, root + u"/Home/pvxwin32.exe"_s}) {
            QFile file(name);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        }
        QFile launch(Folder() + u"/mas90.ini"_s);
        ASSERT_TRUE(launch.open(QIODevice::WriteOnly));
        launch.write((root + u"\n-ARG X\n"_s).toUtf8());
    }

    template <class Record>
    Record FirstRecordOf(const QString &name)
    {
        RecordStore store;
        store.SetCreator(CodeNumber(SampleCodes().Creator));
        Record record;
        EXPECT_TRUE(
            store.ReadRecord(store.OpenDatabase(1, Folder() + u'/' + name, 0, 0, 0, 0, 3), record));
        return record;
    }

    QTemporaryDir m_folder;
    clsRecordedMessages m_messages;
    clsRecordedKeys m_keys;
    clsRecordedProcess m_process;
    clsFixedClock m_clock;
    clsRecordedSettings m_settings;
    clsRecordedBrowser m_browser;
};

GlobalOptionsRecord Global(const QString &company)
{
    GlobalOptionsRecord record;
    record.Last_Company = company;
    record.Entries_Exist = u"Y"_s;
    record.Employee = u"JMS"_s;
    return record;
}

void PressSync(frmEntryList &window)
{
    QTest::mouseClick(&Control<QPushButton>(window, "cmdSync"), Qt::LeftButton);
    LetEventsRun();
}

void ChooseFromMenu(frmEntryList &window, const char *menuName, const char *entryName)
{
    auto &bar = Control<QMenuBar>(window, "mnuBar");
    auto &menu = Control<QMenu>(window, menuName);
    QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.actionGeometry(menu.menuAction()).center());
    ASSERT_EQ(QApplication::activePopupWidget(), &menu);
    auto &entry = Control<QAction>(window, entryName);
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(&entry).center());
    LetEventsRun();
}

void ChooseDeleteDatabases(frmEntryList &window)
{
    ChooseFromMenu(window, "mnuUtilities", "mnuDeleteDatabases");
}

} // namespace

TEST_F(Program, AFirstStartOpensALockedWindowAndAsksForASynchronisation)
{
    clsProgram program(Folder(), Services());
    program.StartUp();
    ASSERT_NE(program.MainWindow(), nullptr);
    EXPECT_THAT(m_messages.Texts(), ElementsAre(SynchroniseFirst));
    EXPECT_EQ(m_messages.Shown[0].Icon, MessageIcon::Exclamation);
    EXPECT_EQ(m_messages.Shown[0].Buttons, MessageButtons::OK);
    const frmEntryList &window = *program.MainWindow();
    for (const char *name : {"txtCustomer", "cboCompany", "dtpDate", "cmdOK", "cmdDel", "cmdUndo",
             "msgEntryList", "chkOnHold", "cboBStatus", "txtDescription"})
        EXPECT_FALSE(Control<QWidget>(window, name).isEnabled()) << name;
    EXPECT_TRUE(Control<QWidget>(window, "cmdSync").isEnabled());
    EXPECT_FALSE(QFile::exists(File(u"GlobalOptions-WkLg"_s)));
}

TEST_F(Program, BeforeAFirstSynchronizationItsOptionsAreAnsweredWithTheSentenceAboutIt)
{
    clsProgram program(Folder(), Services());
    program.StartUp();
    frmEntryList &window = *program.MainWindow();
    ASSERT_TRUE(ShowActive(window));
    m_messages.Shown.clear();
    ChooseFromMenu(window, "mnuOptions", "mnuSync");
    EXPECT_THAT(m_messages.Texts(), ElementsAre(SynchroniseFirst));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_THAT(Databases(), IsEmpty());
}

TEST_F(Program, OpensOnTheCompanyLastWorkedIn)
{
    BuildSampleCompanies(
        Folder(), {SampleCompany(u"ABC"_s), SampleCompany(u"XYZ"_s, u"Xylo"_s)}, Global(u"XYZ"_s));
    clsProgram program(Folder(), Services());
    program.StartUp();
    ASSERT_NE(program.MainWindow(), nullptr);
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
    EXPECT_EQ(Control<QComboBox>(*program.MainWindow(), "cboCompany").currentText(), u"XYZ"_s);
    EXPECT_EQ(Control<QLabel>(*program.MainWindow(), "lblCompanyName").text(), u"Xylo"_s);
    EXPECT_TRUE(Control<QWidget>(*program.MainWindow(), "txtCustomer").isEnabled());
}

TEST_F(Program, MissingGlobalOptionsAreCreatedWithTheFirstCompany)
{
    BuildSampleCompanies(Folder(), {SampleCompany(u"ABC"_s), SampleCompany(u"XYZ"_s)});
    clsProgram program(Folder(), Services());
    program.StartUp();
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
    EXPECT_EQ(FirstRecordOf<GlobalOptionsRecord>(u"GlobalOptions-WkLg"_s).Last_Company, u"ABC"_s);
}

TEST_F(Program, ALastCompanyThatIsNoLongerListedLocksNobodyOut)
{
    BuildSampleCompanies(Folder(), {SampleCompany(u"ABC"_s)}, Global(u"OLD"_s));
    clsProgram program(Folder(), Services());
    program.StartUp();
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
    EXPECT_EQ(Control<QComboBox>(*program.MainWindow(), "cboCompany").currentText(), u"ABC"_s);
    const auto stored = FirstRecordOf<GlobalOptionsRecord>(u"GlobalOptions-WkLg"_s);
    EXPECT_EQ(stored.Last_Company, u"ABC"_s);
    EXPECT_EQ(stored.Entries_Exist, u"Y"_s);
    EXPECT_EQ(stored.Employee, u"JMS"_s);
}

TEST_F(Program, AnIncompleteCompanyAsksForASynchronisation)
{
    BuildSampleCompanies(Folder(), {SampleCompany()}, Global(u"ABC"_s));
    ASSERT_TRUE(QFile::remove(File(u"ABCProjects-WkLg"_s)));
    clsProgram program(Folder(), Services());
    program.StartUp();
    EXPECT_THAT(m_messages.Texts(), ElementsAre(SynchroniseFirst));
    EXPECT_FALSE(Control<QWidget>(*program.MainWindow(), "txtCustomer").isEnabled());
}

TEST_F(Program, ASecondInstanceIsRefusedWithoutAWindow)
{
    clsProgram first(Folder(), Services());
    first.StartUp();
    m_messages.Shown.clear();
    clsProgram second(Folder(), Services());
    QSignalSpy ended(&second, &clsProgram::Ended);
    second.StartUp();
    EXPECT_THAT(m_messages.Texts(), ElementsAre(u"Error 70; Worklog Remote is already running."_s));
    EXPECT_EQ(m_messages.Shown[0].Icon, MessageIcon::Exclamation);
    EXPECT_EQ(second.MainWindow(), nullptr);
    EXPECT_EQ(ended.count(), 1);
}

TEST_F(Program, ADatabaseThatCannotBeOpenedLeavesTheWindowLockedAndTheFileAsItIs)
{
    QFile file(File(u"Company-WkLg"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("no database");
    file.close();
    clsProgram program(Folder(), Services());
    QSignalSpy ended(&program, &clsProgram::Ended);
    program.StartUp();
    EXPECT_THAT(m_messages.Texts(), ElementsAre(SynchroniseFirst));
    EXPECT_EQ(m_messages.Shown.value(0).Icon, MessageIcon::Exclamation);
    ASSERT_NE(program.MainWindow(), nullptr);
    EXPECT_EQ(ended.count(), 0);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "no database");
}

TEST_F(Program, ADatabaseThatCannotBeReadLeavesTheWindowLockedToo)
{
    for (const QString &name : {u"Company-WkLg"_s, u"GlobalOptions-WkLg"_s, u"ABCOptions-WkLg"_s}) {
        SCOPED_TRACE(name.toStdString());
        QDir(Folder()).removeRecursively();
        QDir().mkpath(Folder());
        BuildSampleCompanies(Folder(), {SampleCompany()}, Global(u"ABC"_s));
        QFile file(File(name));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.seek(2 * 4096); // the kind of the page with the records
        file.write("\xff");
        file.close();
        m_messages.Shown.clear();
        clsProgram program(Folder(), Services());
        program.StartUp();
        EXPECT_THAT(m_messages.Texts(), ElementsAre(SynchroniseFirst));
        EXPECT_NE(program.MainWindow(), nullptr);
    }
}

TEST_F(Program, ABitThatChangesWhatIsReadLocksTheWindowUntilTheClientHasWrittenTheFileAgain)
{
    SampleCompany company;
    company.Entries = std::vector{
        SampleEntry(u"0100"_s, {}, u"CONS"_s, QDate(2026, 3, 9), Currency::FromWhole(3))};
    company.Customers[0].Customer_Name = u"Unmistakable"_s;
    for (const auto &[name, text] : {std::pair{u"ABCCustomers-WkLg"_s, "Unmistakable"},
             std::pair{u"ABCOptions-WkLg"_s, "Accounting0"},
             std::pair{u"ABCEntries-WkLg"_s, "0100CONS"}}) {
        SCOPED_TRACE(name.toStdString());
        QDir(Folder()).removeRecursively();
        QDir().mkpath(Folder());
        MakeInstallation();
        company.Options.Accounting_Name = u"Accounting"_s;
        company.Options.Sync_Option = u"0"_s;
        BuildSampleCompanies(Folder(), {company}, Global(u"ABC"_s));
        QFile file(File(name));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        const QByteArray sound = file.readAll();
        QByteArray damaged = sound;
        const qsizetype at = damaged.lastIndexOf(text) + qsizetype(qstrlen(text)) - 1;
        damaged[at] = static_cast<char>(damaged[at] ^ 2);
        file.seek(0);
        file.write(damaged);
        file.close();
        m_messages.Shown.clear();
        m_process.Programs.clear();
        clsProgram program(Folder(), Services());
        program.StartUp();
        ASSERT_NE(program.MainWindow(), nullptr);
        if (name.contains(u"Entries"_s)) { // each record says for itself whether it is damaged
            ASSERT_EQ(m_messages.Shown.size(), 1);
            EXPECT_NE(m_messages.Shown[0].Text, SynchroniseFirst);
            continue;
        }
        EXPECT_THAT(m_messages.Texts(), ElementsAre(SynchroniseFirst));
        m_messages.Shown.clear();
        m_process.Work = [&] {
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(sound);
            file.close();
        };
        PressSync(*program.MainWindow());
        EXPECT_EQ(m_process.Programs.size(), 1);
        EXPECT_THAT(m_messages.Texts(), IsEmpty());
        EXPECT_TRUE(Control<QLineEdit>(*program.MainWindow(), "txtCustomer").isEnabled());
    }
}

TEST_F(Program, AFolderThatCannotBeWrittenIsNamedAndNotCalledRunning)
{
    const QString missing = Folder() + u"/gone"_s;
    clsProgram program(missing, Services());
    program.StartUp();
    ASSERT_EQ(m_messages.Shown.size(), 1);
    EXPECT_EQ(m_messages.Shown[0].Icon, MessageIcon::Critical);
    EXPECT_EQ(program.MainWindow(), nullptr);
    EXPECT_TRUE(
        m_messages.Shown[0].Text.startsWith(u"Error %1; "_s.arg(RunTimeErrors::PathAccess)));
    EXPECT_TRUE(m_messages.Shown[0].Text.contains(missing));
}

TEST_F(Program, ASynchronisationUnloadsTheWindowAndStartsAgainOnTheNewData)
{
    MakeInstallation();
    clsProgram program(Folder(), Services());
    program.StartUp();
    m_messages.Shown.clear();
    bool windowWasOpen = true;
    m_process.Work = [&] {
        windowWasOpen = program.MainWindow() != nullptr;
        BuildSampleCompanies(Folder(), {SampleCompany(u"NEW"_s, u"New Company"_s)});
    };
    PressSync(*program.MainWindow());
    EXPECT_FALSE(windowWasOpen);
    EXPECT_EQ(m_process.Programs.size(), 1);
    ASSERT_NE(program.MainWindow(), nullptr);
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
    EXPECT_EQ(Control<QLabel>(*program.MainWindow(), "lblCompanyName").text(), u"New Company"_s);

    // And once more, as often as the user likes.
    m_process.Work = {};
    PressSync(*program.MainWindow());
    EXPECT_EQ(m_process.Programs.size(), 2);
    EXPECT_EQ(Control<QLabel>(*program.MainWindow(), "lblCompanyName").text(), u"New Company"_s);
}

TEST_F(Program, ASynchronisationComesBackToTheCompanyWorkedIn)
{
    MakeInstallation();
    BuildSampleCompanies(
        Folder(), {SampleCompany(u"ABC"_s), SampleCompany(u"XYZ"_s, u"Xylo"_s)}, Global(u"ABC"_s));
    clsProgram program(Folder(), Services());
    program.StartUp();
    ASSERT_TRUE(ShowActive(*program.MainWindow()));
    QComboBox &company = Control<QComboBox>(*program.MainWindow(), "cboCompany");
    company.setFocus();
    QTest::keyClick(&company, Qt::Key_Down); // opens the list
    LetEventsRun();
    QTest::keyClick(company.view(), Qt::Key_Down);
    QTest::keyClick(company.view(), Qt::Key_Return);
    LetEventsRun();
    QString lastCompany;
    m_process.Work = [&] {
        lastCompany = FirstRecordOf<GlobalOptionsRecord>(u"GlobalOptions-WkLg"_s).Last_Company;
    };
    PressSync(*program.MainWindow());
    EXPECT_EQ(lastCompany, u"XYZ"_s);
    EXPECT_EQ(Control<QLabel>(*program.MainWindow(), "lblCompanyName").text(), u"Xylo"_s);
}

TEST_F(Program, EntriesThatVanishUnaskedAreToldAfterTheRestartWithTheirCopy)
{
    MakeInstallation();
    SampleCompany company;
    company.Options.Sync_Option = u"3"_s;
    company.Entries = std::vector{
        SampleEntry(u"0100"_s, {}, u"CONS"_s, QDate(2026, 3, 9), Currency::FromWhole(3))};
    BuildSampleCompanies(Folder(), {company}, Global(u"ABC"_s));
    clsProgram program(Folder(), Services());
    program.StartUp();
    const QString copy = Native(Folder() + u"/backup/000001-20260309-103000"_s);
    bool copyCameFirst = false;
    m_process.Work = [&] {
        copyCameFirst = QFile::exists(copy + u"/ABCEntries-WkLg.db"_s);
        QFile::remove(File(u"ABCEntries-WkLg"_s));
    };
    PressSync(*program.MainWindow());
    EXPECT_TRUE(copyCameFirst);
    ASSERT_NE(program.MainWindow(), nullptr);
    ASSERT_EQ(m_messages.Shown.size(), 1);
    EXPECT_TRUE(m_messages.Shown[0].Text.startsWith(u"An entry of the company ABC "_s));
    EXPECT_TRUE(m_messages.Shown[0].Text.contains(copy));

    // The next one finds what is there, and says nothing.
    m_messages.Shown.clear();
    m_process.Work = {};
    PressSync(*program.MainWindow());
    EXPECT_THAT(m_messages.Texts(), IsEmpty());

    m_messages.Answers = {MessageAnswer::Yes};
    ChooseDeleteDatabases(*program.MainWindow());
    EXPECT_FALSE(QFileInfo::exists(Folder() + u"/backup"_s));
}

TEST_F(Program, KilledDuringASynchronizationItReportsAtItsNextStartAndOnlyThen)
{
    MakeInstallation();
    SampleCompany company;
    company.Options.Sync_Option = u"2"_s;
    company.Entries = std::vector{
        SampleEntry(u"0100"_s, {}, u"CONS"_s, QDate(2026, 3, 9), Currency::FromWhole(3))};
    BuildSampleCompanies(Folder(), {company}, Global(u"ABC"_s));
    // What is on the disk when the program is killed after the client has worked.
    const QTemporaryDir killed;
    const QString left = Native(killed.path());
    m_process.Work = [&] {
        QFile::remove(File(u"ABCEntries-WkLg"_s));
        QDirIterator at(Folder(), QDir::Files, QDirIterator::Subdirectories);
        while (at.hasNext()) {
            const QString to = left + u'/' + QDir(Folder()).relativeFilePath(at.next());
            QDir().mkpath(QFileInfo(to).path());
            ASSERT_TRUE(QFile::copy(at.filePath(), to));
        }
    };
    clsProgram program(Folder(), Services());
    program.StartUp();
    PressSync(*program.MainWindow());
    ASSERT_EQ(m_messages.Shown.size(), 1);
    const QString report = m_messages.Shown[0].Text;
    EXPECT_TRUE(report.startsWith(u"An entry of the company ABC "_s)) << report.toStdString();
    EXPECT_TRUE(report.contains(u"erases entries"_s)) << report.toStdString();

    for (int start = 0; start < 2; ++start) {
        m_messages.Shown.clear();
        clsProgram next(left, Services());
        next.StartUp();
        ASSERT_NE(next.MainWindow(), nullptr);
        if (start == 0)
            EXPECT_THAT(m_messages.Texts(), ElementsAre(QString(report).replace(Folder(), left)));
        else
            EXPECT_THAT(m_messages.Texts(), IsEmpty());
    }
}

TEST_F(Program, ASecondInstanceLeavesTheReportToTheFirst)
{
    MakeInstallation();
    SampleCompany company;
    company.Options.Sync_Option = u"3"_s;
    company.Entries = std::vector{
        SampleEntry(u"0100"_s, {}, u"CONS"_s, QDate(2026, 3, 9), Currency::FromWhole(3))};
    BuildSampleCompanies(Folder(), {company}, Global(u"ABC"_s));
    clsProgram program(Folder(), Services());
    program.StartUp();
    QStringList toldBySecond;
    m_process.Work = [&] {
        QFile::remove(File(u"ABCEntries-WkLg"_s));
        clsProgram second(Folder(), Services());
        second.StartUp();
        toldBySecond = m_messages.Texts();
        m_messages.Shown.clear();
    };
    PressSync(*program.MainWindow());
    EXPECT_THAT(toldBySecond, ElementsAre(u"Error 70; Worklog Remote is already running."_s));
    ASSERT_EQ(m_messages.Shown.size(), 1);
    EXPECT_TRUE(m_messages.Shown[0].Text.startsWith(u"An entry of the company ABC "_s));
}

TEST_F(Program, EntriesThatCannotBeReadAfterTheClientLockTheWindowAndTheirCopyIsNamed)
{
    MakeInstallation();
    BuildSampleCompanies(Folder(), {SampleCompany()}, Global(u"ABC"_s));
    clsProgram program(Folder(), Services());
    QSignalSpy ended(&program, &clsProgram::Ended);
    program.StartUp();
    m_process.Work = [&] {
        QFile file(File(u"ABCEntries-WkLg"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("half written");
    };
    PressSync(*program.MainWindow());
    ASSERT_EQ(m_messages.Shown.size(), 2);
    EXPECT_EQ(m_messages.Shown[0].Text, SynchroniseFirst);
    EXPECT_TRUE(
        m_messages.Shown[1].Text.contains(Native(Folder() + u"/backup/000001-20260309-103000"_s)));
    EXPECT_NE(program.MainWindow(), nullptr);
    EXPECT_EQ(ended.count(), 0);
}

TEST_F(Program, WithoutACopyOfTheEntriesNoClientIsStarted)
{
    MakeInstallation();
    BuildSampleCompanies(Folder(), {SampleCompany()}, Global(u"ABC"_s));
    QFile inTheWay(Folder() + u"/backup"_s);
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    clsProgram program(Folder(), Services());
    program.StartUp();
    PressSync(*program.MainWindow());
    EXPECT_THAT(m_process.Programs, IsEmpty());
    ASSERT_EQ(m_messages.Shown.size(), 1);
    EXPECT_TRUE(m_messages.Shown[0].Text.contains(Native(Folder() + u"/backup"_s)));
    EXPECT_NE(program.MainWindow(), nullptr);
}

TEST_F(Program, ALackOfMemoryWhileTheClientWorksBringsTheWindowBack)
{
    MakeInstallation();
    BuildSampleCompanies(Folder(), {SampleCompany()}, Global(u"ABC"_s));
    clsProgram program(Folder(), Services());
    QSignalSpy ended(&program, &clsProgram::Ended);
    program.StartUp();
    m_process.Work = [] { throw std::bad_alloc(); };
    PressSync(*program.MainWindow());
    EXPECT_THAT(m_messages.Texts(), ElementsAre(u"Error #7 (Out of memory)."_s));
    ASSERT_NE(program.MainWindow(), nullptr);
    EXPECT_TRUE(Control<QWidget>(*program.MainWindow(), "txtCustomer").isEnabled());
    EXPECT_EQ(ended.count(), 0);
}

TEST_F(Program, TheLockIsHeldWhileTheClientWorks)
{
    MakeInstallation();
    clsProgram program(Folder(), Services());
    program.StartUp();
    int refused = 0;
    m_process.Work = [&] {
        clsInstanceLock other;
        refused = RaisedBy([&] { other.CreateAndHold(Folder() + u"/WLRemote.txt"_s); }).Number;
    };
    PressSync(*program.MainWindow());
    EXPECT_EQ(refused, RunTimeErrors::PermissionDenied);
}

namespace {

/// Whether another process may work with the folder's databases now.
bool MayWorkWithDatabases(const QString &folder)
{
    clsInstanceLock client;
    const int refused
        = RaisedBy([&] { client.CreateAndHold(folder + u"/exchange.lock"_s); }).Number;
    client.CloseAndRemove();
    EXPECT_TRUE(refused == 0 || refused == RunTimeErrors::PermissionDenied) << refused;
    return refused == 0;
}

} // namespace

TEST_F(Program, TheDatabasesAreTheClientsWhileItWorksAndTheProgramsOtherwise)
{
    MakeInstallation();
    BuildSampleCompanies(Folder(), {SampleCompany()}, Global(u"ABC"_s));
    auto program = std::make_unique<clsProgram>(Folder(), Services());
    program->StartUp();
    EXPECT_FALSE(MayWorkWithDatabases(Folder()));
    bool mayClient = false;
    m_process.Work = [&] { mayClient = MayWorkWithDatabases(Folder()); };
    PressSync(*program->MainWindow());
    EXPECT_TRUE(mayClient);
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
    EXPECT_FALSE(MayWorkWithDatabases(Folder()));
    m_messages.Answers = {MessageAnswer::Yes};
    ChooseDeleteDatabases(*program->MainWindow());
    EXPECT_FALSE(MayWorkWithDatabases(Folder()));
    program.reset();
    EXPECT_TRUE(MayWorkWithDatabases(Folder()));
    EXPECT_THAT(QDir(Folder()).entryList({u"*.lock"_s}), IsEmpty());
}

TEST_F(Program, AStartWhileAClientWorksInTheFolderSaysSoAndOpensNothing)
{
    BuildSampleCompanies(Folder(), {SampleCompany()}, Global(u"ABC"_s));
    for (const QString &name : {u"exchange.lock"_s, u"synchronization.lock"_s}) {
        m_messages.Shown.clear();
        clsInstanceLock client;
        client.CreateAndHold(Folder() + u'/' + name);
        clsProgram program(Folder(), Services());
        QSignalSpy ended(&program, &clsProgram::Ended);
        program.StartUp();
        EXPECT_THAT(m_messages.Texts(),
            ElementsAre(u"Error 2002; A synchronization is still running in the folder %1. Start "
                        "Worklog Remote again when it has ended"_s.arg(Folder())));
        EXPECT_EQ(m_messages.Shown[0].Icon, MessageIcon::Critical);
        EXPECT_EQ(program.MainWindow(), nullptr);
        EXPECT_EQ(ended.count(), 1);
        client.CloseAndRemove();
        m_messages.Shown.clear();
        clsProgram next(Folder(), Services());
        next.StartUp();
        EXPECT_THAT(m_messages.Texts(), IsEmpty());
    }
}

TEST_F(Program, AClientThatStillWorksAfterTheOneThatWasStartedKeepsTheDatabases)
{
    MakeInstallation();
    BuildSampleCompanies(Folder(), {SampleCompany()}, Global(u"ABC"_s));
    clsProgram program(Folder(), Services());
    QSignalSpy ended(&program, &clsProgram::Ended);
    program.StartUp();
    clsInstanceLock other;
    m_process.Work = [&] { other.CreateAndHold(Folder() + u"/exchange.lock"_s); };
    PressSync(*program.MainWindow());
    ASSERT_EQ(m_messages.Shown.size(), 1);
    EXPECT_TRUE(m_messages.Shown[0].Text.startsWith(u"Error 2002; "_s));
    EXPECT_EQ(program.MainWindow(), nullptr);
    EXPECT_EQ(ended.count(), 1);
}

TEST_F(Program, ASynchronizationWithoutALockForItsClientIsNotStarted)
{
    MakeInstallation();
    BuildSampleCompanies(Folder(), {SampleCompany()}, Global(u"ABC"_s));
    clsProgram program(Folder(), Services());
    program.StartUp();
    ASSERT_TRUE(QDir().mkdir(Folder() + u"/synchronization.lock"_s));
    PressSync(*program.MainWindow());
    EXPECT_THAT(m_process.Programs, IsEmpty());
    ASSERT_GE(m_messages.Shown.size(), 1);
    EXPECT_TRUE(m_messages.Shown[0].Text.contains(Native(Folder() + u"/synchronization.lock"_s)));
}

TEST_F(Program, CancellingTheSaveQuestionAbandonsTheSynchronisation)
{
    MakeInstallation();
    BuildSampleCompanies(Folder(), {SampleCompany()});
    clsProgram program(Folder(), Services());
    program.StartUp();
    frmEntryList &window = *program.MainWindow();
    ASSERT_TRUE(ShowActive(window));
    QTest::keyClicks(&Control<QLineEdit>(window, "txtDescription"), u"half typed"_s);
    m_messages.Answers = {MessageAnswer::Cancel};
    PressSync(window);
    EXPECT_THAT(m_messages.Texts(), ElementsAre(u"Do you want to save changes?"_s));
    EXPECT_EQ(m_messages.Shown[0].Icon, MessageIcon::Question);
    EXPECT_EQ(m_messages.Shown[0].Buttons, MessageButtons::YesNoCancel);
    EXPECT_THAT(m_process.Programs, IsEmpty());
    EXPECT_EQ(program.MainWindow(), &window);
    EXPECT_EQ(Control<QLineEdit>(window, "txtDescription").text(), u"half typed"_s);
}

TEST_F(Program, ARefusedSaveAbandonsTheSynchronisation)
{
    MakeInstallation();
    BuildSampleCompanies(Folder(), {SampleCompany()});
    clsProgram program(Folder(), Services());
    program.StartUp();
    frmEntryList &window = *program.MainWindow();
    ASSERT_TRUE(ShowActive(window));
    QTest::keyClicks(&Control<QLineEdit>(window, "txtDescription"), u"half typed"_s);
    m_messages.Answers = {MessageAnswer::Yes};
    PressSync(window);
    EXPECT_EQ(m_messages.Shown.size(), 2);
    EXPECT_THAT(m_process.Programs, IsEmpty());
    EXPECT_EQ(program.MainWindow(), &window);
}

TEST_F(Program, AnsweringNoSynchronisesWithoutTheEdits)
{
    MakeInstallation();
    BuildSampleCompanies(Folder(), {SampleCompany()});
    clsProgram program(Folder(), Services());
    program.StartUp();
    ASSERT_TRUE(ShowActive(*program.MainWindow()));
    QTest::keyClicks(&Control<QLineEdit>(*program.MainWindow(), "txtDescription"), u"half typed"_s);
    m_messages.Answers = {MessageAnswer::No};
    PressSync(*program.MainWindow());
    EXPECT_EQ(m_process.Programs.size(), 1);
    EXPECT_EQ(m_messages.Shown.size(), 1);
    EXPECT_EQ(Control<QLineEdit>(*program.MainWindow(), "txtDescription").text(), QString());
}

TEST_F(Program, ClosingTheWindowRemembersTheCompanyAndEndsTheProgram)
{
    BuildSampleCompanies(Folder(), {SampleCompany(u"ABC"_s), SampleCompany(u"XYZ"_s, u"Xylo"_s)});
    clsProgram program(Folder(), Services());
    QSignalSpy ended(&program, &clsProgram::Ended);
    program.StartUp();
    ASSERT_TRUE(ShowActive(*program.MainWindow()));
    QComboBox &company = Control<QComboBox>(*program.MainWindow(), "cboCompany");
    company.setFocus();
    QTest::keyClick(&company, Qt::Key_Down); // opens the list
    LetEventsRun();
    QWidget *list = QApplication::activePopupWidget();
    ASSERT_NE(list, nullptr);
    QTest::keyClick(company.view(), Qt::Key_Down);
    QTest::keyClick(company.view(), Qt::Key_Return);
    LetEventsRun();
    EXPECT_EQ(Control<QLabel>(*program.MainWindow(), "lblCompanyName").text(), u"Xylo"_s);
    QTest::keyClick(program.MainWindow(), Qt::Key_Escape);
    EXPECT_EQ(ended.count(), 1);
    EXPECT_EQ(ended.value(0).value(0).toInt(), 0);
    EXPECT_EQ(FirstRecordOf<GlobalOptionsRecord>(u"GlobalOptions-WkLg"_s).Last_Company, u"XYZ"_s);
}

TEST_F(Program, AnotherCompanyASynchronisationAndADeletionEmptyTheFilter)
{
    MakeInstallation();
    SampleCompany one(u"ABC"_s, u"Abacus"_s);
    one.Entries = std::vector{
        SampleEntry(u"0100"_s, {}, u"CONS"_s, QDate(2026, 3, 9), Currency::FromWhole(1)),
        SampleEntry(u"0200"_s, {}, u"CONS"_s, QDate(2026, 3, 9), Currency::FromWhole(2))};
    SampleCompany other = one;
    other.Code = u"XYZ"_s;
    BuildSampleCompanies(Folder(), {one, other}, Global(u"ABC"_s));
    clsProgramKeys keys;
    clsProgram program(Folder(), {m_messages, keys, m_process, m_clock, m_settings, m_browser});
    program.StartUp();
    const auto rows
        = [&] { return Control<clsGrid>(*program.MainWindow(), "msgEntryList").Rows() - 1; };
    const auto inFilter = [&](const std::function<void(QLineEdit &)> &steps) {
        frmEntryList &window = *program.MainWindow();
        ASSERT_TRUE(ShowActive(window));
        WithModal(
            [&] {
                QTest::mouseClick(&Control<QPushButton>(window, "cmdTransFilter"), Qt::LeftButton);
            },
            [&](QWidget &filter) {
                filter.activateWindow();
                ASSERT_TRUE(WaitUntilActive(filter));
                steps(Control<QLineEdit>(filter, "txtCustomer"));
                QTest::mouseClick(&Control<QPushButton>(filter, "cmdOK"), Qt::LeftButton);
            });
        ASSERT_TRUE(ShowActive(window));
    };
    const auto filterBy0200 = [&] {
        inFilter([](QLineEdit &box) { QTest::keyClicks(&box, u"0200"_s); });
        ASSERT_EQ(rows(), 1);
    };
    const auto expectEmpty = [&](const char *after) {
        EXPECT_EQ(rows(), 2) << after;
        inFilter([&](QLineEdit &box) { EXPECT_EQ(box.text(), QString()) << after; });
    };

    filterBy0200();
    QComboBox &company = Control<QComboBox>(*program.MainWindow(), "cboCompany");
    company.setFocus();
    QTest::keyClick(&company, Qt::Key_Down);
    LetEventsRun();
    QTest::keyClick(company.view(), Qt::Key_Down);
    QTest::keyClick(company.view(), Qt::Key_Return);
    LetEventsRun();
    ASSERT_EQ(company.currentText(), u"XYZ"_s);
    expectEmpty("another company");

    filterBy0200();
    PressSync(*program.MainWindow());
    ASSERT_EQ(m_process.Programs.size(), 1);
    expectEmpty("a synchronisation");

    filterBy0200();
    m_messages.Answers = {MessageAnswer::Yes};
    ChooseDeleteDatabases(*program.MainWindow());
    ASSERT_THAT(Databases(), IsEmpty());
    m_process.Work = [&] { BuildSampleCompanies(Folder(), {one}); };
    PressSync(*program.MainWindow());
    expectEmpty("a deletion");
}

TEST_F(Program, ACompanyWhoseDatabasesAreIncompleteLeavesTheFormerOneUsable)
{
    BuildSampleCompanies(Folder(), {SampleCompany(u"ABC"_s, u"Abacus"_s), SampleCompany(u"XYZ"_s)},
        Global(u"ABC"_s));
    ASSERT_TRUE(QFile::remove(File(u"XYZCustomers-WkLg"_s)));
    clsProgram program(Folder(), Services());
    program.StartUp();
    frmEntryList &window = *program.MainWindow();
    ASSERT_TRUE(ShowActive(window));
    QComboBox &company = Control<QComboBox>(window, "cboCompany");
    company.setFocus();
    QTest::keyClick(&company, Qt::Key_Down);
    LetEventsRun();
    QTest::keyClick(company.view(), Qt::Key_Down);
    QTest::keyClick(company.view(), Qt::Key_Return);
    LetEventsRun();
    EXPECT_THAT(m_messages.Texts(),
        ElementsAre(u"Error #%1 (The databases of the company XYZ are incomplete)."_s.arg(
            StoreErrors::Incomplete)));
    EXPECT_EQ(company.currentText(), u"ABC"_s);
    EXPECT_EQ(Control<QLabel>(window, "lblCompanyName").text(), u"Abacus"_s);
    QTest::keyClick(&Control<QLineEdit>(window, "txtCustomer"), Qt::Key_Home);
    EXPECT_TRUE(Control<QWidget>(window, "txtCustomer").isEnabled());
}

TEST_F(Program, ACompanyWhoseDataCannotBeShownLeavesTheFormerOneUsable)
{
    SampleCompany former(u"ABC"_s, u"Abacus"_s);
    former.Entries = std::vector{
        SampleEntry(u"0100"_s, {}, u"CONS"_s, QDate(2026, 3, 9), Currency::FromWhole(3))};
    SampleCompany damaged(u"XYZ"_s);
    damaged.Entries.reset();
    BuildSampleCompanies(Folder(), {former, damaged}, Global(u"ABC"_s));
    QFile entries(File(u"XYZEntries-WkLg"_s));
    ASSERT_TRUE(entries.open(QIODevice::WriteOnly));
    entries.write("no database");
    entries.close();
    clsProgram program(Folder(), Services());
    program.StartUp();
    frmEntryList &window = *program.MainWindow();
    ASSERT_TRUE(ShowActive(window));
    QComboBox &company = Control<QComboBox>(window, "cboCompany");
    company.setFocus();
    QTest::keyClick(&company, Qt::Key_Down);
    LetEventsRun();
    QTest::keyClick(company.view(), Qt::Key_Down);
    QTest::keyClick(company.view(), Qt::Key_Return);
    LetEventsRun();
    EXPECT_EQ(m_messages.Shown.size(), 1);
    EXPECT_EQ(company.currentText(), u"ABC"_s);
    EXPECT_EQ(Control<QLabel>(window, "lblCompanyName").text(), u"Abacus"_s);
    const auto &grid = Control<clsGrid>(window, "msgEntryList");
    EXPECT_EQ(grid.TextMatrix(1, 7), u"3.00"_s);
    // And its entries are the ones that a refresh reads.
    QTest::mouseClick(&Control<QPushButton>(window, "cmdUndo"), Qt::LeftButton);
    EXPECT_EQ(grid.TextMatrix(1, 7), u"3.00"_s);
    EXPECT_EQ(m_messages.Shown.size(), 1);
}

TEST_F(Program, APressThatWaitedIsNotCarriedOutInsideAnotherOnesMessage)
{
    MakeInstallation();
    BuildSampleCompanies(Folder(), {SampleCompany()});
    /// Lets the events run, as the event loop of a box on the screen does.
    class clsBoxWithEvents : public clsRecordedMessages
    {
    public:
        MessageAnswer Ask(const QString &text, MessageIcon icon, MessageButtons buttons,
            MessageAnswer preset) override
        {
            LetEventsRun();
            return clsRecordedMessages::Ask(text, icon, buttons, preset);
        }
    };
    clsBoxWithEvents messages;
    clsProgram program(Folder(), {messages, m_keys, m_process, m_clock, m_settings, m_browser});
    program.StartUp();
    frmEntryList &window = *program.MainWindow();
    ASSERT_TRUE(ShowActive(window));
    QTest::keyClicks(&Control<QLineEdit>(window, "txtDescription"), u"half typed"_s);
    messages.Answers = {MessageAnswer::Cancel};
    auto &sync = Control<QPushButton>(window, "cmdSync");
    sync.click();
    sync.click();
    LetEventsRun();
    EXPECT_EQ(program.MainWindow(), &window);
    EXPECT_THAT(messages.Texts(), ElementsAre(u"Do you want to save changes?"_s));
    EXPECT_THAT(m_process.Programs, IsEmpty());
}

TEST_F(Program, AWindowThatIsStillLockedAfterASynchronizationEndsTheProgram)
{
    MakeInstallation();
    clsProgram program(Folder(), Services());
    QSignalSpy ended(&program, &clsProgram::Ended);
    program.StartUp();
    PressSync(*program.MainWindow()); // the client writes nothing
    ASSERT_EQ(m_process.Programs.size(), 1);
    ASSERT_NE(program.MainWindow(), nullptr);
    ASSERT_FALSE(Control<QWidget>(*program.MainWindow(), "txtCustomer").isEnabled());
    EXPECT_EQ(ended.count(), 0);
    QTest::keyClick(program.MainWindow(), Qt::Key_Escape);
    ASSERT_EQ(ended.count(), 1);
    EXPECT_EQ(ended[0][0].toInt(), EXIT_SUCCESS);
}

TEST_F(Program, TwoProgramsInOneProcessKnowNothingOfEachOther)
{
    QTemporaryDir other;
    BuildSampleCompanies(Folder(), {SampleCompany(u"ABC"_s, u"Abacus"_s)});
    BuildSampleCompanies(other.path(), {SampleCompany(u"XYZ"_s, u"Xylo"_s)});
    clsProgram one(Folder(), Services());
    clsProgram two(other.path(), Services());
    one.StartUp();
    two.StartUp();
    EXPECT_EQ(Control<QLabel>(*one.MainWindow(), "lblCompanyName").text(), u"Abacus"_s);
    EXPECT_EQ(Control<QLabel>(*two.MainWindow(), "lblCompanyName").text(), u"Xylo"_s);
}

TEST_F(Program, AnsweringNoToTheWarningDeletesNothing)
{
    BuildSampleCompanies(Folder(), {SampleCompany()}, Global(u"ABC"_s));
    clsProgram program(Folder(), Services());
    program.StartUp();
    frmEntryList &window = *program.MainWindow();
    ASSERT_TRUE(ShowActive(window));
    const QStringList before = Databases();
    ChooseDeleteDatabases(window); // the default answers
    ASSERT_EQ(m_messages.Shown.size(), 1);
    EXPECT_EQ(m_messages.Shown[0].Text,
        u"W A R N I N G\r\n\r\nAll application data will be lost.\r\n\r\n"
        u"Do you wish to continue?"_s);
    EXPECT_EQ(m_messages.Shown[0].Icon, MessageIcon::Exclamation);
    EXPECT_EQ(m_messages.Shown[0].Buttons, MessageButtons::YesNo);
    EXPECT_EQ(m_messages.Shown[0].Preset, MessageAnswer::No);
    EXPECT_EQ(program.MainWindow(), &window);
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(Databases(), before);
    PressSync(window); // the databases are open as they were
    EXPECT_TRUE(Control<QWidget>(*program.MainWindow(), "txtCustomer").isEnabled());
}

TEST_F(Program, DeletingTheDatabasesStartsAfresh)
{
    MakeInstallation();
    BuildSampleCompanies(
        Folder(), {SampleCompany(u"ABC"_s), SampleCompany(u"XYZ"_s)}, Global(u"XYZ"_s));
    clsProgram program(Folder(), Services());
    QSignalSpy ended(&program, &clsProgram::Ended);
    program.StartUp();
    ASSERT_TRUE(ShowActive(*program.MainWindow()));
    m_messages.Answers = {MessageAnswer::Yes};
    ChooseDeleteDatabases(*program.MainWindow());
    EXPECT_THAT(Databases(), IsEmpty());
    ASSERT_EQ(m_messages.Shown.size(), 2);
    EXPECT_EQ(m_messages.Shown[1].Text, SynchroniseFirst);
    ASSERT_NE(program.MainWindow(), nullptr);
    EXPECT_FALSE(Control<QWidget>(*program.MainWindow(), "txtCustomer").isEnabled());
    EXPECT_EQ(ended.count(), 0);

    // And a synchronisation brings a company again.
    m_messages.Shown.clear();
    m_process.Work = [&] { BuildSampleCompanies(Folder(), {SampleCompany(u"NEW"_s, u"New"_s)}); };
    PressSync(*program.MainWindow());
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
    EXPECT_EQ(Control<QLabel>(*program.MainWindow(), "lblCompanyName").text(), u"New"_s);
    QTest::keyClick(program.MainWindow(), Qt::Key_Escape);
    EXPECT_EQ(ended.count(), 1); // the window ends the program as ever
}

TEST_F(Program, DeletingFromALockedWindowClearsWhatIsLeft)
{
    BuildSampleCompanies(Folder(), {SampleCompany()}, Global(u"ABC"_s));
    ASSERT_TRUE(QFile::remove(File(u"ABCProjects-WkLg"_s)));
    clsProgram program(Folder(), Services());
    program.StartUp();
    ASSERT_TRUE(ShowActive(*program.MainWindow()));
    for (int time = 0; time < 2; ++time) { // the second time there is nothing at all
        m_messages.Shown.clear();
        m_messages.Answers = {MessageAnswer::Yes};
        ChooseDeleteDatabases(*program.MainWindow());
        EXPECT_THAT(Databases(), IsEmpty());
        ASSERT_EQ(m_messages.Shown.size(), 2);
        EXPECT_EQ(m_messages.Shown[1].Text, SynchroniseFirst);
        ASSERT_TRUE(ShowActive(*program.MainWindow()));
        EXPECT_TRUE(Control<QWidget>(*program.MainWindow(), "cmdSync").isEnabled());
    }
}

TEST_F(Program, CancellingTheSaveQuestionAbandonsTheDeletion)
{
    BuildSampleCompanies(Folder(), {SampleCompany()}, Global(u"ABC"_s));
    clsProgram program(Folder(), Services());
    QSignalSpy ended(&program, &clsProgram::Ended);
    program.StartUp();
    frmEntryList &window = *program.MainWindow();
    ASSERT_TRUE(ShowActive(window));
    const QStringList before = Databases();
    QTest::keyClicks(&Control<QLineEdit>(window, "txtDescription"), u"half typed"_s);
    m_messages.Answers = {MessageAnswer::Yes, MessageAnswer::Cancel};
    ChooseDeleteDatabases(window);
    ASSERT_EQ(m_messages.Shown.size(), 2);
    EXPECT_EQ(m_messages.Shown[1].Text, u"Do you want to save changes?"_s);
    EXPECT_EQ(m_messages.Shown[1].Icon, MessageIcon::Question);
    EXPECT_EQ(m_messages.Shown[1].Buttons, MessageButtons::YesNoCancel);
    EXPECT_EQ(program.MainWindow(), &window);
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(Control<QLineEdit>(window, "txtDescription").text(), u"half typed"_s);
    EXPECT_EQ(Databases(), before);

    m_messages.Answers = {MessageAnswer::No}; // closing ends the program: nothing is in progress
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_EQ(ended.count(), 1);
}

TEST_F(Program, DeletingDropsTheChangesThatTheUserDoesNotWantToSave)
{
    BuildSampleCompanies(Folder(), {SampleCompany()}, Global(u"ABC"_s));
    clsProgram program(Folder(), Services());
    program.StartUp();
    ASSERT_TRUE(ShowActive(*program.MainWindow()));
    QTest::keyClicks(&Control<QLineEdit>(*program.MainWindow(), "txtDescription"), u"half"_s);
    m_messages.Answers = {MessageAnswer::Yes, MessageAnswer::No};
    ChooseDeleteDatabases(*program.MainWindow());
    EXPECT_THAT(Databases(), IsEmpty());
    EXPECT_EQ(m_messages.Shown.size(), 3);
    ASSERT_TRUE(ShowActive(*program.MainWindow()));
    QTest::keyClick(program.MainWindow(), Qt::Key_Escape);
    EXPECT_EQ(m_messages.Shown.size(), 3); // the new window has no changes
}

TEST_F(Program, DatabasesThatCannotBeDeletedAreToldAndFoundAgain)
{
    BuildSampleCompanies(
        Folder(), {SampleCompany(u"ABC"_s), SampleCompany(u"XYZ"_s, u"Xylo"_s)}, Global(u"XYZ"_s));
    ASSERT_TRUE(QDir().mkpath(File(u"ABCHoursSummary-WkLg"_s) + u"/in the way"_s));
    clsProgram program(Folder(), Services());
    program.StartUp();
    ASSERT_TRUE(ShowActive(*program.MainWindow()));
    m_messages.Answers = {MessageAnswer::Yes};
    ChooseDeleteDatabases(*program.MainWindow());
    ASSERT_EQ(m_messages.Shown.size(), 2);
    EXPECT_EQ(m_messages.Shown[1].Text, u"Failed to delete databases."_s);
    EXPECT_EQ(m_messages.Shown[1].Icon, MessageIcon::Exclamation);
    EXPECT_EQ(m_messages.Shown[1].Buttons, MessageButtons::OK);
    EXPECT_FALSE(QFile::exists(File(u"ABCEntries-WkLg"_s)));
    // The company that was left stands open again.
    EXPECT_EQ(Control<QLabel>(*program.MainWindow(), "lblCompanyName").text(), u"Xylo"_s);
    EXPECT_TRUE(Control<QWidget>(*program.MainWindow(), "txtCustomer").isEnabled());
}

TEST_F(Program, TheWindowOpensWhereItWasClosed)
{
    BuildSampleCompanies(Folder(), {SampleCompany(u"ABC"_s)});
    QPoint corner;
    QSize size;
    {
        clsProgram program(Folder(), Services());
        program.StartUp();
        frmEntryList &window = *program.MainWindow();
        ASSERT_TRUE(ShowActive(window));
        // The screen of the tests is no wider than the window may become.
        size = window.minimumSizeHint() + QSize(0, 25);
        window.resize(size);
        window.move(0, 11);
        corner = window.pos();
        window.close();
    }
    clsProgram program(Folder(), Services());
    program.StartUp();
    ASSERT_TRUE(ShowActive(*program.MainWindow()));
    EXPECT_EQ(program.MainWindow()->size(), size);
    // Some window managers count the frame's line in only when a window is shown.
    EXPECT_LE((program.MainWindow()->pos() - corner).manhattanLength(), 1);
}

TEST_F(Program, AWindowOfAScreenThatIsGoneOpensOnTheOneThatIsThere)
{
    BuildSampleCompanies(Folder(), {SampleCompany(u"ABC"_s)});
    m_settings.SaveSetting(u"Window"_s, u"Place"_s, u"-5000 9000 500 300 0 0 0"_s);
    clsProgram program(Folder(), Services());
    program.StartUp();
    ASSERT_TRUE(ShowActive(*program.MainWindow()));
    const frmEntryList &window = *program.MainWindow();
    EXPECT_TRUE(window.screen()->availableGeometry().contains(window.pos()));
}
