// What is said to be on the disk is still there after the power was lost: next to the entries that
// a user saves (EveryFailureTest), all else that promises it.

#include "tests/reliability/Durability.h"
#include "platform/clsSettings.h"
#include "platform/DurableFiles.h"
#include "store/Tables.h"
#include "sync/LaunchFile.h"
#include "sync/modSync.h"
#include "tests/support/Recorded.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::AnyOf;
using testing::IsEmpty;

namespace {

EntryRecord AnEntry()
{
    return SampleEntry(
        u"0100"_s, u"1000"_s, u"CONSULT"_s, QDate(2026, 3, 9), Currency::FromWhole(2));
}

} // namespace

TEST_F(Durability, AReplacedFileIsWhatItWasReplacedBy)
{
    WriteFile(Path(u"name"_s), "old");
    WriteFile(Path(u"unfinished"_s), "new");
    FaultyDisk disk(m_place.path());
    disk.FailAt(0, DiskFault::PowerLoss);
    ReplaceFile(Path(u"unfinished"_s), Path(u"name"_s));
    disk.LosePower(nullptr);
    EXPECT_EQ(ContentOf(Path(u"name"_s)), "new");
    EXPECT_EQ(ContentOf(Path(u"unfinished"_s)), "(none)");
}

TEST_F(Durability, AFileWithANewNameKeepsIt)
{
    WriteFile(Path(u"unfinished"_s), "content");
    FaultyDisk disk(m_place.path());
    disk.FailAt(0, DiskFault::PowerLoss);
    ASSERT_TRUE(MoveToNewName(Path(u"unfinished"_s), Path(u"name"_s)));
    disk.LosePower(nullptr);
    EXPECT_EQ(ContentOf(Path(u"name"_s)), "content");
}

TEST_F(Durability, ASyncedFileKeepsItsContentAndASyncedFolderItsNames)
{
    FaultyDisk disk(m_place.path());
    disk.FailAt(0, DiskFault::PowerLoss);
    for (const QString &name : {u"neither"_s, u"file"_s, u"both"_s})
        WriteFile(Path(name), "content");
    SyncFile(Path(u"both"_s));
    SyncFolder(m_place.path());
    WriteFile(Path(u"later"_s), "content");
    SyncFile(Path(u"later"_s)); // and not its name
    disk.LosePower(nullptr);
    EXPECT_EQ(ContentOf(Path(u"both"_s)), "content");
    EXPECT_EQ(ContentOf(Path(u"neither"_s)), "");
    EXPECT_EQ(ContentOf(Path(u"later"_s)), "(none)");
}

TEST_F(Durability, ALaunchFileIsTheOldOneOrTheNewOneAndOnceWrittenTheNewOne)
{
    const QString path = Path(u"mas90.ini"_s);
    LosePowerAtEachCall(
        m_place.path(), [&] { WriteFile(path, "/old\n-ARG OLD\n"); },
        [&] {
            WriteLaunchFile(path, {u"/srv/mas90"_s, u"-ARG X"_s});
        },
        [&](bool written) {
            const QByteArray content = ContentOf(path);
            EXPECT_THAT(content, AnyOf(QByteArray("/old\n-ARG OLD\n"), "/srv/mas90\n-ARG X\n"));
            if (written) {
                EXPECT_EQ(content, "/srv/mas90\n-ARG X\n");
            }
        });
}

TEST_F(Durability, ASavedSettingIsKept)
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_place.path());
    FaultyDisk disk(m_place.path());
    disk.FailAt(0, DiskFault::PowerLoss);
    clsUserSettings(u"durability"_s).SaveSetting(u"MAS200"_s, u"Host"_s, u"winter"_s);
    disk.LosePower(nullptr);
    EXPECT_EQ(ContentOf(Path(u"durability.conf"_s)).toStdString(), "[MAS200]\nHost=winter\n");
}

TEST_F(Durability, ANewDatabaseIsThereOnceItsTableIs)
{
    FaultyDisk disk(m_place.path());
    disk.FailAt(0, DiskFault::PowerLoss);
    {
        Tables tables(m_place.path());
        tables.Main.StoreTheCodes(SampleCodes());
        tables.Main.CreateEntries(u"ABCEntries-WkLg"_s);
    }
    disk.LosePower(nullptr);
    Tables tables(m_place.path());
    tables.Main.StoreTheCodes(SampleCodes());
    tables.Entries.Handle = tables.Main.OpenTable(u"ABCEntries-WkLg"_s);
    ASSERT_TRUE(tables.Entries.IsOpen());
    EXPECT_EQ(tables.Entries.GetRecordCount(), 0);
}

TEST_F(Durability, ASaveWhoseCommitWasReportedAsFailedIsKept)
{
    BuildSampleCompanies(m_place.path(), {SampleCompany()});
    FaultyDisk disk(m_place.path());
    {
        Tables tables(m_place.path());
        tables.Main.StoreTheCodes(SampleCodes());
        tables.Entries.Handle = tables.Main.OpenTable(u"ABCEntries-WkLg"_s);
        // The journal is removed, which is the commit, and reported as still there.
        disk.FailAt(1, DiskFault::DeletedAnyway, FaultLasts::Once);
        tables.Entries.AddEntry(AnEntry());
        EXPECT_EQ(disk.FailedCall(), "delete ABCEntries-WkLg.db-journal");
    }
    disk.LosePower(nullptr);
    Tables tables(m_place.path());
    tables.Main.StoreTheCodes(SampleCodes());
    tables.Entries.Handle = tables.Main.OpenTable(u"ABCEntries-WkLg"_s);
    EXPECT_EQ(tables.Entries.GetRecordCount(), 1);
}

TEST_F(Durability, TheCopiesOfTheEntriesAreThereBeforeTheClientIs)
{
    for (const QString &file : {u"mas90/soa/startup.m4p"_s, u"mas90/Home/pvxwin32.exe"_s}) {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(Path(file)).path()));
        WriteFile(Path(file), {});
    }
    const QString folder = Path(u"program"_s);
    ASSERT_TRUE(QDir().mkpath(folder));
    WriteFile(folder + u"/mas90.ini"_s, (Path(u"mas90"_s) + u"\n-ARG X\n"_s).toUtf8());
    SampleCompany company;
    company.Entries = {AnEntry(), AnEntry()};
    BuildSampleCompanies(folder, {company}, GlobalOptionsRecord());

    Tables tables(folder);
    tables.Main.StoreTheCodes(SampleCodes());
    const auto noted = tables.Main.OpenTable(u"ABCEntries-WkLg"_s);
    tables.Store.WriteNote(noted, u"20260308-090000-007-0123abcd"_s);
    tables.Main.CloseTable(noted);
    const QByteArray entries = ContentOf(folder + u"/ABCEntries-WkLg.db"_s);
    SessionState session;
    clsRecordedMessages messages;
    clsRecordedProcess process;
    const clsFixedClock clock;
    modBackup backup(tables, clock);
    modSync sync(tables, session, messages, process, backup);
    FaultyDisk disk(folder);
    disk.FailAt(0, DiskFault::PowerLoss);
    process.Work = [&] { disk.LosePower(nullptr); };
    sync.RunSynchronisation();
    EXPECT_EQ(process.Programs.size(), 1);
    EXPECT_THAT(messages.Texts(), IsEmpty());
    const QDir copies(folder + u"/backup"_s);
    const QStringList times = copies.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    ASSERT_EQ(times.size(), 1);
    EXPECT_EQ(ContentOf(copies.filePath(times[0] + u"/ABCEntries-WkLg.db"_s)), entries);
}
