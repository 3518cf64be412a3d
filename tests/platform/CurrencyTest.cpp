#include "platform/Currency.h"
#include "tests/support/Raised.h"

#include <gtest/gtest.h>

#include <QRegularExpression>

#include <algorithm>
#include <limits>
#include <random>
#include <string>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 Most = std::numeric_limits<qint64>::max();
constexpr qint64 Least = std::numeric_limits<qint64>::min();

Currency Scaled(qint64 tenThousandths)
{
    return Currency::FromScaled(tenThousandths);
}

/// A whole number written in decimal digits, the first the most significant, with its sign. The
/// arithmetic is that of a school exercise book and shares nothing with the code under test.
struct SchoolNumber
{
    bool Negative = false;
    std::string Digits; // without leading zeros; empty is zero
};

std::string WithoutLeadingZeros(const std::string &digits)
{
    const size_t first = digits.find_first_not_of('0');
    return first == std::string::npos ? std::string() : digits.substr(first);
}

SchoolNumber SchoolNumberOf(qint64 value)
{
    std::string text = std::to_string(value);
    const bool negative = text.front() == '-';
    if (negative)
        text.erase(0, 1);
    return {negative, WithoutLeadingZeros(text)};
}

std::string MultipliedDigits(const std::string &a, const std::string &b)
{
    std::string product(a.size() + b.size(), '\0');
    for (size_t i = a.size(); i-- > 0;) {
        int carry = 0;
        for (size_t j = b.size(); j-- > 0;) {
            const int sum = product[i + j + 1] + (a[i] - '0') * (b[j] - '0') + carry;
            product[i + j + 1] = static_cast<char>(sum % 10);
            carry = sum / 10;
        }
        product[i] = static_cast<char>(product[i] + carry);
    }
    for (char &digit : product)
        digit = static_cast<char>(digit + '0');
    return WithoutLeadingZeros(product);
}

std::string PlusOne(std::string digits)
{
    for (size_t i = digits.size(); i-- > 0;) {
        if (digits[i] != '9') {
            ++digits[i];
            return digits;
        }
        digits[i] = '0';
    }
    return '1' + digits;
}

/// The product of two values scaled by 10,000: its last four digits are cut off and rounded half
/// to even. "overflow" when it is no 64-bit number.
std::string SchoolProduct(qint64 a, qint64 b)
{
    const SchoolNumber left = SchoolNumberOf(a);
    const SchoolNumber right = SchoolNumberOf(b);
    std::string product = MultipliedDigits(left.Digits, right.Digits);
    product.insert(0, product.size() < 5 ? 5 - product.size() : 0, '0');
    const std::string cut = product.substr(product.size() - 4);
    std::string kept = product.substr(0, product.size() - 4);
    const bool isOdd = (kept.back() - '0') % 2 != 0;
    if (cut > "5000" || (cut == "5000" && isOdd))
        kept = PlusOne(kept);
    kept = WithoutLeadingZeros(kept);
    if (kept.empty())
        return "0";
    const bool negative = left.Negative != right.Negative;
    const std::string limit = negative ? "9223372036854775808" : "9223372036854775807";
    if (kept.size() > limit.size() || (kept.size() == limit.size() && kept > limit))
        return "overflow";
    return (negative ? "-" : "") + kept;
}

std::string ProductText(qint64 a, qint64 b)
{
    try {
        return std::to_string((Scaled(a) * Scaled(b)).Scaled());
    } catch (const clsRunTimeError &error) {
        return error.Number() == RunTimeErrors::Overflow ? "overflow" : "another error";
    }
}

