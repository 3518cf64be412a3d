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

TEST(CellRules, ACodeHasNoInvisibleCharacter)
{
    for (const char32_t c : {U'\x00A0', U'\x00AD', U'\x034F', U'\x0085', U'\x180E', U'\x2007',
             U'\x200B', U'\x200D', U'\x202E', U'\x2028', U'\x2060', U'\x2066', U'\x3000', U'\xFE0F',
             U'\xFEFF', U'\xE0041', U'\x1B'}) {
        const QString code = u"A%1B"_s.arg(QStringView(QChar::fromUcs4(c)));
        const QString name = u"U+"_s + QString::number(c, 16).toUpper().rightJustified(4, u'0');
        for (const CellRule &rule : {CellRules::Code(15), CellRules::TypedCode(15),
                 CellRules::OptionalCode(15), CellRules::CompanyCode})
            EXPECT_TRUE(rule.Problem(code).contains(name)) << qPrintable(rule.Problem(code));
    }
}

TEST(CellRules, ATypedCodeHasNoLowerCaseLettersThatTheWindowTurnsIntoUpperCase)
{
    const CellRule rule = CellRules::TypedCode(15);
    for (const QString &code : {u"CONSULT"_s, u"A B-1"_s, u"Ü-1"_s, u"ß1"_s, u"日本"_s})
        EXPECT_EQ(rule.Problem(code), QString());
    EXPECT_EQ(rule.Problem(u"Süd"_s),
        u"the code \"Süd\" has lower-case letters, which cannot be typed in Worklog Remote; write "_s
        u"\"SüD\""_s);
    for (const QString &code : {u"a"_s, u"z"_s, u"A-z"_s})
        EXPECT_FALSE(Allows(rule, code)) << qPrintable(code);
    for (const QString &code : {u"`"_s, u"{"_s}) // next to a and z
        EXPECT_TRUE(Allows(rule, code)) << qPrintable(code);
    EXPECT_FALSE(Allows(rule, u""_s));
    EXPECT_FALSE(Allows(rule, u"1234567890123456"_s));
}

TEST(CellRules, ATermIsAWordOfFortyCharactersAtMost)
{
    EXPECT_TRUE(Allows(CellRules::Term, u"Customer"_s));
    EXPECT_TRUE(Allows(CellRules::Term, QString(40, u'x')));
    EXPECT_FALSE(Allows(CellRules::Term, QString(41, u'x')));
    EXPECT_FALSE(Allows(CellRules::Term, u""_s));
    EXPECT_FALSE(Allows(CellRules::Term, u"  "_s));
}

TEST(CellRules, ALongCellIsShortenedInTheMessage)
{
    const QString problem = CellRules::Code(15).Problem(QString(1'000'000, u'x'));
    EXPECT_LT(problem.size(), 200);
    EXPECT_TRUE(problem.contains(u"longer than 15"_s));
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
    for (const QString &code : {u"ABC"_s, u"01"_s, u"A B"_s, u"Zürich"_s, u"a.b"_s, u"CONSULT"_s,
             u"COM"_s, u"COM10"_s, u"A.CON"_s, u"123456789012345678901234567890"_s})
        EXPECT_TRUE(Allows(CellRules::CompanyCode, code)) << qPrintable(code);
    for (const QString &code : {u""_s, u"."_s, u".."_s, u"A/B"_s, u"A\\B"_s, u"A:B"_s, u"A*B"_s,
             u"A?"_s, u"<A"_s, u"A>"_s, u"A|B"_s, u"A\"B"_s, u"A."_s, u"A "_s, u" A"_s, u"A\tB"_s,
             u"Global"_s, u"GLOBAL"_s, u"CON"_s, u"aux"_s, u"NUL.1"_s, u"COM1"_s, u"Lpt9"_s,
             u"COM²"_s, u"PRN .x"_s, u"CONIN$"_s, u"1234567890123456789012345678901"_s})
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
