#include "store/StoreErrors.h"
#include "tests/store/StoreFixture.h"
#include "tests/support/HeldMemory.h"

#include <QDir>
#include <QFile>

#include <functional>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

class RecordStoreCursor : public StoreFixture
{
};
class RecordStoreFind : public StoreFixture
{
};
class RecordStoreWrite : public StoreFixture
{
};
class RecordStoreSort : public StoreFixture
{
};
class RecordStoreScratch : public StoreFixture
{
};

class RecordStoreBatch : public StoreFixture
{
};
class RecordStoreCreate : public StoreFixture
{
};

struct OneText
{
    QString Text;
    auto Fields() { return std::tie(Text); }
    auto Fields() const { return std::tie(Text); }
};

struct Reordered
{
    QDateTime Day;
    QString Name;
    Currency Amount;
    auto Fields() { return std::tie(Day, Name, Amount); }
    auto Fields() const { return std::tie(Day, Name, Amount); }
};

struct OneMore
{
    ThreeFields Three;
    QString Text;
    auto Fields() { return std::tie(Three.Name, Three.Day, Three.Amount, Text); }
    auto Fields() const { return std::tie(Three.Name, Three.Day, Three.Amount, Text); }
};

} // namespace

TEST_F(RecordStoreCursor, StandsOnTheFirstRecordAfterOpening)
{
    const Handle handle = Table({Three(u"a"_s), Three(u"b"_s)});
    EXPECT_NE(handle, 0);
    EXPECT_EQ(Read(handle), Three(u"a"_s));
    EXPECT_EQ(Store.GetRecordPosition(handle), 0);
    EXPECT_FALSE(Store.IsEndOfTable(handle));
}

TEST_F(RecordStoreCursor, IsAtTheEndOfAnEmptyTableAtOnce)
{
    const Handle handle = Table({});
    EXPECT_TRUE(Store.IsEndOfTable(handle));
    EXPECT_EQ(Store.GetRecordCount(handle), 0);
    EXPECT_EQ(Store.GetRecordPosition(handle), 0);
    for (const auto &move :
        {&RecordStore::MoveFirst, &RecordStore::MoveNext, &RecordStore::MoveCursor}) {
        (Store.*move)(handle);
        EXPECT_TRUE(Store.IsEndOfTable(handle));
    }
    EXPECT_EQ(Names(handle), QString());
}

TEST_F(RecordStoreCursor, WalksOverEveryRecordAndStaysAtTheEnd)
{
    const Handle handle = Table({Three(u"a"_s), Three(u"b"_s), Three(u"c"_s)});
    EXPECT_EQ(Names(handle), u"a b c"_s);
    EXPECT_EQ(Store.GetRecordPosition(handle), 3);
    Store.MoveNext(handle);
    EXPECT_EQ(Store.GetRecordPosition(handle), 3);
    EXPECT_TRUE(Store.IsEndOfTable(handle));
    Store.MoveFirst(handle);
    EXPECT_EQ(Name(handle), u"a"_s);
}

TEST_F(RecordStoreCursor, MoveCursorGoesToTheLastRecord)
{
    const Handle handle = Table({Three(u"a"_s), Three(u"b"_s), Three(u"c"_s)});
    Store.MoveCursor(handle);
    EXPECT_EQ(Name(handle), u"c"_s);
    EXPECT_FALSE(Store.IsEndOfTable(handle));
    Store.MoveNext(handle);
    EXPECT_TRUE(Store.IsEndOfTable(handle));
}

TEST_F(RecordStoreCursor, ReadingPastTheEndLeavesTheStructureAsItWas)
{
    const Handle handle = Table({Three(u"a"_s)});
    Store.MoveNext(handle);
    ThreeFields record = Three(u"kept"_s, 7, 8);
    EXPECT_FALSE(Store.ReadRecord(handle, record));
    EXPECT_EQ(record, Three(u"kept"_s, 7, 8));
}

TEST_F(RecordStoreCursor, PositionAndIndexAreOneNumber)
{
    const Handle handle = Table({Three(u"a"_s), Three(u"b"_s), Three(u"c"_s)});
    for (qint32 position = 0; position < 3; ++position) {
        Store.MoveToPosition(handle, position);
        EXPECT_EQ(Store.GetRecordPosition(handle), position);
        EXPECT_EQ(Store.GetCurrentIndex(handle), position);
        EXPECT_EQ(Name(handle), QString(QChar(u'a' + position)));
        EXPECT_EQ(Store.FindFromPosition(handle, position), 0);
        EXPECT_EQ(Store.GetCurrentIndex(handle), position);
    }
}

TEST_F(RecordStoreCursor, MoveToPositionKnowsNoRecordAtTheEnd)
{
    const Handle handle = Table({Three(u"a"_s), Three(u"b"_s)});
    Store.MoveToPosition(handle, 1);
    for (const qint32 position :
        {2, 3, -1, std::numeric_limits<qint32>::max(), std::numeric_limits<qint32>::min()}) {
        const Raised raised = RaisedBy([&] { Store.MoveToPosition(handle, position); });
        EXPECT_EQ(raised.Number, StoreErrors::BadPosition) << position;
        EXPECT_TRUE(raised.Names(QString::number(position)));
        EXPECT_TRUE(raised.Names(FileOf(u"T"_s)));
        EXPECT_EQ(Store.GetRecordPosition(handle), 1);
    }
    const Handle empty = Table({}, u"Empty"_s);
    EXPECT_EQ(RaisedBy([&] { Store.MoveToPosition(empty, 0); }).Number, StoreErrors::BadPosition);
}

TEST_F(RecordStoreCursor, FindFromPositionAllowsTheEnd)
{
    const Handle handle = Table({Three(u"a"_s), Three(u"b"_s)});
    EXPECT_EQ(Store.FindFromPosition(handle, 2), 0);
    EXPECT_TRUE(Store.IsEndOfTable(handle));
    EXPECT_EQ(Store.FindFromPosition(handle, 1), 0);
    EXPECT_EQ(Name(handle), u"b"_s);
    EXPECT_EQ(
        RaisedBy([&] { Store.FindFromPosition(handle, 3); }).Number, StoreErrors::BadPosition);
    EXPECT_EQ(
        RaisedBy([&] { Store.FindFromPosition(handle, -1); }).Number, StoreErrors::BadPosition);
    EXPECT_EQ(Name(handle), u"b"_s);
    const Handle empty = Table({}, u"Empty"_s);
    EXPECT_EQ(Store.FindFromPosition(empty, 0), 0);
    EXPECT_TRUE(Store.IsEndOfTable(empty));
}

TEST_F(RecordStoreCursor, EveryOpenTableHasItsOwn)
{
    const Handle first = Table({Three(u"a"_s), Three(u"b"_s)}, u"First"_s);
    const Handle second = Table({Three(u"x"_s), Three(u"y"_s)}, u"Second"_s);
    EXPECT_NE(first, second);
    Store.MoveNext(first);
    EXPECT_EQ(Name(first), u"b"_s);
    EXPECT_EQ(Name(second), u"x"_s);
}

TEST_F(RecordStoreCursor, AHandleIsNotGivenOutTwice)
{
    const Handle first = Table({Three(u"a"_s)});
    Store.CloseDatabase(first);
    const Handle second = Open(u"T"_s);
    EXPECT_NE(second, first);
    EXPECT_EQ(RaisedBy([&] { Store.MoveFirst(first); }).Number, StoreErrors::BadHandle);
    EXPECT_EQ(Name(second), u"a"_s);
}

TEST_F(RecordStoreFind, FindsTextsExactlyOrTheNextOne)
{
    const Handle handle = Table({Three(u"delta"_s), Three(u"alpha"_s), Three(u"charlie"_s)});
    EXPECT_EQ(Found(handle, 0, u"charlie"_s), u"charlie 0"_s);
    EXPECT_EQ(Found(handle, 0, u"bravo"_s), u"charlie -7"_s);
    EXPECT_EQ(Found(handle, 0, u"a"_s), u"alpha -7"_s);
    EXPECT_EQ(Found(handle, 0, u""_s), u"alpha -7"_s);
    EXPECT_EQ(Found(handle, 0, u"alpha "_s), u"charlie -7"_s);
    EXPECT_EQ(Found(handle, 0, u"delta"_s), u"delta 0"_s);
}

TEST_F(RecordStoreFind, PastTheLastRecordTheTableIsAtItsEnd)
{
    const Handle handle = Table({Three(u"delta"_s, 3, 3), Three(u"alpha"_s, 1, 1)});
    EXPECT_EQ(Found(handle, 0, u"delta "_s), u"end -7"_s);
    EXPECT_EQ(Store.GetRecordPosition(handle), 2);
    EXPECT_EQ(Found(handle, 1, March(4)), u"end -7"_s);
    EXPECT_EQ(Found(handle, 2, Currency::FromWhole(4)), u"end -7"_s);
    const Handle empty = Table({}, u"Empty"_s);
    EXPECT_EQ(Found(empty, 0, u"x"_s), u"end -7"_s);
    EXPECT_EQ(Found(empty, 0, u""_s), u"end -7"_s);
}

