// The order in which grids sort.

#include "platform/GenericOrder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

TEST(GenericOrder, NumbersGoByValueAndBeforeOtherText)
{
    EXPECT_THAT(GenericRanks({u"abc"_s, u"10.00"_s, u"9.50"_s, u""_s, u"-1.00"_s, u".50"_s}),
        ElementsAre(5, 3, 2, 4, 0, 1));
}

TEST(GenericOrder, CaseDoesNotCountAndEqualTextsShareAPlace)
{
    EXPECT_THAT(
        GenericRanks({u"beta"_s, u"Alpha"_s, u"BETA"_s, u"alpha"_s}), ElementsAre(1, 0, 1, 0));
}

TEST(GenericOrder, LongEqualBeginningsAreToldApartByTheirEnds)
{
    const QString same = u"The same sixteen bytes and more "_s;
    EXPECT_THAT(
        GenericRanks({same + u"c"_s, same + u"a"_s, same, same + u"B"_s}), ElementsAre(3, 1, 0, 2));
}

TEST(GenericOrder, EveryLetterCountsBeforeThoseThatFollowIt)
{
    // Longer than two of the pieces that are compared at once, and in reverse order behind.
    const QString letters = u"abcdefghijklmnopqrst"_s;
    for (qsizetype i = 0; i < letters.size(); ++i) {
        QString first = letters;
        QString second = letters;
        first[i] = u'x';
        second[i] = u'y';
        EXPECT_THAT(GenericRanks({second + u'a', first + u'b'}), ElementsAre(1, 0)) << i;
        if (i + 1 < letters.size()) {
            first[i + 1] = u'z';
            EXPECT_THAT(GenericRanks({second, first}), ElementsAre(1, 0)) << i;
        }
    }
}

TEST(GenericOrder, WhatOnlyBeginsLikeANumberIsText)
{
    EXPECT_THAT(GenericRanks({u"1st"_s, u"2"_s, u"inf"_s, u"nan"_s}), ElementsAre(1, 0, 2, 3));
}
