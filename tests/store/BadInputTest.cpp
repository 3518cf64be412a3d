#include "store/StoreErrors.h"
#include "tests/store/StoreFixture.h"

#include <QDir>
#include <QFile>

#include <functional>
#include <random>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace Qt::StringLiterals;

namespace {

class BadInput : public StoreFixture
{
protected:
    /// Opening "T" is refused with this number and a text that names the file; nothing changes.
    void ExpectRefused(int number, const std::string &what)
    {
        const QByteArray before = Bytes(u"T"_s);
        const QStringList files = FilesInFolder();
        const Raised raised = RaisedBy([&] { Open(u"T"_s); });
        EXPECT_EQ(raised.Number, number) << what << ": " << raised.Description.toStdString();
        EXPECT_TRUE(raised.Names(FileOf(u"T"_s)))
            << what << ": " << raised.Description.toStdString();
        EXPECT_EQ(Bytes(u"T"_s), before) << what;
        EXPECT_EQ(FilesInFolder(), files) << what;
    }

    /// A good database of several pages.
    QByteArray GoodBytes()
    {
        std::vector<ThreeFields> records;
        for (int i = 0; i < 500; ++i)
            records.push_back(Three(u"Record number %1 of many"_s.arg(i), i % 28 + 1, i));
        Build(u"Good"_s, records);
        const QByteArray bytes = Bytes(u"Good"_s);
        QFile::remove(FileOf(u"Good"_s));
        return bytes;
    }

    /// A good database that another program has then changed by these statements.
    void BuildChanged(const QStringList &statements)
    {
        QFile::remove(FileOf(u"T"_s));
        Build(u"T"_s, {Three(u"a"_s)});
        OtherProgram other(FileOf(u"T"_s));
        for (const QString &sql : statements)
            other.Execute(sql);
    }
};

} // namespace

TEST_F(BadInput, AMissingFileIsHandleZero)
{
    EXPECT_EQ(Open(u"T"_s), 0);
    EXPECT_EQ(Open(u"none/T"_s), 0);
    EXPECT_TRUE(FilesInFolder().isEmpty());
}

TEST_F(BadInput, WhatIsNoDatabaseIsRefused)
{
    const QByteArray cases[] = {"", "x", "Dear Sir or Madam,\n", QByteArray(5000, '\0'),
        QByteArray(5000, 'x'), QByteArray("SQLite format 2\0", 16),
        "\xEF\xBB\xBFSQLite format 3" + QByteArray(4096, '\0')};
    for (const QByteArray &content : cases) {
        WriteFile(u"T"_s, content);
        ExpectRefused(StoreErrors::NotADatabase, content.left(30).toStdString());
    }
}

TEST_F(BadInput, AFolderIsRefused)
{
    ASSERT_TRUE(QDir().mkpath(FileOf(u"T"_s)));
    const Raised raised = RaisedBy([&] { Open(u"T"_s); });
    EXPECT_EQ(raised.Number, StoreErrors::NotADatabase);
    EXPECT_TRUE(raised.Names(FileOf(u"T"_s)));
    EXPECT_EQ(FilesInFolder(), QStringList{u"T.db"_s});
}

#ifdef Q_OS_UNIX // files of Windows have neither names for pipes nor permission bits
TEST_F(BadInput, APipeIsRefusedWithoutWaitingForAWriter)
{
    ASSERT_EQ(mkfifo(QFile::encodeName(FileOf(u"T"_s)).constData(), 0600), 0);
    const Raised raised = RaisedBy([&] { Open(u"T"_s); });
    EXPECT_EQ(raised.Number, StoreErrors::NotADatabase);
    EXPECT_TRUE(raised.Names(FileOf(u"T"_s)));
}
#endif

TEST_F(BadInput, ADatabaseOfAnotherCreatorIsRefused)
{
    Build(u"T"_s, {Three(u"a"_s)});
    Store.SetCreator(CodeNumber(u"Else"_s));
    ExpectRefused(StoreErrors::ForeignCreator, "ours, seen by another");
    Store.SetCreator(CodeNumber(u"WkLg"_s));
    BuildChanged({u"PRAGMA application_id = 1466649704"_s});
    ExpectRefused(StoreErrors::ForeignCreator, "nearly ours");
    BuildChanged({u"PRAGMA application_id = 0"_s});
    ExpectRefused(StoreErrors::ForeignCreator, "without a creator");
    QFile::remove(FileOf(u"T"_s));
    OtherProgram(FileOf(u"T"_s)).Execute(u"CREATE TABLE T (Name TEXT)"_s);
    ExpectRefused(StoreErrors::ForeignCreator, "an ordinary one");
}

