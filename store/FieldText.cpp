#include "store/FieldText.h"

#include <QTimeZone>

#include <algorithm>
#include <chrono>

namespace {

constexpr qint64 SecondsPerDay = 86400;

char UpperAscii(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool IsAscii(char c)
{
    return static_cast<unsigned char>(c) < 128;
}

QByteArray Upper(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toUpper().toUtf8();
}

int Sign(int difference)
{
    return (difference > 0) - (difference < 0);
}

int CompareUpper(std::string_view a, std::string_view b)
{
    const size_t common = std::min(a.size(), b.size());
    for (size_t i = 0; i < common; ++i) {
        // Upper-casing ASCII looks at no neighbour, so equal beginnings can be left behind; from
        // the first other character on, Unicode decides over both rests.
        if (!IsAscii(a[i]) || !IsAscii(b[i]))
            return Sign(Upper(a.substr(i)).compare(Upper(b.substr(i))));
        const char upperA = UpperAscii(a[i]);
        const char upperB = UpperAscii(b[i]);
        if (upperA != upperB)
            return upperA < upperB ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

/// The number written in `text` at `at`, or -1 when a character there is no digit.
int Digits(std::string_view text, size_t at, size_t count)
{
    int number = 0;
    for (size_t i = at; i < at + count; ++i) {
        if (text[i] < '0' || text[i] > '9')
            return -1;
        number = number * 10 + (text[i] - '0');
    }
    return number;
}

void PutDigits(std::string &text, size_t at, size_t count, qint64 number)
{
    for (size_t i = at + count; i-- > at; number /= 10)
        text[i] = static_cast<char>('0' + number % 10);
}

} // namespace

QDateTime WallClock(QDate date, QTime time)
{
    return QDateTime(date, time, Qt::UTC);
}

qint64 SecondsFromDate(const QDateTime &date)
{
    if (!date.isValid())
        return NoDate;
    // Cut before counting: dividing negative milliseconds would round a date before 1970 up.
    const QTime time = date.time();
    return WallClock(date.date(), time.addMSecs(-time.msec())).toSecsSinceEpoch();
}

QDateTime DateFromSeconds(qint64 seconds)
{
    return seconds == NoDate ? QDateTime() : QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
}

qint64 DayOf(qint64 seconds)
{
    using namespace std::chrono;
    return floor<days>(std::chrono::seconds(seconds)).count();
}

std::string DateText(qint64 seconds)
{
    if (seconds == NoDate)
        return {};
    using namespace std::chrono;
    const sys_days day = floor<days>(sys_seconds(std::chrono::seconds(seconds)));
    const year_month_day date(day);
    const qint64 ofDay = seconds - day.time_since_epoch().count() * SecondsPerDay;
    std::string text = "0000-00-00 00:00:00";
    PutDigits(text, 0, 4, static_cast<int>(date.year()));
    PutDigits(text, 5, 2, static_cast<unsigned>(date.month()));
    PutDigits(text, 8, 2, static_cast<unsigned>(date.day()));
    PutDigits(text, 11, 2, ofDay / 3600);
    PutDigits(text, 14, 2, ofDay / 60 % 60);
    PutDigits(text, 17, 2, ofDay % 60);
    return text;
}

std::optional<qint64> SecondsFromText(std::string_view text)
{
    if (text.empty())
        return NoDate;
    if (text.size() != 19 || text[4] != '-' || text[7] != '-' || text[10] != ' ' || text[13] != ':'
        || text[16] != ':')
        return {};
    using namespace std::chrono;
    const int hour = Digits(text, 11, 2);
    const int minute = Digits(text, 14, 2);
    const int second = Digits(text, 17, 2);
    const int yearNumber = Digits(text, 0, 4);
    const int monthNumber = Digits(text, 5, 2);
    const int dayNumber = Digits(text, 8, 2);
    if (yearNumber < 1 || monthNumber < 1 || dayNumber < 1)
        return {};
    const year_month_day date(year(yearNumber), month(static_cast<unsigned>(monthNumber)),
        day(static_cast<unsigned>(dayNumber)));
    if (!date.ok() || hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0
        || second > 59)
        return {};
    return sys_days(date).time_since_epoch().count() * SecondsPerDay + hour * 3600 + minute * 60
        + second;
}

void PutUtf8(std::string &bytes, QStringView text)
{
    bytes.resize(static_cast<size_t>(text.size()));
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].unicode() >= 128) {
            bytes = text.toUtf8().toStdString();
            return;
        }
        bytes[static_cast<size_t>(i)] = text[i].toLatin1();
    }
}

std::string Utf8(QStringView text)
{
    std::string bytes;
    PutUtf8(bytes, text);
    return bytes;
}

int CompareTexts(std::string_view a, std::string_view b)
{
    const int byUpper = CompareUpper(a, b);
    return byUpper != 0 ? byUpper : Sign(a.compare(b));
}

quint64 TextPrefix(std::string_view text, size_t from)
{
    constexpr size_t count = 8;
    const std::string_view head = text.substr(0, from + count);
    quint64 prefix = 0;
    if (std::all_of(head.begin(), head.end(), IsAscii)) {
        for (size_t i = from; i < from + count; ++i)
            prefix = prefix << 8
                | (i < head.size() ? static_cast<unsigned char>(UpperAscii(head[i])) : 0U);
        return prefix;
    }
    const QByteArray upper = Upper(text).mid(static_cast<qsizetype>(from), count);
    for (qsizetype i = 0; i < static_cast<qsizetype>(count); ++i)
        prefix = prefix << 8 | (i < upper.size() ? static_cast<unsigned char>(upper[i]) : 0U);
    return prefix;
}
