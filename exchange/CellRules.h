#pragma once

#include "platform/Currency.h"

#include <QString>

#include <optional>

/// What the cells of a column may hold.
///
/// Every rule answers with what is wrong, an empty text when nothing is; the reader of the table
/// adds column, file and line.
struct CellRule
{
    enum class Kind
    {
        Text, ///< anything
        Term, ///< a word for a thing, 1 to `Width` characters
        Code, ///< 1 to `Width` characters, all of them visible
        TypedCode, ///< the same, as a user types it: without lower-case letters
        OptionalCode, ///< a code, or nothing
        CompanyCode, ///< a code that can be a folder's name and a part of a file's name
        Flag, ///< "Y" or "N"
        Digit, ///< `First` to `Last`
        OptionalDigit, ///< the same, or nothing
        Amount ///< a number, see AmountFromCell
    };

    Kind What = Kind::Text;
    int Width = 0;
    QChar First;
    QChar Last;

    QString Problem(const QString &cell) const;
};

namespace CellRules {
constexpr CellRule Text = {};
/// What captions and messages have space for.
constexpr CellRule Term = {CellRule::Kind::Term, 40, {}, {}};
constexpr CellRule CompanyCode = {CellRule::Kind::CompanyCode, 30, {}, {}};
constexpr CellRule Flag = {CellRule::Kind::Flag, 0, {}, {}};
constexpr CellRule Amount = {CellRule::Kind::Amount, 0, {}, {}};
constexpr CellRule Code(int width)
{
    return {CellRule::Kind::Code, width, {}, {}};
}
constexpr CellRule TypedCode(int width)
{
    return {CellRule::Kind::TypedCode, width, {}, {}};
}
constexpr CellRule OptionalCode(int width)
{
    return {CellRule::Kind::OptionalCode, width, {}, {}};
}
constexpr CellRule Digit(char16_t first, char16_t last)
{
    return {CellRule::Kind::Digit, 0, first, last};
}
constexpr CellRule OptionalDigit(char16_t first, char16_t last)
{
    return {CellRule::Kind::OptionalDigit, 0, first, last};
}
} // namespace CellRules

/// Whether a company code can name the company's folder and begin the names of its databases, on
/// every system that the program runs on.
bool IsUsableCompanyCode(const QString &code);

/// The number in a cell: digits with "." as the decimal sign, at most four decimals, 0 to
/// 999999999.9999; nothing for anything else. No rate, cost or factor is below zero, and the upper
/// bound leaves room for what the entry window multiplies them with.
std::optional<Currency> AmountFromCell(const QString &cell);
