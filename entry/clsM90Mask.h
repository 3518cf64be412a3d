#pragma once

#include <QString>

/// How many characters a quantity box takes left and right of its point.
struct QuantityMask
{
    int IntegerDigits = 0;
    int DecimalDigits = 0;
};

namespace QuantityMasks {
constexpr QuantityMask Hours = {2, 2};
constexpr QuantityMask Units = {5, 2};
constexpr QuantityMask Rate = {5, 3};
constexpr QuantityMask Amount = {8, 2};
} // namespace QuantityMasks

/// Keeps a numeric text field to decimal numbers of a bounded size: text that breaks the mask is
/// replaced by the last good text.
///
/// Units: characters, not digits; a sign or a separator left of the point counts too.
class clsM90Mask
{
public:
    /// What the box shows after the check.
    struct Verified
    {
        QString Text;
        int Caret = 0;
    };

    /// What the box may hold; the last good text stays.
    void SetMask(int integerDigits, int decimalDigits);

    /// Called after every change that the user makes, with the box's text and caret.
    Verified gVerify_Change(const QString &text, int caret);

    /// Takes the text as good without judging it; what the program itself wrote into the box.
    void TakeAsGood(const QString &text) { m_lastGood = text; }

private:
    enum class Fault
    {
        None,
        OutOfShape, ///< two points, or too many characters
        NoNumber
    };
    Fault Judge(const QString &text) const;

    QString m_lastGood;
    int m_integerDigits = 0;
    int m_decimalDigits = 0;
};
