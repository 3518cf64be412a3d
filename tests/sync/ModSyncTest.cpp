#include "sync/modSync.h"

#include "platform/clsWorkingFolder.h"
#include "store/StoreErrors.h"
#include "tests/support/Native.h"
#include "tests/support/Raised.h"
#include "tests/support/Recorded.h"
#include "tests/support/SampleCompany.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QString EntriesUnknown = u"Unable to determine if entries exist. Sync unsuccessful."_s;

void Touch(const QString &path, const QByteArray &content = {})
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
}

GlobalOptionsRecord Global(const QString &company)
{
    GlobalOptionsRecord record;
    record.Last_Company = company;
    record.Employee = u"JMS"_s;
    return record;
}

class ModSync : public testing::Test
{
protected:
    ModSync() { m_tables.Main.StoreTheCodes(SampleCodes()); }

    QString Folder() const { return m_place.filePath(u"program"_s); }
    QString Root() const { return Native(m_place.filePath(u"mas90"_s)); }
    QString File(const QString &name) const { return Folder() + u'/' + name + u".db"_s; }

    void MakeInstallation(const QString &marker = u"soa/startup.m4p"_s)
    {
        Touch(Root() + u'/' + marker);
        Touch(Root() + u"/Home/pvxwin32.exe"_s);
        Touch(Folder() + u"/mas90.ini"_s, (Root() + u"\n-ARG X\n"_s).toUtf8());
    }

    GlobalOptionsRecord StoredGlobalOptions()
    {
        RecordStore store;
        store.SetCreator(CodeNumber(SampleCodes().Creator));
        const auto handle
            = store.OpenDatabase(1, Folder() + u"/GlobalOptions-WkLg"_s, 0, 0, 0, 0, 3);
        GlobalOptionsRecord record;
        EXPECT_TRUE(store.ReadRecord(handle, record));
        return record;
    }

    bool AnythingOpen() const
    {
        return m_tables.Company.IsOpen() || m_tables.GlobalOptions.IsOpen()
            || m_tables.Options.IsOpen() || m_tables.Employee.IsOpen()
            || m_tables.Multiplier.IsOpen() || m_tables.Divisions.IsOpen()
            || m_tables.Customers.IsOpen() || m_tables.Projects.IsOpen()
            || m_tables.Activities.IsOpen() || m_tables.Entries.IsOpen();
    }

    struct MadeFolder
    {
        explicit MadeFolder(const QString &path) { QDir().mkpath(path); }
    };

    QTemporaryDir m_place;
    MadeFolder m_made{m_place.filePath(u"program"_s)};
    Tables m_tables{m_place.filePath(u"program"_s)};
    SessionState m_session;
    clsRecordedMessages m_messages;
    clsRecordedProcess m_process;
    clsFixedClock m_clock;
    modBackup m_backup{m_tables, m_clock};
    modSync m_sync{m_tables, m_session, m_messages, m_process, m_backup};
};

} // namespace

TEST_F(ModSync, OpeningACompanyOpensAllItsDatabasesAndLoadsItsOptions)
{
    SampleCompany company;
    company.Options.Accounting_Name = u"  MAS 90 "_s;
    BuildSampleCompanies(Folder(), {company});
    m_session.CurrentCompanyCode = u"ABC"_s;
    m_sync.OpenAllDatabases();
    EXPECT_TRUE(m_session.DatabasesReady);
    EXPECT_FALSE(m_session.OpeningInProgress);
    EXPECT_TRUE(m_tables.Entries.IsOpen());
    EXPECT_EQ(m_tables.Options.Working.Accounting_Name, u"MAS 90"_s);
}

TEST_F(ModSync, MissingEntriesAreCreatedEmpty)
{
    SampleCompany company;
    company.Entries.reset();
    BuildSampleCompanies(Folder(), {company});
    m_session.CurrentCompanyCode = u"ABC"_s;
    m_sync.OpenAllDatabases();
    EXPECT_TRUE(m_session.DatabasesReady);
    EXPECT_EQ(m_tables.Entries.GetRecordCount(), 0);
}

TEST_F(ModSync, AMissingReferenceDatabaseLeavesTheRestOpenAndEntriesUntouched)
{
    SampleCompany company;
    company.Entries.reset();
    BuildSampleCompanies(Folder(), {company});
    ASSERT_TRUE(QFile::remove(File(u"ABCDivisions-WkLg"_s)));
    m_session.CurrentCompanyCode = u"ABC"_s;
    m_sync.OpenAllDatabases();
    EXPECT_FALSE(m_session.DatabasesReady);
    EXPECT_TRUE(m_tables.Options.IsOpen());
    EXPECT_FALSE(m_tables.Divisions.IsOpen());
    EXPECT_TRUE(m_tables.Activities.IsOpen());
    EXPECT_FALSE(m_tables.Entries.IsOpen());
    EXPECT_FALSE(QFile::exists(File(u"ABCEntries-WkLg"_s)));
}

