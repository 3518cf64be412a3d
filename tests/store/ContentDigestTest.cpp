// The digest over a table's records, the check of what a file says about itself, and the version of
// its format.

#include "store/ContentDigest.h"
#include "store/StoreErrors.h"
#include "tests/store/StoreFixture.h"

#include <functional>

using namespace Qt::StringLiterals;

namespace {

class Digests : public StoreFixture
{
protected:
    const QString Table = u"T"_s;

    void BuildThree()
    {
        Build(Table, {Three(u"a"_s, 1, 120), Three(u"b"_s, 2, 90), Three(u"unmistakable"_s, 3, 7)});
    }
    void Outside(const QString &sql) const { OtherProgram(FileOf(Table)).Execute(sql); }
    QString Said(const QString &column) const
    {
        return OtherProgram(FileOf(Table)).Values(u"SELECT %1 FROM Record_Store"_s.arg(column));
    }
    /// Flips a bit in the name of the third record, past every program.
    void FlipABit() const
    {
        QByteArray bytes = Bytes(Table);
        const qsizetype at = bytes.lastIndexOf("unmistakable");
        ASSERT_GE(at, 0);
        bytes[at] = static_cast<char>(bytes[at] ^ 4);
        WriteFile(Table, bytes);
    }
    Raised Loading()
    {
        return RaisedBy([&] {
            RecordStore fresh;
            fresh.SetCreator(CodeNumber(u"WkLg"_s));
            fresh.MoveFirst(fresh.OpenOrRaise(PathOf(Table)));
        });
    }
    void ExpectDamage(const std::string &what)
    {
        const Raised raised = Loading();
        EXPECT_EQ(raised.Number, StoreErrors::Damaged) << what;
        EXPECT_TRUE(raised.Names(FileOf(Table)))
            << what << ": " << raised.Description.toStdString();
    }
};

} // namespace

TEST_F(Digests, ARecordThatIsNotAsItWasWrittenIsFoundWhenTheTableIsLoaded)
{
    BuildThree();
    EXPECT_EQ(Loading().Number, 0);
    FlipABit();
    const QByteArray damaged = Bytes(Table);
    const Handle handle = Open(Table); // reads no record
    EXPECT_EQ(Store.GetRecordCount(handle), 3);
    Store.Preload(handle);
    const Raised raised = RaisedBy([&] { Store.FindRecord(handle, 0, u"a"_s); });
    EXPECT_EQ(raised.Number, StoreErrors::Damaged);
    EXPECT_TRUE(raised.Names(FileOf(Table)));
    EXPECT_EQ(Bytes(Table), damaged);
}

TEST_F(Digests, EveryWriteOfOursKeepsTheDigestTrue)
{
    const std::vector<std::pair<const char *, std::function<void(Handle)>>> writes = {
        {"add", [&](Handle handle) { Add(handle, Three(u"d"_s, 4, 4)); }},
        {"change", [&](Handle handle) { Change(handle, Three(u"changed"_s, 4, 4)); }},
        {"delete", [&](Handle handle) { Store.DeleteRecord(handle, 2); }},
        {"note", [&](Handle handle) { Store.WriteNote(handle, u"noted"_s); }},
        {"batch",
            [&](Handle handle) {
                RecordStore::Batch batch(Store, handle);
                Change(handle, Three(u"once"_s, 4, 4));
                Change(handle, Three(u"twice"_s, 4, 4));
                Add(handle, Three(u"added"_s, 4, 4));
                Store.MoveToPosition(handle, 1);
                Store.DeleteRecord(handle, 2);
                Store.WriteNote(handle, u"noted"_s);
                batch.Commit();
            }},
        {"dropped batch",
            [&](Handle handle) {
                RecordStore::Batch batch(Store, handle);
                Add(handle, Three(u"never"_s, 4, 4));
            }},
        {"reading in a batch",
            [&](Handle handle) {
                RecordStore::Batch batch(Store, handle);
                Add(handle, Three(u"d"_s, 4, 4));
                EXPECT_NE(Names(handle), QString());
                batch.Commit();
            }},
    };
    for (const auto &[what, write] : writes) {
        SCOPED_TRACE(what);
        Store.DeleteDatabase(PathOf(Table), 0, 0);
        BuildThree();
        {
            const Handle handle = Open(Table);
            write(handle);
            Store.MoveFirst(handle);
            Store.CloseDatabase(handle);
        }
        EXPECT_EQ(Loading().Number, 0) << Loading().Description.toStdString();
        FlipABit();
        ExpectDamage(what);
    }
}

