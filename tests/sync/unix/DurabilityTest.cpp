// The launch file and the copies of the entries outlive a loss of power as soon as they count.

#include "sync/LaunchFile.h"
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
    backup.CopyEntries();
    EXPECT_THAT(disk.Calls({"sync", "rename"}),
        ElementsAre("sync " + NameIn(folder.Path()), "sync ABCEntries-WkLg.db",
            "sync 20260309-103000.new", "rename 20260309-103000", "sync backup"));
}