TEST_F(ModSync, EntriesThatCannotBeOpenedLeaveNoOpeningInProgress)
{
    SampleCompany company;
    company.Entries.reset();
    BuildSampleCompanies(Folder(), {company});
    Touch(File(u"ABCEntries-WkLg"_s), "no database");
    m_session.CurrentCompanyCode = u"ABC"_s;
    m_sync.OpenAllDatabases();
    ASSERT_EQ(m_tables.Main.Failures().size(), 1U);
    EXPECT_EQ(m_tables.Main.Failures()[0].Error.Number(), StoreErrors::NotADatabase);
    EXPECT_FALSE(m_session.OpeningInProgress);
    EXPECT_FALSE(m_session.DatabasesReady);
}

TEST_F(ModSync, OpeningAgainLeavesNoFileOpenBehindALostHandle)
{
    BuildSampleCompanies(Folder(), {SampleCompany()});
    m_session.CurrentCompanyCode = u"ABC"_s;
    m_sync.OpenAllDatabases();
    const RecordStore::Handle first = m_tables.Customers.Handle;
    m_sync.OpenAllDatabases();
    EXPECT_NE(RaisedBy([&] { m_tables.Store.GetRecordCount(first); }).Number, 0);
}

TEST_F(ModSync, ClosingKeepsTheGlobalDatabasesOutsideOfASynchronisation)
{
    BuildSampleCompanies(Folder(), {SampleCompany()}, Global(u"ABC"_s));
    m_session.CurrentCompanyCode = u"ABC"_s;
    m_tables.Company.Handle = m_tables.Main.OpenTable(u"Company-WkLg"_s);
    m_tables.GlobalOptions.TakeHandle(m_tables.Main.OpenTable(u"GlobalOptions-WkLg"_s));
    m_sync.OpenAllDatabases();
    m_sync.CloseAllDatabases();
    EXPECT_TRUE(m_tables.Company.IsOpen());
    EXPECT_TRUE(m_tables.GlobalOptions.IsOpen());
    EXPECT_FALSE(m_tables.Customers.IsOpen());
    EXPECT_FALSE(m_tables.Entries.IsOpen());

    m_session.DeletionInProgress = true;
    m_sync.CloseAllDatabases();
    EXPECT_FALSE(AnythingOpen());
}

TEST_F(ModSync, EveryReferenceDatabaseIsNeeded)
{
    m_session.CurrentCompanyCode = u"ABC"_s;
    for (const QString &name : {u"Options"_s, u"Employee"_s, u"Multiplier"_s, u"Divisions"_s,
             u"Customers"_s, u"Projects"_s, u"Activities"_s}) {
        m_sync.CloseAllDatabases();
        QDir(Folder()).removeRecursively();
        QDir().mkpath(Folder());
        BuildSampleCompanies(Folder(), {SampleCompany()});
        ASSERT_TRUE(QFile::remove(File(u"ABC"_s + name + u"-WkLg"_s))) << name.toStdString();
        m_sync.OpenAllDatabases();
        EXPECT_FALSE(m_session.DatabasesReady) << name.toStdString();
        EXPECT_FALSE(m_tables.Entries.IsOpen()) << name.toStdString();
    }
}

TEST_F(ModSync, EntriesOfTheFirstCompanyCountAsThoseOfTheLastDo)
{
    SampleCompany full(u"ABC"_s);
    full.Entries = std::vector{
        SampleEntry(u"0100"_s, {}, u"DEV"_s, QDate(2026, 3, 9), Currency::FromWhole(2))};
    BuildSampleCompanies(Folder(), {full, SampleCompany(u"XYZ"_s)}, Global(u"XYZ"_s));
    EXPECT_TRUE(m_sync.CheckEntriesExist());
    EXPECT_EQ(StoredGlobalOptions().Entries_Exist, u"Y"_s);
}

