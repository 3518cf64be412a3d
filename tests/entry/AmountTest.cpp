// Hours, rate and amount: what is typed, what is computed and what is shown.

#include "tests/entry/EntryRules.h"

using namespace Qt::StringLiterals;
using enum EntryControl;

namespace {

constexpr Currency Scaled(qint64 tenThousandths)
{
    return Currency::FromScaled(tenThousandths);
}

class Amount : public EntryRules
{
protected:
    void Set(Currency hours, Currency rate, Currency factor)
    {
        Entry.Hours = hours;
        Entry.Rate = rate;
        Entry.MultiplierFactor = factor;
        Rules().RecalcAmount();
    }

    void EnterAmount(const QString &text)
    {
        Type(txtAmount, text);
        Rules().ApplyAmountText();
    }

    void StartExpense()
    {
        Start();
        EnterActivity(u"MILES"_s);
    }
};

} // namespace

TEST_F(Amount, IsHoursTimesRateTimesFactor)
{
    struct Row
    {
        const char *Name;
        Currency Hours, Rate, Factor, Amount;
        QString Shown, RateShown, FactorShown;
    };
    const std::vector<Row> rows = {
        {"plain", Money(1, 50), Money(100), Money(1, 25), Scaled(1875000), u"187.50"_s,
            u"125.000"_s, u"1.2500"_s},
        {"nothing", {}, {}, Money(1), {}, u".00"_s, u".000"_s, u"1.0000"_s},
        {"a rate of one half", Money(1), Money(0, 50), Money(1), Scaled(5000), u".50"_s, u".500"_s,
            u"1.0000"_s},
        {"four decimals are kept", Money(0, 25), Scaled(333333), Money(1), Scaled(83333), u"8.33"_s,
            u"33.333"_s, u"1.0000"_s},
        {"half a ten-thousandth goes to the even one below", Scaled(100), Scaled(50), Money(1), {},
            u".00"_s, u".005"_s, u"1.0000"_s},
        {"half a ten-thousandth goes to the even one above", Scaled(300), Scaled(50), Money(1),
            Scaled(2), u".00"_s, u".005"_s, u"1.0000"_s},
        {"hours and rate are multiplied first", Scaled(100), Scaled(40), Money(2, 50), {}, u".00"_s,
            u".010"_s, u"2.5000"_s},
        {"shown half away from zero", Money(1), Scaled(50), Money(1), Scaled(50), u".01"_s,
            u".005"_s, u"1.0000"_s},
        {"negative", Money(-2), Money(10), Money(1, 50), Money(-30), u"-30.00"_s, u"15.000"_s,
            u"1.5000"_s},
        {"a factor of nothing", Money(2), Money(10), {}, {}, u".00"_s, u".000"_s, u".0000"_s},
        {"large, without groups", Scaled(999999900), Scaled(999999990), Money(1),
            Scaled(99999989000000), u"9999998900.00"_s, u"99999.999"_s, u"1.0000"_s},
    };
    Start();
    for (const Row &row : rows) {
        SCOPED_TRACE(row.Name);
        Set(row.Hours, row.Rate, row.Factor);
        EXPECT_EQ(Entry.Amount, row.Amount);
        EXPECT_EQ(Entry.Rate, row.Rate); // only its box shows the product
        EXPECT_EQ(Text(txtAmount), row.Shown);
        EXPECT_EQ(Text(txtRate), row.RateShown);
        EXPECT_EQ(Text(txtMultiplierFactor), row.FactorShown);
    }
}

TEST_F(Amount, OfAnExpenseIsNeverMultiplied)
{
    StartExpense();
    Entry.MultiplierCode = u"10"_s;
    Set(Money(10), Money(0, 45), Money(2));
    EXPECT_EQ(Entry.MultiplierFactor, Money(1));
    EXPECT_EQ(Entry.Amount, Money(4, 50));
    EXPECT_EQ(Entry.MultiplierCode, u"10"_s);
}

TEST_F(Amount, HoursAreTakenFromTheirText)
{
    struct Row
    {
        QString Typed;
        Currency Hours;
        QString Shown;
    };
    const std::vector<Row> rows = {
        {u"7.5"_s, Money(7, 50), u"7.50"_s}, {u""_s, {}, u".00"_s}, {u"."_s, {}, u".00"_s},
        {u".5"_s, Money(0, 50), u".50"_s}, {u"5."_s, Money(5), u"5.00"_s},
        {u"-5"_s, Money(-5), u"-5.00"_s}, {u"+5"_s, Money(5), u"5.00"_s},
        {u" 5 "_s, Money(5), u"5.00"_s}, {u"1,234"_s, Money(1234), u"1234.00"_s},
        {u"12,34.5"_s, Money(1234, 50), u"1234.50"_s}, {u"1,"_s, Money(1), u"1.00"_s},
        {u"1.005"_s, Scaled(10050), u"1.01"_s}, // rounded away from zero where it is shown
        {u"1.00005"_s, Scaled(10000), u"1.00"_s}, // to the even one where it is taken
    };
    Start();
    Set(Money(1), Money(10), Money(1));
    for (const Row &row : rows) {
        SCOPED_TRACE(row.Typed.toStdString());
        EnterHours(row.Typed);
        EXPECT_EQ(Entry.Hours, row.Hours);
        EXPECT_EQ(Text(txtHours), row.Shown);
        EXPECT_EQ(Entry.Amount, row.Hours * Money(10));
    }
}