TEST_F(RecordStoreFind, UpperCaseDecidesTheOrderAndTheVeryTextEquality)
{
    const Handle handle = Table({Three(u"acme"_s), Three(u"ACME"_s), Three(u"Bolt"_s)});
    EXPECT_EQ(Found(handle, 0, u"ACME"_s), u"ACME 0"_s);
    EXPECT_EQ(Found(handle, 0, u"acme"_s), u"acme 0"_s);
    EXPECT_EQ(Found(handle, 0, u"Acme"_s), u"acme -7"_s); // between ACME and acme
    EXPECT_EQ(Found(handle, 0, u"bolt"_s), u"end -7"_s); // Bolt is below it
    EXPECT_EQ(Found(handle, 0, u"BOLT"_s), u"Bolt -7"_s);
}

TEST_F(RecordStoreFind, FindsDatesAndAmountsByValue)
{
    const Handle handle
        = Table({Three(u"a"_s, 20, -5), Three(u"b"_s, 3, 100), Three(u"c"_s, 11, 20)});
    EXPECT_EQ(Found(handle, 1, March(11)), u"c 0"_s);
    EXPECT_EQ(Found(handle, 1, March(12)), u"a -7"_s);
    EXPECT_EQ(Found(handle, 1, March(1)), u"b -7"_s);
    EXPECT_EQ(Found(handle, 1, March(3).addSecs(1)), u"c -7"_s);
    EXPECT_EQ(Found(handle, 1, QDateTime()), u"b -7"_s); // no date stands before every date
    EXPECT_EQ(Found(handle, 2, Currency::FromWhole(20)), u"c 0"_s);
    EXPECT_EQ(Found(handle, 2, Currency::FromScaled(200001)), u"b -7"_s);
    EXPECT_EQ(
        Found(handle, 2, Currency::FromScaled(std::numeric_limits<qint64>::min())), u"a -7"_s);
    EXPECT_EQ(Found(handle, 2, Currency()), u"c -7"_s);
}

TEST_F(RecordStoreFind, TakesADateKeyOfAnyTimeZoneAsItsWallClock)
{
    const Handle handle = Table({Three(u"a"_s, 20), Three(u"b"_s, 3)});
    EXPECT_EQ(Found(handle, 1, QDateTime(QDate(2024, 3, 20), QTime(0, 0))), u"a 0"_s);
    EXPECT_EQ(Found(handle, 1, QDateTime(QDate(2024, 3, 3), QTime(0, 0), Qt::OffsetFromUTC, 36000)),
        u"b 0"_s);
}

TEST_F(RecordStoreFind, FindsRecordsWithoutADate)
{
    ThreeFields none = Three(u"none"_s);
    none.Day = {};
    const Handle handle = Table({Three(u"a"_s, 2), none});
    EXPECT_EQ(Found(handle, 1, QDateTime()), u"none 0"_s);
    EXPECT_FALSE(Read(handle).Day.isValid());
    EXPECT_EQ(Store.ReadField(handle, 1), QString());
}

TEST_F(RecordStoreFind, AmongEqualsTheFirstInTheCurrentOrder)
{
    const Handle handle = Table({Three(u"x"_s, 9, 3), Three(u"c"_s, 5, 2), Three(u"b"_s, 5, 1),
        Three(u"a"_s, 5, 0), Three(u"z"_s, 1, 4)});
    EXPECT_EQ(Found(handle, 1, March(5)), u"c 0"_s); // stored order
    EXPECT_EQ(Found(handle, 1, March(2)), u"c -7"_s);
    Store.SortTable(handle, u"0"_s);
    EXPECT_EQ(Found(handle, 1, March(5)), u"a 0"_s);
    EXPECT_EQ(Found(handle, 1, March(4)), u"a -7"_s);
    EXPECT_EQ(Store.GetRecordPosition(handle), 0);
    Store.SortTable(handle, u"1"_s); // equal days keep the stored order
    EXPECT_EQ(Found(handle, 1, March(5)), u"c 0"_s);
    EXPECT_EQ(Store.GetRecordPosition(handle), 1);
}

TEST_F(RecordStoreFind, TheStatusIsThatOfTheLastSearch)
{
    const Handle handle = Table({Three(u"a"_s), Three(u"b"_s)});
    EXPECT_EQ(Store.GetLastStatus(handle), 0); // nothing was searched yet
    Store.FindRecord(handle, 0, u"zzz"_s);
    Store.MoveFirst(handle);
    Store.MoveNext(handle);
    EXPECT_EQ(Store.GetLastStatus(handle), -7);
    Store.FindRecord(handle, 0, u"a"_s);
    Store.MoveNext(handle);
    EXPECT_EQ(Store.GetLastStatus(handle), 0);
}

TEST_F(RecordStoreFind, KnowsWhatWasAddedChangedAndDeletedMeanwhile)
{
    const Handle handle = Table({Three(u"a"_s, 1, 1), Three(u"b"_s, 2, 2), Three(u"c"_s, 3, 3)});
    for (const qint32 field : {0, 1, 2}) // every index stands before the changes
        Found(handle, field,
            field == 0       ? RecordStore::Key(u"b"_s)
                : field == 1 ? RecordStore::Key(March(2))
                             : RecordStore::Key(Currency::FromWhole(2)));
    Change(handle, Three(u"m"_s, 20, 20));
    Add(handle, Three(u"bb"_s, 2, 2));
    EXPECT_EQ(Found(handle, 0, u"b"_s), u"bb -7"_s);
    EXPECT_EQ(Found(handle, 0, u"m"_s), u"m 0"_s);
    EXPECT_EQ(Found(handle, 1, March(2)), u"bb 0"_s);
    EXPECT_EQ(Found(handle, 2, Currency::FromWhole(20)), u"m 0"_s);
    EXPECT_EQ(Store.GetRecordPosition(handle), 1); // it kept its place
    Store.DeleteRecord(handle, 2);
    EXPECT_EQ(Found(handle, 0, u"m"_s), u"end -7"_s);
    EXPECT_EQ(Found(handle, 2, Currency::FromWhole(3)), u"c 0"_s);
    EXPECT_EQ(Store.GetRecordPosition(handle), 1);
}

TEST_F(RecordStoreFind, LongTextsThatDifferFarBehindAreToldApart)
{
    const QString same(1000, u'x');
    const Handle handle = Table({Three(same + u'b'), Three(same), Three(same + u'A')});
    Store.FindRecord(handle, 0, same + u'a');
    EXPECT_EQ(Store.GetLastStatus(handle), -7);
    EXPECT_EQ(Name(handle), same + u'b');
    Store.FindRecord(handle, 0, same);
    EXPECT_EQ(Store.GetLastStatus(handle), 0);
    EXPECT_EQ(Name(handle), same);
}

TEST_F(RecordStoreWrite, AddsAtTheEndAndStandsOnTheNewRecord)
{
    const Handle handle = Table({Three(u"a"_s), Three(u"b"_s)});
    Store.MoveFirst(handle);
    Add(handle, Three(u"c"_s, 9, 9));
    EXPECT_EQ(Read(handle), Three(u"c"_s, 9, 9));
    EXPECT_EQ(Store.GetRecordPosition(handle), 2);
    EXPECT_EQ(Store.GetRecordCount(handle), 3);
    EXPECT_EQ(NamesInFile(u"T"_s), u"a b c"_s);
}

TEST_F(RecordStoreWrite, StandsOnTheNewRecordAlsoWhenNothingWasReadBefore)
{
    const Handle handle = Table({Three(u"a"_s), Three(u"b"_s)});
    Add(handle, Three(u"c"_s)); // the first call after opening
    EXPECT_EQ(Store.GetRecordPosition(handle), 2);
    EXPECT_EQ(Name(handle), u"c"_s);

    const Handle second = Open(u"T"_s);
    Add(second, Three(u"d"_s));
    Add(second, Three(u"e"_s));
    Store.SortTable(second, u"0"_s);
    EXPECT_EQ(Name(second), u"e"_s);
    Store.MoveFirst(second);
    EXPECT_EQ(Name(second), u"a"_s);

    const Handle third = Open(u"T"_s);
    Add(third, Three(u"f"_s));
    Store.MoveFirst(third);
    EXPECT_EQ(Name(third), u"a"_s);
}

