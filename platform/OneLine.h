#pragma once

#include <QString>

/// The text with each line break, of one character or two, as one space: what a field of one line
/// stores is what it shows.
inline QString OneLine(QString text)
{
    text.replace(QLatin1String("\r\n"), QLatin1String(" "));
    for (QChar &c : text) {
        if ((c >= u'\n' && c <= u'\r') || c == QChar::LineSeparator
            || c == QChar::ParagraphSeparator || c == QChar(0x85))
            c = u' ';
    }
    return text;
}
