#include "platform/Currency.h"

#include "platform/clsRunTimeError.h"

#include <array>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

__extension__ using Int128 = __int128;

Currency Narrowed(Int128 scaled)
{
    if (scaled > std::numeric_limits<qint64>::max() || scaled < std::numeric_limits<qint64>::min())
        throw clsRunTimeError(RunTimeErrors::Overflow, u"Currency"_s, u"Overflow"_s);
    return Currency::FromScaled(static_cast<qint64>(scaled));
}

Int128 DividedHalfToEven(Int128 value, Int128 divisor)
{
    const Int128 quotient = value / divisor;
    const Int128 remainder = value % divisor;
    const Int128 twice = (remainder < 0 ? -remainder : remainder) * 2;
    const bool away = twice > divisor || (twice == divisor && quotient % 2 != 0);
    if (!away)
        return quotient;
    return value < 0 ? quotient - 1 : quotient + 1;
}

bool IsDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

QStringView WithoutBlanksAround(QStringView text)
{
    while (text.startsWith(u' '))
        text = text.mid(1);
    while (text.endsWith(u' '))
        text.chop(1);
    return text;
}

/// The digits of a number already stripped of blanks and sign, scaled; nothing when malformed.
std::optional<Int128> ScaledDigits(QStringView text)
{
    constexpr Int128 beyondEveryValue = Int128(1) << 100;
    Int128 scaled = 0;
    int digits = 0;
    int decimals = -1; // -1: still before the point
    bool below = false; // something other than zero follows the first dropped decimal
    int dropped = -1; // the first decimal past the fourth
    for (const QChar c : text) {
        if (c == u'.') {
            if (decimals >= 0)
                return {};
            decimals = 0;
        } else if (c == u',') {
            if (decimals >= 0 || digits == 0)
                return {};
        } else if (IsDigit(c)) {
            ++digits;
            const int digit = c.unicode() - u'0';
            if (decimals < 4) {
                scaled = scaled * 10 + digit;
                decimals += decimals >= 0 ? 1 : 0;
            } else if (dropped < 0) {
                dropped = digit;
            } else {
                below = below || digit != 0;
            }
            if (scaled > beyondEveryValue)
                scaled = beyondEveryValue;
        } else {
            return {};
        }
    }
    if (digits == 0)
        return {};
    for (int i = qMax(decimals, 0); i < 4; ++i)
        scaled *= 10;
    if (dropped > 5 || (dropped == 5 && (below || scaled % 2 != 0)))
        ++scaled;
    return scaled;
}

} // namespace

Currency operator+(Currency a, Currency b)
{
    return Narrowed(Int128(a.m_scaled) + b.m_scaled);
}

Currency operator-(Currency a, Currency b)
{
    return Narrowed(Int128(a.m_scaled) - b.m_scaled);
}

Currency operator*(Currency a, Currency b)
{
    return Narrowed(DividedHalfToEven(Int128(a.m_scaled) * b.m_scaled, Currency::Scale));
}

qint64 RoundedTo(Currency value, int decimals)
{
    constexpr std::array<qint64, 5> droppedUnit = {10000, 1000, 100, 10, 1};
    const qint64 unit = droppedUnit.at(static_cast<size_t>(decimals));
    const qint64 dropped = value.Scaled() % unit;
    const qint64 kept = value.Scaled() / unit;
    if (unit > 1 && dropped * 2 >= unit)
        return kept + 1;
    return unit > 1 && dropped * 2 <= -unit ? kept - 1 : kept;
}

QString FormatCurrency(Currency value, int decimals, LeadingZero leadingZero, QChar decimalSign)
{
    constexpr std::array<quint64, 5> unitsPerWhole = {1, 10, 100, 1000, 10000};
    const quint64 perWhole = unitsPerWhole.at(static_cast<size_t>(decimals));
    const qint64 rounded = RoundedTo(value, decimals);
    // Negating in unsigned arithmetic also holds for the most negative value.
    const quint64 magnitude
        = rounded < 0 ? 0 - static_cast<quint64>(rounded) : static_cast<quint64>(rounded);
    const quint64 whole = magnitude / perWhole;

    QString text;
    if (rounded < 0)
        text += u'-';
    if (whole != 0 || leadingZero == LeadingZero::Yes || decimals == 0)
        text += QString::number(whole);
    if (decimals > 0) {
        text += decimalSign;
        text += QString::number(magnitude % perWhole).rightJustified(decimals, u'0');
    }
    return text;
}

std::optional<Currency> CurrencyFromText(QStringView text)
{
    QStringView digits = WithoutBlanksAround(text);
    const bool negative = digits.startsWith(u'-');
    if (negative || digits.startsWith(u'+'))
        digits = digits.mid(1);
    const std::optional<Int128> scaled = ScaledDigits(digits);
    if (!scaled)
        return {};
    const Int128 value = negative ? -*scaled : *scaled;
    if (value > std::numeric_limits<qint64>::max() || value < std::numeric_limits<qint64>::min())
        return {};
    return Currency::FromScaled(static_cast<qint64>(value));
}