TEST_F(RecordStoreWrite, ANewRecordStartsEmpty)
{
    const Handle handle = Table({Three(u"a"_s)});
    Store.AddRecord(handle);
    Store.UpdateRecord(handle);
    EXPECT_EQ(Store.ReadField(handle, 0), u""_s);
    EXPECT_EQ(Store.ReadField(handle, 1), u""_s);
    EXPECT_EQ(Store.ReadField(handle, 2), u"0.0000"_s);
    EXPECT_EQ(Read(handle), ThreeFields());
}

TEST_F(RecordStoreWrite, ReplacesTheRecordUnderTheCursor)
{
    const Handle handle = Table({Three(u"a"_s), Three(u"b"_s), Three(u"c"_s)});
    Store.MoveToPosition(handle, 1);
    Change(handle, Three(u"bee"_s, 5, -7));
    EXPECT_EQ(Store.GetRecordPosition(handle), 1);
    EXPECT_EQ(Read(handle), Three(u"bee"_s, 5, -7));
    EXPECT_EQ(NamesInFile(u"T"_s), u"a bee c"_s);
}

TEST_F(RecordStoreWrite, UpdatingWithoutWritingKeepsTheRecord)
{
    const Handle handle = Table({Three(u"a"_s, 4, 5)});
    Store.EditRecord(handle);
    Store.UpdateRecord(handle);
    EXPECT_EQ(Read(handle), Three(u"a"_s, 4, 5));
    EXPECT_EQ(NamesInFile(u"T"_s), u"a"_s);
}

TEST_F(RecordStoreWrite, ReadingWhileARecordIsBegunReadsTheCurrentOne)
{
    const Handle handle = Table({Three(u"a"_s, 4, 5), Three(u"b"_s)});
    Store.AddRecord(handle); // before anything was read
    EXPECT_EQ(Read(handle), Three(u"a"_s, 4, 5));
    EXPECT_TRUE(Store.WriteRecord(handle, Three(u"c"_s)));
    EXPECT_EQ(Read(handle), Three(u"a"_s, 4, 5));
    Store.UpdateRecord(handle);
    EXPECT_EQ(Names(handle), u"a b c"_s);
}

TEST_F(RecordStoreWrite, MovingDropsWhatWasBegun)
{
    const Handle handle = Table({Three(u"a"_s), Three(u"b"_s)});
    const std::vector<std::function<void()>> moves = {[&] { Store.MoveFirst(handle); },
        [&] { Store.MoveNext(handle); }, [&] { Store.MoveCursor(handle); },
        [&] { Store.MoveToPosition(handle, 1); }, [&] { Store.FindFromPosition(handle, 2); },
        [&] { Store.FindRecord(handle, 0, u"a"_s); }, [&] { Store.SortTable(handle, u"0"_s); },
        [&] { Store.SetKeyField(handle, 1); }};
    for (size_t i = 0; i < moves.size(); ++i) {
        Store.AddRecord(handle);
        Store.WriteRecord(handle, Three(u"x"_s));
        moves[i]();
        EXPECT_EQ(RaisedBy([&] { Store.WriteRecord(handle, Three(u"y"_s)); }).Number,
            StoreErrors::NothingBegun)
            << "move " << i;
        EXPECT_EQ(RaisedBy([&] { Store.UpdateRecord(handle); }).Number, StoreErrors::NothingBegun)
            << "move " << i;
    }
    EXPECT_EQ(Store.GetRecordCount(handle), 2);
    EXPECT_EQ(NamesInFile(u"T"_s), u"a b"_s);
}

TEST_F(RecordStoreWrite, WritingNeedsARecordThatWasBegun)
{
    const Handle handle = Table({Three(u"a"_s)});
    const QByteArray before = Bytes(u"T"_s);
    const Raised write = RaisedBy([&] { Store.WriteRecord(handle, Three(u"x"_s)); });
    EXPECT_EQ(write.Number, StoreErrors::NothingBegun);
    EXPECT_TRUE(write.Names(FileOf(u"T"_s)));
    const Raised update = RaisedBy([&] { Store.UpdateRecord(handle); });
    EXPECT_EQ(update.Number, StoreErrors::NothingBegun);
    EXPECT_TRUE(update.Names(FileOf(u"T"_s)));
    Add(handle, Three(u"b"_s));
    EXPECT_EQ(RaisedBy([&] { Store.UpdateRecord(handle); }).Number, StoreErrors::NothingBegun);
    Store.DeleteRecord(handle, 2);
    EXPECT_EQ(Names(handle), u"a"_s);
    EXPECT_EQ(Bytes(u"T"_s).size(), before.size());
}

TEST_F(RecordStoreWrite, ThereIsNothingToEditOrDeleteAtTheEnd)
{
    const Handle handle = Table({Three(u"a"_s)});
    Store.MoveNext(handle);
    const QByteArray before = Bytes(u"T"_s);
    for (const Raised &raised : {RaisedBy([&] { Store.EditRecord(handle); }),
             RaisedBy([&] { Store.DeleteRecord(handle, 2); }),
             RaisedBy([&] { Store.ReadField(handle, 0); })}) {
        EXPECT_EQ(raised.Number, StoreErrors::BadPosition);
        EXPECT_TRUE(raised.Names(FileOf(u"T"_s)));
    }
    EXPECT_EQ(Bytes(u"T"_s), before);
}

TEST_F(RecordStoreWrite, DeletingLeavesTheCursorOnTheFollowingRecord)
{
    const Handle handle = Table({Three(u"a"_s), Three(u"b"_s), Three(u"c"_s), Three(u"d"_s)});
    Store.MoveToPosition(handle, 1);
    EXPECT_EQ(Store.DeleteRecord(handle, 2), 0);
    EXPECT_EQ(Name(handle), u"c"_s);
    EXPECT_EQ(Store.GetRecordPosition(handle), 1);
    Store.MoveCursor(handle);
    Store.DeleteRecord(handle, 2);
    EXPECT_TRUE(Store.IsEndOfTable(handle));
    EXPECT_EQ(Store.GetRecordPosition(handle), 2);
    Store.MoveFirst(handle);
    Store.DeleteRecord(handle, 2);
    Store.DeleteRecord(handle, 2);
    EXPECT_EQ(Store.GetRecordCount(handle), 0);
    EXPECT_TRUE(Store.IsEndOfTable(handle));
    EXPECT_EQ(NamesInFile(u"T"_s), QString());
    Add(handle, Three(u"again"_s));
    EXPECT_EQ(NamesInFile(u"T"_s), u"again"_s);
}

TEST_F(RecordStoreWrite, KeepsEveryValueThatAFieldCanHold)
{
    const std::vector<ThreeFields> records = {
        {u"007"_s, March(1), Currency::FromScaled(std::numeric_limits<qint64>::max())},
        {u" blanks around "_s, WallClock(QDate(1, 1, 1)),
            Currency::FromScaled(std::numeric_limits<qint64>::min())},
        {u"O'Brien \"quoted\"; DROP TABLE T;--"_s,
            WallClock(QDate(9999, 12, 31), QTime(23, 59, 59)), Currency::FromScaled(-1)},
        {u"Ünïcödé 日本語 \U0001F600 e\u0301"_s, WallClock(QDate(1969, 12, 31), QTime(23, 59, 59)),
            Currency::FromScaled(1)},
        {u"line\r\nbreak\ttab"_s, QDateTime(), Currency()},
        {QString(u"nul "_s + QChar(u'\0') + u" inside"_s), March(29), Currency::FromScaled(5)},
        {QString(100000, u'ß'), WallClock(QDate(2024, 2, 29), QTime(12, 0)),
            Currency::FromWhole(7)},
        {QString(), March(2), Currency::FromWhole(-7)},
    };
    const Handle handle = Table(records);
    for (const ThreeFields &expected : records) {
        EXPECT_EQ(Read(handle), expected);
        Store.MoveNext(handle);
    }
    EXPECT_TRUE(Store.IsEndOfTable(handle));
}

TEST_F(RecordStoreWrite, AFieldReadsAsText)
{
    const Handle handle = Table(
        {{u"Name"_s, WallClock(QDate(2024, 3, 5), QTime(6, 7, 8)), Currency::FromScaled(-5)}});
    EXPECT_EQ(Store.ReadField(handle, 0), u"Name"_s);
    EXPECT_EQ(Store.ReadField(handle, 1), u"2024-03-05 06:07:08"_s);
    EXPECT_EQ(Store.ReadField(handle, 2), u"-0.0005"_s);
}

TEST_F(RecordStoreWrite, ATextThatBeginsWithAByteOrderMarkIsReadWhole)
{
    for (const QString &text :
        {u"\uFEFF"_s, u"\uFEFFmark"_s, u"\uFEFF\uFEFFtwo"_s, u"in\uFEFFside"_s}) {
        const Handle handle = Table({Three(text)});
        EXPECT_EQ(Store.ReadField(handle, 0), text);
        EXPECT_EQ(Read(handle).Name, text);
        Store.CloseDatabase(handle);
        Store.DeleteDatabase(PathOf(u"T"_s), 0, 0);
    }
}