TEST_F(ModSync, EntriesOfAnyCompanyCountAndTheRestOfTheRecordStays)
{
    SampleCompany empty(u"ABC"_s);
    SampleCompany full(u"XYZ"_s);
    full.Entries = std::vector{
        SampleEntry(u"0100"_s, {}, u"DEV"_s, QDate(2026, 3, 9), Currency::FromWhole(2))};
    SampleCompany without(u"NEW"_s);
    without.Entries.reset();
    BuildSampleCompanies(Folder(), {empty, full, without}, Global(u"XYZ"_s));
    EXPECT_TRUE(m_sync.CheckEntriesExist());
    EXPECT_EQ(StoredGlobalOptions().Entries_Exist, u"Y"_s);
    EXPECT_EQ(StoredGlobalOptions().Last_Company, u"XYZ"_s);
    EXPECT_EQ(StoredGlobalOptions().Employee, u"JMS"_s);
    EXPECT_FALSE(AnythingOpen());
}

TEST_F(ModSync, AnEmptyCompanyAfterAFullOneTakesNoEntriesAway)
{
    SampleCompany full(u"ABC"_s);
    full.Entries = std::vector{
        SampleEntry(u"0100"_s, {}, u"DEV"_s, QDate(2026, 3, 9), Currency::FromWhole(2))};
    const SampleCompany empty(u"XYZ"_s);
    BuildSampleCompanies(Folder(), {full, empty}, Global(u"ABC"_s));
    EXPECT_TRUE(m_sync.CheckEntriesExist());
    EXPECT_EQ(StoredGlobalOptions().Entries_Exist, u"Y"_s);
}

TEST_F(ModSync, WithoutAnyEntryNoneAreSaidToExist)
{
    SampleCompany without;
    without.Entries.reset();
    BuildSampleCompanies(Folder(), {without}, Global(u"ABC"_s));
    EXPECT_TRUE(m_sync.CheckEntriesExist());
    EXPECT_EQ(StoredGlobalOptions().Entries_Exist, u"N"_s);
}

TEST_F(ModSync, WithoutACompanyDatabaseThereIsNothingToRecord)
{
    EXPECT_TRUE(m_sync.CheckEntriesExist());
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
    EXPECT_FALSE(QFile::exists(File(u"GlobalOptions-WkLg"_s)));
}

TEST_F(ModSync, ADatabaseThatCannotBeOpenedIsForTheClientAndStopsNothing)
{
    MakeInstallation();
    SampleCompany company;
    company.Entries.reset();
    BuildSampleCompanies(Folder(), {company}, Global(u"ABC"_s));
    Touch(File(u"ABCEntries-WkLg"_s), "no database");
    m_sync.RunSynchronisation();
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
    EXPECT_EQ(m_process.Programs.size(), 1);
    EXPECT_EQ(StoredGlobalOptions().Entries_Exist, u"N"_s);
    Touch(File(u"Company-WkLg"_s), "no database");
    m_sync.RunSynchronisation();
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
    EXPECT_EQ(m_process.Programs.size(), 2);
    EXPECT_FALSE(AnythingOpen());
}

TEST_F(ModSync, MissingGlobalOptionsStopTheSynchronisationBeforeTheClient)
{
    MakeInstallation();
    BuildSampleCompanies(Folder(), {SampleCompany()});
    m_sync.RunSynchronisation();
    EXPECT_THAT(m_messages.Texts(), ElementsAre(EntriesUnknown));
    EXPECT_THAT(m_process.Programs, IsEmpty());
}

TEST_F(ModSync, EmptyGlobalOptionsStopTheSynchronisationBeforeTheClient)
{
    MakeInstallation();
    BuildSampleCompanies(Folder(), {SampleCompany()});
    BuildDatabase<GlobalOptionsRecord>(Folder(), u"GlobalOptions-WkLg"_s, {});
    m_sync.RunSynchronisation();
    EXPECT_THAT(m_messages.Texts(), ElementsAre(EntriesUnknown));
    EXPECT_EQ(m_messages.Shown.value(0).Icon, MessageIcon::Exclamation);
    EXPECT_THAT(m_process.Programs, IsEmpty());
    EXPECT_FALSE(AnythingOpen());
}

