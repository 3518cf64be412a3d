#include "sync/TextLines.h"

#include <QStringDecoder>

#include <array>

namespace {

/// What the code page has at 0x80 to 0x9F; elsewhere it is Latin-1.
constexpr std::array<char16_t, 32> CodePage1252
    = {0x20ac, 0x81, 0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160, 0x2039,
        0x0152, 0x8d, 0x017d, 0x8f, 0x90, 0x2018, 0x2019, 0x201c, 0x201d, 0x2022, 0x2013, 0x2014,
        0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0x9d, 0x017e, 0x0178};

QString FromCodePage(const QByteArray &bytes)
{
    QString text = QString::fromLatin1(bytes);
    for (QChar &c : text) {
        const size_t place = static_cast<size_t>(c.unicode()) - 0x80;
        if (place < CodePage1252.size())
            c = QChar(CodePage1252.at(place));
    }
    return text;
}

QString Decoded(const QByteArray &bytes)
{
    const auto marked = QStringConverter::encodingForData(bytes);
    QStringDecoder decoder(marked.value_or(QStringConverter::Utf8)); // drops a byte order mark
    const QString text = decoder(bytes);
    return decoder.hasError() && !marked ? FromCodePage(bytes) : text;
}

} // namespace

QStringList TextLines(const QByteArray &bytes)
{
    QStringList lines = Decoded(bytes).split(u'\n');
    for (QString &line : lines) {
        if (line.endsWith(u'\r'))
            line.chop(1);
    }
    if (lines.last().isEmpty())
        lines.removeLast();
    return lines;
}