/// Numbers of every length, and those around the edges.
qint64 RandomValue(std::mt19937_64 &random)
{
    const quint64 bits = random();
    switch (bits % 8) {
    case 0:
        return (bits & 64 ? Most : Least) + static_cast<qint64>(bits >> 60) * (bits & 64 ? -1 : 1);
    case 1:
        return static_cast<qint64>(bits >> 32) % 20001 - 10000;
    case 2: // halves: a product with an odd number ends in exactly 5000
        return (static_cast<qint64>(bits >> 40) - (1 << 23)) * 5000;
    case 3:
        return (static_cast<qint64>(bits >> 50) - 8192) * 50;
    default:
        return static_cast<qint64>(random()) >> (bits / 8 % 64);
    }
}

struct FormatCase
{
    qint64 Value;
    int Decimals;
    LeadingZero Zero;
    QString Text;
};

} // namespace

TEST(Currency, FormatsRoundedHalfAwayFromZero)
{
    const FormatCase cases[] = {
        {75000, 2, LeadingZero::Yes, u"7.50"_s},
        {0, 0, LeadingZero::Yes, u"0"_s},
        {0, 2, LeadingZero::Yes, u"0.00"_s},
        {0, 2, LeadingZero::No, u".00"_s},
        {0, 0, LeadingZero::No, u"0"_s}, // a number without any digit would be none
        {5000, 2, LeadingZero::Yes, u"0.50"_s},
        {5000, 2, LeadingZero::No, u".50"_s},
        {-5000, 2, LeadingZero::Yes, u"-0.50"_s},
        {-5000, 2, LeadingZero::No, u"-.50"_s},
        {5000, 0, LeadingZero::No, u"1"_s},
        {4999, 0, LeadingZero::Yes, u"0"_s},
        {4999, 0, LeadingZero::No, u"0"_s},
        {-5000, 0, LeadingZero::Yes, u"-1"_s},
        {15000, 0, LeadingZero::Yes, u"2"_s},
        {25000, 0, LeadingZero::Yes, u"3"_s}, // to even would be 2
        {-25000, 0, LeadingZero::Yes, u"-3"_s},
        {10050, 2, LeadingZero::Yes, u"1.01"_s},
        {10049, 2, LeadingZero::Yes, u"1.00"_s},
        {10450, 2, LeadingZero::Yes, u"1.05"_s}, // to even would be 1.04
        {-10450, 2, LeadingZero::Yes, u"-1.05"_s},
        {10005, 3, LeadingZero::Yes, u"1.001"_s},
        {10004, 3, LeadingZero::Yes, u"1.000"_s},
        {10500, 1, LeadingZero::Yes, u"1.1"_s},
        {10499, 1, LeadingZero::Yes, u"1.0"_s},
        {1, 4, LeadingZero::Yes, u"0.0001"_s},
        {1, 4, LeadingZero::No, u".0001"_s},
        {-1, 4, LeadingZero::No, u"-.0001"_s},
        {9999, 4, LeadingZero::No, u".9999"_s},
        {9999, 2, LeadingZero::No, u"1.00"_s}, // rounded up it has a digit before the sign
        {99995000, 0, LeadingZero::Yes, u"10000"_s},
        {12345678, 4, LeadingZero::Yes, u"1234.5678"_s}, // no grouping
        {1234567890000, 2, LeadingZero::Yes, u"123456789.00"_s},
        // What rounds to zero has no sign.
        {-1, 2, LeadingZero::Yes, u"0.00"_s},
        {-49, 2, LeadingZero::Yes, u"0.00"_s},
        {-49, 2, LeadingZero::No, u".00"_s},
        {-50, 2, LeadingZero::Yes, u"-0.01"_s},
        {-4999, 0, LeadingZero::Yes, u"0"_s},
        {-499, 1, LeadingZero::Yes, u"0.0"_s},
        {-4, 3, LeadingZero::Yes, u"0.000"_s},
        // The ends of the range.
        {Most, 4, LeadingZero::Yes, u"922337203685477.5807"_s},
        {Most, 2, LeadingZero::Yes, u"922337203685477.58"_s},
        {Most, 0, LeadingZero::Yes, u"922337203685478"_s},
        {Least, 4, LeadingZero::Yes, u"-922337203685477.5808"_s},
        {Least, 3, LeadingZero::Yes, u"-922337203685477.581"_s},
        {Least, 1, LeadingZero::Yes, u"-922337203685477.6"_s},
        {Least, 0, LeadingZero::No, u"-922337203685478"_s},
    };
    for (const FormatCase &each : cases)
        EXPECT_EQ(FormatCurrency(Scaled(each.Value), each.Decimals, each.Zero), each.Text)
            << each.Value << " with " << each.Decimals << " decimals";
}

