// Copies of databases that somebody else is using: whole, and without a trace in their folder.

#include "report/Snapshot.h"

#include "store/StoreErrors.h"
#include "tests/report/ReportFixture.h"
#include "tests/support/OtherProgram.h"
#include "tests/support/Raised.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

const QString Entries = QStringLiteral("ABCEntries-WkLg");

QMap<QString, QByteArray> FilesOf(const QString &folder)
{
    QMap<QString, QByteArray> files;
    for (const QString &name : QDir(folder).entryList(QDir::Files | QDir::Hidden)) {
        QFile file(folder + u'/' + name);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        files[name] = file.readAll();
    }
    return files;
}

/// The file of the entries.
QString FileOf(const ReportFixture &fixture)
{
    return fixture.Folder() + u'/' + Entries + u".db"_s;
}

SampleCompany WithOneEntry()
{
    SampleCompany company = ReportFixture::Company();
    company.Entries = {ReportFixture::Entry(QDate(2026, 3, 9), 10000, 0, u"1"_s)};
    return company;
}

} // namespace

TEST(Snapshot, LeavesTheFolderAsItWasByteForByte)
{
    const ReportFixture fixture(WithOneEntry());
    const QMap<QString, QByteArray> before = FilesOf(fixture.Folder());
    ASSERT_FALSE(before.isEmpty());
    EXPECT_EQ(fixture.Read().Entries.size(), 1);
    EXPECT_EQ(FilesOf(fixture.Folder()), before);
}

TEST(Snapshot, SaysThatThereIsNoSuchDatabase)
{
    const QTemporaryDir folder;
    EXPECT_FALSE(Snapshot(folder.path()).Take(Entries));
}

TEST(Snapshot, IsNotHeldUpByALockAndHoldsUpNobody)
{
    const ReportFixture fixture(WithOneEntry());
    OtherProgram holder(FileOf(fixture));
    holder.Execute(u"BEGIN EXCLUSIVE"_s);
    EXPECT_EQ(fixture.Read().Entries.size(), 1);
    holder.Execute(u"DELETE FROM \"%1\""_s.arg(Entries));
    holder.Execute(u"COMMIT"_s);
}

TEST(Snapshot, OfADatabaseThatIsBeingWrittenIsWhole)
{
    const ReportFixture fixture(WithOneEntry());
    // Two numbers that are always equal when a transaction is complete, on pages far apart.
    OtherProgram(FileOf(fixture))
        .Execute(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 3000) "
                 u"INSERT INTO \"%1\" (Customer_Number, Description, Hours) "
                 u"SELECT 'X', hex(randomblob(100)), 0 FROM n"_s.arg(Entries));
    std::atomic<bool> enough = false;
    QString failure;
    std::thread writer([&] {
        RecordStore store;
        store.SetCreator(CodeNumber(SampleCodes().Creator));
        const auto handle = store.OpenDatabase(1, fixture.Folder() + u'/' + Entries, 0, 0, 0, 0, 3);
        for (int round = 1; !enough; ++round) {
            RecordStore::Batch batch(store, handle);
            for (const qint32 position : {0, 1500, 3000}) {
                EntryRecord entry;
                store.MoveToPosition(handle, position);
                store.ReadRecord(handle, entry);
                entry.Hours = Currency::FromWhole(round);
                store.EditRecord(handle);
                store.WriteRecord(handle, entry);
                store.UpdateRecord(handle);
            }
            batch.Commit();
            // A user rests between two saves; a report must find such a moment.
            std::this_thread::yield();
        }
    });
    int distinct = 0;
    qint64 last = -1;
    for (int i = 0; i < 20; ++i) {
        Snapshot snapshot(fixture.Folder(), std::chrono::seconds(60));
        try {
            EXPECT_TRUE(snapshot.Take(Entries));
        } catch (const clsRunTimeError &error) {
            failure = error.Description();
            break;
        }
        RecordStore store;
        store.SetCreator(CodeNumber(SampleCodes().Creator));
        const auto handle
            = store.OpenDatabase(1, snapshot.Folder() + u'/' + Entries, 0, 0, 0, 0, 3);
        std::vector<qint64> hours;
        for (const qint32 position : {0, 1500, 3000}) {
            EntryRecord entry;
            store.MoveToPosition(handle, position);
            store.ReadRecord(handle, entry);
            hours.push_back(entry.Hours.Scaled());
        }
        const bool writerHasBegun = hours[0] != 10000 || hours[1] != 0;
        if (writerHasBegun) {
            EXPECT_THAT(hours, ElementsAre(hours[0], hours[0], hours[0]));
        }
        distinct += hours[0] != last ? 1 : 0;
        last = hours[0];
    }
    enough = true;
    writer.join();
    EXPECT_EQ(failure, QString());
    EXPECT_GT(distinct, 3);
}

TEST(Snapshot, AWriteThatBeginsAndEndsWhileTheFileIsReadIsNoticed)
{
    // So large that many transactions fit into the time that a copy takes. None of them leaves a
    // journal behind, but a copy that mixes two of them has different numbers at its two ends.
    const QTemporaryDir folder(SampleFolderTemplate());
    const QString file = RecordStore::FileName(folder.filePath(Entries));
    OtherProgram writer(file);
    writer.Execute(u"PRAGMA synchronous = OFF; CREATE TABLE First (n); CREATE TABLE Filler (b);"
                   u"INSERT INTO First VALUES (0);"
                   u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 32) "
                   u"INSERT INTO Filler SELECT zeroblob(1000000) FROM n;"
                   u"CREATE TABLE Last (n); INSERT INTO Last VALUES (0)"_s);
    std::atomic<int> round = 0;
    constexpr int rounds = 300;
    std::thread writing([&] {
        while (round < rounds) {
            ++round;
            writer.Execute(u"BEGIN IMMEDIATE; UPDATE First SET n = %1; UPDATE Last SET n = %1; "
                           u"COMMIT"_s.arg(round));
            std::this_thread::sleep_for(std::chrono::milliseconds(1)); // at rest, without a journal
        }
    });
    do {
        Snapshot snapshot(folder.path(), std::chrono::seconds(60));
        EXPECT_TRUE(snapshot.Take(Entries));
        OtherProgram copy(RecordStore::FileName(snapshot.Folder() + u'/' + Entries));
        EXPECT_EQ(copy.Values(u"SELECT n FROM First"_s), copy.Values(u"SELECT n FROM Last"_s));
    } while (round < rounds);
    writing.join();
}

TEST(Snapshot, OfADatabaseLeftInTheMiddleOfAWriteIsRefused)
{
    const ReportFixture fixture(WithOneEntry());
    QFile journal(fixture.Folder() + u'/' + Entries + u".db-journal"_s);
    ASSERT_TRUE(journal.open(QIODevice::WriteOnly));
    journal.write("something");
    journal.close();
    Snapshot snapshot(fixture.Folder(), std::chrono::milliseconds(50));
    const Raised raised = RaisedBy([&] { snapshot.Take(Entries); });
    EXPECT_EQ(raised.Number, StoreErrors::Locked);
    EXPECT_TRUE(raised.Names(Entries + u".db. Start Worklog Remote once, and try again."_s))
        << raised.Description.toStdString();
    EXPECT_TRUE(QFile::exists(journal.fileName()));
}
