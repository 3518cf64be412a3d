// The launch file and the copies of the entries outlive a loss of power as soon as they count.

#include "sync/LaunchFile.h"
#include "sync/modAfterSync.h"
#include "sync/modBackup.h"
#include "tests/support/FaultyDisk.h"
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

namespace {

/// The last part of a path, as the disk reports it.
std::string NameIn(const QString &path)
{
    return path.section(u'/', -1).toStdString();
}

} // namespace

TEST(LaunchFileDurability, ItsContentsAreOnTheDiskBeforeItsNameIs)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"mas90.ini"_s);
    FaultyDisk disk(folder.path());
    disk.FailAt(0, DiskFault::InputOutput);
    WriteLaunchFile(path, {u"/srv/mas90"_s, u"-ARG X"_s});
    EXPECT_THAT(disk.Calls({"sync", "rename"}),
        ElementsAre("sync mas90.ini.new", "rename mas90.ini", "sync " + NameIn(folder.path())));
}

TEST(LaunchFileDurability, WhatTheDiskDeniesLeavesTheOldFileAlone)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"mas90.ini"_s);
    WriteLaunchFile(path, {u"/srv/old"_s, u"-ARG OLD"_s});
    FaultyDisk disk(folder.path());
    disk.FailAt(1, DiskFault::Full, FaultLasts::ForGood);
    EXPECT_EQ(RaisedBy([&] {
        WriteLaunchFile(path, {u"/srv/new"_s, u"-ARG NEW"_s});
    }).Number,
        RunTimeErrors::PathAccess);
    disk.Repair();
    EXPECT_EQ(ReadLaunchFile(path).Root, u"/srv/old"_s);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList{u"mas90.ini"_s});
}

TEST(BackupDurability, TheCopyIsOnTheDiskBeforeItCounts)
{
    SampleCompany company;
    company.Entries = {SampleEntry(u"0100"_s, {}, u"CONS"_s, QDate(2026, 3, 2),
        Currency::FromWhole(2), Currency::FromWhole(90), u"first"_s)};
    SampleFolder folder({company});
    const clsFixedClock clock;
    modBackup backup(folder.Tables, clock);
    const auto entries = folder.Tables.Main.OpenTable(u"ABCEntries-WkLg"_s);
    folder.Tables.Store.WriteNote(entries, u"20260308-090000-007-0123abcd"_s);
    folder.Tables.Main.CloseTable(entries);
    FaultyDisk disk(folder.Path());
    disk.FailAt(0, DiskFault::InputOutput);
    backup.CopyEntries(u"/srv/accounting/worklog"_s);
    EXPECT_THAT(disk.Calls({"sync", "rename"}),
        ElementsAre("sync " + NameIn(folder.Path()), "sync ABCEntries-WkLg.db",
            "sync unfinished.json", "sync 000001-20260309-103000.new",
            "rename 000001-20260309-103000", "sync backup"));
}

TEST(BackupDurability, TheEndOfASynchronizationIsOnTheDisk)
{
    SampleFolder folder;
    const clsFixedClock clock;
    modBackup(folder.Tables, clock).CopyEntries({});
    FaultyDisk disk(folder.Path());
    disk.FailAt(0, DiskFault::InputOutput);
    modAfterSync(folder.Tables).Finish();
    EXPECT_THAT(disk.Calls({"sync"}), ElementsAre("sync 000001-20260309-103000"));
    EXPECT_EQ(QDir(folder.Path() + u"/backup/000001-20260309-103000"_s).entryList(QDir::Files),
        QStringList{u"ABCEntries-WkLg.db"_s});
}

#ifdef Q_OS_LINUX
TEST(BackupMemory, ALargeFileIsCopiedWithoutReadingAllOfIt)
{
    constexpr qint64 fileBytes = qint64(96) * 1024 * 1024;
    const auto peakBytes = [] {
        QFile status(u"/proc/self/status"_s);
        EXPECT_TRUE(status.open(QIODevice::ReadOnly));
        const QByteArray text = status.readAll();
        return text.mid(text.indexOf("VmHWM:") + 6, 20)
                   .simplified()
                   .split(' ')
                   .value(0)
                   .toLongLong()
            * 1024;
    };
    SampleFolder folder;
    const QString name = folder.Path() + u"/BIGEntries-WkLg.db"_s;
    QFile big(name);
    ASSERT_TRUE(big.open(QIODevice::WriteOnly));
    ASSERT_TRUE(big.resize(fileBytes)); // no database: copied as it is
    big.close();
    const clsFixedClock clock;
    modBackup backup(folder.Tables, clock);
    QFile reset(u"/proc/self/clear_refs"_s);
    ASSERT_TRUE(reset.open(QIODevice::WriteOnly));
    ASSERT_EQ(reset.write("5"), 1); // the peak is counted from here on
    reset.close();
    const qint64 before = peakBytes();
    ASSERT_GT(before, 0);
    backup.CopyEntries({});
    EXPECT_LT(peakBytes() - before, fileBytes / 8);
    EXPECT_TRUE(
        QFile::exists(folder.Path() + u"/backup/000001-20260309-103000/BIGEntries-WkLg.db"_s));
}
#endif