TEST(Currency, FormatsWithTheDecimalSignItIsGiven)
{
    EXPECT_EQ(FormatCurrency(Scaled(-12345), 2, LeadingZero::Yes, u','), u"-1,23"_s);
    EXPECT_EQ(FormatCurrency(Scaled(5000), 1, LeadingZero::No, u'\u066B'), u"\u066B5"_s);
    EXPECT_EQ(FormatCurrency(Scaled(20000), 0, LeadingZero::No, u','), u"2"_s);
}

TEST(Currency, ReadsBackWhatItFormatsWithFourDecimals)
{
    std::mt19937_64 random(20260);
    for (int i = 0; i < 50000; ++i) {
        const qint64 value = RandomValue(random);
        const QString text = FormatCurrency(
            Scaled(value), 4, random() % 2 == 0 ? LeadingZero::Yes : LeadingZero::No);
        ASSERT_EQ(CurrencyFromText(text), Scaled(value)) << value << " " << text.toStdString();
    }
}

TEST(Currency, AddsAndSubtractsUpToTheEnds)
{
    EXPECT_EQ((Scaled(Most - 1) + Scaled(1)).Scaled(), Most);
    EXPECT_EQ((Scaled(Least + 1) - Scaled(1)).Scaled(), Least);
    EXPECT_EQ((Scaled(Least) + Scaled(Most)).Scaled(), -1);
    EXPECT_EQ((Scaled(-1) - Scaled(Least)).Scaled(), Most);
    Currency sum = Scaled(15);
    sum += Scaled(-20);
    EXPECT_EQ(sum.Scaled(), -5);
    EXPECT_TRUE((sum + Scaled(5)).IsZero());
}

TEST(Currency, NeverWrapsButRaisesOverflow)
{
    EXPECT_EQ(RaisedBy([] { Scaled(Most) + Scaled(1); }).Number, 6);
    EXPECT_EQ(RaisedBy([] { Scaled(Least) + Scaled(-1); }).Number, 6);
    EXPECT_EQ(RaisedBy([] { Scaled(Least) - Scaled(1); }).Number, 6);
    EXPECT_EQ(RaisedBy([] { Scaled(0) - Scaled(Least); }).Number, 6);
    EXPECT_EQ(RaisedBy([] { Scaled(Most) * Scaled(10001); }).Number, 6);
    EXPECT_EQ(RaisedBy([] { Scaled(Least) * Scaled(Least); }).Number, 6);
    EXPECT_EQ(RaisedBy([] { Scaled(Least) * Scaled(-10000); }).Number, 6);
    EXPECT_EQ(RaisedBy([] { Scaled(Most) + Scaled(1); }).Description, u"Overflow"_s);

    Currency kept = Scaled(Most);
    EXPECT_EQ(RaisedBy([&] { kept += Scaled(1); }).Number, 6);
    EXPECT_EQ(kept.Scaled(), Most); // a refused sum leaves the value as it was
}

