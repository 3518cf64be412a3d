#include "exchange/CellRules.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr Currency LargestAmount = Currency::FromScaled(9'999'999'999'999);
constexpr qsizetype MostDecimals = 4;

bool IsControl(QChar c)
{
    return c.unicode() < 32 || c.unicode() == 127;
}

QString CodeProblem(const QString &code, int width)
{
    if (code.isEmpty())
        return u"the code is empty"_s;
    if (code.size() > width)
        return u"the code \""_s + code + u"\" is longer than "_s + QString::number(width)
            + u" characters"_s;
    if (code.startsWith(u' ') || code.endsWith(u' '))
        return u"the code \""_s + code + u"\" begins or ends with a blank"_s;
    if (std::any_of(code.begin(), code.end(), IsControl))
        return u"the code holds a control character"_s;
    return {};
}

QString DigitProblem(const QString &cell, QChar first, QChar last)
{
    if (cell.size() == 1 && cell.front() >= first && cell.front() <= last)
        return {};
    return u"\""_s + cell + u"\" is none of the digits "_s + first + u" to "_s + last;
}

} // namespace

QString CellRule::Problem(const QString &cell) const
{
    switch (What) {
    case Kind::Text:
    case Kind::Amount:
        return {};
    case Kind::Code:
        return CodeProblem(cell, Width);
    case Kind::OptionalCode:
        return cell.isEmpty() ? QString() : CodeProblem(cell, Width);
    case Kind::CompanyCode: {
        const QString problem = CodeProblem(cell, Width);
        if (!problem.isEmpty() || IsUsableCompanyCode(cell))
            return problem;
        return u"the code \""_s + cell + u"\" cannot be a part of a file's name"_s;
    }
    case Kind::Flag:
        return cell == "Y"_L1 || cell == "N"_L1 ? QString()
                                                : u"\""_s + cell + u"\" is neither Y nor N"_s;
    case Kind::Digit:
        return DigitProblem(cell, First, Last);
    case Kind::OptionalDigit:
        return cell.isEmpty() ? QString() : DigitProblem(cell, First, Last);
    }
    return {};
}

bool IsUsableCompanyCode(const QString &code)
{
    // "Global" & "Options-" would be the name of the database of the global options.
    if (code.compare("Global"_L1, Qt::CaseInsensitive) == 0)
        return false;
    // Windows drops dots and blanks at the end; "." and ".." end with a dot too.
    if (!CodeProblem(code, CellRules::CompanyCode.Width).isEmpty() || code.endsWith(u'.'))
        return false;
    constexpr QStringView inNoFileName = u"/\\<>:\"|?*";
    return std::none_of(
        code.begin(), code.end(), [&](QChar c) { return inNoFileName.contains(c); });
}

std::optional<Currency> AmountFromCell(const QString &cell)
{
    // What people may type is not what another program may write: there a comma is a decimal sign
    // that went wrong, and a fifth decimal a value that would be changed silently.
    const auto isWritten = [](QChar c) { return (c >= u'0' && c <= u'9') || c == u'.'; };
    if (!std::all_of(cell.begin(), cell.end(), isWritten))
        return {};
    const qsizetype point = cell.indexOf(u'.');
    if (point >= 0 && cell.size() - point - 1 > MostDecimals)
        return {};
    const std::optional<Currency> amount = CurrencyFromText(cell);
    return amount && *amount <= LargestAmount ? amount : std::nullopt;
}
