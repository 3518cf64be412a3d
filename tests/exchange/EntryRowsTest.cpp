#include "exchange/EntryRows.h"

#include "platform/clsRunTimeError.h"
#include "tests/exchange/Installation.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

/// An entry, and its line.
struct Case
{
    EntryRecord Entry;
    std::string Line;
};

Case WithText(const QString &text, const std::string &cell)
{
    Case result{EntryNumber(3),
        cell
            + ",1000,CONSULT,2024-01-04 00:00:00,1,N,N,N,4,,N,N,7.5003,95.0000,712.5285,1.0000,"
              "0.0000,0.0000,"
            + cell + "\r\n"};
    result.Entry.Customer_Number = result.Entry.Description = text;
    return result;
}

Case WithDate(const QDateTime &date, const std::string &cell)
{
    Case result{EntryNumber(3),
        "0100,1000,CONSULT," + cell
            + ",1,N,N,N,4,,N,N,7.5003,95.0000,712.5285,1.0000,0.0000,0.0000,Entry 3\r\n"};
    result.Entry.Date = date;
    return result;
}

Case WithAmount(qint64 scaled, const std::string &cell)
{
    Case result{EntryNumber(3),
        "0100,1000,CONSULT,2024-01-04 00:00:00,1,N,N,N,4,,N,N,7.5003,95.0000," + cell
            + ",1.0000,0.0000,0.0000,Entry 3\r\n"};
    result.Entry.Amount = Currency::FromScaled(scaled);
    return result;
}

std::vector<Case> DifficultEntries()
{
    return {WithText(u""_s, ""), WithText(u" "_s, "\" \""),
        WithText(u"  leading"_s, "\"  leading\""), WithText(u"trailing "_s, "\"trailing \""),
        WithText(u"\"quoted\""_s, "\"\"\"quoted\"\"\""), WithText(u"com,ma"_s, "\"com,ma\""),
        WithText(u"line\nfeed"_s, "\"line\nfeed\""),
        WithText(u"carriage\r\nreturn"_s, "\"carriage\r\nreturn\""),
        WithText(u"a\rlone one"_s, "\"a\rlone one\""), WithText(u"\r"_s, "\"\r\""),
        WithText(u"Brünnhof 日本 😀"_s, "Brünnhof 日本 😀"),
        WithText(u"\uFEFFmark"_s, "\"\uFEFFmark\""), WithText(u"=1+1"_s, "=1+1"),
        WithText(u"\t"_s, "\t"), WithText(u"007"_s, "007"), WithText(u"1e5"_s, "1e5"),
        WithDate({}, ""),
        WithDate(QDateTime(QDate(1, 1, 1), QTime(0, 0), Qt::UTC), "0001-01-01 00:00:00"),
        WithDate(QDateTime(QDate(9999, 12, 31), QTime(23, 59, 59), Qt::UTC), "9999-12-31 23:59:59"),
        WithAmount(std::numeric_limits<qint64>::min(), "-922337203685477.5808"),
        WithAmount(std::numeric_limits<qint64>::max(), "922337203685477.5807"),
        WithAmount(-1, "-0.0001"), WithAmount(0, "0.0000")};
}

QString WriteFile(const QTemporaryDir &folder, const std::string &contents)
{
    const QString name = folder.filePath(u"batch.csv"_s);
    QFile file(name);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(file.write(contents.data(), static_cast<qint64>(contents.size())),
        static_cast<qint64>(contents.size()));
    return name;
}

TEST(EntryRows, EveryEntryHasItsLine)
{
    for (const Case &difficult : DifficultEntries())
        EXPECT_EQ(EntryLine(difficult.Entry), difficult.Line);
}

TEST(EntryRows, EveryEntryIsRecognisedByTheLineThatWasWritten)
{
    std::string contents = UploadOf({}).toStdString();
    for (const Case &difficult : DifficultEntries())
        contents += difficult.Line;
    contents += DifficultEntries()[4].Line;
    const QTemporaryDir folder;

    EntryLines lines = ReadEntryLines(WriteFile(folder, contents));

    EXPECT_EQ(lines.size(), DifficultEntries().size());
    for (const Case &difficult : DifficultEntries())
        EXPECT_EQ(lines.count(difficult.Line), 1U) << difficult.Line;
    EXPECT_EQ(lines[DifficultEntries()[4].Line], 2);
}

TEST(EntryRows, TheHeaderNamesTheNineteenFields)
{
    EXPECT_EQ(EntryHeader(),
        "Customer_Number,Project_Number,Activity_Number,Date,Billing_Status,Mgmt_Approval,"
        "Sec_Approval,On_Hold,Billing_Option,Multiplier_Number,Rate_Overridden,Reimburse,Hours,"
        "Rate,Amount,Multiplier_Factor,Exp_Markup_Percent,Exp_Markup_Amount,Description\r\n");
    EXPECT_EQ(EntryLine(EntryNumber(3)),
        "0100,1000,CONSULT,2024-01-04 00:00:00,1,N,N,N,4,,N,N,7.5003,95.0000,712.5285,1.0000,"
        "0.0000,0.0000,Entry 3\r\n");
}

TEST(EntryRows, AFileThatIsNoUploadIsRefused)
{
    const QTemporaryDir folder;
    for (const std::string &contents :
        {std::string(), std::string("a,b\n"), UploadOf({}).toStdString() + "1,2,3\r\n"})
        EXPECT_THROW(ReadEntryLines(WriteFile(folder, contents)), clsRunTimeError) << contents;
}

} // namespace