TEST_F(RecordStoreWrite, AYearThatNoTextHoldsIsRefused)
{
    const Handle handle = Table({Three(u"a"_s)});
    const QByteArray before = Bytes(u"T"_s);
    for (const int year : {10000, -1, -44}) {
        ThreeFields record = Three(u"b"_s);
        record.Day = WallClock(QDate(year, 1, 1));
        ASSERT_TRUE(record.Day.isValid());
        Store.AddRecord(handle);
        EXPECT_EQ(
            RaisedBy([&] { Store.WriteRecord(handle, record); }).Number, StoreErrors::BadRecord)
            << year;
        Store.MoveFirst(handle);
    }
    EXPECT_EQ(Bytes(u"T"_s), before);
    EXPECT_EQ(Names(handle), u"a"_s);
}

TEST_F(RecordStoreWrite, ARowIsARecordAddedInOneStep)
{
    const Handle handle = Table({Three(u"b"_s, 2, 3)});
    StoredRow row;
    RecordStore::PutRow(row, Three(u"some longer name"_s, 1, 1));
    RecordStore::PutRow(row, Three(u"a"_s, 4, 5)); // into the place of another
    Store.AppendRow(handle, row);
    EXPECT_EQ(Read(handle), Three(u"a"_s, 4, 5));
    EXPECT_EQ(NamesInFile(u"T"_s), u"b a"_s);

    RecordStore::PutRow(row, OneText{u"too short"_s});
    EXPECT_EQ(RaisedBy([&] { Store.AppendRow(handle, row); }).Number, StoreErrors::BadRecord);
    RecordStore::PutRow(row, Reordered());
    EXPECT_EQ(RaisedBy([&] { Store.AppendRow(handle, row); }).Number, StoreErrors::BadRecord);
    EXPECT_EQ(NamesInFile(u"T"_s), u"b a"_s);
}

TEST_F(RecordStoreCursor, ATableThatIsReadAheadIsTheSame)
{
    Build(u"T"_s, {Three(u"b"_s, 1, 1), Three(u"a"_s, 2, 2)});
    for (int i = 0; i < 50; ++i) {
        const Handle handle = Open(u"T"_s);
        Store.Preload(handle);
        if (i % 3 == 0)
            Store.SortTable(handle, u"0"_s);
        if (i % 3 != 2) { // else it is closed before anything was asked for
            EXPECT_EQ(Store.GetRecordCount(handle), 2);
            EXPECT_EQ(Names(handle), i % 3 == 0 ? u"a b"_s : u"b a"_s);
        }
        Store.CloseDatabase(handle);
    }
}

TEST_F(RecordStoreCursor, WhatCannotBeReadAheadIsToldByTheFirstWhoNeedsARecord)
{
    Build(u"T"_s, {Three(u"b"_s, 1, 1)});
    OtherProgram(FileOf(u"T"_s)).Execute(u"UPDATE T SET Day = 'never'"_s);
    const Handle handle = Open(u"T"_s);
    Store.Preload(handle);
    EXPECT_EQ(Store.GetRecordCount(handle), 1);
    EXPECT_EQ(RaisedBy([&] { Store.MoveFirst(handle); }).Number, StoreErrors::BadRecord);
}

TEST_F(RecordStoreWrite, AStructureOfAnotherShapeIsRefused)
{
    const Handle handle = Table({Three(u"a"_s, 2, 3)});
    const QByteArray before = Bytes(u"T"_s);
    OneText tooShort;
    Reordered otherOrder;
    OneMore tooLong;
    EXPECT_EQ(RaisedBy([&] { Store.ReadRecord(handle, tooShort); }).Number, StoreErrors::BadRecord);
    EXPECT_EQ(
        RaisedBy([&] { Store.ReadRecord(handle, otherOrder); }).Number, StoreErrors::BadRecord);
    EXPECT_EQ(RaisedBy([&] { Store.ReadRecord(handle, tooLong); }).Number, StoreErrors::BadRecord);
    Store.EditRecord(handle);
    const Raised raised = RaisedBy([&] { Store.WriteRecord(handle, tooLong); });
    EXPECT_EQ(raised.Number, StoreErrors::BadRecord);
    EXPECT_TRUE(raised.Names(FileOf(u"T"_s)));
    EXPECT_EQ(
        RaisedBy([&] { Store.WriteRecord(handle, otherOrder); }).Number, StoreErrors::BadRecord);
    Store.UpdateRecord(handle); // the record begun is still the one that was there
    EXPECT_EQ(Read(handle), Three(u"a"_s, 2, 3));
    EXPECT_EQ(NamesInFile(u"T"_s), u"a"_s);
    EXPECT_EQ(Bytes(u"T"_s).size(), before.size());
}

TEST_F(RecordStoreWrite, FieldsOutOfRangeAreRefused)
{
    const Handle handle = Table({Three(u"a"_s)});
    const QByteArray before = Bytes(u"T"_s);
    for (const qint32 field :
        {-1, 3, std::numeric_limits<qint32>::max(), std::numeric_limits<qint32>::min()}) {
        const QString number = QString::number(field);
        for (const Raised &raised : {RaisedBy([&] { Store.ReadField(handle, field); }),
                 RaisedBy([&] { Store.FindRecord(handle, field, u"a"_s); }),
                 RaisedBy([&] { Store.SetKeyField(handle, field); }),
                 RaisedBy([&] { Store.SortTable(handle, u"0, "_s + number); })}) {
            EXPECT_EQ(raised.Number, StoreErrors::BadField) << field;
            EXPECT_TRUE(raised.Names(number)) << raised.Description.toStdString();
            EXPECT_TRUE(raised.Names(FileOf(u"T"_s))) << raised.Description.toStdString();
        }
    }
    EXPECT_EQ(Bytes(u"T"_s), before);
}

TEST_F(RecordStoreWrite, AKeyOfAnotherTypeIsRefused)
{
    const Handle handle = Table({Three(u"a"_s), Three(u"b"_s)});
    Store.MoveToPosition(handle, 1);
    const std::vector<std::pair<qint32, RecordStore::Key>> cases = {{0, March(1)}, {0, Currency()},
        {1, u"2024-03-01 00:00:00"_s}, {1, Currency()}, {2, u"1"_s}, {2, March(1)}};
    for (const auto &[field, key] : cases) {
        const Raised raised
            = RaisedBy([&, f = field, &k = key] { Store.FindRecord(handle, f, k); });
        EXPECT_EQ(raised.Number, StoreErrors::BadField) << field;
        EXPECT_TRUE(raised.Names(QString::number(field)));
    }
    EXPECT_EQ(Name(handle), u"b"_s);
    EXPECT_EQ(Store.GetLastStatus(handle), 0);
}

TEST_F(RecordStoreWrite, ArgumentsThatAreAlwaysTheSameAreChecked)
{
    Build(u"T"_s, {Three(u"a"_s)});
    const auto open = [&](qint32 mode, qint32 access) {
        return RaisedBy([&] { Store.OpenDatabase(mode, PathOf(u"T"_s), 0, 0, 0, 0, access); });
    };
    EXPECT_EQ(open(0, 3).Number, StoreErrors::BadArgument);
    EXPECT_EQ(open(2, 3).Number, StoreErrors::BadArgument);
    EXPECT_EQ(open(1, 1).Number, StoreErrors::BadArgument);
    EXPECT_TRUE(open(5, 3).Names(u"mode 5"_s));
    EXPECT_TRUE(open(1, 6).Names(u"access 6"_s));
    const Handle handle = Open(u"T"_s);
    for (const qint32 mode : {0, 1, 3, -2})
        EXPECT_EQ(
            RaisedBy([&] { Store.DeleteRecord(handle, mode); }).Number, StoreErrors::BadArgument);
    EXPECT_EQ(Names(handle), u"a"_s);
}

TEST_F(RecordStoreWrite, ANoteStandsBesideTheTable)
{
    const Handle handle = Table({Three(u"a"_s)});
    EXPECT_EQ(Store.ReadNote(handle), QString());
    Store.WriteNote(handle, u"seen: 42 – été"_s);
    EXPECT_EQ(Store.ReadNote(handle), u"seen: 42 – été"_s);
    Store.CloseDatabase(handle);
    const Handle again = Open(u"T"_s);
    EXPECT_EQ(Store.ReadNote(again), u"seen: 42 – été"_s);
    EXPECT_EQ(Names(again), u"a"_s);
    Store.WriteNote(again, {});
    EXPECT_EQ(Store.ReadNote(again), QString());
}

