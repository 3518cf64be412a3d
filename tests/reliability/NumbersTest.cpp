// Numbers against an arithmetic of its own, which knows decimal digits and nothing of 64 or 128
// bits; and what happens to an entry whose numbers grow too large.

#include "platform/clsRunTimeError.h"
#include "platform/Currency.h"
#include "tests/reliability/ProgramOnDisk.h"
#include "tests/support/Soak.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <random>

using namespace Qt::StringLiterals;

namespace {

/// A number of any size, in digits of base 10,000, the lowest first: the value's last four
/// decimals are one of its digits.
class BigNumber
{
public:
    BigNumber() = default;
    explicit BigNumber(qint64 value)
        : m_negative(value < 0)
    {
        // A digit at a time, so that the most negative value needs no special case.
        for (; value != 0; value /= Base)
            m_digits.push_back(static_cast<quint32>(std::abs(value % Base)));
    }

    friend BigNumber operator*(const BigNumber &a, const BigNumber &b)
    {
        BigNumber product;
        product.m_negative = a.m_negative != b.m_negative;
        product.m_digits.assign(a.m_digits.size() + b.m_digits.size(), 0);
        for (size_t i = 0; i < a.m_digits.size(); ++i) {
            quint32 carry = 0;
            for (size_t j = 0; j < b.m_digits.size() || carry != 0; ++j) {
                quint32 sum = product.m_digits[i + j] + carry;
                if (j < b.m_digits.size())
                    sum += a.m_digits[i] * b.m_digits[j];
                product.m_digits[i + j] = sum % Base;
                carry = sum / Base;
            }
        }
        product.Trim();
        return product;
    }

    friend BigNumber operator+(const BigNumber &a, const BigNumber &b)
    {
        if (a.m_negative != b.m_negative)
            return a.IsSmaller(b) ? b.Without(a) : a.Without(b);
        BigNumber sum;
        sum.m_negative = a.m_negative;
        quint32 carry = 0;
        for (size_t i = 0; i < std::max(a.m_digits.size(), b.m_digits.size()) || carry != 0; ++i) {
            const quint32 digit = a.At(i) + b.At(i) + carry;
            sum.m_digits.push_back(digit % Base);
            carry = digit / Base;
        }
        return sum;
    }

    /// Without the last four decimals, rounded half to even.
    BigNumber RoundedByFourDecimals() const
    {
        BigNumber rounded;
        rounded.m_negative = m_negative;
        if (!m_digits.empty())
            rounded.m_digits.assign(m_digits.begin() + 1, m_digits.end());
        const bool up = At(0) > Base / 2 || (At(0) == Base / 2 && At(1) % 2 != 0);
        if (up) {
            BigNumber one(1);
            one.m_negative = m_negative;
            rounded = rounded + one;
        }
        rounded.Trim();
        return rounded;
    }

    QString Text() const
    {
        if (m_digits.empty())
            return u"0"_s;
        QString text = m_negative ? u"-"_s : QString();
        text += QString::number(m_digits.back());
        for (size_t i = m_digits.size() - 1; i-- > 0;)
            text += QString::number(m_digits[i]).rightJustified(4, u'0');
        return text;
    }

    bool FitsIn64Bits() const
    {
        static const BigNumber least(std::numeric_limits<qint64>::min());
        static const BigNumber most(std::numeric_limits<qint64>::max());
        return !(m_negative ? least : most).IsSmaller(*this);
    }

private:
    static constexpr qint32 Base = 10000;

    quint32 At(size_t place) const { return place < m_digits.size() ? m_digits[place] : 0; }
    bool IsSmaller(const BigNumber &other) const ///< without their signs
    {
        if (m_digits.size() != other.m_digits.size())
            return m_digits.size() < other.m_digits.size();
        return std::lexicographical_compare(
            m_digits.rbegin(), m_digits.rend(), other.m_digits.rbegin(), other.m_digits.rend());
    }
    BigNumber Without(const BigNumber &smaller) const
    {
        BigNumber difference = *this;
        quint32 borrowed = 0;
        for (size_t i = 0; i < m_digits.size(); ++i) {
            const quint32 taken = smaller.At(i) + borrowed;
            borrowed = m_digits[i] < taken ? 1 : 0;
            difference.m_digits[i] = m_digits[i] + borrowed * Base - taken;
        }
        difference.Trim();
        return difference;
    }
    void Trim()
    {
        while (!m_digits.empty() && m_digits.back() == 0)
            m_digits.pop_back();
        m_negative = m_negative && !m_digits.empty();
    }