TEST_F(Digests, ALargeBatchKeepsTheDigestTrue)
{
    // More than SQLite keeps in memory until the commit.
    std::vector<ThreeFields> records(60000, Three(QString(60, u'x'), 1, 1));
    records.push_back(Three(u"unmistakable"_s, 2, 2));
    Build(Table, records);
    EXPECT_EQ(Loading().Number, 0);
    FlipABit();
    ExpectDamage("large");
}

TEST_F(Digests, WhatAnotherProgramWritesIsAcceptedUntilWeWriteAgain)
{
    for (const QString &sql : {u"UPDATE T SET Amount = 7 WHERE Name = 'a'"_s,
             u"DELETE FROM T WHERE Name = 'a'"_s, u"INSERT INTO T (Name) VALUES ('new')"_s,
             u"VACUUM"_s, u"PRAGMA journal_mode = WAL; UPDATE T SET Amount = 7 WHERE Name = 'a'"_s,
             u"UPDATE Record_Store SET Content_Digest = '', Check_Value = ''"_s}) {
        SCOPED_TRACE(sql.toStdString());
        Store.DeleteDatabase(PathOf(Table), 0, 0);
        BuildThree();
        Outside(sql);
        EXPECT_EQ(Loading().Number, 0) << Loading().Description.toStdString();
        {
            const Handle handle = Open(Table);
            Add(handle, Three(u"ours"_s, 1, 1));
            Store.CloseDatabase(handle);
        }
        EXPECT_EQ(Loading().Number, 0) << Loading().Description.toStdString();
        FlipABit();
        ExpectDamage("after a write of ours");
    }
}

TEST_F(Digests, WhatAnotherProgramWritesWhileTheDatabaseIsOpenIsAccepted)
{
    BuildThree();
    const Handle handle = Open(Table);
    Store.MoveFirst(handle);
    OtherProgram other(FileOf(Table));
    other.Execute(u"UPDATE T SET Name = 'theirs' WHERE Name = 'a'"_s);
    EXPECT_EQ(Names(handle), u"theirs b unmistakable"_s);
    other.Execute(u"PRAGMA journal_mode = WAL; UPDATE T SET Name = 'again' WHERE Name = 'b'"_s);
    EXPECT_EQ(Names(handle), u"theirs again unmistakable"_s);
}

TEST_F(Digests, TheCountOfChangesIsTheFilesOwn)
{
    BuildThree();
    const Handle handle = Open(Table);
    for (int i = 0; i < 3; ++i) {
        Change(handle, Three(u"x"_s, i, i));
        const QByteArray changes = Bytes(Table).mid(24, 4).toHex();
        EXPECT_EQ(Said(u"substr(Content_Digest, 1, 8)"_s), QString::fromLatin1(changes));
    }
    QByteArray bytes = Bytes(Table);
    bytes[27] = static_cast<char>(bytes[27] ^ 1); // no program counts in one place only
    Store.CloseDatabase(handle);
    WriteFile(Table, bytes);
    ExpectDamage("the header's count");
}

