// Where the bars of the chart stand.

#include "report/Chart.h"

#include "tests/support/PrintQt.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QDate Monday(2026, 3, 9);

Report::Day Day(QDate date, double billable, double noCharge = 0, double doNotBill = 0)
{
    const auto hours
        = [](double value) { return Currency::FromScaled(static_cast<qint64>(value * 10000)); };
    return {date, hours(billable), hours(noCharge), hours(doNotBill), {}, {}};
}

QStringList TextsOf(const std::vector<Chart::Label> &labels)
{
    QStringList texts;
    for (const Chart::Label &label : labels)
        texts.append(label.Text);
    return texts;
}

} // namespace

TEST(ReportChart, WithoutHoursIsEmpty)
{
    EXPECT_TRUE(LayOutChart({}).IsEmpty());
    EXPECT_TRUE(LayOutChart({Day(Monday, 0)}).IsEmpty());
    EXPECT_TRUE(LayOutChart({Day(Monday, -3)}).IsEmpty());
}

TEST(ReportChart, StacksTheStatusesInProportionToTheirHours)
{
    const Chart chart = LayOutChart({Day(Monday, 4, 2, 1)});
    ASSERT_EQ(chart.Pieces.size(), 3);
    EXPECT_DOUBLE_EQ(chart.Pieces[0].Place.bottom(), chart.Area.bottom());
    EXPECT_DOUBLE_EQ(chart.Pieces[1].Place.bottom(), chart.Pieces[0].Place.top());
    EXPECT_DOUBLE_EQ(chart.Pieces[2].Place.bottom(), chart.Pieces[1].Place.top());
    EXPECT_NEAR(chart.Pieces[0].Place.height(), 2 * chart.Pieces[1].Place.height(), 1e-9);
    EXPECT_NEAR(chart.Pieces[0].Place.height(), 4 * chart.Pieces[2].Place.height(), 1e-9);
    for (size_t i = 0; i < 3; ++i)
        EXPECT_EQ(chart.Pieces[i].Series, i);
    // By the lines: four hours reach the line of four.
    const double zero = chart.Lines.front().Y;
    const double top = chart.Lines.back().Y;
    const double highest = chart.Lines.back().Hours.Text.toDouble();
    EXPECT_NEAR(chart.Pieces[0].Place.height() / 4, (zero - top) / highest, 1e-9);
}

TEST(ReportChart, LeavesOutHoursBelowZero)
{
    const Chart chart = LayOutChart({Day(Monday, -1, 2)});
    ASSERT_EQ(chart.Pieces.size(), 1);
    EXPECT_EQ(chart.Pieces[0].Series, 1);
    EXPECT_DOUBLE_EQ(chart.Pieces[0].Place.bottom(), chart.Area.bottom());
}

TEST(ReportChart, KeepsEveryPieceInsideItsArea)
{
    std::vector<Report::Day> days;
    for (int i = 0; i < 400; ++i)
        days.push_back(Day(Monday.addDays(i * 2), i % 24, i % 3, i % 5));
    const Chart chart = LayOutChart(days);
    const QRectF roomy = chart.Area.adjusted(-1e-6, -1e-6, 1e-6, 1e-6);
    double right = 0;
    for (const Chart::Piece &piece : chart.Pieces) {
        EXPECT_TRUE(roomy.contains(piece.Place)) << piece.Date.toString().toStdString();
        right = std::max(right, piece.Place.right());
    }
    EXPECT_GT(right, chart.Area.right() - 5);
    EXPECT_LE(chart.Lines.size(), 8);
    EXPECT_LT(chart.Dates.size(), 13);
}

TEST(ReportChart, GivesEveryDayOfAMonthAPlaceAndOnlyBusyDaysOfAYear)
{
    const Chart month = LayOutChart({Day(Monday, 1), Day(Monday.addDays(29), 1)});
    EXPECT_GT(month.Pieces[1].Place.left() - month.Pieces[0].Place.right(), 500);
    const Chart year = LayOutChart({Day(Monday, 1), Day(Monday.addDays(300), 1)});
    EXPECT_LT(year.Pieces[1].Place.left() - year.Pieces[0].Place.left(), 340);
    EXPECT_EQ(TextsOf(year.Dates), (QStringList{u"03/09/2026"_s, u"01/03/2027"_s}));
}

TEST(ReportChart, MakesOneBarOfTwoRowsOfTheSameDay)
{
    const Chart chart = LayOutChart({Day(Monday, 1), Day(Monday, 2)});
    ASSERT_EQ(chart.Pieces.size(), 1);
    EXPECT_EQ(chart.Pieces[0].Hours, Currency::FromWhole(3));
}

TEST(ReportChart, LabelsItsLinesWithRoundNumbers)
{
    struct Case
    {
        double Most;
        QStringList Texts;
    };
    const std::vector<Case> cases = {
        {0.25, {u"0"_s, u"0.5"_s}},
        {2.5, {u"0"_s, u"0.5"_s, u"1"_s, u"1.5"_s, u"2"_s, u"2.5"_s}},
        {7.5, {u"0"_s, u"2"_s, u"4"_s, u"6"_s, u"8"_s}},
        {24, {u"0"_s, u"5"_s, u"10"_s, u"15"_s, u"20"_s, u"25"_s}},
        {99.99, {u"0"_s, u"20"_s, u"40"_s, u"60"_s, u"80"_s, u"100"_s}},
    };
    for (const Case &one : cases) {
        QStringList texts;
        for (const Chart::Line &line : LayOutChart({Day(Monday, one.Most)}).Lines)
            texts.append(line.Hours.Text);
        EXPECT_EQ(texts, one.Texts);
    }
}