TEST_F(Amount, HoursThatAreNoNumberStayAsTheyWere)
{
    Start();
    EnterHours(u"3"_s);
    for (const QString &text : {u"x"_s, u"1.2.3"_s, u"-"_s, u"1E2"_s, u"5-"_s, u",5"_s, u"1.2,3"_s,
             u"- 5"_s, u"999999999999999999"_s}) {
        SCOPED_TRACE(text.toStdString());
        EnterHours(text);
        EXPECT_EQ(Entry.Hours, Money(3));
        EXPECT_EQ(Text(txtHours), u"3.00"_s);
    }
}

TEST_F(Amount, HoursWithMoreDecimalsThanTheirBoxShowsAreCutWhenItIsTaken)
{
    EntryRecord record = FullEntry();
    record.Hours = Scaled(13333);
    StartWith({record});
    Rules().ApplyHoursText();
    EXPECT_EQ(Entry.Hours, Money(1, 33));
    EXPECT_FALSE(Rules().Changed); // leaving a box is no edit
}

TEST_F(Amount, ATypedRateCancelsTheMultiplier)
{
    Start();
    EnterCodes(u"0100"_s, u""_s, u"CONS"_s);
    EnterHours(u"2"_s);
    EnterMultiplier(u"05"_s);
    EnterRate(u"80"_s);
    EXPECT_EQ(Entry.Rate, Money(80));
    EXPECT_EQ(Entry.MultiplierCode, QString());
    EXPECT_EQ(Entry.MultiplierFactor, Money(1));
    EXPECT_EQ(Entry.RateOverridden, u"Y"_s);
    EXPECT_EQ(Text(txtRate), u"80.000"_s);
    EXPECT_EQ(Text(txtMultiplierCode), QString());
    EXPECT_EQ(Text(txtMultiplierFactor), u"1.0000"_s);
    EXPECT_EQ(Text(txtAmount), u"160.00"_s);
}

TEST_F(Amount, AnEmptyRateIsZero)
{
    Start();
    EnterRate(QString());
    EXPECT_EQ(Entry.Rate, Money(0));
    EXPECT_EQ(Text(txtRate), u".000"_s);
}

TEST_F(Amount, ARateTakesSignsAndCommas)
{
    Start();
    EnterRate(u"1,250.125"_s);
    EXPECT_EQ(Entry.Rate, Scaled(12501250));
    EXPECT_EQ(Text(txtRate), u"1250.125"_s);
    EnterRate(u"-.5"_s);
    EXPECT_EQ(Text(txtRate), u"-.500"_s);
}

TEST_F(Amount, ARateThatIsNoNumberPutsBackTheTextShownBeforeAndKeepsTheMultiplier)
{
    Start();
    EnterCodes(u"0100"_s, u""_s, u"CONS"_s);
    EnterMultiplier(u"05"_s);
    for (const QString &text : {u"."_s, u"-"_s, u"x"_s}) {
        SCOPED_TRACE(text.toStdString());
        EnterRate(text);
        EXPECT_EQ(Text(txtRate), u"112.500"_s);
        EXPECT_EQ(Entry.Rate, Money(90));
        EXPECT_EQ(Entry.MultiplierCode, u"05"_s);
        EXPECT_EQ(Entry.RateOverridden, u"N"_s);
    }
    EXPECT_TRUE(Messages.Texts().isEmpty());
}

TEST_F(Amount, ATypedAmountStandsAsTyped)
{
    StartExpense();
    EnterHours(u"10"_s);
    EnterAmount(u"99.5"_s);
    EXPECT_EQ(Entry.Amount, Money(99, 50));
    EXPECT_EQ(Text(txtAmount), u"99.50"_s);
    EXPECT_EQ(Entry.Hours, Money(10));
    EXPECT_EQ(Entry.Rate, Money(0, 45));
    EXPECT_EQ(Text(txtRate), u".450"_s);
}

TEST_F(Amount, AnEmptyAmountIsZero)
{
    StartExpense();
    EnterHours(u"10"_s);
    EnterAmount(QString());
    EXPECT_EQ(Entry.Amount, Money(0));
    EXPECT_EQ(Text(txtAmount), u".00"_s);
}

TEST_F(Amount, ALonePointIsNoAmountUnlikeHours)
{
    StartExpense();
    EnterHours(u"10"_s);
    EnterAmount(u"."_s);
    EXPECT_EQ(Entry.Amount, Money(4, 50));
    EXPECT_EQ(Text(txtAmount), u"4.50"_s);
}

TEST_F(Amount, TheNextChangeOfHoursReplacesATypedAmount)
{
    StartExpense();
    EnterHours(u"10"_s);
    EnterAmount(u"99.5"_s);
    EnterHours(u"20"_s);
    EXPECT_EQ(Entry.Amount, Money(9));
}