    bool m_negative = false;
    std::vector<quint32> m_digits;
};

QString TextOf(const BigNumber &number)
{
    return number.FitsIn64Bits() ? number.Text() : u"overflow"_s;
}

/// What the arithmetic of the program makes of it.
template <class Calculation>
QString TextOf(Calculation &&calculation)
{
    try {
        return QString::number(calculation().Scaled());
    } catch (const clsRunTimeError &error) {
        return error.Number() == RunTimeErrors::Overflow ? u"overflow"_s : error.Description();
    }
}

constexpr qint64 Least = std::numeric_limits<qint64>::min();

} // namespace

TEST(Numbers, OfTheOracleAreRight)
{
    EXPECT_EQ(BigNumber(Least).Text(), u"-9223372036854775808"_s);
    EXPECT_EQ(
        (BigNumber(Least) * BigNumber(Least)).Text(), u"85070591730234615865843651857942052864"_s);
    EXPECT_EQ((BigNumber(12345) * BigNumber(-67890)).RoundedByFourDecimals().Text(), u"-83810"_s);
    EXPECT_EQ(BigNumber(25000).RoundedByFourDecimals().Text(), u"2"_s);
    EXPECT_EQ(BigNumber(-35000).RoundedByFourDecimals().Text(), u"-4"_s);
    EXPECT_EQ((BigNumber(100000000) + BigNumber(-1)).Text(), u"99999999"_s);
    EXPECT_EQ((BigNumber(-5) + BigNumber(5)).Text(), u"0"_s);
    EXPECT_TRUE(BigNumber(Least).FitsIn64Bits());
    EXPECT_FALSE((BigNumber(Least) + BigNumber(-1)).FitsIn64Bits());
}