TEST(Currency, MultipliesRoundedHalfToEven)
{
    const struct
    {
        qint64 A, B, Product;
    } cases[] = {
        {75000, 800000, 6000000}, // 7.5 hours at 80
        {0, Least, 0},
        {10000, Least, Least},
        {10000, Most, Most},
        {-10000, Most, -Most},
        {1, 5000, 0}, // 0.00005: to the even 0
        {-1, 5000, 0},
        {3, 5000, 2}, // 0.00015: up to the even 2
        {-3, 5000, -2},
        {3, -5000, -2},
        {-3, -5000, 2},
        {5, 5000, 2}, // 0.00025: down to the even 2
        {-5, 5000, -2},
        {7, 5000, 4},
        {1, 5001, 1}, // above the half
        {-1, 5001, -1},
        {1, 4999, 0}, // below it
        {3, 4999, 1},
        {25, 50000, 125},
        {33333, 30000, 99999},
        {100000000, Most / 10000, 9223372036854770000},
    };
    for (const auto &each : cases)
        EXPECT_EQ((Scaled(each.A) * Scaled(each.B)).Scaled(), each.Product)
            << each.A << " times " << each.B;
}

TEST(Currency, MultipliesLikeASchoolExerciseBook)
{
    ASSERT_EQ(SchoolProduct(3, 5000), "2");
    ASSERT_EQ(SchoolProduct(-5, 5000), "-2");
    ASSERT_EQ(SchoolProduct(Most, 10001), "overflow");
    const unsigned start = 771;
    std::mt19937_64 random(start);
    int overflows = 0;
    int ties = 0;
    for (int i = 0; i < 400000; ++i) {
        const qint64 a = RandomValue(random);
        const qint64 b = RandomValue(random);
        const std::string expected = SchoolProduct(a, b);
        ASSERT_EQ(ProductText(a, b), expected)
            << a << " times " << b << ", start " << start << ", step " << i;
        overflows += expected == "overflow" ? 1 : 0;
        ties += (a % 10000) * (b % 10000) % 10000 == 5000 ? 1 : 0;
    }
    // The comparison is worth something only if it met the hard cases.
    EXPECT_GT(overflows, 1000);
    EXPECT_GT(ties, 1000);
}

TEST(Currency, ReadsNumbersAsPeopleTypeThem)
{
    const struct
    {
        QString Text;
        qint64 Value;
    } cases[] = {
        {u"0"_s, 0}, {u"-0"_s, 0}, {u"+0"_s, 0}, {u"1"_s, 10000}, {u"007"_s, 70000},
        {u"7.5"_s, 75000}, {u"7.50"_s, 75000}, {u".5"_s, 5000}, {u"5."_s, 50000}, {u"-.5"_s, -5000},
        {u"+.5"_s, 5000}, {u"-5."_s, -50000}, {u"+12"_s, 120000}, {u"-12.34"_s, -123400},
        {u" 12"_s, 120000}, {u"12 "_s, 120000}, {u"   -12.3   "_s, -123000}, {u"1,234"_s, 12340000},
        {u"1,234.5"_s, 12345000}, {u"1,2,3,4"_s, 12340000},
        {u"12,34.5"_s, 12345000}, // commas need not stand at thousands
        {u"1,,2"_s, 120000}, {u"1,"_s, 10000}, {u"1,."_s, 10000}, {u"1,.5"_s, 15000},
        {u"1,,,"_s, 10000}, {u"-1,000"_s, -10000000}, {u"0.0001"_s, 1}, {u"0.00001"_s, 0},
        // Decimals past the fourth round half to even.
        {u"0.00005"_s, 0}, {u"0.00015"_s, 2}, {u"0.00025"_s, 2}, {u"0.00035"_s, 4},
        {u"-0.00015"_s, -2}, {u"-0.00025"_s, -2}, {u"0.000050"_s, 0},
        {u"0.000050000000000000000000"_s, 0}, {u"0.00005000000000000000000001"_s, 1},
        {u"0.000049999999999999999999"_s, 0}, {u"0.00014999999999"_s, 1}, {u"0.00016"_s, 2},
        {u"0.99995"_s, 10000}, {u"0.99994"_s, 9999}, {u"9.99995"_s, 100000},
        {u"1.23456789"_s, 12346}, {u"00000000000000000000000000000000000000000000001"_s, 10000},
        {u"0.00000000000000000000000000000000000000000001"_s, 0},
        // The ends of the range.
        {u"922337203685477.5807"_s, Most}, {u"922,337,203,685,477.5807"_s, Most},
        {u"-922337203685477.5808"_s, Least}, {u"922337203685477.58074999"_s, Most},
        {u"922337203685477.580650"_s, Most - 1},
        {u"-922337203685477.58085"_s, Least}, // half, and the last digit is even
    };
    for (const auto &each : cases)
        EXPECT_EQ(CurrencyFromText(each.Text), Scaled(each.Value)) << each.Text.toStdString();
}

