#include "store/StoreErrors.h"
#include "tests/store/StoreFixture.h"
#include "tests/support/Deadline.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include <cstdio>
#include <sqlite3.h>

#ifdef Q_OS_UNIX
#include "tests/support/SmallDisk.h"
#endif

using namespace Qt::StringLiterals;

namespace {

class OtherPrograms : public StoreFixture
{
protected:
    OtherPrograms()
    {
        Build(u"T"_s, {Three(u"a"_s, 1, 1), Three(u"b"_s, 2, 2), Three(u"c"_s, 3, 3)});
    }

    QString FileName() const { return FileOf(u"T"_s); }

    void ExpectChangedOutside(const Raised &raised) const
    {
        EXPECT_EQ(raised.Number, StoreErrors::ChangedOutside) << raised.Description.toStdString();
        EXPECT_TRUE(raised.Names(FileName())) << raised.Description.toStdString();
    }
};

} // namespace

TEST_F(OtherPrograms, WhatTheyWriteIsSeenAtMoveFirst)
{
    const Handle handle = Open(u"T"_s);
    OtherProgram other(FileName());
    EXPECT_EQ(Names(handle), u"a b c"_s);
    other.Execute(u"INSERT INTO T (Name) VALUES ('d')"_s);
    EXPECT_EQ(Names(handle), u"a b c d"_s);
    EXPECT_EQ(Store.GetRecordCount(handle), 4);
    other.Execute(u"UPDATE T SET Name = 'bee' WHERE Name = 'b'"_s);
    EXPECT_EQ(Names(handle), u"a bee c d"_s);
    EXPECT_EQ(Found(handle, 0, u"b"_s), u"bee -7"_s);
    other.Execute(u"DELETE FROM T WHERE Name < 'c'"_s);
    EXPECT_EQ(Names(handle), u"c d"_s);
    other.Execute(u"DELETE FROM T"_s);
    EXPECT_EQ(Names(handle), QString());
}

TEST_F(OtherPrograms, AScanIsNotDisturbed)
{
    const Handle handle = Open(u"T"_s);
    Store.MoveFirst(handle);
    OtherProgram other(FileName());
    other.Execute(u"DELETE FROM T WHERE Name = 'a'"_s);
    other.Execute(u"INSERT INTO T (Name) VALUES ('d')"_s);
    Store.MoveNext(handle);
    EXPECT_EQ(Name(handle), u"b"_s);
    Store.MoveNext(handle);
    EXPECT_EQ(Name(handle), u"c"_s);
    Store.MoveNext(handle);
    EXPECT_TRUE(Store.IsEndOfTable(handle));
}

TEST_F(OtherPrograms, ASortedTableStaysSorted)
{
    const Handle handle = Open(u"T"_s);
    Store.SortTable(handle, u"0"_s);
    OtherProgram(FileName()).Execute(u"INSERT INTO T (Name) VALUES ('ab')"_s);
    EXPECT_EQ(Names(handle), u"a ab b c"_s);
}

TEST_F(OtherPrograms, AChangedRecordIsNotOverwritten)
{
    const Handle handle = Open(u"T"_s);
    Store.FindRecord(handle, 0, u"b"_s);
    OtherProgram other(FileName());
    other.Execute(u"UPDATE T SET Amount = 7 WHERE Name = 'b'"_s);
    const QByteArray before = Bytes(u"T"_s);
    ExpectChangedOutside(RaisedBy([&] { Change(handle, Three(u"mine"_s)); }));
    EXPECT_EQ(Bytes(u"T"_s), before);
    EXPECT_EQ(Read(handle).Amount.Scaled(), 7); // what is there now
    Change(handle, Three(u"mine"_s)); // having seen it, one may
    EXPECT_EQ(NamesInFile(u"T"_s), u"a mine c"_s);
}

