#include "entry/clsM90Mask.h"

#include "platform/Currency.h"

#include <algorithm>

void clsM90Mask::SetMask(int integerDigits, int decimalDigits)
{
    m_integerDigits = integerDigits;
    m_decimalDigits = decimalDigits;
}

clsM90Mask::Fault clsM90Mask::Judge(const QString &text) const
{
    if (text.isEmpty() || text == QLatin1String("."))
        return Fault::None;
    const qsizetype point = text.indexOf(u'.');
    const qsizetype integers = point < 0 ? text.size() : point;
    const qsizetype decimals = point < 0 ? 0 : text.size() - point - 1;
    if (text.count(u'.') > 1 || decimals > m_decimalDigits || integers > m_integerDigits)
        return Fault::OutOfShape;
    return CurrencyFromText(text) ? Fault::None : Fault::NoNumber;
}

clsM90Mask::Verified clsM90Mask::gVerify_Change(const QString &text, int caret)
{
    const int before = std::max(caret - 1, 0);
    switch (Judge(text)) {
    case Fault::None:
        m_lastGood = text;
        return {text, caret};
    case Fault::OutOfShape:
        return {m_lastGood, before};
    case Fault::NoNumber:
        break;
    }
    const QString zero = FormatCurrency(Currency(), m_decimalDigits, LeadingZero::No);
    // The box's new text is checked in its turn, and is good.
    m_lastGood = zero;
    return {zero, before};
}
