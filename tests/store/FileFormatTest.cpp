#include "store/Records.h"
#include "tests/store/StoreFixture.h"

using namespace Qt::StringLiterals;

namespace {

/// What `sqlite3` and every other language find in our files: our data interface.
class FileFormat : public StoreFixture
{
protected:
    EntryRecord Entry() const
    {
        EntryRecord entry;
        entry.Customer_Number = u"007"_s;
        entry.Project_Number = u"1e3"_s;
        entry.Date = WallClock(QDate(2024, 2, 29), QTime(8, 30));
        entry.Hours = Currency::FromScaled(75000);
        entry.Rate = Currency::FromScaled(-1);
        entry.Description = u"größer"_s;
        return entry;
    }

    void BuildEntries()
    {
        const Handle handle = Create(u"ABCEntries-WkLg"_s, EntryRecord::SchemaText);
        Store.AddRecord(handle);
        Store.WriteRecord(handle, Entry());
        Store.UpdateRecord(handle);
        Store.CloseDatabase(handle);
    }
};

} // namespace

TEST_F(FileFormat, OneStrictTableOfTheDatabasesName)
{
    BuildEntries();
    OtherProgram other(FileOf(u"ABCEntries-WkLg"_s));
    EXPECT_EQ(other.Values(u"SELECT name FROM pragma_table_list WHERE schema = 'main' "
                           "AND name NOT LIKE 'sqlite_%' ORDER BY name"_s),
        u"ABCEntries-WkLg|Record_Store"_s);
    EXPECT_EQ(other.Values(
                  u"SELECT strict || wr || type FROM pragma_table_list WHERE name LIKE '%-WkLg'"_s),
        u"10table"_s);
    EXPECT_EQ(other.Values(u"PRAGMA integrity_check"_s), u"ok"_s);
    EXPECT_EQ(other.Values(u"PRAGMA journal_mode"_s), u"delete"_s);
}

TEST_F(FileFormat, ColumnsAreTextAndInteger)
{
    BuildEntries();
    OtherProgram other(FileOf(u"ABCEntries-WkLg"_s));
    EXPECT_EQ(
        other.Values(u"SELECT name || ' ' || type FROM pragma_table_info('ABCEntries-WkLg')"_s),
        u"Customer_Number TEXT|Project_Number TEXT|Activity_Number TEXT|Date TEXT|"
        "Billing_Status TEXT|Mgmt_Approval TEXT|Sec_Approval TEXT|On_Hold TEXT|"
        "Billing_Option TEXT|Multiplier_Number TEXT|Rate_Overridden TEXT|Reimburse TEXT|"
        "Hours INTEGER|Rate INTEGER|Amount INTEGER|Multiplier_Factor INTEGER|"
        "Exp_Markup_Percent INTEGER|Exp_Markup_Amount INTEGER|Description TEXT"_s);
}

TEST_F(FileFormat, ValuesKeepTheirTypes)
{
    BuildEntries();
    OtherProgram other(FileOf(u"ABCEntries-WkLg"_s));
    const auto value = [&](const QString &column) {
        return other.Values(
            u"SELECT typeof(%1) || ' ' || %1 FROM \"ABCEntries-WkLg\""_s.arg(column));
    };
    EXPECT_EQ(value(u"Customer_Number"_s), u"text 007"_s);
    EXPECT_EQ(value(u"Project_Number"_s), u"text 1e3"_s);
    EXPECT_EQ(value(u"Activity_Number"_s), u"text "_s);
    EXPECT_EQ(value(u"Date"_s), u"text 2024-02-29 08:30:00"_s);
    EXPECT_EQ(value(u"Hours"_s), u"integer 75000"_s);
    EXPECT_EQ(value(u"Rate"_s), u"integer -1"_s);
    EXPECT_EQ(value(u"Description"_s), u"text größer"_s);
}

