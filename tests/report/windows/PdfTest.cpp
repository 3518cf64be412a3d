// The PDF of a report as far as its bytes tell: there is no reader of PDF to ask.

#include "report/PdfReport.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

ReportTable Table(int rows)
{
    ReportTable table;
    table.Title = u"Hours by day: Brünnhof"_s;
    table.Subtitle = {u"ABC"_s};
    table.Columns = {{u"Date"_s, false, 1}, {u"Billable"_s, true, 1}};
    for (int i = 0; i < rows; ++i)
        table.Rows.push_back({u"Row<%1>"_s.arg(i), QString::number(i)});
    return table;
}

} // namespace

TEST(ReportPdf, GoesOnOverPages)
{
    EXPECT_EQ(PdfReport(Table(3), Chart()).count("/Type /Page\n"), 1);
    EXPECT_GT(PdfReport(Table(200), Chart()).count("/Type /Page\n"), 3);
}

TEST(ReportPdf, CarriesItsFontsAlong)
{
    EXPECT_TRUE(PdfReport(Table(3), Chart()).contains("/FontFile"));
}