TEST_F(ModSync, TheClientRunsInItsFolderWithEveryDatabaseClosed)
{
    MakeInstallation();
    BuildSampleCompanies(Folder(), {SampleCompany()}, Global(u"ABC"_s));
    m_session.CurrentCompanyCode = u"ABC"_s;
    m_tables.Company.Handle = m_tables.Main.OpenTable(u"Company-WkLg"_s);
    m_sync.OpenAllDatabases();
    const QString before = QDir::currentPath();
    bool anythingOpen = true;
    QString workingFolder;
    QStringList journals;
    m_process.Work = [&] {
        anythingOpen = AnythingOpen();
        workingFolder = QDir::currentPath();
        journals = QDir(Folder()).entryList({u"*-journal"_s});
    };
    m_sync.RunSynchronisation();
    EXPECT_FALSE(anythingOpen);
    EXPECT_EQ(QFileInfo(workingFolder).canonicalFilePath(),
        QFileInfo(Root() + u"/Home"_s).canonicalFilePath());
    EXPECT_THAT(journals, IsEmpty());
    EXPECT_EQ(QDir::currentPath(), before);
    EXPECT_THAT(m_process.Programs, ElementsAre(Native(Root() + u"/Home/pvxwin32.exe"_s)));
    EXPECT_THAT(m_process.Arguments, ElementsAre(u"-hd -ARG X \""_s + Folder() + u'"'));
    EXPECT_THAT(m_process.Folders, ElementsAre(Native(Root() + u"/Home"_s)));
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
    EXPECT_TRUE(m_session.SynchronisationInProgress);
}

TEST_F(ModSync, TheEntriesAreCopiedBeforeTheClientStarts)
{
    MakeInstallation();
    SampleCompany company;
    company.Entries = std::vector{
        SampleEntry(u"0100"_s, {}, u"DEV"_s, QDate(2026, 3, 9), Currency::FromWhole(2))};
    BuildSampleCompanies(Folder(), {company}, Global(u"ABC"_s));
    QStringList copies;
    m_process.Work = [&] {
        copies = QDir(Folder() + u"/backup/000001-20260309-103000"_s).entryList(QDir::Files);
    };
    m_sync.RunSynchronisation();
    EXPECT_THAT(copies, ElementsAre(u"ABCEntries-WkLg.db"_s, u"unfinished.json"_s));
}

TEST_F(ModSync, TheJournalOfADamagedDatabaseIsKept)
{
    MakeInstallation();
    BuildSampleCompanies(Folder(), {SampleCompany()}, Global(u"ABC"_s));
    const QString customers = File(u"ABCCustomers-WkLg"_s);
    Touch(customers, "no database any more");
    Touch(customers + u"-journal"_s, "the only good copy of its pages");
    m_sync.RunSynchronisation();
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
    EXPECT_EQ(m_process.Programs.size(), 1);
    QFile journal(customers + u"-journal"_s);
    ASSERT_TRUE(journal.open(QIODevice::ReadOnly));
    EXPECT_EQ(journal.readAll(), "the only good copy of its pages");
}

TEST_F(ModSync, TheJournalOfADatabaseThatNobodyOpenedIsSettledBeforeTheClientStarts)
{
    MakeInstallation();
    BuildSampleCompanies(Folder(), {SampleCompany()}, Global(u"ABC"_s));
    Touch(Folder() + u"/ABCOptions-WkLg.db-journal"_s, "what a killed write left");
    Touch(Folder() + u"/GONEOptions-WkLg.db-journal"_s, "its database is gone");
    QStringList journals{u"not looked"_s};
    m_process.Work = [&] { journals = QDir(Folder()).entryList({u"*-journal"_s}); };
    m_sync.RunSynchronisation();
    EXPECT_EQ(m_process.Programs.size(), 1);
    EXPECT_THAT(journals, IsEmpty());
}

TEST_F(ModSync, TheJournalOfADatabaseThatCannotBeOpenedIsKeptForTheClient)
{
    MakeInstallation();
    BuildSampleCompanies(Folder(), {SampleCompany()}, Global(u"ABC"_s));
    Touch(File(u"ABCOptions-WkLg"_s), "half written");
    Touch(Folder() + u"/ABCOptions-WkLg.db-journal"_s, "the only good pages");
    m_sync.RunSynchronisation();
    EXPECT_EQ(m_process.Programs.size(), 1);
    QFile journal(Folder() + u"/ABCOptions-WkLg.db-journal"_s);
    ASSERT_TRUE(journal.open(QIODevice::ReadOnly));
    EXPECT_EQ(journal.readAll(), "the only good pages");
}

TEST_F(ModSync, AClientThatDoesNotStartIsNamedAndTheFolderGivenBack)
{
    MakeInstallation();
    m_process.Starts = false;
    const QString before = QDir::currentPath();
    m_sync.RunSynchronisation();
    EXPECT_THAT(m_messages.Texts(),
        ElementsAre(u"Error #2001 (Unable to start program "_s
            + Native(Root() + u"/Home/pvxwin32.exe"_s) + u" -hd -ARG X \""_s + Folder()
            + u"\")."_s));
    EXPECT_EQ(m_messages.Shown.value(0).Icon, MessageIcon::Exclamation);
    EXPECT_EQ(QDir::currentPath(), before);
}