TEST(Numbers, OfHoursRatesAndFactorsMultiplyAsOnPaper)
{
    std::mt19937_64 random(10'000);
    const auto upTo = [&](quint64 most) {
        const auto value = static_cast<qint64>(random() % (most + 1));
        return random() % 8 == 0 ? -value : value;
    };
    const int rounds = Rounds(200'000, 10'000'000);
    BigNumber paper;
    Currency sum;
    int overflows = 0;
    for (int i = 0; i < rounds; ++i) {
        // What the boxes take: two or five digits before the point; and a factor as the accounting
        // side may write it, once in a while without any bound.
        const qint64 hours = upTo(random() % 2 == 0 ? 99'9999 : 99'999'9999);
        const qint64 rate = upTo(99'999'9999);
        const bool isBounded = random() % 16 != 0;
        const qint64 factor = isBounded ? upTo(999'9999) : static_cast<qint64>(random());
        const BigNumber product = (BigNumber(hours) * BigNumber(rate)).RoundedByFourDecimals();
        const BigNumber amount = (product * BigNumber(factor)).RoundedByFourDecimals();
        const QString expected = TextOf(amount);
        const QString found = TextOf([&] {
            return (Currency::FromScaled(hours) * Currency::FromScaled(rate))
                * Currency::FromScaled(factor);
        });
        ASSERT_EQ(found, expected) << hours << " x " << rate << " x " << factor;
        overflows += expected == u"overflow"_s ? 1 : 0;

        const BigNumber longer = paper + amount;
        const Currency value
            = Currency::FromScaled(expected == u"overflow"_s ? 0 : expected.toLongLong());
        if (expected == u"overflow"_s)
            continue;
        ASSERT_EQ(TextOf([&] { return sum + value; }), TextOf(longer)) << "sum at " << i;
        if (longer.FitsIn64Bits()) {
            paper = longer;
            sum += value;
        } else {
            paper = BigNumber();
            sum = Currency();
        }
    }
    EXPECT_GT(overflows, rounds / 1000);
    TellCount("triples of hours, rate and factor", rounds);
    TellCount("of them too large", overflows);
}

TEST(Numbers, AreReadFromTwoHundredTexts)
{
    constexpr std::optional<qint64> None;
    struct Case
    {
        QString Text;
        std::optional<qint64> Value;
    };
    const Case cases[] = {
        {u"0"_s, 0},
        {u"-0"_s, 0},
        {u"+0"_s, 0},
        {u"1"_s, 10000},
        {u"-1"_s, -10000},
        {u"+1"_s, 10000},
        {u"007"_s, 70000},
        {u"7.5"_s, 75000},
        {u"7.50"_s, 75000},
        {u".5"_s, 5000},
        {u"5."_s, 50000},
        {u"-.5"_s, -5000},
        {u"+.5"_s, 5000},
        {u"-5."_s, -50000},
        {u"-12.34"_s, -123400},
        {u" 12"_s, 120000},
        {u"12 "_s, 120000},
        {u"   -12.3   "_s, -123000},
        {u"1,234"_s, 12340000},
        {u"1,234.5"_s, 12345000},
        {u"1,2,3,4"_s, 12340000},
        {u"12,34.5"_s, 12345000},
        {u"1,,2"_s, 120000},
        {u"1,"_s, 10000},
        {u"1,."_s, 10000},
        {u"1,.5"_s, 15000},
        {u"-1,000"_s, -10000000},
        {u"0.0001"_s, 1},
        {u"0.00001"_s, 0},
        {u"0.00005"_s, 0},
        {u"0.00015"_s, 2},
        {u"0.00025"_s, 2},
        {u"0.00035"_s, 4},
        {u"-0.00005"_s, 0},
        {u"-0.00015"_s, -2},
        {u"-0.00025"_s, -2},
        {u"0.000050"_s, 0},
        {u"0.00005000000000000000000001"_s, 1},
        {u"0.000049999999999999999999"_s, 0},
        {u"0.99995"_s, 10000},
        {u"0.99994"_s, 9999},
        {u"9.99995"_s, 100000},
        {u"1.23456789"_s, 12346},
        {u"00000000000000000000000000000000000001"_s, 10000},
        {u"922337203685477.5807"_s, 9223372036854775807LL},
        {u"922,337,203,685,477.5807"_s, 9223372036854775807LL},
        {u"-922337203685477.5808"_s, Least},
        {u"922337203685477.58074999"_s, 9223372036854775807LL},
        {u"922337203685477.580650"_s, 9223372036854775806LL},
        {u"-922337203685477.58085"_s, Least},
        {u"99999.99"_s, 999999900},
        {u"-99999.99"_s, -999999900},
        {u"9999999.999"_s, 99999999990LL},
        {u"24"_s, 240000},
        {u"24.00"_s, 240000},
        {u"0.25"_s, 2500},
        {u"0.1"_s, 1000},
        {u"0.2"_s, 2000},
        {u"0.3"_s, 3000},
        {u"1.005"_s, 10050},
        {u"2.675"_s, 26750},
        {u"1.00000000"_s, 10000},
        {u"100000000000000"_s, 1000000000000000000LL},
        {u"  0  "_s, 0},
        {u""_s, None},
        {u" "_s, None},
        {u"."_s, None},
        {u","_s, None},
        {u"-"_s, None},
        {u"+"_s, None},
        {u"-."_s, None},
        {u"+."_s, None},
        {u",5"_s, None},
        {u"-,5"_s, None},
        {u".5,"_s, None},
        {u"1.2.3"_s, None},
        {u"1..2"_s, None},
        {u"--5"_s, None},
        {u"+-5"_s, None},
        {u"5-"_s, None},
        {u"(5)"_s, None},
        {u"- 5"_s, None},
        {u"1 000"_s, None},
        {u"$5"_s, None},
        {u"5%"_s, None},
        {u"1e3"_s, None},
        {u"0x10"_s, None},
        {u"&H10"_s, None},
        {u"1'000"_s, None},
        {u"abc"_s, None},
        {u"5a"_s, None},
        {u"nan"_s, None},
        {u"inf"_s, None},
        {u"\u22125"_s, None},
        {u"\uFF15"_s, None},
        {u"\u0665"_s, None},
        {u"\u00BD"_s, None},
        {u"1\u066B5"_s, None},
        {u"\u00095"_s, None},
        {u"5\u0009"_s, None},
        {u"\u00A05"_s, None},
        {u"922337203685477.5808"_s, None},
        {u"922337203685477.58075"_s, None},
        {u"-922337203685477.5809"_s, None},
        {u"-922337203685477.58086"_s, None},
        {u"9999999999999999999999"_s, None},
        {u"18446744073709551616"_s, None},
        {u"1_000"_s, None},
        {u"\u00BC"_s, None},
        {u"\u0663"_s, None},
        {u"5\u2003"_s, None},
        {u"1.5,0"_s, None},
        {u"1/2"_s, None},
        {u"-6489.7211"_s, -64897211},
        {u"4.038854"_s, 40389},
        {u"3772105362912.04"_s, 37721053629120400LL},
        {u"-5095162008480.5195"_s, -50951620084805195LL},
        {u"30828374051.741840"_s, 308283740517418LL},
        {u"66633.3669"_s, 666333669},
        {u"30569.440107"_s, 305694401},
        {u"67207640011.5231"_s, 672076400115231LL},
        {u"7401301.425"_s, 74013014250LL},
        {u"3333837.51034"_s, 33338375103LL},
        {u"-3126455217966.470"_s, -31264552179664700LL},
        {u"4.50545"_s, 45054},
        {u"890.914937"_s, 8909149},
        {u"-78487.25"_s, -784872500},
        {u"1953288141"_s, 19532881410000LL},
        {u"599214.17363"_s, 5992141736LL},
        {u"-94"_s, -940000},
        {u"559.79"_s, 5597900},
        {u"2003.84637"_s, 20038464},
        {u"8059.036"_s, 80590360},
        {u"57423300.373"_s, 574233003730LL},
        {u"-3"_s, -30000},
        {u"447894991.425"_s, 4478949914250LL},
        {u"9.60761"_s, 96076},
        {u"9601681.254"_s, 96016812540LL},
        {u"45709163358.6834567"_s, 457091633586835LL},
        {u"85.3069"_s, 853069},
        {u"61.2797"_s, 612797},
        {u"877111956827.032094"_s, 8771119568270321LL},
        {u"48.380329"_s, 483803},
        {u"494414.87010917"_s, 4944148701LL},
        {u"148994257.0518"_s, 1489942570518LL},
        {u"1.1876"_s, 11876},
        {u"7973.6111"_s, 79736111},
        {u"6158782327.71347"_s, 61587823277135LL},
        {u"2808119.5"_s, 28081195000LL},
        {u"-45956791335714.75"_s, -459567913357147500LL},
        {u"639.20418179"_s, 6392042},
        {u"-32942557.64532009"_s, -329425576453LL},
        {u"489715.94879976"_s, 4897159488LL},
        {u"370.5261"_s, 3705261},
        {u"2671973998.45"_s, 26719739984500LL},
        {u"1531.16255"_s, 15311626},
        {u"24296.90"_s, 242969000},
        {u"866778225.1"_s, 8667782251000LL},
        {u"507.91"_s, 5079100},
        {u"-5328595258782.6"_s, -53285952587826000LL},
        {u"3021893841.453"_s, 30218938414530LL},
        {u"989783304830.68654"_s, 9897833048306865LL},
        {u"33726697.287895"_s, 337266972879LL},
        {u"2618127.817594"_s, 26181278176LL},
        {u"81.7912"_s, 817912},
        {u"-768.2"_s, -7682000},
        {u"9034456.40832130"_s, 90344564083LL},
        {u"-64232.4"_s, -642324000},
        {u"7108941227.21"_s, 71089412272100LL},
        {u"777073949.82862"_s, 7770739498286LL},
        {u"1110.6224"_s, 11106224},
        {u"325193167.652606"_s, 3251931676526LL},
        {u"0.4212"_s, 4212},
        {u"-70"_s, -700000},
        {u"8.2765289"_s, 82765},
        {u"5845.4"_s, 58454000},
        {u"28483999474.499475"_s, 284839994744995LL},
        {u"5561523926621.1"_s, 55615239266211000LL},
        {u"66688353144"_s, 666883531440000LL},
        {u"-45252.7"_s, -452527000},
        {u"763437206.30315924"_s, 7634372063032LL},
        {u"65.01394900"_s, 650139},
        {u"3.5354696"_s, 35355},
        {u"1.88"_s, 18800},
        {u"27208.65230764"_s, 272086523},
        {u"972752.659344"_s, 9727526593LL},
        {u"-283007001.9"_s, -2830070019000LL},
        {u"40996.12"_s, 409961200},
        {u"9679140325.3"_s, 96791403253000LL},
        {u"45722053620.0793213"_s, 457220536200793LL},
        {u"-339409300.4"_s, -3394093004000LL},
        {u"93123806090967.20"_s, 931238060909672000LL},
        {u"611014622734.95"_s, 6110146227349500LL},
        {u"84911680189.52230"_s, 849116801895223LL},
        {u"0.47"_s, 4700},
        {u"50.798"_s, 507980},
        {u"57713546.60022534"_s, 577135466002LL},
        {u"3187.95658"_s, 31879566},
        {u"203359116505.8"_s, 2033591165058000LL},
        {u"-3131"_s, -31310000},
    };
    static_assert(std::size(cases) == 200);
    for (const Case &each : cases) {
        const std::optional<Currency> found = CurrencyFromText(each.Text);
        EXPECT_EQ(found ? std::optional(found->Scaled()) : None, each.Value)
            << '"' << each.Text.toStdString() << '"';
    }
}

TEST(Numbers, ThatGrowTooLargeAreRefusedWithTheReasonAndTheEntryStays)
{
    const QTemporaryDir folder(SampleFolderTemplate());
    SampleCompany company;
    company.Options.Billing_Option_Switch = u"Y"_s;
    company.Employee.Rate_Permission = u"4"_s;
    company.Multipliers.push_back(SampleMultiplier(
        u"09"_s, u"Beyond"_s, Currency::FromScaled(std::numeric_limits<qint64>::max())));
    company.Entries = ProgramOnDisk::MadeEntries();
    company.Entries->at(0).Billing_Option = u"6"_s; // has a multiplier
    BuildSampleCompanies(folder.path(), {company});
    ProgramOnDisk program(folder.path());
    program.StartUp();
    program.ClickRow(1);
    program.TypeInto("txtMultiplierCode", u"9"_s);
    program.TypeInto("txtDescription", u"typed with care"_s); // leaves the multiplier's box
    EXPECT_THAT(program.Failures(), testing::Each(u"Error #6 (Overflow)."_s));
    EXPECT_FALSE(program.Failures().isEmpty());
    program.Click("cmdOK");
    // Whatever the user does with it, hours, rate, factor and amount belong together.
    for (const EntryRecord &entry : StoredEntries(folder.path()))
        EXPECT_EQ(TextOf([&] { return entry.Hours * entry.Rate * entry.Multiplier_Factor; }),
            QString::number(entry.Amount.Scaled()));
    // The multiplier that cannot be used has left no trace in the entry.
    const EntryRecord before = company.Entries->at(0);
    const EntryRecord stored = StoredEntries(folder.path()).at(0);
    EXPECT_EQ(stored.Multiplier_Number, before.Multiplier_Number);
    EXPECT_EQ(stored.Multiplier_Factor, before.Multiplier_Factor);
    EXPECT_EQ(stored.Hours, Currency::FromWhole(2));
    EXPECT_EQ(stored.Rate, before.Rate);
    EXPECT_EQ(stored.Amount, before.Amount);
    EXPECT_EQ(stored.Description, u"typed with care"_s);
}