TEST_F(OtherPrograms, AChangedRecordIsNotDeleted)
{
    const Handle handle = Open(u"T"_s);
    Store.MoveFirst(handle);
    OtherProgram(FileName())
        .Execute(u"UPDATE T SET Day = '2000-01-01 00:00:00' WHERE Name = 'a'"_s);
    const QByteArray before = Bytes(u"T"_s);
    ExpectChangedOutside(RaisedBy([&] { Store.DeleteRecord(handle, 2); }));
    EXPECT_EQ(Bytes(u"T"_s), before);
    EXPECT_EQ(Names(handle), u"a b c"_s);
}

TEST_F(OtherPrograms, ADeletedRecordDoesNotComeBack)
{
    const Handle handle = Open(u"T"_s);
    Store.MoveCursor(handle);
    OtherProgram other(FileName());
    other.Execute(u"DELETE FROM T WHERE Name = 'c'"_s);
    const QByteArray before = Bytes(u"T"_s);
    ExpectChangedOutside(RaisedBy([&] { Change(handle, Three(u"mine"_s)); }));
    EXPECT_EQ(Bytes(u"T"_s), before);
    EXPECT_TRUE(Store.IsEndOfTable(handle));

    Store.MoveFirst(handle);
    other.Execute(u"DELETE FROM T WHERE Name = 'a'"_s);
    ExpectChangedOutside(RaisedBy([&] { Store.DeleteRecord(handle, 2); }));
    EXPECT_EQ(Names(handle), u"b"_s);
}

TEST_F(OtherPrograms, ARecordThatTookTheOldOnesPlaceIsNotOverwritten)
{
    const Handle handle = Open(u"T"_s);
    Store.MoveCursor(handle);
    OtherProgram other(FileName());
    other.Execute(u"DELETE FROM T WHERE Name = 'c'"_s);
    other.Execute(u"INSERT INTO T (Name) VALUES ('theirs')"_s); // with the same row number
    ExpectChangedOutside(RaisedBy([&] { Change(handle, Three(u"mine"_s)); }));
    EXPECT_EQ(NamesInFile(u"T"_s), u"a b theirs"_s);
}

TEST_F(OtherPrograms, ATextThatIsNoDateIsNotOverwritten)
{
    ThreeFields none = Three(u"none"_s);
    none.Day = {};
    const Handle handle = Open(u"T"_s);
    Add(handle, none);
    OtherProgram other(FileName());
    other.Execute(u"UPDATE T SET Day = 'soon' WHERE Name = 'none'"_s);
    EXPECT_NE(RaisedBy([&] { Change(handle, Three(u"mine"_s)); }).Number, 0);
    EXPECT_EQ(other.Values(u"SELECT Day FROM T WHERE rowid = 4"_s), u"soon"_s);
    Store.CloseDatabase(handle);
}

TEST_F(OtherPrograms, ChangesBesideTheRecordDoNotHinder)
{
    const Handle handle = Open(u"T"_s);
    Store.FindRecord(handle, 0, u"b"_s);
    OtherProgram other(FileName());
    other.Execute(u"INSERT INTO T (Name) VALUES ('d')"_s);
    other.Execute(u"UPDATE T SET Name = 'A' WHERE Name = 'a'"_s);
    Change(handle, Three(u"bee"_s));
    other.Execute(u"INSERT INTO T (Name) VALUES ('e')"_s);
    Add(handle, Three(u"f"_s));
    EXPECT_EQ(Name(handle), u"f"_s);
    other.Execute(u"INSERT INTO T (Name) VALUES ('g')"_s);
    Store.DeleteRecord(handle, 2);
    EXPECT_EQ(NamesInFile(u"T"_s), u"A bee c d e g"_s);
    EXPECT_EQ(Names(handle), u"A bee c d e g"_s);
}

