// The CSV of a report: read back as it was, and harmless in a spreadsheet.

#include "report/CsvReport.h"

#include "exchange/Csv.h"
#include "tests/report/ReportFixture.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

using Row = std::vector<std::string>;

std::vector<Row> RowsOf(const QByteArray &csv)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"report.csv"_s));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(csv);
    file.close();
    std::vector<Row> rows;
    CsvReader reader(file.fileName());
    while (reader.ReadRecord()) {
        rows.emplace_back();
        for (size_t i = 0; i < reader.CellCount(); ++i)
            rows.back().emplace_back(reader.Cell(i));
    }
    return rows;
}

Report::Entry Entry(const QString &description)
{
    Report::Entry entry;
    entry.Date = QDate(2026, 3, 9);
    entry.CustomerCode = u"0100"_s;
    entry.Customer = u"Brünnhof, \"Foundry\""_s;
    entry.ActivityCode = u"CONSULT"_s;
    entry.Activity = u"Consulting"_s;
    entry.ShowsRate = true;
    entry.BillingStatus = u"Billable"_s;
    entry.Hours = Currency::FromScaled(5000);
    entry.Rate = Currency::FromScaled(1200000);
    entry.Amount = Currency::FromScaled(-600000);
    entry.Description = description;
    return entry;
}

Report WithTerms()
{
    Report report;
    report.Options.Customer_Term = u"Client"_s;
    report.Options.Project_Term = u"Job"_s;
    report.Options.Activity_Term = u"Task"_s;
    return report;
}

} // namespace

TEST(ReportCsv, HasALineAnEntryUnderTheCompanysOwnTerms)
{
    Report report = WithTerms();
    report.Entries = {Entry(u"Two\nlines"_s)};
    const QByteArray csv = CsvReport(report, false);
    EXPECT_THAT(RowsOf(csv),
        ElementsAre(Row{"Date", "Client", "Client Name", "Job", "Job Name", "Task", "Task Name",
                        "T/E", "Billing Status", "Hours/Units", "Rate", "Amount", "Description"},
            Row{"2026-03-09", "0100", "Brünnhof, \"Foundry\"", "", "", "CONSULT", "Consulting", "T",
                "Billable", "0.50", "120.000", "-60.00", "Two\nlines"}));
    EXPECT_EQ(csv.count("\r\n"), 2);
    EXPECT_TRUE(csv.endsWith("\r\n"));
}

TEST(ReportCsv, LeavesRatesOutThatAreNotShown)
{
    Report report = WithTerms();
    report.Entries = {Entry({})};
    report.Entries[0].ShowsRate = false;
    EXPECT_EQ(RowsOf(CsvReport(report, false))[1][10], "");
    EXPECT_EQ(RowsOf(CsvReport(report, false))[1][11], "");
}

TEST(ReportCsv, HoldsNoTextThatIsAFormula)
{
    const QStringList formulas = {u"=1+1"_s, u"+1"_s, u"-1"_s, u"@SUM(A1)"_s, u"\t=1"_s, u"\r=1"_s,
        u"\n=1"_s, u"=cmd|' /C calc'!A0"_s, u"\uff1d1"_s, u"\uff20x"_s};
    Report report = WithTerms();
    report.Options.Customer_Term = u"=Client"_s;
    for (const QString &formula : formulas) {
        Report::Entry entry = Entry(formula);
        entry.CustomerCode = entry.Customer = entry.Project = entry.ProjectCode = formula;
        entry.Activity = entry.ActivityCode = formula;
        report.Entries.push_back(entry);
    }
    const std::vector<Row> rows = RowsOf(CsvReport(report, true));
    EXPECT_EQ(rows[0][1], "'=Client");
    for (qsizetype i = 0; i < formulas.size(); ++i) {
        const std::string safe = (u'\'' + formulas[i]).toStdString();
        for (const size_t column : std::array<size_t, 7>{1, 2, 3, 4, 5, 6, 12})
            EXPECT_EQ(rows[static_cast<size_t>(i) + 1][column], safe);
    }
    // What is harmless stays as it is; so do numbers below zero.
    report.Entries = {Entry(u"a = b"_s)};
    EXPECT_EQ(RowsOf(CsvReport(report, false))[1][12], "a = b");
    EXPECT_EQ(RowsOf(CsvReport(report, false))[1][11], "-60.00");
}

TEST(ReportCsv, EndsWithTotalsWhenAskedTo)
{
    Report report = WithTerms();
    report.EntriesTotal = {Currency::FromWhole(7), Currency::FromWhole(700),
        Currency::FromWhole(50), Currency::FromWhole(750)};
    const std::vector<Row> rows = RowsOf(CsvReport(report, true));
    ASSERT_EQ(rows.size(), 4);
    EXPECT_EQ(rows[1], (Row{"Total", "", "", "", "", "", "", "T", "", "7.00", "", "700.00", ""}));
    EXPECT_EQ(rows[2], (Row{"Total", "", "", "", "", "", "", "E", "", "", "", "50.00", ""}));
    EXPECT_EQ(rows[3], (Row{"Total", "", "", "", "", "", "", "", "", "", "", "750.00", ""}));
    EXPECT_EQ(RowsOf(CsvReport(report, false)).size(), 1);
}

TEST(ReportCsv, HasALineADay)
{
    Report report;
    report.Content = ReportContent::Days;
    report.Days = {{QDate(2026, 3, 9), Currency::FromWhole(1), Currency::FromWhole(2),
        Currency::FromWhole(3), Currency::FromWhole(6), Currency::FromScaled(12500)}};
    report.DaysTotal = report.Days[0];
    EXPECT_THAT(RowsOf(CsvReport(report, true)),
        ElementsAre(Row{"Date", "Billable", "No Charge", "Do Not Bill", "Total Hours", "Amount"},
            Row{"2026-03-09", "1.00", "2.00", "3.00", "6.00", "1.25"},
            Row{"Total", "1.00", "2.00", "3.00", "6.00", "1.25"}));
}
