// What the digits typed into the parts of a date make of it.

#include "platform/DateTyping.h"

#include "tests/support/PrintQt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

struct Case
{
    const char *Name;
    QDate From;
    const char *Keys; // digits, and "/" to the next part
    const char *Shown;
    QDate Date;
    const char *Notice;
};

class TypedDates : public testing::TestWithParam<Case>
{
};

DateTyping Typed(const Case &typed)
{
    DateTyping typing;
    typing.Begin(typed.From);
    auto part = DatePart::Month;
    for (const QChar key : QString::fromLatin1(typed.Keys)) {
        if (key == u'/') {
            typing.EndPart();
            part = part == DatePart::Month ? DatePart::Day : DatePart::Year;
        } else {
            typing.Type(part, key.digitValue());
        }
    }
    return typing;
}

} // namespace

TEST_P(TypedDates, AreShownAndCountAsFarAsTheyAreDates)
{
    const DateTyping typing = Typed(GetParam());
    EXPECT_EQ(typing.Text(), QString::fromLatin1(GetParam().Shown));
    EXPECT_EQ(typing.Date(), GetParam().Date);
    EXPECT_EQ(typing.Notice(), QString::fromLatin1(GetParam().Notice));
}

INSTANTIATE_TEST_SUITE_P(, TypedDates,
    testing::Values(Case{"EachDigitCountsAtOnce", {2026, 3, 9}, "1", "01/09/26", {2026, 1, 9}, ""},
        Case{"TwoDigitsAreThePart", {2026, 3, 9}, "12", "12/09/26", {2026, 12, 9}, ""},
        Case{"AZeroWaitsForItsSecondDigit", {2026, 3, 9}, "0", "00/09/26", {2026, 3, 9}, ""},
        Case{"AZeroAndADigit", {2026, 3, 9}, "05", "05/09/26", {2026, 5, 9}, ""},
        Case{"AZeroThatIsLeftAlone", {2026, 3, 9}, "0/", "00/09/26", {2026, 3, 9},
            "There is no month 0."},
        Case{"NoMonthZero", {2026, 3, 9}, "00", "03/09/26", {2026, 3, 9}, "There is no month 0."},
        Case{"NoMonthThirteen", {2026, 3, 9}, "13", "03/09/26", {2026, 3, 9},
            "There is no month 13."},
        Case{"NoMonthFiftyOne", {2026, 10, 31}, "51", "10/31/26", {2026, 10, 31},
            "There is no month 51."},
        Case{"NoDayZero", {2026, 3, 9}, "/00", "03/09/26", {2026, 3, 9}, "There is no day 0."},
        Case{
            "NoDayThirtyTwo", {2026, 3, 9}, "/32", "03/09/26", {2026, 3, 9}, "There is no day 32."},
        Case{"NoDayThatTheMonthLacks", {2026, 11, 9}, "/31", "11/09/26", {2026, 11, 9},
            "November 2026 has no day 31."},
        Case{"TheRefusalIsStillThereInTheNextPart", {2026, 3, 9}, "11/31/25", "11/09/25",
            {2025, 11, 9}, "November 2026 has no day 31."},
        Case{"TheRefusalGoesWhenThePartIsTypedAgain", {2026, 11, 9}, "/313", "11/03/26",
            {2026, 11, 3}, ""},
        Case{"ALeapDayWaitsForItsYear", {2026, 2, 9}, "/29", "02/29/26", {2026, 2, 9},
            "February 2026 has no day 29."},
        Case{"ALeapDayAndTheFirstDigitOfItsYear", {2026, 2, 9}, "/29/3", "02/29/03", {2026, 2, 9},
            ""},
        Case{"ALeapDayAndItsYear", {2026, 2, 9}, "/29/32", "02/29/32", {2032, 2, 29}, ""},
        Case{"ALeapDayInAnotherYear", {2026, 2, 9}, "/29/27", "02/29/27", {2026, 2, 9},
            "February 2027 has no day 29."},
        Case{"NoDayThirtyInFebruary", {2026, 2, 9}, "/30", "02/09/26", {2026, 2, 9},
            "February 2026 has no day 30."},
        Case{"AMonthWithoutTheDayWaitsForTheDay", {2026, 1, 31}, "02", "02/31/26", {2026, 1, 31},
            "February 2026 has no day 31."},
        Case{"AMonthAndThenItsDay", {2026, 1, 31}, "02/15", "02/15/26", {2026, 2, 15}, ""},
        Case{"AnotherMonthWithTheDay", {2026, 1, 31}, "12", "12/31/26", {2026, 12, 31}, ""},
        Case{"AYearOfThisCentury", {1999, 12, 31}, "//99", "12/31/99", {2099, 12, 31}, ""},
        Case{"AYearOfAnotherCenturyUntouched", {1999, 12, 31}, "11/15", "11/15/99", {1999, 11, 15},
            ""},
        Case{"AYearTypedWithFourDigits", {2031, 3, 9}, "//2026", "03/09/26", {2026, 3, 9}, ""},
        Case{"AYearWithOneDigit", {2026, 3, 9}, "//7", "03/09/07", {2007, 3, 9}, ""}),
    [](const auto &row) { return row.param.Name; });