TEST_F(OtherPrograms, ABatchThatMeetsAChangedRecordIsUndoneAsAWhole)
{
    const Handle handle = Open(u"T"_s);
    Store.MoveCursor(handle);
    OtherProgram(FileName()).Execute(u"UPDATE T SET Amount = 7 WHERE Name = 'c'"_s);
    const QByteArray before = Bytes(u"T"_s);
    ExpectChangedOutside(RaisedBy([&] {
        RecordStore::Batch batch(Store, handle);
        Change(handle, Three(u"mine"_s));
        batch.Commit();
    }));
    EXPECT_EQ(Bytes(u"T"_s), before);
    EXPECT_EQ(Names(handle), u"a b c"_s);
}

TEST_F(OtherPrograms, ABatchSeesAtMoveFirstWhatWasWrittenBeforeIt)
{
    const Handle handle = Open(u"T"_s);
    EXPECT_EQ(Names(handle), u"a b c"_s);
    OtherProgram(FileName()).Execute(u"INSERT INTO T (Name) VALUES ('d')"_s);
    RecordStore::Batch batch(Store, handle);
    EXPECT_EQ(Names(handle), u"a b c d"_s);
    Add(handle, Three(u"e"_s));
    EXPECT_EQ(Names(handle), u"a b c d e"_s);
    batch.Commit();
    EXPECT_EQ(NamesInFile(u"T"_s), u"a b c d e"_s);
}

TEST_F(OtherPrograms, ABatchThatReadsAgainKeepsItsUpdates)
{
    const Handle handle = Open(u"T"_s);
    EXPECT_EQ(Names(handle), u"a b c"_s);
    OtherProgram(FileName()).Execute(u"UPDATE T SET Name = 'C' WHERE Name = 'c'"_s);
    Store.MoveToPosition(handle, 0);
    RecordStore::Batch batch(Store, handle);
    Change(handle, Three(u"A"_s)); // this record is as it was
    EXPECT_EQ(Names(handle), u"A b C"_s);
    Store.MoveFirst(handle);
    Change(handle, Three(u"AA"_s));
    batch.Commit();
    EXPECT_EQ(NamesInFile(u"T"_s), u"AA b C"_s);
}

#ifdef Q_OS_UNIX // Windows limits nobody's files
TEST_F(OtherPrograms, AFullDiskAtTheEndOfABatchUndoesItsUpdates)
{
    const Handle handle = Open(u"T"_s);
    const QByteArray before = Bytes(u"T"_s);
    {
        RecordStore::Batch batch(Store, handle);
        Store.MoveFirst(handle);
        Change(handle, Three(QString(500000, u'x')));
        const SmallDisk full(static_cast<rlim_t>(before.size()));
        EXPECT_EQ(RaisedBy([&] { batch.Commit(); }).Number, StoreErrors::WriteFailed);
    }
    EXPECT_EQ(Bytes(u"T"_s), before);
    EXPECT_EQ(Names(handle), u"a b c"_s);
}
#endif

TEST_F(OtherPrograms, ABatchKeepsThemOut)
{
    const Handle handle = Open(u"T"_s);
    OtherProgram other(FileName());
    {
        RecordStore::Batch batch(Store, handle);
        EXPECT_EQ(other.Try(u"INSERT INTO T (Name) VALUES ('d')"_s), SQLITE_BUSY);
        EXPECT_EQ(other.Values(u"SELECT count(*) FROM T"_s), u"3"_s); // reading they may
    }
    EXPECT_EQ(other.Try(u"INSERT INTO T (Name) VALUES ('d')"_s), SQLITE_OK);
}

