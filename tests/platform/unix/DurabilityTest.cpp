// What is promised to be on the disk has been put there, in the order that survives a loss of
// power.

#include "platform/DurableFiles.h"
#include "tests/support/FaultyDisk.h"
#include "tests/support/Raised.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

class Durability : public testing::Test
{
protected:
    Durability()
    {
        EXPECT_TRUE(QDir(m_root.path()).mkdir(u"folder"_s));
        QFile file(At(u"a"_s));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write("text"), 4);
    }

    QString At(const QString &name) const { return m_root.filePath(u"folder/"_s + name); }

    QTemporaryDir m_root;
};

} // namespace

TEST_F(Durability, OfAFileIsItsContentsOnTheDisk)
{
    FaultyDisk disk(m_root.path());
    disk.FailAt(0, DiskFault::InputOutput);
    SyncFile(At(u"a"_s));
    SyncFolder(m_root.filePath(u"folder"_s));
    EXPECT_THAT(disk.Calls({"sync"}), ElementsAre("sync a", "sync folder"));
}

TEST_F(Durability, ThatTheDiskDeniesIsAnError)
{
    FaultyDisk disk(m_root.path());
    disk.FailAt(1, DiskFault::InputOutput);
    const Raised raised = RaisedBy([&] { SyncFile(At(u"a"_s)); });
    EXPECT_EQ(raised.Number, RunTimeErrors::PathAccess);
    EXPECT_TRUE(raised.Names(At(u"a"_s))) << raised.Description.toStdString();
}

TEST_F(Durability, OfAReplacedFileIsItsNameOnTheDisk)
{
    FaultyDisk disk(m_root.path());
    disk.FailAt(0, DiskFault::InputOutput);
    ReplaceFile(At(u"a"_s), At(u"b"_s));
    EXPECT_THAT(disk.Calls({"rename", "sync"}), ElementsAre("rename b", "sync folder"));
}

TEST_F(Durability, OfANewNameIsTheNameOnTheDisk)
{
    FaultyDisk disk(m_root.path());
    disk.FailAt(0, DiskFault::InputOutput);
    EXPECT_TRUE(MoveToNewName(At(u"a"_s), At(u"b"_s)));
    EXPECT_THAT(disk.Calls({"create", "delete", "sync"}),
        ElementsAre("create b", "delete a", "sync folder"));
}
