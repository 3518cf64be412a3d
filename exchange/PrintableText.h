#pragma once

#include <QString>

/// Whether a character cannot be seen or typed: control characters, zero-width characters, those
/// that change the direction of a text, and every space but the usual one.
bool IsInvisible(char32_t c);

/// "U+200B".
QString CodePointName(char32_t c);

/// A text from a file as a line of a log, a terminal or a window: what is invisible is written as
/// "<U+200B>", so that nothing in it is an escape sequence, and line ends are spaces. A text
/// without end is cut off.
QString PrintableLine(const QString &text);

/// A cell's text in double quotes, for a message: only its beginning when it is long.
QString QuotedCell(const QString &cell);