TEST_F(RecordStoreSort, OrdersByTheFieldsTheFirstMostSignificant)
{
    const Handle handle = Table({Three(u"b"_s, 2, 1), Three(u"a"_s, 2, 2), Three(u"c"_s, 1, 2)});
    EXPECT_EQ(Store.SortTable(handle, u"0"_s), 0);
    EXPECT_EQ(Names(handle), u"a b c"_s);
    EXPECT_EQ(Store.SortTable(handle, u"1, 0"_s), 0);
    EXPECT_EQ(Names(handle), u"c a b"_s);
    EXPECT_EQ(Store.SortTable(handle, u"2, 1"_s), 0);
    EXPECT_EQ(Names(handle), u"b c a"_s);
    EXPECT_EQ(Store.SortTable(handle, u"2, 0, 1"_s), 0);
    EXPECT_EQ(Names(handle), u"b a c"_s);
}

TEST_F(RecordStoreSort, BlanksInTheFieldListCarryNoMeaning)
{
    const Handle handle
        = Table({Three(u"b"_s, 2), Three(u"a"_s, 2), Three(u"a"_s, 1), Three(u"c"_s, 1)});
    for (const QString &list : {u"1,0"_s, u"1, 0"_s, u"1 ,0"_s, u" 1 , 0 "_s}) {
        Store.SortTable(handle, u"2"_s);
        EXPECT_EQ(Store.SortTable(handle, list), 0) << list.toStdString();
        EXPECT_EQ(Names(handle), u"a c a b"_s) << list.toStdString();
    }
}

TEST_F(RecordStoreSort, TakesTheListsAsTheLookupWritesThem)
{
    const Handle handle = Create(u"Wide"_s,
        u"F0 String, F1 String, F2 String, F3 String, F4 String, F5 String, F6 String, F7 String,");
    OtherProgram other(FileOf(u"Wide"_s));
    other.Execute(u"INSERT INTO Wide (F0, F1, F7) VALUES "
                  "('d','1','2'), ('c','0','2'), ('b','9','1'), ('a','9','1')"_s);
    const auto names = [&] { return Names(handle); };
    EXPECT_EQ(names(), u"d c b a"_s);
    EXPECT_EQ(Store.SortTable(handle, u"7, 0 , 1"_s), 0);
    EXPECT_EQ(names(), u"a b c d"_s);
    EXPECT_EQ(Store.SortTable(handle, u"7,1"_s), 0);
    EXPECT_EQ(names(), u"b a c d"_s);
    EXPECT_EQ(Store.SortTable(handle, u"0 ,1"_s), 0);
    EXPECT_EQ(names(), u"a b c d"_s);
    EXPECT_EQ(Store.SortTable(handle, u"1 ,0"_s), 0);
    EXPECT_EQ(names(), u"c d a b"_s);
}

TEST_F(RecordStoreSort, RefusesAMalformedList)
{
    const Handle handle = Table({Three(u"b"_s), Three(u"a"_s)});
    for (const QString &list : {u""_s, u" "_s, u","_s, u"0,"_s, u",0"_s, u"0,,1"_s, u"0 1"_s,
             u"x"_s, u"0;1"_s, u"0x1"_s, u"1.0"_s, u"99999999999"_s}) {
        const Raised raised = RaisedBy([&] { Store.SortTable(handle, list); });
        EXPECT_EQ(raised.Number, StoreErrors::BadField) << list.toStdString();
        EXPECT_TRUE(raised.Names(u'"' + list + u'"')) << raised.Description.toStdString();
    }
    EXPECT_EQ(Names(handle), u"b a"_s);
}

TEST_F(RecordStoreSort, EqualRecordsKeepTheStoredOrder)
{
    const Handle handle = Table({Three(u"c"_s, 1), Three(u"b"_s, 1), Three(u"a"_s, 1)});
    Store.SortTable(handle, u"0"_s);
    Store.SortTable(handle, u"1"_s);
    EXPECT_EQ(Names(handle), u"c b a"_s);
}

TEST_F(RecordStoreSort, TheCursorStaysOnItsRecord)
{
    const Handle handle = Table({Three(u"c"_s), Three(u"b"_s), Three(u"a"_s)});
    Store.MoveToPosition(handle, 0);
    Store.SortTable(handle, u"0"_s);
    EXPECT_EQ(Name(handle), u"c"_s);
    EXPECT_EQ(Store.GetRecordPosition(handle), 2);
    EXPECT_EQ(Store.GetCurrentIndex(handle), 2);
    Store.MoveNext(handle);
    Store.SortTable(handle, u"1"_s);
    EXPECT_TRUE(Store.IsEndOfTable(handle));
}

TEST_F(RecordStoreSort, LastsUntilTheTableIsClosed)
{
    const Handle handle = Table({Three(u"c"_s), Three(u"b"_s), Three(u"a"_s)});
    Store.SortTable(handle, u"0"_s);
    EXPECT_EQ(Names(handle), u"a b c"_s);
    EXPECT_EQ(Names(handle), u"a b c"_s);
    Store.CloseDatabase(handle);
    EXPECT_EQ(Names(Open(u"T"_s)), u"c b a"_s); // the file knows nothing of it
}

TEST_F(RecordStoreSort, NewRecordsStandLast)
{
    const Handle handle = Table({Three(u"c"_s), Three(u"a"_s)});
    Store.SortTable(handle, u"0"_s);
    Add(handle, Three(u"b"_s));
    EXPECT_EQ(Store.GetRecordPosition(handle), 2);
    EXPECT_EQ(Names(handle), u"a c b"_s);
    Store.SortTable(handle, u"0"_s);
    EXPECT_EQ(Names(handle), u"a b c"_s);
}

TEST_F(RecordStoreSort, NewRecordsStandLastAlsoAfterAnUndoneBatch)
{
    const Handle handle = Table({Three(u"c"_s), Three(u"a"_s)});
    Store.SortTable(handle, u"0"_s);
    {
        RecordStore::Batch batch(Store, handle);
        Add(handle, Three(u"x"_s));
    }
    Add(handle, Three(u"b"_s));
    EXPECT_EQ(Store.GetRecordPosition(handle), 2);
    EXPECT_EQ(Names(handle), u"a c b"_s);
}

TEST_F(RecordStoreSort, AChangedRecordKeepsItsPlace)
{
    const Handle handle = Table({Three(u"c"_s), Three(u"a"_s), Three(u"b"_s)});
    Store.SortTable(handle, u"0"_s);
    Store.MoveFirst(handle);
    Change(handle, Three(u"z"_s));
    EXPECT_EQ(Names(handle), u"z b c"_s);
    EXPECT_EQ(Found(handle, 0, u"c"_s), u"c 0"_s);
    EXPECT_EQ(Store.GetRecordPosition(handle), 2);
    EXPECT_EQ(Found(handle, 0, u"z"_s), u"z 0"_s);
    EXPECT_EQ(Store.GetRecordPosition(handle), 0);
}

TEST_F(RecordStoreSort, SetKeyFieldOrdersByTheField)
{
    const Handle handle = Table({Three(u"a"_s, 3), Three(u"b"_s, 1), Three(u"c"_s, 2)});
    Store.SetKeyField(handle, 1);
    EXPECT_EQ(Names(handle), u"b c a"_s);
    Store.SetKeyField(handle, 0);
    EXPECT_EQ(Names(handle), u"a b c"_s);
}

TEST_F(RecordStoreSort, OrdersTextsByUpperCaseThenByTheTextItself)
{
    const Handle handle = Table({Three(u"é"_s), Three(u"b"_s), Three(u"a"_s), Three(u"B"_s),
        Three(u"Z"_s), Three(u"A"_s), Three(u"10"_s), Three(u"9"_s), Three(u"_"_s)});
    Store.SortTable(handle, u"0"_s);
    EXPECT_EQ(Names(handle), u"10 9 A a B b Z _ é"_s);
}

TEST_F(RecordStoreBatch, IsOneStep)
{
    const Handle handle = Table({Three(u"a"_s), Three(u"b"_s)});
    {
        RecordStore::Batch batch(Store, handle);
        Add(handle, Three(u"c"_s));
        Store.MoveFirst(handle);
        Change(handle, Three(u"A"_s));
        Store.MoveNext(handle);
        Store.DeleteRecord(handle, 2);
        EXPECT_EQ(Names(handle), u"A c"_s); // its own changes are seen at once
        EXPECT_EQ(Store.GetRecordCount(handle), 2);
        EXPECT_EQ(NamesInFile(u"T"_s), u"a b"_s); // by nobody else yet
        batch.Commit();
        EXPECT_EQ(NamesInFile(u"T"_s), u"A c"_s);
    }
    EXPECT_EQ(Names(handle), u"A c"_s);
    Add(handle, Three(u"d"_s)); // each write is its own step again
    EXPECT_EQ(NamesInFile(u"T"_s), u"A c d"_s);
}