TEST_F(BadInput, ATruncatedDatabaseIsRefusedWhereverItEnds)
{
    const QByteArray good = GoodBytes();
    ASSERT_GT(good.size(), 5 * 4096);
    ASSERT_EQ(good.size() % 4096, 0);
    for (const qsizetype size : {qsizetype(15), qsizetype(16), qsizetype(50), qsizetype(99),
             qsizetype(100), qsizetype(101), qsizetype(1000), qsizetype(4095), qsizetype(4096),
             qsizetype(4097), qsizetype(8192), good.size() / 2, good.size() - 4097,
             good.size() - 4096, good.size() - 4095, good.size() - 2048, good.size() - 1}) {
        WriteFile(u"T"_s, good.left(size));
        ExpectRefused(StoreErrors::Damaged, "the first " + std::to_string(size) + " bytes");
    }
    WriteFile(u"T"_s, good);
    EXPECT_EQ(Store.GetRecordCount(Open(u"T"_s)), 500);
}

#ifdef Q_OS_UNIX // files of Windows have neither names for pipes nor permission bits
TEST_F(BadInput, PermissionBitsDecideEvenForAnAdministrator)
{
    Build(u"T"_s, {Three(u"a"_s)});
    const QByteArray before = Bytes(u"T"_s);
    const auto refusal = [&](QFile::Permissions permissions) {
        EXPECT_TRUE(QFile::setPermissions(FileOf(u"T"_s), permissions));
        const Raised raised = RaisedBy([&] { Open(u"T"_s); });
        EXPECT_TRUE(raised.Names(FileOf(u"T"_s))) << raised.Description.toStdString();
        return raised.Number;
    };
    EXPECT_EQ(refusal({}), StoreErrors::Unreadable);
    EXPECT_EQ(refusal(QFile::WriteOwner), StoreErrors::Unreadable);
    EXPECT_EQ(refusal(QFile::ReadOwner), StoreErrors::ReadOnly);
    EXPECT_EQ(
        refusal(QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther), StoreErrors::ReadOnly);
    ASSERT_TRUE(QFile::setPermissions(FileOf(u"T"_s), QFile::ReadOwner | QFile::WriteOwner));
    EXPECT_EQ(Bytes(u"T"_s), before);
    EXPECT_EQ(Names(Open(u"T"_s)), u"a"_s);
}
#endif

TEST_F(BadInput, ALockedDatabaseIsRefusedUntilItIsFree)
{
    Build(u"T"_s, {Three(u"a"_s)});
    OtherProgram other(FileOf(u"T"_s));
    other.Execute(u"BEGIN EXCLUSIVE"_s);
    const Raised raised = RaisedBy([&] { Open(u"T"_s); });
    EXPECT_EQ(raised.Number, StoreErrors::Locked);
    EXPECT_TRUE(raised.Names(FileOf(u"T"_s)));
    other.Execute(u"ROLLBACK"_s);
    EXPECT_EQ(Names(Open(u"T"_s)), u"a"_s);
}

TEST_F(BadInput, ADamagedDefinitionIsRefused)
{
    const std::vector<QStringList> cases = {
        {u"DROP TABLE Record_Store"_s},
        {u"DELETE FROM Record_Store"_s},
        {u"INSERT INTO Record_Store SELECT * FROM Record_Store"_s},
        {u"ALTER TABLE Record_Store DROP COLUMN Note"_s},
        {u"ALTER TABLE Record_Store RENAME COLUMN Table_Name TO Name"_s},
        {u"ALTER TABLE Record_Store RENAME TO Recordstore"_s},
        {u"DROP TABLE Record_Store"_s,
            u"CREATE VIEW Record_Store AS SELECT 1 AS Type_Code, "
            "'T' AS Table_Name, 'Name String,' AS Schema_Text, "
            "'' AS Note"_s},
        {u"UPDATE Record_Store SET Schema_Text = ''"_s},
        {u"UPDATE Record_Store SET Schema_Text = 'Name Text,'"_s},
        {u"UPDATE Record_Store SET Schema_Text = 'Name String'"_s},
        {u"UPDATE Record_Store SET Table_Name = 'Other'"_s},
        {u"UPDATE Record_Store SET Table_Name = ''"_s},
    };
    for (const QStringList &statements : cases) {
        BuildChanged(statements);
        ExpectRefused(StoreErrors::Damaged, statements.join(u' ').toStdString());
    }
}