#ifdef Q_OS_UNIX // where a process that closes a file lets go of all its locks on it
TEST_F(OtherPrograms, ABatchKeepsThemOutAlsoWhenTheFileIsOpenedAgain)
{
    const Handle handle = Open(u"T"_s);
    const auto tryToWrite = [&] {
        QProcess sqlite; // locks are a process's own
        sqlite.start(u"sqlite3"_s, {FileName(), u"INSERT INTO T (Name) VALUES ('theirs')"_s});
        EXPECT_TRUE(sqlite.waitForFinished(DeadlineMilliseconds));
        return QString::fromUtf8(sqlite.readAllStandardError()).contains(u"locked"_s);
    };
    {
        RecordStore::Batch batch(Store, handle);
        Add(handle, Three(u"mine"_s));
        EXPECT_TRUE(tryToWrite());
        const Handle second = Open(u"T"_s);
        EXPECT_TRUE(tryToWrite());
        EXPECT_EQ(Names(second), u"a b c"_s);
        Store.CloseDatabase(second);
        EXPECT_TRUE(tryToWrite());
        batch.Commit();
    }
    EXPECT_FALSE(tryToWrite());
    EXPECT_EQ(NamesInFile(u"T"_s), u"a b c mine theirs"_s);
}
#endif

TEST_F(OtherPrograms, AWriteWaitsForNobodyForLong)
{
    const Handle handle = Open(u"T"_s);
    Store.MoveFirst(handle);
    const QByteArray before = Bytes(u"T"_s);
    OtherProgram other(FileName());
    other.Execute(u"BEGIN IMMEDIATE"_s);
    QElapsedTimer waited;
    waited.start();
    const std::vector<Raised> refusals = {RaisedBy([&] { Add(handle, Three(u"d"_s)); }),
        RaisedBy([&] { Change(handle, Three(u"d"_s)); }),
        RaisedBy([&] { Store.DeleteRecord(handle, 2); }),
        RaisedBy([&] { Store.WriteNote(handle, u"x"_s); }),
        RaisedBy([&] { RecordStore::Batch batch(Store, handle); })};
    EXPECT_LT(waited.elapsed(), 10000) << "five times a quarter of a second";
    for (const Raised &raised : refusals) {
        EXPECT_EQ(raised.Number, StoreErrors::Locked);
        EXPECT_TRUE(raised.Names(FileName()));
    }
    EXPECT_EQ(Bytes(u"T"_s), before);
    EXPECT_EQ(Names(handle), u"a b c"_s);
    other.Execute(u"ROLLBACK"_s);
    Add(handle, Three(u"d"_s));
    EXPECT_EQ(NamesInFile(u"T"_s), u"a b c d"_s);
}

TEST_F(OtherPrograms, AReaderHindersACommitAndNothingIsHalfDone)
{
    const Handle handle = Open(u"T"_s);
    Store.MoveFirst(handle);
    const QByteArray before = Bytes(u"T"_s);
    OtherProgram other(FileName());
    other.Execute(u"BEGIN"_s);
    other.Values(u"SELECT count(*) FROM T"_s);
    EXPECT_EQ(RaisedBy([&] { Change(handle, Three(u"A"_s)); }).Number, StoreErrors::Locked);
    EXPECT_EQ(RaisedBy([&] { Add(handle, Three(u"d"_s)); }).Number, StoreErrors::Locked);
    EXPECT_EQ(Name(handle), u"a"_s);
    {
        RecordStore::Batch batch(Store, handle);
        Add(handle, Three(u"d"_s));
        EXPECT_EQ(RaisedBy([&] { batch.Commit(); }).Number, StoreErrors::Locked);
        // The batch has failed: nothing of it may slip through afterwards.
        EXPECT_EQ(RaisedBy([&] { Add(handle, Three(u"e"_s)); }).Number, StoreErrors::WriteFailed);
        other.Execute(u"COMMIT"_s);
        EXPECT_EQ(RaisedBy([&] { Add(handle, Three(u"f"_s)); }).Number, StoreErrors::WriteFailed);
        EXPECT_EQ(RaisedBy([&] { batch.Commit(); }).Number, StoreErrors::WriteFailed);
    }
    EXPECT_EQ(Bytes(u"T"_s), before);
    EXPECT_EQ(Names(handle), u"a b c"_s);
    Add(handle, Three(u"d"_s));
    EXPECT_EQ(NamesInFile(u"T"_s), u"a b c d"_s);
}

