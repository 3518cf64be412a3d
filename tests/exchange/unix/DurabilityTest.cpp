// Nothing leaves this computer's databases before it is on the disk elsewhere.

#include "exchange/Collection.h"
#include "exchange/LocalDatabases.h"
#include "exchange/StagedDatabases.h"
#include "exchange/Uploads.h"
#include "store/Records.h"
#include "tests/support/FaultyDisk.h"
#include "tests/support/SampleCompany.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class UploadDurability : public testing::Test
{
protected:
    UploadDurability()
        : m_uploads(m_worklog.path(), u"ABC"_s)
    {
    }
    void Count(FaultyDisk &disk) { disk.FailAt(0, DiskFault::InputOutput); }
    std::string WorklogName() const { return m_worklog.path().section(u'/', -1).toStdString(); }

    QTemporaryDir m_worklog;
    Uploads m_uploads;
};

/// The place of the first call of that text behind `from`.
size_t After(const std::vector<std::string> &calls, size_t from, const std::string &text)
{
    const auto begin = calls.begin() + static_cast<std::ptrdiff_t>(std::min(from, calls.size()));
    const auto found = std::find_if(begin, calls.end(),
        [&](const std::string &call) { return call.find(text) != std::string::npos; });
    EXPECT_NE(found, calls.end()) << text << " does not follow";
    return static_cast<size_t>(found - calls.begin()) + 1;
}

} // namespace

TEST_F(UploadDurability, TheNamesOfNewFoldersAreOnTheDisk)
{
    FaultyDisk disk(m_worklog.path());
    Count(disk);
    m_uploads.MakeFolder();
    EXPECT_THAT(disk.Calls({"sync"}), ElementsAre("sync " + WorklogName(), "sync ABC"));
    Count(disk);
    m_uploads.MakeFolder(); // they are there already
    EXPECT_THAT(disk.Calls({"sync"}), IsEmpty());
}

TEST_F(UploadDurability, TheFileIsOnTheDiskBeforeItIsHandedOver)
{
    m_uploads.MakeFolder();
    FaultyDisk disk(m_worklog.path());
    Count(disk);
    m_uploads.Write(u"b1"_s, "one");
    EXPECT_THAT(disk.Calls({"sync"}), ElementsAre("sync .b1.part"));
    Count(disk);
    m_uploads.HandOver(u"b1"_s);
    EXPECT_THAT(disk.Calls({"create", "delete", "sync"}),
        ElementsAre("create b1.csv", "delete .b1.part", "sync uploads"));
}

TEST_F(UploadDurability, ADeliveredFileIsPutOnTheDiskOnceMore)
{
    m_uploads.MakeFolder();
    m_uploads.Write(u"b1"_s, "one");
    m_uploads.HandOver(u"b1"_s);
    FaultyDisk disk(m_worklog.path());
    Count(disk);
    Uploads::Secure(m_uploads.Delivered(u"b1"_s));
    EXPECT_THAT(disk.Calls({"sync"}), ElementsAre("sync b1.csv", "sync uploads"));
}

TEST_F(UploadDurability, ADiscardedFileIsOffTheDiskBeforeItsNoteGoes)
{
    m_uploads.MakeFolder();
    m_uploads.Write(u"b1"_s, "one");
    FaultyDisk disk(m_worklog.path());
    Count(disk);
    m_uploads.Discard(u"b1"_s);
    EXPECT_THAT(disk.Calls({"delete", "sync"}), ElementsAre("delete .b1.part", "sync uploads"));
    Count(disk);
    m_uploads.Discard(u"b1"_s);
    EXPECT_THAT(disk.Calls({"delete", "sync"}), IsEmpty());
}

TEST(CollectionDurability, EachStepIsOnTheDiskBeforeTheNext)
{
    SampleCompany company;
    company.Entries = {SampleEntry(u"0100"_s, {}, u"CONS"_s, QDate(2026, 3, 2),
        Currency::FromWhole(2), Currency::FromWhole(90), u"first"_s)};
    const SampleFolder program({company});
    const QString worklog = program.Path() + u"/worklog"_s;
    ASSERT_TRUE(QDir().mkdir(worklog));
    LocalDatabases local(program.Path());
    Collection collection(local, worklog, u"ABC"_s, u"007"_s);

    FaultyDisk disk(program.Path());
    disk.FailAt(0, DiskFault::InputOutput);
    ASSERT_TRUE(collection.Prepare());
    const std::vector<std::string> prepared = disk.Calls({"sync", "create", "delete"});
    const size_t note = After(prepared, 0, "delete ABCEntries-WkLg.db-journal");
    After(prepared, note, ".part");

    disk.FailAt(0, DiskFault::InputOutput);
    collection.Deliver();
    const std::vector<std::string> delivered = disk.Calls({"sync", "create", "delete"});
    const size_t handedOver = After(delivered, 0, ".csv");
    const size_t onTheDisk = After(delivered, handedOver, "sync uploads");
    After(delivered, onTheDisk, "sync ABCEntries-WkLg.db");
    EXPECT_EQ(delivered.front().find("create "), 0U) << delivered.front();
}

TEST(StagedDurability, AllOldDatabasesAreLookedAtBeforeOneIsReplaced)
{
    const SampleFolder program;
    LocalDatabases local(program.Path());
    FaultyDisk disk(program.Path());
    StagedDatabases staged(local);
    for (const QString &name : {u"ABCCustomers-WkLg"_s, u"ABCProjects-WkLg"_s}) {
        StagedDatabases::Table<CompanyRecord> table(staged, name);
        table.Finish();
    }
    disk.FailAt(0, DiskFault::InputOutput);
    staged.MoveIn();
    const std::vector<std::string> calls = disk.Calls({"open", "rename", "sync"});
    const std::string folder = "sync " + program.Path().section(u'/', -1).toStdString();
    EXPECT_THAT(calls,
        ElementsAre("open ABCCustomers-WkLg.db", "open ABCProjects-WkLg.db",
            "rename ABCCustomers-WkLg.db", folder, "rename ABCProjects-WkLg.db", folder));
}

TEST(StagedDatabases, ALinkInThePlaceOfTheFolderIsTakenAwayAndNotFollowed)
{
    const QTemporaryDir elsewhere;
    QFile precious(elsewhere.filePath(u"precious"_s));
    ASSERT_TRUE(precious.open(QIODevice::WriteOnly));
    const SampleFolder program;
    const QString staging = program.Path() + u"/exchange-staging"_s;
    ASSERT_TRUE(QFile::link(elsewhere.path(), staging));
    LocalDatabases local(program.Path());
    {
        const StagedDatabases staged(local);
        EXPECT_FALSE(QFileInfo(staging).isSymLink());
        EXPECT_TRUE(QFileInfo(staging).isDir());
    }
    EXPECT_TRUE(precious.exists());
    EXPECT_FALSE(QFileInfo::exists(staging));
}
