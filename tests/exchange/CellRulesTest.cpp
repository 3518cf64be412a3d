#include "exchange/CellRules.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

bool Allows(const CellRule &rule, const QString &cell)
{
    return rule.Problem(cell).isEmpty();
}

TEST(CellRules, ACodeIsOneCharacterToItsWidth)
{
    const CellRule rule = CellRules::Code(3);
    EXPECT_TRUE(Allows(rule, u"a"_s));
    EXPECT_TRUE(Allows(rule, u"a B"_s));
    EXPECT_TRUE(Allows(rule, u"Süd"_s));
    EXPECT_FALSE(Allows(rule, u""_s));
    EXPECT_FALSE(Allows(rule, u"1234"_s));
    EXPECT_FALSE(Allows(rule, u"ab "_s));
    EXPECT_FALSE(Allows(rule, u" ab"_s));
    EXPECT_FALSE(Allows(rule, u"a\nb"_s));
    EXPECT_FALSE(Allows(rule, u"a\u007f"_s));
}

TEST(CellRules, AnOptionalCodeMayBeEmptyButNotBlank)
{
    EXPECT_TRUE(Allows(CellRules::OptionalCode(2), u""_s));
    EXPECT_TRUE(Allows(CellRules::OptionalCode(2), u"01"_s));
    EXPECT_FALSE(Allows(CellRules::OptionalCode(2), u" "_s));
    EXPECT_FALSE(Allows(CellRules::OptionalCode(2), u"001"_s));
}

TEST(CellRules, AFlagIsAnUpperCaseLetter)
{
    EXPECT_TRUE(Allows(CellRules::Flag, u"Y"_s));
    EXPECT_TRUE(Allows(CellRules::Flag, u"N"_s));
    for (const QString &cell : {u""_s, u"y"_s, u"n"_s, u"YN"_s, u"1"_s, u"Y "_s})
        EXPECT_FALSE(Allows(CellRules::Flag, cell)) << qPrintable(cell);
}

TEST(CellRules, ADigitLiesBetweenItsBounds)
{
    const CellRule rule = CellRules::Digit(u'1', u'4');
    EXPECT_TRUE(Allows(rule, u"1"_s));
    EXPECT_TRUE(Allows(rule, u"4"_s));
    for (const QString &cell : {u""_s, u"0"_s, u"5"_s, u"11"_s, u"x"_s})
        EXPECT_FALSE(Allows(rule, cell)) << qPrintable(cell);
    EXPECT_TRUE(Allows(CellRules::OptionalDigit(u'1', u'3'), u""_s));
    EXPECT_FALSE(Allows(CellRules::OptionalDigit(u'1', u'3'), u"4"_s));
}

TEST(CellRules, ACompanyCodeCanBeAPartOfAFileName)
{
    for (const QString &code :
        {u"ABC"_s, u"01"_s, u"A B"_s, u"Zürich"_s, u"a.b"_s, u"123456789012345678901234567890"_s})
        EXPECT_TRUE(Allows(CellRules::CompanyCode, code)) << qPrintable(code);
    for (const QString &code : {u""_s, u"."_s, u".."_s, u"A/B"_s, u"A\\B"_s, u"A:B"_s, u"A*B"_s,
             u"A?"_s, u"<A"_s, u"A>"_s, u"A|B"_s, u"A\"B"_s, u"A."_s, u"A "_s, u" A"_s, u"A\tB"_s,
             u"Global"_s, u"GLOBAL"_s, u"1234567890123456789012345678901"_s})
        EXPECT_FALSE(Allows(CellRules::CompanyCode, code)) << qPrintable(code);
}

TEST(CellRules, AnAmountHasAPointAndAtMostFourDecimals)
{
    EXPECT_EQ(AmountFromCell(u"0"_s), Currency());
    EXPECT_EQ(AmountFromCell(u"12"_s), Currency::FromWhole(12));
    EXPECT_EQ(AmountFromCell(u"0.0001"_s), Currency::FromScaled(1));
    EXPECT_EQ(AmountFromCell(u".5"_s), Currency::FromScaled(5000));
    EXPECT_EQ(AmountFromCell(u"5."_s), Currency::FromWhole(5));
    EXPECT_EQ(AmountFromCell(u"999999999.9999"_s), Currency::FromScaled(9'999'999'999'999));
    for (const QString &cell : {u""_s, u" "_s, u"."_s, u"1,5"_s, u"1,000.00"_s, u"1.00001"_s,
             u"-1"_s, u"+1"_s, u" 1"_s, u"1 "_s, u"1e3"_s, u"1.2.3"_s, u"abc"_s, u"1000000000"_s,
             u"99999999999999999999999"_s, u"٣"_s})
        EXPECT_FALSE(AmountFromCell(cell).has_value()) << qPrintable(cell);
}

} // namespace
