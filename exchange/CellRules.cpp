#include "exchange/CellRules.h"

#include "exchange/PrintableText.h"

#include <QList>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr Currency LargestAmount = Currency::FromScaled(9'999'999'999'999);
constexpr qsizetype MostDecimals = 4;

QString LengthProblem(const QString &text, const QString &what, int width)
{
    if (text.isEmpty())
        return u"the "_s + what + u" is empty"_s;
    if (text.size() > width)
        return u"the "_s + what + u' ' + QuotedCell(text) + u" is longer than "_s
            + QString::number(width) + u" characters"_s;
    return {};
}

QString CodeProblem(const QString &code, int width)
{
    const QString problem = LengthProblem(code, u"code"_s, width);
    if (!problem.isEmpty())
        return problem;
    if (code.startsWith(u' ') || code.endsWith(u' '))
        return u"the code "_s + QuotedCell(code) + u" begins or ends with a space"_s;
    for (const char32_t c : code.toUcs4()) {
        if (IsInvisible(c))
            return u"the code "_s + QuotedCell(code) + u" has the invisible character "_s
                + CodePointName(c) + u"; write it without"_s;
    }
    return {};
}

/// The window turns these letters, and no others, into upper case while they are typed.
bool IsLowerCase(QChar c)
{
    return c >= u'a' && c <= u'z';
}

QString TypedCodeProblem(const QString &code, int width)
{
    const QString problem = CodeProblem(code, width);
    if (!problem.isEmpty() || std::none_of(code.begin(), code.end(), IsLowerCase))
        return problem;
    QString typed = code;
    for (QChar &c : typed)
        c = IsLowerCase(c) ? c.toUpper() : c;
    return u"the code "_s + QuotedCell(code)
        + u" has lower-case letters, which cannot be typed in Worklog Remote; write "_s
        + QuotedCell(typed);
}

/// Windows takes these for devices, whatever follows behind a dot.
bool IsReservedByWindows(const QString &code)
{
    static const QRegularExpression names(
        u"^(CON|PRN|AUX|NUL|CONIN\\$|CONOUT\\$|(COM|LPT)[0-9\u00B9\u00B2\u00B3]) *(\\.|$)"_s,
        QRegularExpression::CaseInsensitiveOption);
    return names.match(code).hasMatch();
}

QString DigitProblem(const QString &cell, QChar first, QChar last)
{
    if (cell.size() == 1 && cell.front() >= first && cell.front() <= last)
        return {};
    return QuotedCell(cell) + u" is none of the digits "_s + first + u" to "_s + last;
}

} // namespace

QString CellRule::Problem(const QString &cell) const
{
    switch (What) {
    case Kind::Text:
    case Kind::Amount:
        return {};
    case Kind::Term:
        return LengthProblem(cell.trimmed(), u"term"_s, Width);
    case Kind::TypedCode:
        return TypedCodeProblem(cell, Width);
    case Kind::Code:
        return CodeProblem(cell, Width);
    case Kind::OptionalCode:
        return cell.isEmpty() ? QString() : CodeProblem(cell, Width);
    case Kind::CompanyCode: {
        const QString problem = CodeProblem(cell, Width);
        if (!problem.isEmpty() || IsUsableCompanyCode(cell))
            return problem;
        return u"the code "_s + QuotedCell(cell) + u" cannot be a part of a file's name"_s;
    }
    case Kind::Flag:
        return cell == "Y"_L1 || cell == "N"_L1 ? QString()
                                                : QuotedCell(cell) + u" is neither Y nor N"_s;
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
    // Windows drops dots and spaces at the end; "." and ".." end with a dot too.
    if (IsReservedByWindows(code) || !CodeProblem(code, CellRules::CompanyCode.Width).isEmpty()
        || code.endsWith(u'.'))
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
