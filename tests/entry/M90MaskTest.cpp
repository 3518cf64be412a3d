// The mask of the numeric boxes as a function of text and caret.

#include "entry/clsM90Mask.h"
#include "tests/support/PrintQt.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// A change of a box whose last good text was `Before`: the text and caret that it leaves.
struct Change
{
    const char *Name;
    QString Before;
    QString Typed;
    int Caret;
    QString Left;
    int LeftCaret;
};

void CheckAll(int integers, int decimals, const std::vector<Change> &changes)
{
    for (const Change &change : changes) {
        SCOPED_TRACE(change.Name);
        clsM90Mask mask;
        mask.SetMask(integers, decimals);
        ASSERT_EQ(mask.gVerify_Change(change.Before, 0).Text, change.Before);
        const clsM90Mask::Verified left = mask.gVerify_Change(change.Typed, change.Caret);
        EXPECT_EQ(left.Text, change.Left);
        EXPECT_EQ(left.Caret, change.LeftCaret);
    }
}

} // namespace

TEST(M90Mask, HoursOfATimeEntry)
{
    CheckAll(2, 2,
        {
            {"a third integer digit", u"12"_s, u"123"_s, 3, u"12"_s, 2},
            {"a third integer digit in front", u"12"_s, u"312"_s, 1, u"12"_s, 0},
            {"the most that fits", u"99.9"_s, u"99.99"_s, 5, u"99.99"_s, 5},
            {"a third decimal", u"1.23"_s, u"1.234"_s, 5, u"1.23"_s, 4},
            {"a second point beside the first", u"1."_s, u"1.."_s, 3, u"1."_s, 2},
            {"a second point at the end", u"1.2"_s, u"1.2."_s, 4, u"1.2"_s, 3},
            {"a second point in front", u"1.2"_s, u".1.2"_s, 1, u"1.2"_s, 0},
            {"nothing", u"1"_s, QString(), 0, QString(), 0},
            {"a lone point", QString(), u"."_s, 1, u"."_s, 1},
            {"a point first", u"."_s, u".5"_s, 2, u".5"_s, 2},
            {"a point last", u"5"_s, u"5."_s, 2, u"5."_s, 2},
            {"a sign counts as a digit", u"12"_s, u"-12"_s, 1, u"12"_s, 0},
            {"a sign and one digit", u"5"_s, u"-5"_s, 1, u"-5"_s, 1},
            {"a plus sign and one digit", u"5"_s, u"+5"_s, 1, u"+5"_s, 1},
            {"a blank counts as a digit", u"12"_s, u" 12"_s, 1, u"12"_s, 0},
            {"a blank and one digit", u"5"_s, u" 5"_s, 1, u" 5"_s, 1},
            {"a comma counts as a digit", u"1"_s, u"1,2"_s, 2, u"1"_s, 1},
            {"a comma after a digit", u"1"_s, u"1,"_s, 2, u"1,"_s, 2},
        });
}

TEST(M90Mask, WhatFitsButIsNoNumberBecomesZero)
{
    CheckAll(8, 2,
        {
            {"a letter in an empty box", QString(), u"x"_s, 1, u".00"_s, 0},
            {"a letter after a number", u"12"_s, u"12x"_s, 3, u".00"_s, 2},
            {"a sign alone", QString(), u"-"_s, 1, u".00"_s, 0},
            {"a sign behind", u"5"_s, u"5-"_s, 2, u".00"_s, 1},
            {"two signs", u"-5"_s, u"--5"_s, 1, u".00"_s, 0},
            {"a sign and a point", u"."_s, u"-."_s, 1, u".00"_s, 0},
            {"a blank alone", QString(), u" "_s, 1, u".00"_s, 0},
            {"a blank inside", u"12"_s, u"1 2"_s, 2, u".00"_s, 1},
            {"a comma first", u"5"_s, u",5"_s, 1, u".00"_s, 0},
            {"a comma after the point", u"1.2"_s, u"1.,2"_s, 3, u".00"_s, 2},
            {"a comma as the only decimal", u"1."_s, u"1.,"_s, 3, u".00"_s, 2},
            {"an exponent", u"1"_s, u"1E2"_s, 2, u".00"_s, 1},
            {"a currency sign", u"1"_s, u"$1"_s, 1, u".00"_s, 0},
            {"a digit of another script", QString(), u"٣"_s, 1, u".00"_s, 0},
        });
}

