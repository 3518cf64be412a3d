#pragma once

#include <QString>

#include <compare>
#include <optional>

/// An amount, rate, factor or number of hours: a signed 64-bit integer scaled by 10,000.
///
/// Units:  7.5 hours are 75000 ten-thousandths.
/// Errors: arithmetic beyond the range raises clsRunTimeError 6 ("Overflow"); nothing ever wraps.
class Currency
{
public:
    static constexpr qint64 Scale = 10000;

    constexpr Currency() = default;
    static constexpr Currency FromScaled(qint64 tenThousandths) { return Currency(tenThousandths); }
    /// \pre the whole number fits, which every literal does.
    static constexpr Currency FromWhole(qint32 whole) { return Currency(whole * Scale); }

    constexpr qint64 Scaled() const { return m_scaled; }
    constexpr bool IsZero() const { return m_scaled == 0; }

    friend constexpr bool operator==(Currency, Currency) = default;
    friend constexpr std::strong_ordering operator<=>(Currency, Currency) = default;

    friend Currency operator+(Currency a, Currency b);
    friend Currency operator-(Currency a, Currency b);
    /// Rounded half to even at the fourth decimal; the product itself is formed in 128 bits.
    friend Currency operator*(Currency a, Currency b);
    Currency &operator+=(Currency other) { return *this = *this + other; }

private:
    constexpr explicit Currency(qint64 scaled)
        : m_scaled(scaled)
    {
    }

    qint64 m_scaled = 0;
};

/// The value in units of its last decimal (0 to 4 of them), rounded half away from zero: what
/// FormatCurrency shows.
qint64 RoundedTo(Currency value, int decimals);

/// Whether a value below 1 shows a digit before the decimal sign: "0.50" or ".50".
enum class LeadingZero
{
    Yes,
    No
};

/// A fixed number of decimals (0 to 4), rounded half away from zero, no grouping, "-" for what
/// is still negative after rounding.
QString FormatCurrency(
    Currency value, int decimals, LeadingZero leadingZero, QChar decimalSign = QLatin1Char('.'));

/// The value of a typed number, or nothing when the text is none or is out of range.
///
/// Accepted: blanks around, one leading sign, digits, commas among or after the integer digits
/// (ignored), at most one ".", at least one digit. Decimals past the fourth round half to even.
std::optional<Currency> CurrencyFromText(QStringView text);
