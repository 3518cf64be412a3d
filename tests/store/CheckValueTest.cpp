// The check value beside each entry: damage is found, and records of other programs are welcome.

#include "store/CheckValue.h"
#include "store/modDBMain.h"
#include "store/Records.h"
#include "store/StoreErrors.h"
#include "tests/store/StoreFixture.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QString Entries = u"ABCEntries-WkLg"_s;

class CheckValues : public StoreFixture
{
protected:
    static EntryRecord Entry(const QString &description)
    {
        EntryRecord entry;
        entry.Customer_Number = u"007"_s;
        entry.Project_Number = u"1e3"_s;
        entry.Date = WallClock(QDate(2024, 2, 29), QTime(8, 30));
        entry.Billing_Status = u"1"_s;
        entry.Hours = Currency::FromScaled(75000);
        entry.Rate = Currency::FromScaled(-1);
        entry.Description = description;
        return entry;
    }

    void BuildThree()
    {
        modDBMain main(Store, m_folder.path());
        main.StoreTheCodes({u"WkLg"_s, u"KVLM"_s, u"DATA"_s});
        main.CreateEntries(Entries);
        const Handle handle = Open(Entries);
        for (const QString &description : {u"größer"_s, u"second"_s, u"third"_s})
            AddEntry(handle, description);
        Store.CloseDatabase(handle);
    }

    void AddEntry(Handle handle, const QString &description)
    {
        Store.AddRecord(handle);
        Store.WriteRecord(handle, Entry(description));
        Store.UpdateRecord(handle);
    }

    void ChangeAt(Handle handle, qint32 position, const QString &description)
    {
        Store.MoveToPosition(handle, position);
        Store.EditRecord(handle);
        Store.WriteRecord(handle, Entry(description));
        Store.UpdateRecord(handle);
    }

    QString ValuesInFile()
    {
        return OtherProgram(FileOf(Entries))
            .Values(u"SELECT Check_Value FROM \"ABCEntries-WkLg\""_s);
    }

    void Outside(const QString &sql) { OtherProgram(FileOf(Entries)).Execute(sql); }
};

} // namespace

TEST_F(CheckValues, AreWorkedOutInAWayThatNeverChanges)
{
    const auto text = [](const CheckValue &value) {
        const CheckValue::Digits digits = value.Hexadecimal();
        return std::string(digits.begin(), digits.end());
    };
    CheckValue letters;
    for (const char c : {'f', 'o', 'o', 'b', 'a', 'r'})
        letters.Add(std::string_view(&c, 1)); // each with its end
    CheckValue value;
    EXPECT_EQ(text(value), "2d06800538d394c2");
    value.Add("");
    EXPECT_EQ(text(value), "d6bcec3c6b29d72e");
    value.Clear();
    value.Add("foobar");
    EXPECT_EQ(text(value), "cfbb70d83078fddb");
    EXPECT_NE(text(letters), text(value));
    BuildThree();
    EXPECT_EQ(ValuesInFile().section(u'|', 0, 0), u"af813a2813bc7e85"_s);
}

TEST_F(CheckValues, StandBesideTheNineteenFieldsAndAreNone)
{
    BuildThree();
    OtherProgram other(FileOf(Entries));
    EXPECT_EQ(other.Values(u"SELECT name || ' ' || type || ' ' || cid FROM "
                           "pragma_table_info('ABCEntries-WkLg') WHERE cid > 17"_s),
        u"Description TEXT 18|Check_Value TEXT 19"_s);
    EXPECT_EQ(other.Values(u"SELECT Schema_Text FROM Record_Store"_s),
        EntryRecord::SchemaText.toString());
    EXPECT_THAT(Store.DamagedRecords(Open(Entries)), IsEmpty());
}

TEST_F(CheckValues, EveryFieldThatChangesOutsideIsFound)
{
    for (const SchemaField &field : ParseSchema(EntryRecord::SchemaText)) {
        Store.DeleteDatabase(PathOf(Entries), 0, 0);
        BuildThree();
        const QString value = field.Type == FieldType::Currency ? u"1"_s
            : field.Type == FieldType::Date                     ? u"'2024-02-28 08:30:00'"_s
                                                                : u"'x'"_s;
        Outside(u"UPDATE \"ABCEntries-WkLg\" SET %1 = %2 WHERE rowid = 2"_s.arg(field.Name, value));
        const Handle handle = Open(Entries);
        EXPECT_THAT(Store.DamagedRecords(handle), ElementsAre(1)) << field.Name.toStdString();
        EntryRecord entry;
        Store.MoveToPosition(handle, 1);
        EXPECT_TRUE(Store.ReadRecord(handle, entry)); // it can still be looked at
        Store.CloseDatabase(handle);
    }
}

TEST_F(CheckValues, TextThatMovesFromOneFieldToTheNextIsFound)
{
    BuildThree();
    Outside(u"UPDATE \"ABCEntries-WkLg\" SET Customer_Number = '0071', Project_Number = 'e3' "
            "WHERE rowid = 1"_s);
    EXPECT_THAT(Store.DamagedRecords(Open(Entries)), ElementsAre(0));
}

