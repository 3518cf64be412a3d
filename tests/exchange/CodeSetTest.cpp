#include "exchange/CodeSet.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

TEST(CodeSet, KnowsTheLineOfACodeThatComesTwice)
{
    CodeSet codes;
    EXPECT_FALSE(codes.Contains(u"A"_s));
    EXPECT_EQ(codes.Insert(u"A"_s, 2), 0);
    EXPECT_EQ(codes.Insert(u"B"_s, 3), 0);
    EXPECT_EQ(codes.Insert(u"A"_s, 4), 2);
    EXPECT_TRUE(codes.Contains(u"A"_s));
    EXPECT_FALSE(codes.Contains(u"C"_s));
}

TEST(CodeSet, TakesCodesThatDifferOnlyInCaseForOneButContainsOnlyTheFirst)
{
    CodeSet codes;
    EXPECT_EQ(codes.Insert(u"Süd"_s, 2), 0);
    EXPECT_EQ(codes.Insert(u"SÜD"_s, 3), 2);
    EXPECT_TRUE(codes.Contains(u"Süd"_s));
    EXPECT_FALSE(codes.Contains(u"SÜD"_s));
}

TEST(CodeSet, KeepsEveryCodeWhileItGrows)
{
    CodeSet codes;
    for (int i = 0; i < 100'000; ++i)
        ASSERT_EQ(codes.Insert(QString::number(i), i + 1), 0);
    for (int i = 0; i < 100'000; ++i)
        ASSERT_EQ(codes.Insert(QString::number(i), 0), i + 1);
    EXPECT_FALSE(codes.Contains(QString::number(100'000)));
}

} // namespace
