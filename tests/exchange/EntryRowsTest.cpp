#include "exchange/EntryRows.h"

#include "platform/clsRunTimeError.h"
#include "tests/exchange/Installation.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

std::vector<EntryRecord> DifficultEntries()
{
    std::vector<EntryRecord> entries;
    int number = 0;
    for (const QString &text : {u""_s, u" "_s, u"  leading"_s, u"trailing "_s, u"\"quoted\""_s,
             u"com,ma"_s, u"line\nfeed"_s, u"carriage\r\nreturn\r"_s, u"Brünnhof 日本 😀"_s,
             u"\uFEFFmark"_s, u"=1+1"_s, u"\t"_s, u"007"_s, u"1e5"_s}) {
        EntryRecord entry = EntryNumber(number++);
        entry.Description = text;
        entry.Customer_Number = text;
        entries.push_back(entry);
    }
    entries[0].Date = QDateTime();
    entries[1].Date = QDateTime(QDate(1, 1, 1), QTime(0, 0), Qt::UTC);
    entries[2].Date = QDateTime(QDate(9999, 12, 31), QTime(23, 59, 59), Qt::UTC);
    entries[3].Amount = Currency::FromScaled(std::numeric_limits<qint64>::min());
    entries[4].Amount = Currency::FromScaled(std::numeric_limits<qint64>::max());
    entries[5].Amount = Currency::FromScaled(-1);
    return entries;
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

TEST(EntryRows, EveryEntryIsRecognisedByTheLineThatWasWritten)
{
    std::string contents = EntryHeader();
    for (const EntryRecord &entry : DifficultEntries())
        contents += EntryLine(entry);
    contents += EntryLine(DifficultEntries()[4]);
    const QTemporaryDir folder;

    EntryLines lines = ReadEntryLines(WriteFile(folder, contents));

    EXPECT_EQ(lines.size(), DifficultEntries().size());
    for (const EntryRecord &entry : DifficultEntries())
        EXPECT_EQ(lines.count(EntryLine(entry)), 1U) << EntryLine(entry);
    EXPECT_EQ(lines[EntryLine(DifficultEntries()[4])], 2);
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
        {std::string(), std::string("a,b\n"), EntryHeader() + "1,2,3\r\n"})
        EXPECT_THROW(ReadEntryLines(WriteFile(folder, contents)), clsRunTimeError) << contents;
}

} // namespace