TEST(Currency, ReadsNothingElse)
{
    const QString cases[] = {u""_s, u" "_s, u"."_s, u","_s, u"-"_s, u"+"_s, u"-."_s, u"+."_s,
        u"-,"_s, u",."_s, u",5"_s, u",1,000"_s, u"-,5"_s, u",.5"_s, u".,5"_s, u".5,"_s, u"1.5,0"_s,
        u"1.2.3"_s, u"1..2"_s, u"..5"_s, u"5.."_s, u"--5"_s, u"++5"_s, u"+-5"_s, u"-+5"_s, u"5-"_s,
        u"5+"_s, u"(5)"_s, u"- 5"_s, u"+ 5"_s, u"1 000"_s, u"1 .5"_s, u"1. 5"_s, u"$5"_s, u"5$"_s,
        u"€5"_s, u"5%"_s, u"1e3"_s, u"1E3"_s, u"1d3"_s, u"0x10"_s, u"&H10"_s, u"1_000"_s,
        u"1'000"_s, u"abc"_s, u"5a"_s, u"a5"_s, u"nan"_s, u"inf"_s, u"−5"_s /* minus sign */,
        u"５"_s, u"٥"_s, u"½"_s, u"²"_s, u"1٫5"_s, u"\t5"_s, u"5\n"_s, u"5\r\n"_s, u"\u00A05"_s,
        u"5\u2003"_s, QString(u"5"_s + QChar(u'\0')), QString(QChar(u'\0')),
        u"922337203685477.5808"_s, u"922337203685477.58075"_s, u"922337203685478"_s,
        u"-922337203685477.5809"_s, u"-922337203685477.58086"_s,
        u"9999999999999999999999999999999999999999999999999"_s,
        u"-9999999999999999999999999999999999999999999999999.9"_s, u"18446744073709551616"_s,
        u"340282366920938463463374607431768211456"_s};
    for (const QString &each : cases)
        EXPECT_EQ(CurrencyFromText(each), std::nullopt) << '"' << each.toStdString() << '"';
}

TEST(Currency, ReadsRandomTextsAsTheRuleSays)
{
    // The rule as a pattern: told apart by Qt's own engine, not by the code under test.
    const std::string alphabet = "0059,.+- ";
    std::mt19937_64 random(99);
    int numbers = 0;
    for (int i = 0; i < 200000; ++i) {
        QString text;
        for (quint64 length = random() % 8; length > 0; --length)
            text += QLatin1Char(alphabet[random() % alphabet.size()]);
        static const QRegularExpression rule(
            u"^ *[+-]?(?:[0-9][0-9,]*(?:\\.[0-9]*)?|\\.[0-9]+) *$"_s);
        const bool expected = rule.match(text).hasMatch();
        ASSERT_EQ(CurrencyFromText(text).has_value(), expected) << '"' << text.toStdString() << '"';
        numbers += expected ? 1 : 0;
    }
    EXPECT_GT(numbers, 5000);
}

TEST(Currency, OrdersByValue)
{
    EXPECT_LT(Scaled(Least), Scaled(-1));
    EXPECT_LT(Scaled(-1), Scaled(0));
    EXPECT_LT(Scaled(0), Scaled(Most));
    EXPECT_EQ(Currency::FromWhole(-3), Scaled(-30000));
    EXPECT_EQ(Currency::FromWhole(std::numeric_limits<qint32>::max()).Scaled(), 21474836470000);
    EXPECT_TRUE(Currency().IsZero());
}