TEST_F(Digests, WhatTheFileSaysAboutItselfIsChecked)
{
    for (const QString &change : {u"Note = 'x'"_s, u"Type_Code = 1"_s, u"Format_Version = 1"_s,
             u"Schema_Text = Schema_Text || 'More String,'"_s,
             u"Content_Digest = replace(Content_Digest, '-', '0')"_s}) {
        SCOPED_TRACE(change.toStdString());
        Store.DeleteDatabase(PathOf(Table), 0, 0);
        BuildThree();
        Outside(u"UPDATE Record_Store SET "_s + change);
        ExpectDamage("changed");
    }
    // A program that changes the row on purpose empties the check value.
    Store.DeleteDatabase(PathOf(Table), 0, 0);
    BuildThree();
    Outside(u"UPDATE Record_Store SET Note = 'theirs', Check_Value = ''"_s);
    const Handle handle = Open(Table);
    EXPECT_EQ(Store.ReadNote(handle), u"theirs"_s);
    Store.WriteNote(handle, u"ours"_s);
    EXPECT_EQ(Said(u"length(Check_Value)"_s), u"16"_s);
}

TEST_F(Digests, DamageToTheNameOfOneColumnDoesNotTurnTheChecksOff)
{
    for (const QString &column : {u"Format_Version"_s, u"Content_Digest"_s, u"Check_Value"_s}) {
        Store.DeleteDatabase(PathOf(Table), 0, 0);
        BuildThree();
        Outside(u"ALTER TABLE Record_Store RENAME COLUMN %1 TO Other"_s.arg(column));
        ExpectDamage(column.toStdString());
    }
}

TEST_F(Digests, AFileOfAnOlderVersionIsOpenedReadAndWritten)
{
    BuildThree();
    for (const QString &column : {u"Format_Version"_s, u"Content_Digest"_s, u"Check_Value"_s})
        Outside(u"ALTER TABLE Record_Store DROP COLUMN "_s + column);
    {
        const Handle handle = Open(Table);
        EXPECT_EQ(Names(handle), u"a b unmistakable"_s);
        Add(handle, Three(u"added"_s, 1, 1));
        Store.WriteNote(handle, u"noted"_s);
        EXPECT_EQ(Store.ReadNote(handle), u"noted"_s);
        Store.CloseDatabase(handle);
    }
    FlipABit(); // nothing that could find it
    EXPECT_EQ(NamesInFile(Table), u"a b qnmistakable added"_s);
}

TEST_F(Digests, AFileOfANewerVersionIsRefusedByName)
{
    BuildThree();
    EXPECT_EQ(Said(u"Format_Version"_s), u"2"_s);
    Outside(u"UPDATE Record_Store SET Format_Version = 3"_s);
    Outside(u"ALTER TABLE Record_Store RENAME COLUMN Note TO Notes"_s); // whatever else it brings
    const QByteArray before = Bytes(Table);
    const Raised raised = Loading();
    EXPECT_EQ(raised.Number, StoreErrors::NewerFormat);
    EXPECT_EQ(raised.Description,
        u"A newer version of Worklog Remote wrote the database: "_s + FileOf(Table));
    EXPECT_EQ(Bytes(Table), before);
}

TEST_F(Digests, TextsOfADigestAreReadAsTheyAreWritten)
{
    const ContentDigest digest = {0x1a2b, 0x0123456789abcdef};
    EXPECT_EQ(digest.Text(), "00001a2b-0123456789abcdef");
    const std::optional<ContentDigest> read = ContentDigest::FromText(digest.Text());
    ASSERT_TRUE(read);
    EXPECT_EQ(read->Changes, digest.Changes);
    EXPECT_EQ(read->Sum, digest.Sum);
    for (const char *text :
        {"", "00001a2b", "00001a2b 0123456789abcdef", "00001a2g-0123456789abcdef",
            "00001a2b-0123456789abcde", "0x001a2b-0123456789abcdef", "00001a2b-0123456789abcdeff"})
        EXPECT_FALSE(ContentDigest::FromText(text)) << text;
}
