#include "store/FieldText.h"
#include "tests/support/PrintQt.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// The order by the whole upper-cased text, then by the text itself, code point for code point.
int OracleOrder(const QString &a, const QString &b)
{
    const auto compare = [](const QList<uint> &left, const QList<uint> &right) {
        for (qsizetype i = 0; i < qMin(left.size(), right.size()); ++i) {
            if (left[i] != right[i])
                return left[i] < right[i] ? -1 : 1;
        }
        return left.size() == right.size() ? 0 : (left.size() < right.size() ? -1 : 1);
    };
    const int byUpper = compare(a.toUpper().toUcs4(), b.toUpper().toUcs4());
    return byUpper != 0 ? byUpper : compare(a.toUcs4(), b.toUcs4());
}

int Order(const QString &a, const QString &b)
{
    const int order = CompareTexts(a.toStdString(), b.toStdString());
    return (order > 0) - (order < 0);
}

QString RandomText(std::mt19937 &random)
{
    // Letters whose upper case is longer, lies elsewhere, or needs a surrogate pair stand among
    // plain ones, so that many texts share a beginning.
    static const QStringList parts
        = {u"a"_s, u"A"_s, u"b"_s, u"Z"_s, u"z"_s, u"_"_s, u"["_s, u"0"_s, u" "_s, u"é"_s, u"É"_s,
            u"e\u0301"_s, u"ß"_s, u"ẞ"_s, u"SS"_s, u"ŉ"_s, u"ǆ"_s, u"ﬃ"_s, u"ÿ"_s, u"ı"_s, u"i"_s,
            u"İ"_s, u"ς"_s, u"σ"_s, u"Ω"_s, u"ω"_s, u"日"_s, u"\U00010428"_s, u"\U00010400"_s,
            u"\U0001F600"_s, u"\uFFFD"_s, u"\uE000"_s, QString(QChar(u'\0')), u"ΐ"_s};
    QString text;
    for (auto length = random() % 7; length > 0; --length)
        text += parts[static_cast<qsizetype>(random() % static_cast<size_t>(parts.size()))];
    return (random() % 3 == 0 ? u"Common"_s : QString()) + text;
}

qint64 Seconds(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    return WallClock(QDate(year, month, day), QTime(hour, minute, second)).toSecsSinceEpoch();
}

} // namespace

TEST(FieldText, OrdersTextsByUpperCaseThenByTheTextItself)
{
    const QStringList inOrder = {u""_s, u" "_s, u"0"_s, u"10"_s, u"2"_s, u"A"_s, u"A "_s, u"AB"_s,
        u"Ab"_s, u"aB"_s, u"ab"_s, u"abc"_s, u"B"_s, u"b"_s, u"SS"_s, u"Ss"_s, u"ss"_s, u"ß"_s,
        u"SSA"_s, u"ßa"_s, u"ST"_s, u"Z"_s, u"z"_s, u"["_s, u"_"_s, u"~"_s};
    // Accents stand after all plain letters; a text stands before every longer one it begins.
    for (qsizetype i = 0; i + 1 < inOrder.size(); ++i)
        EXPECT_EQ(Order(inOrder[i], inOrder[i + 1]), -1)
            << inOrder[i].toStdString() << " | " << inOrder[i + 1].toStdString();
    EXPECT_EQ(Order(u"z"_s, u"É"_s), -1);
    EXPECT_EQ(Order(u"É"_s, u"é"_s), -1);
    EXPECT_EQ(Order(u"é"_s, u"ÉA"_s), -1);
    EXPECT_EQ(Order(u"ab"_s, u"ab"_s), 0);
    EXPECT_EQ(Order(u""_s, u""_s), 0);
    EXPECT_EQ(Order(u"ab"_s, u"AB"_s), 1);
    EXPECT_EQ(Order(u"\uFFFD"_s, u"\U0001F600"_s), -1); // by code point, not by UTF-16 unit
}

TEST(FieldText, OrdersRandomTextsLikeTheWholeUpperCase)
{
    const unsigned start = 4711;
    std::mt19937 random(start);
    int equals = 0;
    for (int i = 0; i < 200000; ++i) {
        const QString a = RandomText(random);
        const QString b = RandomText(random);
        const int expected = OracleOrder(a, b);
        ASSERT_EQ(Order(a, b), expected)
            << '"' << a.toStdString() << "\" and \"" << b.toStdString() << "\", start " << start;
        ASSERT_EQ(Order(b, a), -expected);
        equals += expected == 0 ? 1 : 0;
    }
    EXPECT_GT(equals, 100);
}

