#pragma once

#include <QDateTime>
#include <QString>

#include <limits>
#include <optional>
#include <string>
#include <string_view>

/// How field values are written in a file and how texts compare.

/// A date-time as seconds on the wall clock since 1970, without a time zone; `NoDate` stands for
/// the empty text.
constexpr qint64 NoDate = std::numeric_limits<qint64>::min();

/// A wall-clock date-time. Its time specification is UTC so that nothing ever converts it.
QDateTime WallClock(QDate date, QTime time = QTime(0, 0));

/// Seconds of a wall-clock date-time, NoDate when it is invalid. Fractions of a second are cut.
qint64 SecondsFromDate(const QDateTime &date);
QDateTime DateFromSeconds(qint64 seconds);

/// The calendar day of a date-time that is one, in days since 1970.
qint64 DayOf(qint64 seconds);

/// "yyyy-MM-dd HH:mm:ss", or empty for NoDate.
std::string DateText(qint64 seconds);
/// Nothing when the text is no such date; the years are 1 to 9999.
std::optional<qint64> SecondsFromText(std::string_view text);

/// The text in UTF-8, as the tables keep it, in the place of what `bytes` held; room is made only
/// when it does not fit.
void PutUtf8(std::string &bytes, QStringView text);
std::string Utf8(QStringView text);

/// Compares two UTF-8 texts as the tables order them: by upper-cased text, ties by the text
/// itself. Negative, zero (equal to the letter) or positive.
int CompareTexts(std::string_view a, std::string_view b);

/// Eight bytes of the upper-cased text, from the given one on, as one big-endian number; past its
/// end they are zero. Texts that are the same up to there compare as these numbers do when they
/// differ.
quint64 TextPrefix(std::string_view text, size_t from = 0);