TEST_F(RecordStoreBatch, WithoutCommitNothingHasHappened)
{
    const Handle handle = Table({Three(u"a"_s), Three(u"b"_s)});
    Store.SortTable(handle, u"0"_s);
    const QByteArray before = Bytes(u"T"_s);
    {
        RecordStore::Batch batch(Store, handle);
        Add(handle, Three(u"0"_s));
        Store.MoveFirst(handle);
        Change(handle, Three(u"A"_s));
        Store.DeleteRecord(handle, 2);
        Store.WriteNote(handle, u"note"_s);
    }
    EXPECT_EQ(Bytes(u"T"_s), before);
    EXPECT_EQ(Store.GetRecordCount(handle), 2);
    EXPECT_EQ(Names(handle), u"a b"_s);
    EXPECT_EQ(Found(handle, 0, u"A"_s), u"a -7"_s);
    EXPECT_EQ(Store.ReadNote(handle), QString());
    Add(handle, Three(u"c"_s));
    EXPECT_EQ(NamesInFile(u"T"_s), u"a b c"_s);
}

TEST_F(RecordStoreBatch, OnceUndoneTheCursorIsOnTheFirstRecord)
{
    const Handle handle = Table({Three(u"a"_s), Three(u"b"_s), Three(u"c"_s)});
    Store.MoveToPosition(handle, 1);
    {
        RecordStore::Batch batch(Store, handle);
        Store.DeleteRecord(handle, 2);
    }
    EXPECT_EQ(Store.GetRecordPosition(handle), 0);
    EXPECT_EQ(Name(handle), u"a"_s);
}

TEST_F(RecordStoreBatch, AnExceptionInBetweenUndoesIt)
{
    const Handle handle = Table({Three(u"a"_s)});
    const Raised raised = RaisedBy([&] {
        RecordStore::Batch batch(Store, handle);
        Add(handle, Three(u"b"_s));
        Store.MoveToPosition(handle, 99);
        batch.Commit();
    });
    EXPECT_EQ(raised.Number, StoreErrors::BadPosition);
    EXPECT_EQ(Names(handle), u"a"_s);
    EXPECT_EQ(NamesInFile(u"T"_s), u"a"_s);
}

TEST_F(RecordStoreBatch, ThereIsOneAtATime)
{
    const Handle handle = Table({Three(u"a"_s)});
    RecordStore::Batch batch(Store, handle);
    Add(handle, Three(u"b"_s));
    const Raised raised = RaisedBy([&] { RecordStore::Batch second(Store, handle); });
    EXPECT_EQ(raised.Number, StoreErrors::BadArgument);
    EXPECT_TRUE(raised.Names(FileOf(u"T"_s)));
    batch.Commit();
    EXPECT_EQ(NamesInFile(u"T"_s), u"a b"_s);
    RecordStore::Batch third(Store, handle);
    Add(handle, Three(u"c"_s));
    third.Commit();
    EXPECT_EQ(NamesInFile(u"T"_s), u"a b c"_s);
}

TEST_F(RecordStoreBatch, ClosingTheTableInsideUndoesIt)
{
    const Handle handle = Table({Three(u"a"_s)});
    {
        RecordStore::Batch batch(Store, handle);
        Add(handle, Three(u"b"_s));
        Store.CloseDatabase(handle);
        EXPECT_EQ(RaisedBy([&] { batch.Commit(); }).Number, StoreErrors::BadHandle);
    }
    EXPECT_EQ(NamesInFile(u"T"_s), u"a"_s);
}

TEST_F(RecordStoreBatch, WritesTheLastOfManyUpdates)
{
    const Handle handle = Table({Three(u"a"_s), Three(u"b"_s), Three(u"c"_s)});
    RecordStore::Batch batch(Store, handle);
    for (const QString &name : {u"x"_s, u"y"_s, u"z"_s}) {
        Store.MoveFirst(handle);
        Change(handle, Three(name));
        EXPECT_EQ(Found(handle, 0, name), name + u" 0"_s);
        Store.MoveToPosition(handle, 1);
        Change(handle, Three(name + name));
        EXPECT_EQ(Names(handle), u"%1 %1%1 c"_s.arg(name));
    }
    Store.MoveToPosition(handle, 1);
    Store.DeleteRecord(handle, 2);
    Add(handle, Three(u"d"_s));
    Change(handle, Three(u"e"_s));
    batch.Commit();
    EXPECT_EQ(Names(handle), u"z c e"_s);
    EXPECT_EQ(NamesInFile(u"T"_s), u"z c e"_s);
}

TEST_F(RecordStoreBatch, UpdatesOfAnUndoneOneAreGone)
{
    const Handle handle = Table({Three(u"a"_s)});
    {
        RecordStore::Batch batch(Store, handle);
        Change(handle, Three(u"b"_s));
    }
    Change(handle, Three(u"c"_s));
    EXPECT_EQ(NamesInFile(u"T"_s), u"c"_s);
    RecordStore::Batch batch(Store, handle);
    batch.Commit();
    EXPECT_EQ(Names(handle), u"c"_s);
    EXPECT_EQ(NamesInFile(u"T"_s), u"c"_s);
}

TEST_F(RecordStoreBatch, OfATableThatWasNotReadYet)
{
    const Handle handle = Table({Three(u"a"_s)});
    {
        RecordStore::Batch batch(Store, handle);
        Add(handle, Three(u"b"_s));
        Add(handle, Three(u"c"_s));
    }
    EXPECT_EQ(Store.GetRecordPosition(handle), 0);
    EXPECT_EQ(Names(handle), u"a"_s);
}

TEST_F(RecordStoreScratch, WritesWithoutAJournalOnTheDisk)
{
    const QString journal = u"T.db-journal"_s;
    const Handle handle = Table({Three(u"a"_s)});
    {
        RecordStore::Batch batch(Store, handle);
        Add(handle, Three(u"b"_s));
        EXPECT_TRUE(FilesInFolder().contains(journal)); // what any other table has
    }
    Store.MakeScratch(handle);
    RecordStore::Batch batch(Store, handle);
    Add(handle, Three(u"c"_s));
    EXPECT_FALSE(FilesInFolder().contains(journal));
    batch.Commit();
    EXPECT_EQ(Names(handle), u"a c"_s);
    EXPECT_EQ(NamesInFile(u"T"_s), u"a c"_s);
}

TEST_F(RecordStoreScratch, UndoesABatchLikeAnyOtherTable)
{
    const Handle handle = Table({Three(u"a"_s)});
    Store.MakeScratch(handle);
    {
        RecordStore::Batch batch(Store, handle);
        Change(handle, Three(u"A"_s));
        Add(handle, Three(u"b"_s));
    }
    EXPECT_EQ(Names(handle), u"a"_s);
    EXPECT_EQ(NamesInFile(u"T"_s), u"a"_s);
}

TEST_F(RecordStoreScratch, CanBeMadeBeforeItsTable)
{
    const Handle handle
        = Store.CreateDatabase(PathOf(u"S"_s), CodeNumber(u"DATA"_s), CodeNumber(u"WkLg"_s));
    Store.MakeScratch(handle);
    Store.CreateTable(handle, u"S"_s, ThreeFields::SchemaText.toString());
    Add(handle, Three(u"a"_s));
    EXPECT_EQ(NamesInFile(u"S"_s), u"a"_s);
    EXPECT_EQ(FilesInFolder(), QStringList{u"S.db"_s});
}

TEST_F(RecordStoreCreate, TheNewTableIsEmptyAndOpen)
{
    const Handle handle = Create(u"New"_s);
    EXPECT_NE(handle, 0);
    EXPECT_EQ(Store.GetRecordCount(handle), 0);
    EXPECT_TRUE(Store.IsEndOfTable(handle));
    Add(handle, Three(u"a"_s));
    EXPECT_EQ(NamesInFile(u"New"_s), u"a"_s);
    EXPECT_EQ(FilesInFolder(), QStringList{u"New.db"_s});
}

TEST_F(RecordStoreCreate, NothingStandsUnderTheNameBeforeTheTable)
{
    const Handle handle
        = Store.CreateDatabase(PathOf(u"New"_s), CodeNumber(u"DATA"_s), CodeNumber(u"WkLg"_s));
    EXPECT_NE(handle, 0);
    EXPECT_FALSE(FilesInFolder().contains(u"New.db"_s));
    EXPECT_EQ(Open(u"New"_s), 0);
    Store.CloseDatabase(handle);
    EXPECT_TRUE(FilesInFolder().isEmpty());
}