TEST(FieldText, DifferentPrefixesCompareAsTheTextsDo)
{
    std::mt19937 random(815);
    int decided = 0;
    for (int i = 0; i < 200000; ++i) {
        const QString a = RandomText(random);
        const QString b = RandomText(random);
        const quint64 prefixA = TextPrefix(a.toStdString());
        const quint64 prefixB = TextPrefix(b.toStdString());
        if (prefixA == prefixB)
            continue;
        ++decided;
        ASSERT_EQ(prefixA < prefixB, Order(a, b) < 0)
            << '"' << a.toStdString() << "\" and \"" << b.toStdString() << '"';
    }
    EXPECT_GT(decided, 100000);
}

TEST(FieldText, WhatFollowsAnEqualPrefixComparesAsTheTextsDo)
{
    std::mt19937 random(816);
    int decided = 0;
    for (int i = 0; i < 50000; ++i) {
        const QString begin = RandomText(random) + u"abcdefgh"_s;
        const std::string a = (begin + RandomText(random)).toStdString();
        const std::string b = (begin + RandomText(random)).toStdString();
        if (TextPrefix(a) != TextPrefix(b) || TextPrefix(a, 8) == TextPrefix(b, 8))
            continue;
        ++decided;
        ASSERT_EQ(TextPrefix(a, 8) < TextPrefix(b, 8), CompareTexts(a, b) < 0)
            << '"' << a << "\" and \"" << b << '"';
    }
    EXPECT_GT(decided, 10000);
}

TEST(FieldText, IsWrittenInUtf8WhateverTheTextHoldsAndTheBytesHeld)
{
    std::string bytes = "what stood there";
    for (const QString &text : {u""_s, u"plain"_s, u"Łąka 日本 \U0001F600"_s, u"a longer plain text"_s,
             QString(QChar(0xD800))}) {
        PutUtf8(bytes, text);
        EXPECT_EQ(bytes, text.toStdString());
        EXPECT_EQ(Utf8(text), text.toStdString());
    }
}

TEST(FieldText, EqualUpperCasesHaveTheSamePrefix)
{
    EXPECT_EQ(TextPrefix("abcdefgh"), TextPrefix("ABCDEFGHI"));
    EXPECT_EQ(TextPrefix("\xC3\xA9t\xC3\xA9"), TextPrefix("\xC3\x89T\xC3\x89"));
    EXPECT_EQ(TextPrefix(""), 0u);
    EXPECT_EQ(TextPrefix("a"), 0x4100000000000000u);
    EXPECT_EQ(TextPrefix("\xC3\x9F"), TextPrefix("ss"));
}

TEST(FieldText, WritesDatesAsOneSortableText)
{
    EXPECT_EQ(DateText(Seconds(1970, 1, 1)), "1970-01-01 00:00:00");
    EXPECT_EQ(DateText(Seconds(2024, 2, 29, 23, 59, 59)), "2024-02-29 23:59:59");
    EXPECT_EQ(DateText(Seconds(1, 1, 1)), "0001-01-01 00:00:00");
    EXPECT_EQ(DateText(Seconds(9999, 12, 31, 23, 59, 59)), "9999-12-31 23:59:59");
    EXPECT_EQ(DateText(Seconds(1969, 12, 31, 23, 59, 59)), "1969-12-31 23:59:59");
    EXPECT_EQ(DateText(NoDate), "");
}

TEST(FieldText, ReadsDatesAtEveryBoundary)
{
    const char *const cases[] = {"0001-01-01 00:00:00", "9999-12-31 23:59:59",
        "1970-01-01 00:00:00", "1969-12-31 23:59:59", "2000-02-29 12:00:00", "2024-02-29 00:00:00",
        "1600-02-29 00:00:00", "2023-02-28 00:00:00", "1900-02-28 00:00:00", "2024-01-31 00:00:00",
        "2024-03-31 00:00:00", "2024-04-30 00:00:00", "2024-05-31 00:00:00", "2024-06-30 00:00:00",
        "2024-07-31 00:00:00", "2024-08-31 00:00:00", "2024-09-30 00:00:00", "2024-10-31 00:00:00",
        "2024-11-30 00:00:00", "2024-12-31 00:00:00", "2024-12-31 23:00:00", "2024-12-31 00:59:00",
        "2024-12-31 00:00:59", "2024-03-31 02:30:00" /* a gap in some time zones */,
        "0004-02-29 00:00:00"};
    for (const char *text : cases) {
        const std::optional<qint64> seconds = SecondsFromText(text);
        ASSERT_TRUE(seconds) << text;
        EXPECT_EQ(DateText(*seconds), text);
        EXPECT_EQ(DateFromSeconds(*seconds).toString(u"yyyy-MM-dd HH:mm:ss"_s).toStdString(), text);
        EXPECT_EQ(SecondsFromDate(DateFromSeconds(*seconds)), *seconds) << text;
    }
}