TEST(DateTyping, EndsWithTheDateThatWasTyped)
{
    DateTyping typing;
    typing.Begin({2026, 3, 9});
    typing.Type(DatePart::Month, 1);
    EXPECT_TRUE(typing.Finish());
    EXPECT_EQ(typing.Date(), QDate(2026, 1, 9));
    typing.Type(DatePart::Month, 2);
    EXPECT_EQ(typing.Date(), QDate(2026, 2, 9)) << "not December";
}

TEST(DateTyping, EndsWithTheDateFromBeforeWhenWhatWasTypedIsNone)
{
    DateTyping typing;
    typing.Begin({2026, 2, 9});
    typing.Type(DatePart::Day, 2);
    typing.Type(DatePart::Day, 9);
    EXPECT_FALSE(typing.Finish());
    EXPECT_EQ(typing.Text(), u"02/09/26"_s);
    EXPECT_EQ(typing.Date(), QDate(2026, 2, 9));
    EXPECT_EQ(typing.Notice(), u"February 2026 has no day 29."_s);
    EXPECT_TRUE(typing.Finish()) << "once";
}

TEST(DateTyping, TakesBackWhatWasTypedIntoThePart)
{
    DateTyping typing;
    typing.Begin({2026, 3, 9});
    EXPECT_FALSE(typing.TakeBack());
    typing.Type(DatePart::Month, 1);
    typing.Type(DatePart::Month, 2);
    EXPECT_TRUE(typing.TakeBack());
    EXPECT_EQ(typing.Date(), QDate(2026, 3, 9));
    typing.Type(DatePart::Month, 0);
    typing.EndPart();
    EXPECT_TRUE(typing.TakeBack());
    EXPECT_EQ(typing.Text(), u"03/09/26"_s);
    EXPECT_EQ(typing.Notice(), QString());
}

TEST(DateTyping, ReadsAWholeDate)
{
    const QDate date(2026, 11, 5);
    for (const char *text :
        {"11/5/26", "11/05/26", "11-05-2026", "11.5.26", "2026-11-05", " 11/05/2026 \n"})
        EXPECT_EQ(DateFromText(QString::fromLatin1(text)), date) << text;
    for (const char *text : {"", "11", "11/05", "13/05/26", "02/29/26", "11/05/126", "abc"})
        EXPECT_FALSE(DateFromText(QString::fromLatin1(text)).isValid()) << text;
    EXPECT_EQ(DateFromText(u"02/29/28"_s), QDate(2028, 2, 29));
    EXPECT_EQ(DateFromText(u"02/29/00"_s), QDate(2000, 2, 29));
}
