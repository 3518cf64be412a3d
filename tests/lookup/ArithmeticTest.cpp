// The lookup's arithmetic over every list length that is special and every position in it.

#include "lookup/LookupArithmetic.h"

#include <gtest/gtest.h>

#include <ostream>

static void PrintTo(const LookupPlace &place, std::ostream *out)
{
    *out << "scroll " << place.ScrollValue << " row " << place.Row << " top " << place.TopRow;
}

static void PrintTo(const LookupCursor &cursor, std::ostream *out)
{
    *out << "scroll " << cursor.ScrollValue << " row " << cursor.Row;
}

namespace {

constexpr int Counts[] = {0, 1, 10, 11, 12, 100};

/// The rules for a match once more, written down step by step and not shared with the program.
LookupPlace Expected(int pos, int count, int page, int max)
{
    int r = 0;
    if (pos < page) {
        r = pos;
    } else {
        r = page - (count - pos);
        if (r < 1)
            r = pos;
        if (r >= page) {
            if (r == count)
                r = r - 1;
            else
                r = 0;
        }
    }
    int scroll = 0;
    if (!(pos < page)) {
        if (pos <= max)
            scroll = pos;
        else
            scroll = max;
    }
    const int row = r + 1;
    int top = 1;
    if (row > page)
        top = row - page + 1;
    return {scroll, row, top};
}

} // namespace

TEST(LookupArithmetic, APageHasElevenRowsOrAllRecords)
{
    EXPECT_EQ(LookupPageRowsOf(0), 0);
    EXPECT_EQ(LookupPageRowsOf(1), 1);
    EXPECT_EQ(LookupPageRowsOf(10), 10);
    EXPECT_EQ(LookupPageRowsOf(11), 11);
    EXPECT_EQ(LookupPageRowsOf(12), 11);
    EXPECT_EQ(LookupPageRowsOf(1000000), 11);
}

TEST(LookupArithmetic, TheScrollBarShowsFromElevenRecordsOn)
{
    struct Case
    {
        int Count;
        bool Visible;
        int Maximum;
        int LargeChange;
    };
    for (const Case &c : {Case{0, false, 0, 0}, Case{1, false, 0, 0}, Case{10, false, 0, 0},
             Case{11, true, 0, 10}, Case{12, true, 1, 10}, Case{100, true, 89, 10}}) {
        const LookupScroll scroll = SetupLookupScroll(c.Count, LookupPageRowsOf(c.Count));
        EXPECT_EQ(scroll.Visible, c.Visible) << c.Count;
        EXPECT_EQ(scroll.Maximum, c.Maximum) << c.Count;
        EXPECT_EQ(scroll.LargeChange, c.LargeChange) << c.Count;
    }
}

TEST(LookupArithmetic, PlacesEveryMatchOfEveryLengthAsTheRulesSay)
{
    int places = 0;
    for (const int count : Counts) {
        const int page = LookupPageRowsOf(count);
        const int max = SetupLookupScroll(count, page).Maximum;
        for (int pos = 0; count > 0 && pos <= count; ++pos, ++places)
            EXPECT_EQ(PlaceOfMatch(pos, count, page, max), Expected(pos, count, page, max))
                << "position " << pos << " of " << count;
    }
    EXPECT_EQ(places, 2 + 11 + 12 + 13 + 101);
}

TEST(LookupArithmetic, PlacesTheThreeKnownMatchesOfAHundred)
{
    EXPECT_EQ(PlaceOfMatch(50, 100, 11, 89), (LookupPlace{50, 1, 1}));
    EXPECT_EQ(PlaceOfMatch(95, 100, 11, 89), (LookupPlace{89, 7, 1}));
    EXPECT_EQ(PlaceOfMatch(5, 100, 11, 89), (LookupPlace{0, 6, 1}));
}

TEST(LookupArithmetic, PastTheEndAShortListStaysOnItsLastRowAndALongOneGoesToThePagesFirst)
{
    EXPECT_EQ(PlaceOfMatch(1, 1, 1, 0), (LookupPlace{0, 1, 1}));
    EXPECT_EQ(PlaceOfMatch(10, 10, 10, 0), (LookupPlace{0, 10, 1}));
    EXPECT_EQ(PlaceOfMatch(11, 11, 11, 0), (LookupPlace{0, 11, 1}));
    EXPECT_EQ(PlaceOfMatch(12, 12, 11, 1), (LookupPlace{1, 1, 1}));
    EXPECT_EQ(PlaceOfMatch(100, 100, 11, 89), (LookupPlace{89, 1, 1}));
}

TEST(LookupArithmetic, TheRowOfAMatchIsOnThePageAndHoldsItWhereThereIsOne)
{
    for (const int count : Counts) {
        const int page = LookupPageRowsOf(count);
        const int max = SetupLookupScroll(count, page).Maximum;
        for (int pos = 0; pos < count; ++pos) {
            const LookupPlace place = PlaceOfMatch(pos, count, page, max);
            EXPECT_EQ(place.ScrollValue + place.Row - 1, pos) << pos << " of " << count;
            EXPECT_LE(place.Row, page);
        }
    }
}

TEST(LookupArithmetic, KeysMoveTheRowWithinThePageAndThePageUnderTheRowAtItsEdges)
{
    struct Case
    {
        const char *Name;
        LookupPaging Key;
        LookupCursor From;
        LookupCursor To;
    };
    const Case cases[] = {
        {"down within", LookupPaging::Down, {0, 1}, {0, 2}},
        {"down at the edge", LookupPaging::Down, {0, 11}, {1, 11}},
        {"down at the end", LookupPaging::Down, {89, 11}, {89, 11}},
        {"down from the row after the page", LookupPaging::Down, {5, 12}, {6, 11}},
        {"up within", LookupPaging::Up, {3, 11}, {3, 10}},
        {"up from the row after the page", LookupPaging::Up, {3, 12}, {3, 11}},
        {"up at the edge", LookupPaging::Up, {3, 1}, {2, 1}},
        {"up at the start", LookupPaging::Up, {0, 1}, {0, 1}},
        {"page down within", LookupPaging::PageDown, {4, 3}, {4, 11}},
        {"page down at the edge", LookupPaging::PageDown, {4, 11}, {14, 11}},
        {"page down near the end", LookupPaging::PageDown, {84, 11}, {89, 11}},
        {"page down at the end", LookupPaging::PageDown, {89, 11}, {89, 11}},
        {"page down from the row after the page", LookupPaging::PageDown, {4, 12}, {14, 11}},
        {"page up within", LookupPaging::PageUp, {40, 7}, {40, 1}},
        {"page up at the edge", LookupPaging::PageUp, {40, 1}, {30, 1}},
        {"page up near the start", LookupPaging::PageUp, {4, 1}, {0, 1}},
        {"page up at the start", LookupPaging::PageUp, {0, 1}, {0, 1}},
    };
    for (const Case &c : cases)
        EXPECT_EQ(PageBy(c.Key, c.From, 11, 89), c.To) << c.Name;
}

TEST(LookupArithmetic, KeysStayWithinAListShorterThanAPage)
{
    EXPECT_EQ(PageBy(LookupPaging::Down, {0, 3}, 3, 0), (LookupCursor{0, 3}));
    EXPECT_EQ(PageBy(LookupPaging::PageDown, {0, 1}, 3, 0), (LookupCursor{0, 3}));
    EXPECT_EQ(PageBy(LookupPaging::Up, {0, 1}, 1, 0), (LookupCursor{0, 1}));
    EXPECT_EQ(PageBy(LookupPaging::PageUp, {0, 3}, 3, 0), (LookupCursor{0, 1}));
}