TEST_F(FileFormat, CarriesCreatorTypeAndTheSchemaTextAsPassed)
{
    BuildEntries();
    OtherProgram other(FileOf(u"ABCEntries-WkLg"_s));
    EXPECT_EQ(other.Values(u"PRAGMA application_id"_s), QString::number(0x576B4C67));
    EXPECT_EQ(other.Values(u"SELECT count(*) FROM Record_Store"_s), u"1"_s);
    EXPECT_EQ(other.Values(u"SELECT Type_Code FROM Record_Store"_s), QString::number(0x44415441));
    EXPECT_EQ(other.Values(u"SELECT Table_Name FROM Record_Store"_s), u"ABCEntries-WkLg"_s);
    EXPECT_EQ(other.Values(u"SELECT Schema_Text FROM Record_Store"_s),
        EntryRecord::SchemaText.toString());

    const Handle handle = Create(u"GlobalOptions-WkLg"_s, GlobalOptionsRecord::SchemaText);
    Store.CloseDatabase(handle);
    OtherProgram options(FileOf(u"GlobalOptions-WkLg"_s));
    EXPECT_EQ(options.Values(u"SELECT Schema_Text FROM Record_Store"_s),
        u"Last_Company String,Entries_Exist String, Employee String,"_s);
}

TEST_F(FileFormat, ACreatorNumberWithTheHighestBitFits)
{
    const quint32 creator = CodeNumber(u"ÿWkL"_s);
    Store.CloseDatabase(Store.CreateDatabase(PathOf(u"None"_s), 1, creator));
    const Handle handle = Store.CreateDatabase(PathOf(u"High"_s), 0xFFFFFFFF, creator);
    Store.CreateTable(handle, u"High"_s, u"Name String,"_s);
    Store.CloseDatabase(handle);
    Store.SetCreator(creator);
    EXPECT_NE(Open(u"High"_s), 0);
    OtherProgram other(FileOf(u"High"_s));
    EXPECT_EQ(other.Values(u"SELECT Type_Code FROM Record_Store"_s), u"4294967295"_s);
}

TEST_F(FileFormat, WhatOthersWriteIsRead)
{
    BuildEntries();
    {
        OtherProgram other(FileOf(u"ABCEntries-WkLg"_s));
        other.Execute(u"INSERT INTO \"ABCEntries-WkLg\" (Customer_Number, Date, Amount) "
                      "VALUES ('0100', '1999-12-31 23:59:59', -123)"_s);
        other.Execute(u"PRAGMA journal_mode = WAL"_s); // as a tool may leave it
    }
    const Handle handle = Open(u"ABCEntries-WkLg"_s);
    Store.MoveCursor(handle);
    EntryRecord entry;
    ASSERT_TRUE(Store.ReadRecord(handle, entry));
    EXPECT_EQ(entry.Customer_Number, u"0100"_s);
    EXPECT_EQ(entry.Project_Number, QString());
    EXPECT_EQ(entry.Date, WallClock(QDate(1999, 12, 31), QTime(23, 59, 59)));
    EXPECT_EQ(entry.Amount.Scaled(), -123);
    Store.CloseDatabase(handle);
    EXPECT_EQ(FilesInFolder(), QStringList{u"ABCEntries-WkLg.db"_s});
}

TEST_F(FileFormat, ColumnsThatAreNotOursAreLeftAlone)
{
    Build(u"T"_s, {Three(u"a"_s, 1, 1)});
    OtherProgram other(FileOf(u"T"_s));
    other.Execute(u"ALTER TABLE T ADD COLUMN Extra TEXT DEFAULT 'more'"_s);
    const Handle handle = Open(u"T"_s);
    Change(handle, Three(u"b"_s, 2, 2));
    Add(handle, Three(u"c"_s));
    EXPECT_EQ(Names(handle), u"b c"_s);
    EXPECT_EQ(other.Values(u"SELECT Name || Extra FROM T"_s), u"bmore|cmore"_s);
}

TEST_F(FileFormat, StoredOrderIsTheOrderOfAdding)
{
    const Handle handle = Table({Three(u"c"_s), Three(u"a"_s), Three(u"b"_s)});
    Store.SortTable(handle, u"0"_s);
    Add(handle, Three(u"0"_s));
    Store.MoveFirst(handle);
    Store.DeleteRecord(handle, 2);
    OtherProgram other(FileOf(u"T"_s));
    EXPECT_EQ(other.Values(u"SELECT Name FROM T ORDER BY rowid"_s), u"c b 0"_s.replace(u' ', u'|'));
}