TEST_F(ModSync, AMissingHomeFolderIsNamedAndNothingStarts)
{
    MakeInstallation();
    ASSERT_TRUE(QDir(Root() + u"/Home"_s).removeRecursively());
    const QString before = QDir::currentPath();
    m_sync.RunSynchronisation();
    EXPECT_THAT(m_messages.Texts(),
        ElementsAre(u"Error #76 (Path not found: %1)."_s.arg(Native(Root() + u"/Home"_s))));
    EXPECT_EQ(m_messages.Shown.value(0).Icon, MessageIcon::Exclamation);
    EXPECT_THAT(m_process.Programs, IsEmpty());
    EXPECT_EQ(QDir::currentPath(), before);
}

TEST_F(ModSync, ALaunchFileWithAQuoteTooManyIsToldAndNothingStarts)
{
    MakeInstallation();
    Touch(Folder() + u"/mas90.ini"_s, (Root() + u"\n-ARG \"X\n"_s).toUtf8());
    const QString before = QDir::currentPath();
    m_sync.RunSynchronisation();
    EXPECT_THAT(m_messages.Texts(),
        ElementsAre(u"Error #2001 (Unable to start program "_s
            + Native(Root() + u"/Home/pvxwin32.exe"_s) + u" -hd -ARG \"X \""_s + Folder()
            + u"\")."_s));
    EXPECT_THAT(m_process.Programs, IsEmpty());
    EXPECT_EQ(QDir::currentPath(), before);
}

TEST_F(ModSync, ARelativeRootIsNoInstallation)
{
    MakeInstallation();
    Touch(Folder() + u"/mas90.ini"_s, "mas90\n-ARG X\n");
    const clsWorkingFolder above(m_place.path()); // from where it would be found
    m_sync.RunSynchronisation();
    EXPECT_THAT(m_messages.Texts(), ElementsAre(u"Unable to launch MAS 90 or MAS 200."_s));
    EXPECT_THAT(m_process.Programs, IsEmpty());
    EXPECT_EQ(CheckInstallation(u"mas90"_s), std::nullopt);
    EXPECT_EQ(
        CheckInstallation(u"../"_s + QDir(m_place.path()).dirName() + u"/mas90"_s), std::nullopt);
}

TEST_F(ModSync, AnInstallationWithoutMarkersLaunchesNothing)
{
    MakeInstallation(u"other.txt"_s);
    m_sync.RunSynchronisation();
    EXPECT_THAT(m_messages.Texts(), ElementsAre(u"Unable to launch MAS 90 or MAS 200."_s));
    EXPECT_THAT(m_process.Programs, IsEmpty());
}

TEST_F(ModSync, AClientInstallationIsLaunchedToo)
{
    MakeInstallation(u"home/wkStatus.flp"_s);
    EXPECT_EQ(CheckInstallation(Root()), Installation::MAS200Client);
    m_sync.RunSynchronisation();
    EXPECT_EQ(m_process.Programs.size(), 1);
}

TEST_F(ModSync, MarkersAreFoundWhateverTheCaseOfTheirLetters)
{
    Touch(Root() + u"/SOA/Startup.M4P"_s);
    EXPECT_EQ(CheckInstallation(Root()), Installation::MAS90);
    EXPECT_EQ(CheckInstallation(m_place.filePath(u"elsewhere"_s)), std::nullopt);
}

TEST_F(ModSync, BothMarkersMakeAnInstallationOfTheFirstKind)
{
    Touch(Root() + u"/soa/startup.m4p"_s);
    Touch(Root() + u"/home/wkStatus.flp"_s);
    EXPECT_EQ(CheckInstallation(Root()), Installation::MAS90);
}

TEST_F(ModSync, AMarkerIsAFile)
{
    ASSERT_TRUE(QDir().mkpath(Root() + u"/soa/startup.m4p"_s));
    EXPECT_EQ(CheckInstallation(Root()), std::nullopt);
    Touch(Root() + u"/home/wkStatus.flp"_s);
    EXPECT_EQ(CheckInstallation(Root()), Installation::MAS200Client);
}

TEST_F(ModSync, NoRootIsNoInstallation)
{
    Touch(Folder() + u"/soa/startup.m4p"_s);
    const clsWorkingFolder inside(Folder());
    EXPECT_EQ(CheckInstallation(QString()), std::nullopt);
}
