#include "exchange/Csv.h"

#include "tests/support/Raised.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

using Rows = std::vector<std::vector<std::string>>;

/// Writes the text into a file of its own and reads it as CSV.
class CsvFile
{
    QTemporaryDir m_folder; // the name is made of it

public:
    explicit CsvFile(const QByteArray &text)
        : Name(m_folder.filePath(u"table.csv"_s))
    {
        QFile file(Name);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(text), text.size());
    }

    Rows Read() const
    {
        CsvReader csv(Name);
        Rows rows;
        while (csv.ReadRecord()) {
            rows.emplace_back();
            for (size_t i = 0; i < csv.CellCount(); ++i)
                rows.back().emplace_back(csv.Cell(i));
        }
        return rows;
    }

    /// The error that reading ends with, behind the file's name.
    QString Fault() const
    {
        try {
            Read();
        } catch (const clsRunTimeError &error) {
            EXPECT_TRUE(error.Description().startsWith(Name)) << error.what();
            return error.Description().mid(Name.size());
        }
        return u"none"_s;
    }

    QString Name;
};

struct GoodCase
{
    const char *Name;
    QByteArray Text;
    Rows Expected;
};

void PrintTo(const GoodCase &example, std::ostream *out)
{
    *out << example.Name;
}

class CsvReads : public testing::TestWithParam<GoodCase>
{
};

TEST_P(CsvReads, WhatTheFormatAllows)
{
    EXPECT_EQ(CsvFile(GetParam().Text).Read(), GetParam().Expected);
}

INSTANTIATE_TEST_SUITE_P(Table, CsvReads,
    testing::Values(GoodCase{"Empty", "", {}},
        GoodCase{"LineFeeds", "a,b\nc,d\n", {{"a", "b"}, {"c", "d"}}},
        GoodCase{"CarriageReturns", "a,b\r\nc,d\r\n", {{"a", "b"}, {"c", "d"}}},
        GoodCase{"MixedLineEnds", "a\r\nb\nc", {{"a"}, {"b"}, {"c"}}},
        GoodCase{"NoLastLineEnd", "a,b\nc,d", {{"a", "b"}, {"c", "d"}}},
        GoodCase{"ByteOrderMark", "\xEF\xBB\xBF\"a\",b\n", {{"a", "b"}}},
        GoodCase{"EmptyCells", ",\n,,\n", {{"", ""}, {"", "", ""}}},
        GoodCase{"EmptyLines", "\r\n\na\n\n\nb\n\n", {{"a"}, {"b"}}},
        GoodCase{"QuotedEmptyCellIsARecord", "\"\"\n", {{""}}},
        GoodCase{"QuotedComma", "\"a,b\",c\n", {{"a,b", "c"}}},
        GoodCase{"QuotedQuote", "\"\"\"a\"\" b\"\"\",c\n", {{"\"a\" b\"", "c"}}},
        GoodCase{"QuotedLineEnds", "\"a\nb\",\"c\r\nd\re\"\n", {{"a\nb", "c\r\nd\re"}}},
        GoodCase{"BlanksStay", " a , b \n\" c \"\n", {{" a ", " b "}, {" c "}}},
        GoodCase{"LastCellEmpty", "a,", {{"a", ""}}},
        GoodCase{"QuoteAtTheEnd", "a,\"b\"", {{"a", "b"}}},
        GoodCase{"OtherLetters", "Brünnhof,Łąka,日本\n", {{"Brünnhof", "Łąka", "日本"}}}),
    [](const auto &example) { return std::string(example.param.Name); });

struct BadCase
{
    const char *Name;
    QByteArray Text;
    const char *Expected;
};

void PrintTo(const BadCase &example, std::ostream *out)
{
    *out << example.Name;
}

class CsvRefuses : public testing::TestWithParam<BadCase>
{
};

TEST_P(CsvRefuses, WithTheLine)
{
    const QString fault = CsvFile(GetParam().Text).Fault();
    EXPECT_TRUE(fault.startsWith(QString::fromUtf8(GetParam().Expected))) << qPrintable(fault);
}

