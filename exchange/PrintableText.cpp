#include "exchange/PrintableText.h"

#include <QList>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype MaxLine = 8000; // characters; two paths of the greatest length
constexpr qsizetype MaxCell = 60;

/// Letters, marks and symbols that nothing is drawn for.
constexpr std::array<std::pair<char32_t, char32_t>, 9> NotDrawn
    = {{{0x034F, 0x034F}, {0x115F, 0x1160}, {0x17B4, 0x17B5}, {0x180B, 0x180F}, {0x2800, 0x2800},
        {0x3164, 0x3164}, {0xFE00, 0xFE0F}, {0xFFA0, 0xFFA0}, {0xE0000, 0xE0FFF}}};

QString Shortened(const QString &text, qsizetype length)
{
    return text.size() <= length ? text : text.left(length) + u"..."_s;
}

} // namespace

bool IsInvisible(char32_t c)
{
    switch (QChar::category(c)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    case QChar::Separator_Space:
        return c != U' ';
    default:
        return std::any_of(NotDrawn.begin(), NotDrawn.end(),
            [&](const auto &range) { return c >= range.first && c <= range.second; });
    }
}

QString CodePointName(char32_t c)
{
    return u"U+"_s + QString::number(c, 16).toUpper().rightJustified(4, u'0');
}

QString PrintableLine(const QString &text)
{
    QString line;
    for (const char32_t c : Shortened(text, MaxLine).toUcs4()) {
        if (c == U'\n' || c == U'\r' || c == U'\t')
            line += u' ';
        else if (IsInvisible(c))
            line += u'<' + CodePointName(c) + u'>';
        else
            line += QString::fromUcs4(&c, 1);
    }
    return line;
}

QString QuotedCell(const QString &cell)
{
    return u'"' + Shortened(cell, MaxCell) + u'"';
}
