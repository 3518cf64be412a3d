// The PDF of a report, read back with another program.

#include "report/PdfReport.h"

#include "tests/support/PrintQt.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

ReportTable Table(int rows)
{
    ReportTable table;
    table.Title = u"Hours by day: Brünnhof"_s;
    table.Subtitle = {u"ABC"_s};
    table.Columns = {{u"Date"_s, false, 1}, {u"Billable"_s, true, 1}};
    for (int i = 0; i < rows; ++i)
        table.Rows.push_back({u"Row<%1>"_s.arg(i), QString::number(i)});
    table.Totals = {{u"Totals"_s, u"12345.67"_s}};
    table.Empty = u"No hours."_s;
    return table;
}

/// The text of each page.
QStringList PagesOf(const QByteArray &pdf)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"report.pdf"_s));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(pdf);
    file.close();
    QProcess reader;
    reader.start(u"pdftotext"_s, {u"-layout"_s, file.fileName(), u"-"_s});
    EXPECT_TRUE(reader.waitForFinished());
    EXPECT_EQ(reader.exitCode(), 0) << reader.readAllStandardError().toStdString();
    QStringList pages = QString::fromUtf8(reader.readAllStandardOutput()).split(u'\f');
    pages.removeLast();
    return pages;
}

} // namespace

TEST(ReportPdf, HoldsTitleTableAndTotals)
{
    const QStringList pages = PagesOf(PdfReport(Table(3), Chart()));
    ASSERT_EQ(pages.size(), 1);
    for (const QString &text : {u"Hours by day: Brünnhof"_s, u"ABC"_s, u"Billable"_s, u"Row<2>"_s,
             u"Totals"_s, u"12345.67"_s, u"Page 1"_s})
        EXPECT_TRUE(pages[0].contains(text)) << text.toStdString() << pages[0].toStdString();
}

TEST(ReportPdf, GoesOnOverPagesWithItsHeadingsOnEach)
{
    const QStringList pages = PagesOf(PdfReport(Table(200), Chart()));
    ASSERT_GT(pages.size(), 3);
    int rows = 0;
    for (qsizetype i = 0; i < pages.size(); ++i) {
        EXPECT_TRUE(pages[i].contains(u"Billable"_s)) << i;
        EXPECT_TRUE(pages[i].contains(u"Page %1"_s.arg(i + 1))) << i;
        EXPECT_EQ(pages[i].contains(u"12345.67"_s), i == pages.size() - 1) << i;
        rows += static_cast<int>(pages[i].count(u"Row<"_s));
    }
    EXPECT_EQ(rows, 200);
}

TEST(ReportPdf, BreaksLongTextsBetweenWordsAndCutsWhatNoPageHolds)
{
    ReportTable table = Table(1);
    table.Rows[0][0] = u"several words that do not stand on a single line of the narrow column"_s;
    table.Rows.push_back({QString(200000, u'x'), u"1"_s});
    table.Rows.push_back({u"after"_s, u"2"_s});
    const QStringList pages = PagesOf(PdfReport(table, Chart()));
    ASSERT_LE(pages.size(), 4);
    for (const QString &word : table.Rows[0][0].split(u' '))
        EXPECT_TRUE(pages[0].contains(word)) << word.toStdString();
    EXPECT_TRUE(pages.constLast().contains(u"after"_s));
    EXPECT_TRUE(pages.constLast().contains(u"12345.67"_s));
}

TEST(ReportPdf, DrawsTheChartWithItsLegend)
{
    const Report::Day day{QDate(2026, 3, 9), Currency::FromWhole(4), {}, {}, {}, {}};
    const QStringList pages = PagesOf(PdfReport(Table(1), LayOutChart({day})));
    for (const QString &text : {u"Do Not Bill"_s, u"No Charge"_s, u"03/09/2026"_s})
        EXPECT_TRUE(pages[0].contains(text)) << text.toStdString();
}

TEST(ReportPdf, WithoutRowsSaysSo)
{
    EXPECT_TRUE(PagesOf(PdfReport(Table(0), Chart()))[0].contains(u"No hours."_s));
}
