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

/// Neighboring positions of a list, and where the first of them leads. From one to the next either
/// the page moves by a record or the row does, or there is only one.
struct Stretch
{
    int Count;
    int Page;
    int MaximumScroll;
    int First;
    int Last;
    int Scroll;
    int Row;
    enum
    {
        RowMoves,
        PageMoves
    } Moves;
};

constexpr Stretch Stretches[] = {
    {1, 1, 0, 0, 0, 0, 1, Stretch::RowMoves},
    {1, 1, 0, 1, 1, 0, 1, Stretch::RowMoves}, // past the end
    {2, 2, 0, 0, 1, 0, 1, Stretch::RowMoves},
    {2, 2, 0, 2, 2, 0, 2, Stretch::RowMoves},
    {10, 10, 0, 0, 9, 0, 1, Stretch::RowMoves},
    {10, 10, 0, 10, 10, 0, 10, Stretch::RowMoves},
    {11, 11, 0, 0, 10, 0, 1, Stretch::RowMoves},
    {11, 11, 0, 11, 11, 0, 11, Stretch::RowMoves},
    {12, 11, 1, 0, 10, 0, 1, Stretch::RowMoves},
    {12, 11, 1, 11, 11, 1, 11, Stretch::RowMoves},
    {12, 11, 1, 12, 12, 1, 1, Stretch::RowMoves},
    {13, 11, 2, 0, 10, 0, 1, Stretch::RowMoves},
    {13, 11, 2, 11, 12, 2, 10, Stretch::RowMoves},
    {13, 11, 2, 13, 13, 2, 1, Stretch::RowMoves},
    {22, 11, 11, 0, 10, 0, 1, Stretch::RowMoves},
    {22, 11, 11, 11, 21, 11, 1, Stretch::RowMoves},
    {22, 11, 11, 22, 22, 11, 1, Stretch::RowMoves},
    {23, 11, 12, 0, 10, 0, 1, Stretch::RowMoves},
    {23, 11, 12, 11, 12, 11, 1, Stretch::PageMoves},
    {23, 11, 12, 13, 22, 12, 2, Stretch::RowMoves},
    {23, 11, 12, 23, 23, 12, 1, Stretch::RowMoves},
    {100, 11, 89, 0, 10, 0, 1, Stretch::RowMoves},
    {100, 11, 89, 11, 89, 11, 1, Stretch::PageMoves},
    {100, 11, 89, 90, 99, 89, 2, Stretch::RowMoves},
    {100, 11, 89, 100, 100, 89, 1, Stretch::RowMoves},
};

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

TEST(LookupArithmetic, PlacesEveryMatchOfEveryLength)
{
    int places = 0;
    for (const Stretch &stretch : Stretches) {
        LookupPlace expected{stretch.Scroll, stretch.Row, 1};
        for (int position = stretch.First; position <= stretch.Last; ++position, ++places) {
            EXPECT_EQ(PlaceOfMatch(position, stretch.Count, stretch.Page, stretch.MaximumScroll),
                expected)
                << "position " << position << " of " << stretch.Count;
            ++(stretch.Moves == Stretch::PageMoves ? expected.ScrollValue : expected.Row);
        }
    }
    EXPECT_EQ(places, 2 + 3 + 11 + 12 + 13 + 14 + 23 + 24 + 101) << "every position, and past it";
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