TEST_F(RecordStoreCreate, ADatabaseWithoutATableHasNoRecords)
{
    const Handle handle
        = Store.CreateDatabase(PathOf(u"New"_s), CodeNumber(u"DATA"_s), CodeNumber(u"WkLg"_s));
    ThreeFields record;
    const std::vector<std::function<void()>> calls = {[&] { Store.GetRecordCount(handle); },
        [&] { Store.MoveFirst(handle); }, [&] { Store.MoveNext(handle); },
        [&] { Store.IsEndOfTable(handle); }, [&] { Store.GetRecordPosition(handle); },
        [&] { Store.MoveToPosition(handle, 0); }, [&] { Store.AddRecord(handle); },
        [&] { Store.EditRecord(handle); }, [&] { Store.DeleteRecord(handle, 2); },
        [&] { Store.ReadNote(handle); }, [&] { Store.WriteNote(handle, u"x"_s); },
        [&] { RecordStore::Batch batch(Store, handle); }};
    for (size_t i = 0; i < calls.size(); ++i) {
        const Raised raised = RaisedBy(calls[i]);
        EXPECT_EQ(raised.Number, StoreErrors::BadHandle) << "call " << i;
        EXPECT_TRUE(raised.Names(FileOf(u"New"_s))) << raised.Description.toStdString();
    }
    Store.CreateTable(handle, u"New"_s, ThreeFields::SchemaText.toString());
    Add(handle, Three(u"a"_s));
    EXPECT_EQ(NamesInFile(u"New"_s), u"a"_s);
}

TEST_F(RecordStoreCreate, AnExistingFileIsRefusedAndLeftAsItIs)
{
    Build(u"T"_s, {Three(u"a"_s)});
    WriteFile(u"Text"_s, "no database at all");
    for (const QString &name : {u"T"_s, u"Text"_s}) {
        const QByteArray before = Bytes(name);
        const Raised raised = RaisedBy([&] {
            Store.CreateDatabase(PathOf(name), CodeNumber(u"DATA"_s), CodeNumber(u"WkLg"_s));
        });
        EXPECT_EQ(raised.Number, StoreErrors::AlreadyExists);
        EXPECT_TRUE(raised.Names(FileOf(name)));
        EXPECT_EQ(Bytes(name), before);
    }
    EXPECT_EQ(FilesInFolder(), (QStringList{u"T.db"_s, u"Text.db"_s}));
}

TEST_F(RecordStoreCreate, AFileThatAppearsMeanwhileIsLeftAsItIs)
{
    const Handle handle
        = Store.CreateDatabase(PathOf(u"New"_s), CodeNumber(u"DATA"_s), CodeNumber(u"WkLg"_s));
    WriteFile(u"New"_s, "somebody was faster");
    const Raised raised = RaisedBy(
        [&] { Store.CreateTable(handle, u"New"_s, ThreeFields::SchemaText.toString()); });
    EXPECT_EQ(raised.Number, StoreErrors::AlreadyExists);
    EXPECT_EQ(Bytes(u"New"_s), "somebody was faster");
    EXPECT_EQ(RaisedBy([&] { Store.AddRecord(handle); }).Number, StoreErrors::BadHandle);
    EXPECT_NE(RaisedBy([&] {
        Store.CreateTable(handle, u"New"_s, ThreeFields::SchemaText.toString());
    }).Number,
        0);
    Store.CloseDatabase(handle);
    EXPECT_EQ(FilesInFolder(), QStringList{u"New.db"_s});
}

TEST_F(RecordStoreCreate, ALeftoverOfAnUnfinishedCreationDoesNotHinder)
{
    for (const QString &leftover :
        {u"New.db.new"_s, u"New.db.new-journal"_s, u"New.db-journal"_s}) {
        QFile file(m_folder.filePath(leftover));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(5000, 'x'));
    }
    const Handle handle = Create(u"New"_s);
    Add(handle, Three(u"a"_s));
    EXPECT_EQ(NamesInFile(u"New"_s), u"a"_s);
    EXPECT_EQ(FilesInFolder(), QStringList{u"New.db"_s});
}

TEST_F(RecordStoreCreate, TheJournalOfADeletedNamesakeIsNotPlayedBack)
{
    std::vector<ThreeFields> old;
    for (int i = 0; i < 200; ++i)
        old.push_back(Three(QString(500, u'o')));
    Build(u"Old"_s, old);
    {
        OtherProgram other(FileOf(u"Old"_s));
        other.Execute(u"PRAGMA cache_size = 5"_s); // so that the journal is on the disk early
        other.Execute(u"BEGIN; PRAGMA user_version = 1; UPDATE Old SET Name = Name || 'x'"_s);
        ASSERT_TRUE(
            QFile::copy(FileOf(u"Old"_s) + u"-journal"_s, FileOf(u"New"_s) + u"-journal"_s));
        other.Execute(u"ROLLBACK"_s);
    }
    const Handle handle = Create(u"New"_s);
    Add(handle, Three(u"a"_s));
    EXPECT_EQ(Names(handle), u"a"_s);
    EXPECT_EQ(NamesInFile(u"New"_s), u"a"_s);
}

TEST_F(RecordStoreCreate, AMalformedSchemaLeavesNothingBehind)
{
    const Handle handle
        = Store.CreateDatabase(PathOf(u"New"_s), CodeNumber(u"DATA"_s), CodeNumber(u"WkLg"_s));
    const Raised raised = RaisedBy([&] { Store.CreateTable(handle, u"New"_s, u"Name Text,"_s); });
    EXPECT_EQ(raised.Number, StoreErrors::MalformedSchema);
    EXPECT_TRUE(raised.Names(u"Name Text"_s));
    EXPECT_FALSE(FilesInFolder().contains(u"New.db"_s));
    Store.CreateTable(handle, u"New"_s, u"Name String,"_s); // the next try may succeed
    EXPECT_EQ(Store.GetRecordCount(handle), 0);
}

TEST_F(RecordStoreCreate, ATableNameThatSqliteRefusesCanBeMended)
{
    const Handle handle
        = Store.CreateDatabase(PathOf(u"New"_s), CodeNumber(u"DATA"_s), CodeNumber(u"WkLg"_s));
    for (const QString &name : {u"sqlite_New"_s, u"Record_Store"_s, u"record_store"_s}) {
        const Raised raised = RaisedBy([&] { Store.CreateTable(handle, name, u"Name String,"_s); });
        EXPECT_EQ(raised.Number, StoreErrors::WriteFailed) << name.toStdString();
        EXPECT_TRUE(raised.Names(FileOf(u"New"_s)));
    }
    Store.CreateTable(handle, u"New"_s, u"Name String,"_s);
    EXPECT_EQ(Store.GetRecordCount(handle), 0);
    EXPECT_EQ(FilesInFolder(), QStringList{u"New.db"_s});
}

TEST_F(RecordStoreCreate, ATableIsCreatedOnce)
{
    const Handle handle = Create(u"New"_s);
    Add(handle, Three(u"a"_s));
    EXPECT_EQ(RaisedBy([&] { Store.CreateTable(handle, u"New"_s, u"Name String,"_s); }).Number,
        StoreErrors::AlreadyExists);
    EXPECT_EQ(Names(handle), u"a"_s);
}

TEST_F(RecordStoreCreate, AFolderThatIsNotThereIsNamed)
{
    const Raised raised = RaisedBy([&] {
        Store.CreateDatabase(PathOf(u"none/New"_s), CodeNumber(u"DATA"_s), CodeNumber(u"WkLg"_s));
    });
    EXPECT_EQ(raised.Number, StoreErrors::Unreadable);
    EXPECT_TRUE(raised.Names(FileOf(u"none/New"_s))) << raised.Description.toStdString();
    EXPECT_TRUE(FilesInFolder().isEmpty());
}

TEST_F(RecordStoreCreate, NamesWithBlanksQuotesAndOtherAlphabetsWork)
{
    QStringList names = {u"AB CEntries-WkLg"_s, u"O'Neil [x]-WkLg"_s, u"Größe日本-WkLg"_s,
        u"%20&mode=ro-WkLg"_s, u"`x`; --WkLg"_s};
#ifdef Q_OS_UNIX // Windows has no such names
    names += {u"O'Neil \"x\"-WkLg"_s, u"%20?mode=ro-WkLg"_s, u"file:x-WkLg"_s};
#endif
    for (const QString &name : names) {
        const Handle handle = Create(name);
        Add(handle, Three(u"a"_s));
        Store.CloseDatabase(handle);
        EXPECT_EQ(NamesInFile(name), u"a"_s) << name.toStdString();
        EXPECT_EQ(Store.DeleteDatabase(PathOf(name), 0, 0), 0) << name.toStdString();
    }
    EXPECT_TRUE(FilesInFolder().isEmpty());
}

TEST_F(RecordStoreCreate, DeletingRemovesTheFile)
{
    Build(u"T"_s, {Three(u"a"_s)});
    EXPECT_EQ(Store.DeleteDatabase(PathOf(u"T"_s), 0, 0), 0);
    EXPECT_TRUE(FilesInFolder().isEmpty());
    EXPECT_EQ(Open(u"T"_s), 0);
    EXPECT_EQ(Store.DeleteDatabase(PathOf(u"T"_s), 0, 0), 1);
}