TEST_F(CheckValues, ARecordWrittenAgainOrDeletedIsNoLongerDamaged)
{
    BuildThree();
    Outside(u"UPDATE \"ABCEntries-WkLg\" SET Hours = 1"_s);
    const Handle handle = Open(Entries);
    Store.SortTable(handle, u"18"_s); // größer, second, third
    EXPECT_THAT(Store.DamagedRecords(handle), ElementsAre(0, 1, 2));
    ChangeAt(handle, 1, u"mended"_s);
    EXPECT_THAT(Store.DamagedRecords(handle), ElementsAre(0, 2));
    Store.MoveToPosition(handle, 2);
    Store.DeleteRecord(handle, 2);
    EXPECT_THAT(Store.DamagedRecords(handle), ElementsAre(0));
    AddEntry(handle, u"more"_s); // takes the number of the deleted one
    EXPECT_THAT(Store.DamagedRecords(handle), ElementsAre(0));
    Store.CloseDatabase(handle);
    EXPECT_EQ(Store.DamagedRecords(Open(Entries)).size(), 1U);
}

TEST_F(CheckValues, ARecordOfAnotherProgramIsAcceptedAndGetsOneWhenItIsSaved)
{
    BuildThree();
    Outside(u"INSERT INTO \"ABCEntries-WkLg\" (Customer_Number, Description) VALUES ('1', 'x')"_s);
    const Handle handle = Open(Entries);
    EXPECT_THAT(Store.DamagedRecords(handle), IsEmpty());
    EXPECT_TRUE(ValuesInFile().endsWith(u'|'));
    ChangeAt(handle, 3, u"ours now"_s);
    EXPECT_FALSE(ValuesInFile().endsWith(u'|'));
    Outside(u"UPDATE \"ABCEntries-WkLg\" SET Hours = 1 WHERE rowid = 4"_s);
    Store.MoveFirst(handle);
    EXPECT_THAT(Store.DamagedRecords(handle), ElementsAre(3));
    // Who changes one of ours on purpose empties the value.
    Outside(u"UPDATE \"ABCEntries-WkLg\" SET Check_Value = '' WHERE rowid = 4"_s);
    Store.MoveFirst(handle);
    EXPECT_THAT(Store.DamagedRecords(handle), IsEmpty());
}

TEST_F(CheckValues, ADatabaseWithoutTheColumnWorksAsItDid)
{
    Store.CloseDatabase(Create(Entries, EntryRecord::SchemaText));
    const Handle handle = Open(Entries);
    AddEntry(handle, u"first"_s);
    ChangeAt(handle, 0, u"changed"_s);
    EXPECT_THAT(Store.DamagedRecords(handle), IsEmpty());
    EXPECT_EQ(Store.ReadField(handle, 18), u"changed"_s);
}

TEST_F(CheckValues, ABatchWritesThemToo)
{
    BuildThree();
    const Handle handle = Open(Entries);
    RecordStore::Batch batch(Store, handle);
    ChangeAt(handle, 0, u"once"_s);
    ChangeAt(handle, 0, u"twice"_s);
    AddEntry(handle, u"fourth"_s);
    batch.Commit();
    Store.CloseDatabase(handle);
    EXPECT_THAT(Store.DamagedRecords(Open(Entries)), IsEmpty());
    EXPECT_EQ(ValuesInFile().size(), 4 * 16 + 3);
}

TEST_F(CheckValues, AColumnOfAnotherTypeIsRefused)
{
    BuildThree();
    Outside(u"ALTER TABLE \"ABCEntries-WkLg\" DROP COLUMN Check_Value"_s);
    Outside(u"ALTER TABLE \"ABCEntries-WkLg\" ADD COLUMN Check_Value INTEGER"_s);
    const Raised raised = RaisedBy([&] { Open(Entries); });
    EXPECT_EQ(raised.Number, StoreErrors::Damaged);
    EXPECT_TRUE(raised.Names(FileOf(Entries)));
}

TEST_F(CheckValues, AreNotTakenAwayByDamageToAName)
{
    const std::vector<QStringList> cases
        = {{u"ALTER TABLE \"ABCEntries-WkLg\" RENAME COLUMN Check_Value TO Check_Valve"_s},
            {u"ALTER TABLE \"ABCEntries-WkLg\" DROP COLUMN Check_Value"_s},
            {u"ALTER TABLE Record_Store RENAME COLUMN Has_Check_Values TO Has_Check_Valves"_s}};
    for (const QStringList &statements : cases) {
        Store.DeleteDatabase(PathOf(Entries), 0, 0);
        BuildThree();
        Outside(statements[0]);
        const Raised raised = RaisedBy([&] { Open(Entries); });
        EXPECT_EQ(raised.Number, StoreErrors::Damaged) << statements[0].toStdString();
    }
}

TEST_F(CheckValues, PagesThatHaveLostRecordsAreRefusedBeforeAnythingIsRead)
{
    BuildThree();
    QByteArray bytes = Bytes(Entries);
    // The page whose last record is ours holds three cells; one of them is taken out of the count.
    const qsizetype page = bytes.lastIndexOf("third") / 4096 * 4096;
    ASSERT_EQ(bytes.at(page + 4), 3);
    bytes[page + 4] = 2;
    WriteFile(Entries, bytes);
    const Handle handle = Open(Entries);
    const Raised raised = RaisedBy([&] { Store.MoveFirst(handle); });
    EXPECT_EQ(raised.Number, StoreErrors::Damaged);
    EXPECT_TRUE(raised.Names(FileOf(Entries)));
    EXPECT_EQ(Bytes(Entries), bytes);
}
