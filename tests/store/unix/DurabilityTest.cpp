// How often the store waits for the disk, and what it makes of a disk that reports too much.

#include "tests/store/StoreFixture.h"
#include "tests/support/FaultyDisk.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::Contains;

namespace {

class StoreDurability : public StoreFixture
{
protected:
    std::string FolderName() const { return m_folder.path().section(u'/', -1).toStdString(); }
};

} // namespace

TEST_F(StoreDurability, OfAScratchTableWaitsForNoDisk)
{
    FaultyDisk disk(m_folder.path());
    const Handle handle = Table({Three(u"a"_s)});
    Store.MakeScratch(handle);
    disk.FailAt(0, DiskFault::InputOutput);
    Add(handle, Three(u"b"_s));
    EXPECT_EQ(disk.Flushes(), 0);
    Store.CloseDatabase(handle);
}

TEST_F(StoreDurability, OfANewDatabaseIsItsNameOnTheDisk)
{
    FaultyDisk disk(m_folder.path());
    disk.FailAt(0, DiskFault::InputOutput);
    Store.CloseDatabase(Create(u"New"_s));
    const std::vector<std::string> calls = disk.Calls({"create New.db", "sync"});
    EXPECT_THAT(calls, Contains("create New.db"));
    EXPECT_EQ(calls.back(), "sync " + FolderName());
}

TEST_F(StoreDurability, OfACommitThatOnlySeemsToFailIsSeenTo)
{
    FaultyDisk disk(m_folder.path());
    const Handle handle = Table({Three(u"a"_s)});
    Store.MoveFirst(handle);
    disk.FailAt(0, DiskFault::InputOutput);
    Add(handle, Three(u"b"_s));
    const int usual = disk.Flushes();
    disk.FailAt(1, DiskFault::DeletedAnyway, FaultLasts::Once);
    Add(handle, Three(u"c"_s)); // the journal goes, and that is reported as failed
    EXPECT_TRUE(disk.HasFailed());
    EXPECT_EQ(disk.Flushes(), usual + 1);
    EXPECT_EQ(Names(handle), u"a b c"_s);
    Store.CloseDatabase(handle);
}