TEST(FieldText, TheEmptyTextIsNoDate)
{
    EXPECT_EQ(SecondsFromText(""), NoDate);
    EXPECT_FALSE(DateFromSeconds(NoDate).isValid());
    EXPECT_EQ(SecondsFromDate(QDateTime()), NoDate);
}

TEST(FieldText, RefusesWhatIsNoDate)
{
    const std::string_view cases[] = {" ", "0", "2024-02-29", "2024-02-29 00:00",
        "2024-02-29T00:00:00", "2024-02-29 00:00:00 ", " 2024-02-29 00:00:00", "2024-02-29 00:00:0",
        "2024-02-29 00:00:000", "2024-02-29 00:00:00.5", "2024-02-29 00:00:00Z",
        "2024/02/29 00:00:00", "2024-02-29 00.00.00", "02/29/2024 00:00:00", "2024-2-29 00:00:00 ",
        "0000-01-01 00:00:00", "-001-01-01 00:00:00", "+024-01-01 00:00:00", "2024-00-01 00:00:00",
        "2024-13-01 00:00:00", "2024-01-00 00:00:00", "2024-01-32 00:00:00", "2024-02-30 00:00:00",
        "2023-02-29 00:00:00", "1900-02-29 00:00:00", "2100-02-29 00:00:00", "2024-04-31 00:00:00",
        "2024-06-31 00:00:00", "2024-09-31 00:00:00", "2024-11-31 00:00:00", "2024-01-01 24:00:00",
        "2024-01-01 00:60:00", "2024-01-01 00:00:60", "2024-01-01 -1:00:00", "2024-01-01 00:-1:00",
        "2024-01-01 00:00:-1", "2o24-01-01 00:00:00", "2024-0a-01 00:00:00", "2024-01-0a 00:00:00",
        "2024-01-01 0a:00:00", "2024-01-01 00:0a:00", "2024-01-01 00:00:0a", "2024-01- 1 00:00:00",
        "yyyy-MM-dd HH:mm:ss", "\xEF\xBC\x92 24-01-01 00:00:00",
        std::string_view("2024-01-01 00:00:0\0", 19), std::string_view("\0", 1)};
    for (const std::string_view text : cases)
        EXPECT_EQ(SecondsFromText(text), std::nullopt) << '"' << text << '"';
}

TEST(FieldText, EveryDayOfFourCenturiesReadsBack)
{
    for (QDate date(1800, 1, 1); date < QDate(2200, 1, 2); date = date.addDays(1)) {
        const qint64 seconds = SecondsFromDate(WallClock(date, QTime(13, 14, 15)));
        const std::string text = date.toString(Qt::ISODate).toStdString() + " 13:14:15";
        ASSERT_EQ(DateText(seconds), text);
        ASSERT_EQ(SecondsFromText(text), seconds) << text;
    }
}

TEST(FieldText, CutsFractionsOfASecond)
{
    EXPECT_EQ(DateText(SecondsFromDate(WallClock(QDate(2024, 5, 6), QTime(7, 8, 9, 999)))),
        "2024-05-06 07:08:09");
    EXPECT_EQ(DateText(SecondsFromDate(WallClock(QDate(1969, 12, 31), QTime(23, 59, 58, 500)))),
        "1969-12-31 23:59:58");
    EXPECT_EQ(DateText(SecondsFromDate(WallClock(QDate(1900, 1, 1), QTime(0, 0, 0, 1)))),
        "1900-01-01 00:00:00");
}

TEST(FieldText, TakesTheWallClockOfAnyTimeZone)
{
    const QDate date(2024, 7, 1);
    const QTime time(1, 2, 3);
    const qint64 expected = SecondsFromDate(WallClock(date, time));
    EXPECT_EQ(SecondsFromDate(QDateTime(date, time)), expected);
    EXPECT_EQ(SecondsFromDate(QDateTime(date, time, Qt::OffsetFromUTC, 5 * 3600)), expected);
    EXPECT_EQ(SecondsFromDate(QDateTime(date, time, Qt::OffsetFromUTC, -11 * 3600)), expected);
}
