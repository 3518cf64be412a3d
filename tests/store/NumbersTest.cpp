// Records read as numbers, and searches that leave the cursor alone: what makes long lists quick.

#include "tests/store/StoreFixture.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

class Numbers : public StoreFixture
{
protected:
    std::vector<qint64> NumbersOf(Handle handle, qint32 position)
    {
        Store.MoveToPosition(handle, position);
        std::vector<qint64> values(3);
        Store.ReadNumbers(handle, std::array{0, 1, 2}, values);
        return values;
    }
};

} // namespace

TEST_F(Numbers, StandForTextsAndAreTheValuesOfOtherFields)
{
    const Handle handle = Table({Three(u"b"_s, 1, 7), Three(u"a"_s, 2, 8), Three(u"b"_s, 3, 9)});

    EXPECT_THAT(
        NumbersOf(handle, 0), ElementsAre(0, SecondsFromDate(March(1)), 7 * Currency::Scale));
    EXPECT_THAT(
        NumbersOf(handle, 1), ElementsAre(1, SecondsFromDate(March(2)), 8 * Currency::Scale));
    EXPECT_EQ(NumbersOf(handle, 2).front(), 0) << "an equal text has the same number";
    const auto texts = Store.NumbersOf(handle, 0);
    EXPECT_EQ(texts->Text(1), u"a"_s);
    EXPECT_EQ(texts->Find(u"b"_s), 0);
    EXPECT_EQ(texts->Find(u"B"_s), std::nullopt) << "exact, case counts";
}

TEST_F(Numbers, FollowWhatIsWritten)
{
    const Handle handle = Table({Three(u"a"_s), Three(u"b"_s)});
    NumbersOf(handle, 0);
    Add(handle, Three(u"c"_s));
    EXPECT_EQ(NumbersOf(handle, 2).front(), 2);
    Store.MoveToPosition(handle, 0);
    Change(handle, Three(u"c"_s));
    EXPECT_EQ(NumbersOf(handle, 0).front(), 2);
    Store.DeleteRecord(handle, 2);
    EXPECT_EQ(NumbersOf(handle, 0).front(), 1);
}

TEST_F(Numbers, OfATableThatWasReadAnewAreOthersAndTheOldOnesStillHold)
{
    const Handle handle = Table({Three(u"a"_s), Three(u"b"_s)});
    const auto before = Store.NumbersOf(handle, 0);
    OtherProgram(FileOf(u"T"_s)).Execute(u"DELETE FROM T WHERE Name = 'a'"_s);
    Store.MoveFirst(handle);
    EXPECT_NE(Store.NumbersOf(handle, 0), before);
    EXPECT_EQ(NumbersOf(handle, 0).front(), 0);
    EXPECT_EQ(before->Text(0), u"a"_s);
}

TEST_F(Numbers, PastTheLastRecordAreAnError)
{
    const Handle handle = Table({Three(u"a"_s)});
    Store.MoveNext(handle);
    std::vector<qint64> values(1);
    EXPECT_THROW(Store.ReadNumbers(handle, std::array{0}, values), clsRunTimeError);
    Store.MoveFirst(handle);
    EXPECT_THROW(Store.ReadNumbers(handle, std::array{3}, values), clsRunTimeError);
}

TEST_F(Numbers, ASightIsWhereASearchWouldEndAndMovesNothing)
{
    const Handle handle = Table({Three(u"B"_s), Three(u"D"_s)});
    Store.MoveToPosition(handle, 1);
    const RecordStore::Sighting exact = Store.Sight(handle, 0, u"B"_s, 0);
    EXPECT_TRUE(exact.IsRecord && exact.Exact);
    EXPECT_EQ(exact.Value, u"B"_s);
    const RecordStore::Sighting next = Store.Sight(handle, 0, u"C"_s, 0);
    EXPECT_TRUE(next.IsRecord && !next.Exact);
    EXPECT_EQ(next.Value, u"D"_s);
    EXPECT_FALSE(Store.Sight(handle, 0, u"E"_s, 0).IsRecord);
    EXPECT_EQ(Store.GetRecordPosition(handle), 1);
}

TEST_F(Numbers, TheVersionTellsWhetherASearchMayEndElsewhere)
{
    const Handle handle = Table({Three(u"b"_s, 1), Three(u"a"_s, 2), Three(u"a"_s, 1)});
    Store.FindRecord(handle, 0, u"a"_s);
    quint64 version = Store.Version(handle);
    const auto changes = [&] { return std::exchange(version, Store.Version(handle)) != version; };
    Store.MoveFirst(handle);
    EXPECT_FALSE(changes());
    Store.SortTable(handle, u"1, 0"_s);
    EXPECT_TRUE(changes()) << "two records are called a, and the other one is found now";
    Add(handle, Three(u"c"_s));
    EXPECT_TRUE(changes());
    Store.MoveFirst(handle);
    Store.DeleteRecord(handle, 2);
    EXPECT_TRUE(changes());
}

TEST_F(Numbers, TheVersionOfATableWithoutEqualsOutlivesASort)
{
    const Handle handle = Table({Three(u"b"_s, 1), Three(u"a"_s, 2)});
    Store.FindRecord(handle, 0, u"a"_s);
    const quint64 version = Store.Version(handle);
    Store.SortTable(handle, u"1"_s);
    Store.SortTable(handle, u"0"_s);
    EXPECT_EQ(Store.Version(handle), version);
    EXPECT_EQ(Names(handle), u"a b"_s);
}

TEST_F(Numbers, LongEqualBeginningsAreSortedByWhatFollows)
{
    // Sorted by sixteen bytes at a time up to 48, and by comparing from there on.
    const QString same16 = u"Thistle Partners"_s;
    const QString same48 = same16 + u" of the upper and the lower vale"_s;
    std::vector<ThreeFields> records;
    for (const QString &end : {u"z"_s, u"A"_s, u"m"_s, u""_s, u"É"_s, u"a"_s})
        for (const QString &begin : {same16, same48, u"short"_s})
            records.push_back(Three(begin + end));
    const Handle handle = Table(records);
    Store.SortTable(handle, u"0"_s);
    std::vector<std::string> sorted;
    for (Store.MoveFirst(handle); !Store.IsEndOfTable(handle); Store.MoveNext(handle))
        sorted.push_back(Name(handle).toStdString());
    std::vector<std::string> expected = sorted;
    std::sort(expected.begin(), expected.end(),
        [](const std::string &a, const std::string &b) { return CompareTexts(a, b) < 0; });
    EXPECT_EQ(sorted, expected);
    EXPECT_EQ(sorted.size(), records.size());
}