#ifdef Q_OS_UNIX // Windows limits nobody's files
TEST_F(OtherPrograms, AFullDiskLeavesTheRecordsAsTheyWere)
{
    const Handle handle = Open(u"T"_s);
    Store.MoveFirst(handle);
    const QByteArray before = Bytes(u"T"_s);
    {
        const SmallDisk full(static_cast<rlim_t>(before.size()));
        const Raised raised = RaisedBy([&] { Add(handle, Three(QString(50000, u'x'))); });
        EXPECT_EQ(raised.Number, StoreErrors::WriteFailed);
        EXPECT_TRUE(raised.Names(FileName())) << raised.Description.toStdString();
    }
    EXPECT_EQ(Bytes(u"T"_s), before);
    EXPECT_EQ(Names(handle), u"a b c"_s);
    Add(handle, Three(u"d"_s));
    EXPECT_EQ(NamesInFile(u"T"_s), u"a b c d"_s);
}

TEST_F(OtherPrograms, AFullDiskUndoesAWholeBatchEvenIfTheCallerGoesOn)
{
    const Handle handle = Open(u"T"_s);
    const QByteArray before = Bytes(u"T"_s);
    {
        RecordStore::Batch batch(Store, handle);
        Add(handle, Three(u"d"_s));
        {
            const SmallDisk full(static_cast<rlim_t>(before.size()));
            // More than the cache holds, so that pages go to the disk before the end.
            EXPECT_EQ(RaisedBy([&] {
                for (int i = 0; i < 200; ++i)
                    Add(handle, Three(QString(50000, u'x')));
            }).Number,
                StoreErrors::WriteFailed);
        }
        EXPECT_EQ(RaisedBy([&] { Add(handle, Three(u"e"_s)); }).Number, StoreErrors::WriteFailed);
        EXPECT_EQ(
            RaisedBy([&] { Store.WriteNote(handle, u"e"_s); }).Number, StoreErrors::WriteFailed);
        EXPECT_EQ(RaisedBy([&] { batch.Commit(); }).Number, StoreErrors::WriteFailed);
    }
    EXPECT_EQ(NamesInFile(u"T"_s), u"a b c"_s);
    EXPECT_EQ(Names(handle), u"a b c"_s);
    Add(handle, Three(u"d"_s));
    EXPECT_EQ(NamesInFile(u"T"_s), u"a b c d"_s);
}
#endif

#ifdef Q_OS_UNIX // Windows lets nobody replace a file that is open
TEST_F(OtherPrograms, AFileThatWasReplacedIsNotWrittenInto)
{
    const Handle handle = Open(u"T"_s);
    Store.MoveFirst(handle);
    Build(u"Next"_s, {Three(u"x"_s)});
    const QByteArray next = Bytes(u"Next"_s);
    ASSERT_EQ(std::rename(QFile::encodeName(FileOf(u"Next"_s)).constData(),
                  QFile::encodeName(FileName()).constData()),
        0);
    ExpectChangedOutside(RaisedBy([&] { Change(handle, Three(u"mine"_s)); }));
    ExpectChangedOutside(RaisedBy([&] { Add(handle, Three(u"mine"_s)); }));
    EXPECT_EQ(Bytes(u"T"_s), next);
    Store.CloseDatabase(handle);
    EXPECT_EQ(Names(Open(u"T"_s)), u"x"_s);
}
#endif

TEST_F(OtherPrograms, ATableThatTheyRemovedIsAnError)
{
    const Handle handle = Open(u"T"_s);
    Store.MoveFirst(handle);
    OtherProgram(FileName()).Execute(u"DROP TABLE T"_s);
    const Raised raised = RaisedBy([&] { Store.MoveFirst(handle); });
    EXPECT_NE(raised.Number, 0);
    EXPECT_TRUE(raised.Names(FileName())) << raised.Description.toStdString();
    EXPECT_NE(RaisedBy([&] { Add(handle, Three(u"d"_s)); }).Number, 0);
}