TEST(M90Mask, UnitsRatesAndAmountsHaveTheirOwnSizes)
{
    CheckAll(5, 2,
        {
            {"the most units", u"99999.9"_s, u"99999.99"_s, 8, u"99999.99"_s, 8},
            {"too many units", u"99999"_s, u"999999"_s, 6, u"99999"_s, 5},
            {"a comma among the units", u"1234"_s, u"1,234"_s, 2, u"1,234"_s, 2},
        });
    CheckAll(5, 3,
        {
            {"three decimals of a rate", u"1.23"_s, u"1.234"_s, 5, u"1.234"_s, 5},
            {"a fourth decimal of a rate", u"1.234"_s, u"1.2345"_s, 6, u"1.234"_s, 5},
            {"the highest rate", u"99999.99"_s, u"99999.999"_s, 9, u"99999.999"_s, 9},
            {"a letter shows three decimals", QString(), u"x"_s, 1, u".000"_s, 0},
        });
    CheckAll(8, 2,
        {
            {"the highest amount", u"99999999.9"_s, u"99999999.99"_s, 11, u"99999999.99"_s, 11},
            {"a ninth integer digit", u"99999999"_s, u"999999990"_s, 9, u"99999999"_s, 8},
        });
}

TEST(M90Mask, TheShapeIsJudgedBeforeTheNumber)
{
    // Too long a text comes back whole, even if it is no number either.
    CheckAll(2, 2,
        {
            {"letters past the size", u"12"_s, u"abc"_s, 3, u"12"_s, 2},
            {"a word with two points", u"1"_s, u"a.b.c"_s, 5, u"1"_s, 4},
        });
}

TEST(M90Mask, ATextRefusedWithTheCaretInFrontLeavesItThere)
{
    CheckAll(2, 2,
        {
            {"out of shape", u"12"_s, u"123"_s, 0, u"12"_s, 0},
            {"no number", u"12"_s, u"x"_s, 0, u".00"_s, 0},
        });
}

TEST(M90Mask, ANewOneHasSeenNothing)
{
    clsM90Mask mask;
    mask.SetMask(2, 2);
    EXPECT_EQ(mask.gVerify_Change(u"123"_s, 3).Text, QString());
}

TEST(M90Mask, SettingTheMaskKeepsTheLastGoodText)
{
    clsM90Mask mask;
    mask.SetMask(5, 2);
    mask.gVerify_Change(u"12345"_s, 5);
    mask.SetMask(2, 2);
    EXPECT_EQ(mask.gVerify_Change(u"123456"_s, 6).Text, u"12345"_s);
}

TEST(M90Mask, TheZeroThatReplacesALetterIsTheLastGoodTextAfterwards)
{
    clsM90Mask mask;
    mask.SetMask(2, 2);
    mask.gVerify_Change(u"12"_s, 2);
    ASSERT_EQ(mask.gVerify_Change(u"1x"_s, 2).Text, u".00"_s);
    EXPECT_EQ(mask.gVerify_Change(u".000"_s, 4).Text, u".00"_s);
}

TEST(M90Mask, WhatTheProgramWroteIsGoodWithoutBeingJudged)
{
    clsM90Mask mask;
    mask.SetMask(2, 2);
    mask.TakeAsGood(u"1234.00"_s);
    EXPECT_EQ(mask.gVerify_Change(u"1234.005"_s, 8).Text, u"1234.00"_s);
}