TEST_F(BadInput, ATableThatIsNotWhatItsDefinitionSaysIsRefused)
{
    const QString drop = u"DROP TABLE T"_s;
    const std::vector<QStringList> cases = {
        {drop},
        {u"ALTER TABLE T DROP COLUMN Amount"_s},
        {u"ALTER TABLE T RENAME COLUMN Amount TO Sum"_s},
        {drop, u"CREATE TABLE T (Name TEXT, Day TEXT, Amount TEXT) STRICT"_s},
        {drop, u"CREATE TABLE T (Name INTEGER, Day TEXT, Amount INTEGER) STRICT"_s},
        {drop, u"CREATE TABLE T (Name TEXT, Day TEXT, Amount REAL) STRICT"_s},
        {drop, u"CREATE TABLE T (Name ANY, Day TEXT, Amount INTEGER) STRICT"_s},
        {drop, u"CREATE TABLE T (Name TEXT, Day TEXT, Amount INTEGER)"_s},
        {drop,
            u"CREATE TABLE T (Name TEXT PRIMARY KEY, Day TEXT, Amount INTEGER) STRICT, "
            "WITHOUT ROWID"_s},
        {drop, u"CREATE TABLE V (Name TEXT, Day TEXT, Amount INTEGER) STRICT"_s,
            u"CREATE VIEW T AS SELECT * FROM V"_s},
        {u"UPDATE Record_Store SET Schema_Text = 'Name String, Day Currency, Amount Currency,'"_s},
        {u"UPDATE Record_Store SET Schema_Text = 'Name String, Day Date, Amount Currency, More "
         "String,'"_s},
    };
    for (const QStringList &statements : cases) {
        BuildChanged(statements);
        ExpectRefused(StoreErrors::Damaged, statements.join(u' ').toStdString());
    }
    BuildChanged({u"ALTER TABLE T DROP COLUMN Amount"_s});
    EXPECT_TRUE(RaisedBy([&] { Open(u"T"_s); }).Names(u"Amount"_s));
}

TEST_F(BadInput, ATextThatIsNoDateIsNamedWhenTheRecordsAreRead)
{
    BuildChanged({u"INSERT INTO T (Name, Day) VALUES ('b', '29.02.2024')"_s});
    const QByteArray before = Bytes(u"T"_s);
    const Handle handle = Open(u"T"_s);
    EXPECT_EQ(Store.GetRecordCount(handle), 2); // counting reads no values
    for (int i = 0; i < 2; ++i) {
        const Raised raised = RaisedBy([&] { Store.MoveFirst(handle); });
        EXPECT_EQ(raised.Number, StoreErrors::BadRecord);
        EXPECT_TRUE(raised.Names(FileOf(u"T"_s)));
        EXPECT_TRUE(raised.Names(u"Day"_s));
        EXPECT_TRUE(raised.Names(u"29.02.2024"_s));
        EXPECT_TRUE(raised.Names(u"record 2"_s));
    }
    EXPECT_EQ(Bytes(u"T"_s), before);
    OtherProgram(FileOf(u"T"_s)).Execute(u"UPDATE T SET Day = '2024-02-29 00:00:00'"_s);
    EXPECT_EQ(Names(handle), u"a b"_s);
}

TEST_F(BadInput, DamagedBytesNeverCrash)
{
    const QByteArray good = GoodBytes();
    const unsigned start = 2024;
    std::mt19937 random(start);
    int refused = 0;
    int read = 0;
    for (int i = 0; i < 600; ++i) {
        QByteArray bad = good;
        const auto where = [&] {
            // Half of the damage goes into the first page, which steers everything.
            const auto range = random() % 2 == 0 ? size_t(4096) : static_cast<size_t>(bad.size());
            return static_cast<qsizetype>(random() % range);
        };
        for (auto count = random() % 8 + 1; count > 0; --count)
            bad[where()] = static_cast<char>(random());
        WriteFile(u"T"_s, bad);
        const Raised raised = RaisedBy([&] {
            const Handle handle = Open(u"T"_s);
            ThreeFields record;
            for (Store.MoveFirst(handle); !Store.IsEndOfTable(handle); Store.MoveNext(handle))
                Store.ReadRecord(handle, record);
            Store.SortTable(handle, u"0, 1, 2"_s);
            Store.FindRecord(handle, 0, u"Record number 77"_s);
            if (!Store.IsEndOfTable(handle))
                Store.DeleteRecord(handle, 2);
            Add(handle, Three(u"new"_s));
            Store.CloseDatabase(handle);
        });
        EXPECT_TRUE(raised.Number == 0 || raised.Names(FileOf(u"T"_s)))
            << "start " << start << ", step " << i << ": " << raised.Description.toStdString();
        (raised.Number == 0 ? read : refused) += 1;
        Store.DeleteDatabase(PathOf(u"T"_s), 0, 0);
    }
    EXPECT_GT(refused, 100);
    EXPECT_GT(read, 50);
}
