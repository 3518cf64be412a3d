#pragma once

#include <QByteArray>
#include <QStringList>

/// The lines of a text file as people have them: CR LF or LF ends, the last one with or without,
/// with or without a byte order mark, in UTF-8 or, where it is none, in the Windows code page 1252.
QStringList TextLines(const QByteArray &bytes);