TEST_F(RecordStoreCreate, DeletingClosesTheHandlesOfTheFile)
{
    const Handle handle = Table({Three(u"a"_s)});
    const Handle second = Open(u"T"_s);
    const Handle other = Table({Three(u"x"_s)}, u"Other"_s);
    EXPECT_EQ(Store.DeleteDatabase(PathOf(u"T"_s), 0, 0), 0);
    EXPECT_EQ(RaisedBy([&] { Store.MoveFirst(handle); }).Number, StoreErrors::BadHandle);
    EXPECT_EQ(RaisedBy([&] { Store.MoveFirst(second); }).Number, StoreErrors::BadHandle);
    EXPECT_EQ(Names(other), u"x"_s);
    EXPECT_EQ(FilesInFolder(), QStringList{u"Other.db"_s});
}

TEST_F(RecordStoreCreate, DeletingTakesTheJournalAlong)
{
    Build(u"T"_s, {Three(u"a"_s)});
    QFile journal(FileOf(u"T"_s) + u"-journal"_s);
    ASSERT_TRUE(journal.open(QIODevice::WriteOnly));
    journal.write("left by a program that was ended");
    journal.close();
    EXPECT_EQ(Store.DeleteDatabase(PathOf(u"T"_s), 0, 0), 0);
    EXPECT_TRUE(FilesInFolder().isEmpty());
}

TEST_F(RecordStoreCreate, WhatCannotBeDeletedIsNamed)
{
    ASSERT_TRUE(QDir().mkpath(FileOf(u"T"_s) + u"/inside"_s));
    QFile journal(FileOf(u"T"_s) + u"-journal"_s); // the only good copy of its pages
    ASSERT_TRUE(journal.open(QIODevice::WriteOnly));
    const Raised raised = RaisedBy([&] { Store.DeleteDatabase(PathOf(u"T"_s), 0, 0); });
    EXPECT_EQ(raised.Number, StoreErrors::NotDeleted);
    EXPECT_TRUE(raised.Names(FileOf(u"T"_s)));
    EXPECT_TRUE(QFileInfo(FileOf(u"T"_s) + u"/inside"_s).isDir());
    EXPECT_TRUE(journal.exists());
}

TEST_F(RecordStoreCreate, TheJournalOfADatabaseThatCannotBeDeletedIsKept)
{
    ASSERT_TRUE(QDir().mkpath(FileOf(u"T"_s) + u"/inside"_s));
    QFile journal(FileOf(u"T"_s) + u"-journal"_s);
    ASSERT_TRUE(journal.open(QIODevice::ReadWrite));
    journal.write("the only good pages");
    journal.close();
    EXPECT_EQ(RaisedBy([&] { Store.DeleteDatabase(PathOf(u"T"_s), 0, 0); }).Number,
        StoreErrors::NotDeleted);
    ASSERT_TRUE(journal.open(QIODevice::ReadOnly));
    EXPECT_EQ(journal.readAll(), "the only good pages");
}

TEST_F(RecordStoreCreate, TheHoursSummaryIsRebuiltAgainAndAgain)
{
    for (int round = 0; round < 3; ++round) {
        Store.DeleteDatabase(PathOf(u"T"_s), 0, 0);
        const Handle handle = Create(u"T"_s);
        Add(handle, Three(u"round"_s, 1, round));
        Store.SetKeyField(handle, 1);
        EXPECT_EQ(Store.GetRecordCount(handle), 1);
        EXPECT_EQ(Read(handle).Amount, Currency::FromWhole(round));
    }
}

TEST_F(RecordStoreCreate, HandlesThatAreNoneAreRefused)
{
    const Handle handle = Table({Three(u"a"_s)});
    Store.CloseDatabase(handle);
    ThreeFields record = Three(u"kept"_s);
    for (const Handle bad : {handle, 0, -1, 4711, std::numeric_limits<qint32>::max()}) {
        const std::vector<std::function<void()>> calls = {[&] { Store.CloseDatabase(bad); },
            [&] { Store.GetRecordCount(bad); }, [&] { Store.MoveFirst(bad); },
            [&] { Store.MoveNext(bad); }, [&] { Store.MoveCursor(bad); },
            [&] { Store.IsEndOfTable(bad); }, [&] { Store.FindRecord(bad, 0, u"a"_s); },
            [&] { Store.GetLastStatus(bad); }, [&] { Store.ReadField(bad, 0); },
            [&] { Store.ReadRecord(bad, record); }, [&] { Store.WriteRecord(bad, record); },
            [&] { Store.AddRecord(bad); }, [&] { Store.EditRecord(bad); },
            [&] { Store.UpdateRecord(bad); }, [&] { Store.DeleteRecord(bad, 2); },
            [&] { Store.GetRecordPosition(bad); }, [&] { Store.MoveToPosition(bad, 0); },
            [&] { Store.GetCurrentIndex(bad); }, [&] { Store.FindFromPosition(bad, 0); },
            [&] { Store.SortTable(bad, u"0"_s); }, [&] { Store.SetKeyField(bad, 0); },
            [&] { Store.CreateTable(bad, u"T"_s, u"Name String,"_s); },
            [&] { Store.ReadNote(bad); }, [&] { Store.WriteNote(bad, u"x"_s); },
            [&] { RecordStore::Batch batch(Store, bad); }};
        for (size_t i = 0; i < calls.size(); ++i) {
            const Raised raised = RaisedBy(calls[i]);
            EXPECT_EQ(raised.Number, StoreErrors::BadHandle) << "call " << i << ", handle " << bad;
            EXPECT_TRUE(raised.Names(QString::number(bad))) << raised.Description.toStdString();
        }
    }
    EXPECT_EQ(record, Three(u"kept"_s));
    EXPECT_EQ(NamesInFile(u"T"_s), u"a"_s);
}

TEST_F(RecordStoreWrite, GoesOnForHoursInTheSameMemory)
{
    const Handle handle = Table({Three(u"first"_s), Three(u"last"_s)});
    Store.MoveFirst(handle);
    RecordStore::Batch batch(Store, handle);
    const qint64 before = HeldBytes();
    for (int i = 0; i < 2000; ++i) {
        Store.MoveToPosition(handle, 0);
        Change(handle, Three(QString(60'000 + i % 7, QChar(u'a' + i % 26))));
    }
    const qint64 after = HeldBytes();
    EXPECT_LT(after, before + 2'000'000); // all texts together were 120 MB
    batch.Commit();
    EXPECT_EQ(Store.ReadField(handle, 0), QString(60'000 + 1999 % 7, QChar(u'a' + 1999 % 26)));
    Store.MoveNext(handle);
    EXPECT_EQ(Store.ReadField(handle, 0), u"last"_s);
}

TEST_F(RecordStoreWrite, FindsAndSortsAfterReplacedTextsWereDropped)
{
    const auto text = [](QChar first) { return first + QString(40'000, u'x'); };
    const Handle handle = Table({Three(text(u'c'), 1), Three(text(u'a'), 2), Three(text(u'e'), 3)});
    Store.FindRecord(handle, 0, text(u'c')); // its index stands from now on
    const auto numbers = Store.NumbersOf(handle, 0);
    {
        RecordStore::Batch batch(Store, handle);
        for (const QChar first : {u'h', u'b', u'k', u'd', u'f'}) {
            for (qint32 position = 0; position < 3; ++position) {
                Store.MoveToPosition(handle, position);
                Change(handle, Three(text(QChar(first.unicode() + position)), position + 1));
                EXPECT_EQ(Found(handle, 0, text(QChar(first.unicode() + position))).size(), 40'003);
            }
        }
        Store.MoveToPosition(handle, 1);
        Store.DeleteRecord(handle, 2);
        Add(handle, Three(text(u'a'), 4));
        batch.Commit();
    }
    const auto day = [&] { return Store.ReadField(handle, 1).left(10); };
    Store.FindRecord(handle, 0, text(u'f'));
    EXPECT_EQ(day(), u"2024-03-01"_s);
    Store.FindRecord(handle, 0, text(u'g')); // deleted
    EXPECT_EQ(Store.GetLastStatus(handle), RecordStore::NoExactMatch);
    EXPECT_EQ(day(), u"2024-03-03"_s);
    Store.SortTable(handle, u"0"_s);
    Store.MoveToPosition(handle, 0);
    EXPECT_EQ(day(), u"2024-03-04"_s);
    EXPECT_EQ(Name(handle), text(u'a'));
    EXPECT_EQ(Store.NumbersOf(handle, 0), numbers) << "the table has been read anew";
    EXPECT_EQ(numbers->Text(*numbers->Find(text(u'a'))), text(u'a'));
    EXPECT_EQ(NamesInFile(u"T"_s), text(u'f') + u' ' + text(u'h') + u' ' + text(u'a'));
}