INSTANTIATE_TEST_SUITE_P(Table, CsvRefuses,
    testing::Values(BadCase{"UnclosedQuote", "a\nb,\"c\nd\ne", ", line 2: a quote is never closed"},
        BadCase{"QuoteInside", "a\nb\nc\"d\n", ", line 3: a quote stands inside"},
        BadCase{"TextBehindQuote", "a\n\"b\"c\n", ", line 2: text stands behind"},
        BadCase{"CarriageReturnAlone", "a\rb\n", ", line 1: a carriage return"},
        BadCase{"NotUtf8", "a\nb,\xE4\n", ", line 2: the text of column 2 is not UTF-8"},
        BadCase{"HalvesInTwoCells", "\xC3,\xA4\n", ", line 1: the text of column 1 is not UTF-8"},
        BadCase{"LinesInQuotesCount", "\"a\nb\nc\"\nx\"\n", ", line 4: a quote stands inside"}),
    [](const auto &example) { return std::string(example.param.Name); });

TEST(Csv, ARecordKnowsItsFirstLine)
{
    const CsvFile file("a\n\"b\nb\",\"c\"\n\nd\n");
    CsvReader csv(file.Name);
    std::vector<qint64> lines;
    while (csv.ReadRecord())
        lines.push_back(csv.Line());
    EXPECT_EQ(lines, (std::vector<qint64>{1, 2, 5}));
}

TEST(Csv, CellsLongerThanABlockAndAcrossItsEndAreWhole)
{
    const QByteArray big(300'000, 'x');
    Rows expected;
    QByteArray text;
    for (int i = 0; i < 4; ++i) {
        text += big + ",\"" + big + "\"\"" + big + "\"\r\n";
        expected.push_back({big.toStdString(), (big + '"' + big).toStdString()});
    }
    EXPECT_EQ(CsvFile(text).Read(), expected);
}

TEST(Csv, AMissingFileIsNamed)
{
    const CsvFile file("");
    EXPECT_TRUE(QFile::remove(file.Name));
    const Raised raised = RaisedBy([&] { file.Read(); });
    EXPECT_EQ(raised.Number, RunTimeErrors::FileNotFound);
    EXPECT_TRUE(raised.Names(file.Name));
}

TEST(Csv, ACellHasOneMegabyteAtMost)
{
    const QByteArray full(CsvReader::MaxCellBytes, 'x');
    for (const QByteArray &quote : {QByteArray(), QByteArray("\"")}) {
        EXPECT_EQ(CsvFile("a,b\n1," + quote + full + quote + "\n").Read().size(), 2U);
        EXPECT_EQ(CsvFile("a,b\n1," + quote + full + 'x' + quote + "\n").Fault(),
            u", line 2: column 2 has more than 1048576 bytes"_s);
    }
    EXPECT_EQ(
        CsvFile("a\n\"" + full + full).Fault(), u", line 2: column 1 has more than 1048576 bytes"_s)
        << "the quote is never closed";
}

TEST(Csv, ARecordHasTenThousandColumnsAtMost)
{
    EXPECT_EQ(CsvFile(QByteArray(9'999, ',')).Read().front().size(), 10'000U);
    EXPECT_EQ(CsvFile("a\n" + QByteArray(10'000, ',')).Fault(),
        u", line 2: there are more than 10000 columns"_s);
}

TEST(Csv, WhatIsWrittenIsReadTheSame)
{
    const Rows rows = {{"plain", "", " blanks ", "com,ma"},
        {"quo\"te", "\"", "line\nfeed", "both\r\nof them\r"}, {"a\rreturn", "\r", "at the end\r"},
        {"Brünnhof", "\t", "=1", "'"}};
    std::string text;
    for (const std::vector<std::string> &row : rows)
        text += CsvLine(row);
    EXPECT_EQ(CsvFile(QByteArray::fromStdString(text)).Read(), rows);
    EXPECT_EQ(CsvLine({"a", "b\"c", ""}), "a,\"b\"\"c\",\r\n");
    EXPECT_EQ(CsvLine({"a\rreturn", "b\n"}), "\"a\rreturn\",\"b\n\"\r\n");
    EXPECT_EQ(CsvLine({""}), "\"\"\r\n"); // an empty line is no record
    EXPECT_EQ(CsvLine({"\xEF\xBB\xBFmark"}), "\"\xEF\xBB\xBFmark\"\r\n"); // nor a mark a file's
}

TEST(Csv, WhatAnotherProgramCouldReadOtherwiseStandsInQuotes)
{
    // Some end a line at a carriage return, and some drop blanks around a cell.
    EXPECT_EQ(CsvLine({"a\rb", "\r"}), "\"a\rb\",\"\r\"\r\n");
    EXPECT_EQ(CsvLine({" a", "b ", " "}), "\" a\",\"b \",\" \"\r\n");
    EXPECT_EQ(CsvLine({"a b", "c\td"}), "a b,c\td\r\n");
}

} // namespace
