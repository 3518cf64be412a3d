#include "report/Chart.h"

#include <algorithm>
#include <cmath>
#include <map>

using namespace Qt::StringLiterals;

namespace {

constexpr double LeftMargin = 44;
constexpr double RightMargin = 8;
constexpr double TopMargin = 28; // the legend is there
constexpr double BottomMargin = 24;
constexpr double BarShare = 0.72; // of a day's place
constexpr double WidestBar = 46;
constexpr double DateLabelWidth = 62;
constexpr double LegendWidth = 96;
constexpr int MostLines = 6;
constexpr qint64 CalendarDays = 93;

using Hours = std::array<Currency, 3>;

Currency Positive(Currency hours)
{
    return std::max(hours, Currency());
}

double InHours(Currency hours)
{
    return static_cast<double>(hours.Scaled()) / static_cast<double>(Currency::Scale);
}

/// Two rows of the same day, which differ in their time of day, become one bar.
std::map<QDate, Hours> HoursOfDays(const std::vector<Report::Day> &days)
{
    std::map<QDate, Hours> bars;
    for (const Report::Day &day : days) {
        Hours &bar = bars[day.Date];
        bar[0] += Positive(day.Billable);
        bar[1] += Positive(day.NoCharge);
        bar[2] += Positive(day.DoNotBill);
    }
    return bars;
}

std::vector<QDate> Places(const std::map<QDate, Hours> &bars)
{
    std::vector<QDate> dates;
    const QDate first = bars.begin()->first;
    const QDate last = bars.rbegin()->first;
    if (first.isValid() && first.daysTo(last) < CalendarDays) {
        for (QDate date = first; date <= last; date = date.addDays(1))
            dates.push_back(date);
    } else {
        for (const auto &[date, hours] : bars)
            dates.push_back(date);
    }
    return dates;
}

/// The distance of the lines: 1, 2 or 5, or their tenfold and so on, so that there are a few.
double StepFor(double most)
{
    double step = 0.5;
    const std::array factors = {2.0, 2.0, 2.5}; // 0.5, 1, 2, 5, 10, ...
    for (size_t i = 0; most / step > MostLines; ++i)
        step *= factors[i % factors.size()];
    return step;
}

QString LineText(double hours)
{
    return QString::number(hours, 'g', 12);
}

double Highest(const std::map<QDate, Hours> &bars)
{
    double most = 0;
    for (const auto &[date, bar] : bars)
        most = std::max(most, InHours(bar[0]) + InHours(bar[1]) + InHours(bar[2]));
    return most;
}

} // namespace

const std::array<Chart::Series, 3> &Chart::AllSeries()
{
    // Told apart by people who do not see all colours, and on a black-and-white print.
    static const std::array<Series, 3> series = {{{u"Billable"_s, QColor(0x1b, 0x5e, 0x8c)},
        {u"No Charge"_s, QColor(0xe6, 0x9f, 0x00)}, {u"Do Not Bill"_s, QColor(0xb4, 0xb4, 0xb4)}}};
    return series;
}

QRectF Chart::LegendBox(size_t series) const
{
    return {Area.left() + static_cast<double>(series) * LegendWidth, 4, FontSize, FontSize};
}

QPointF Chart::LegendText(size_t series) const
{
    return LegendBox(series).bottomRight() + QPointF(5, -FontSize * 0.15);
}

Chart LayOutChart(const std::vector<Report::Day> &days)
{
    Chart chart;
    chart.Area = QRectF(LeftMargin, TopMargin, Chart::Width - LeftMargin - RightMargin,
        Chart::Height - TopMargin - BottomMargin);
    const std::map<QDate, Hours> bars = HoursOfDays(days);
    const double most = Highest(bars);
    if (most <= 0)
        return chart;

    const double step = StepFor(most);
    const int lines = static_cast<int>(std::ceil(most / step));
    const double unit = chart.Area.height() / (lines * step);
    for (int i = 0; i <= lines; ++i) {
        const double y = chart.Area.bottom() - i * step * unit;
        chart.Lines.push_back(
            {y, {{chart.Area.left() - 6, y + Chart::FontSize * 0.35}, LineText(i * step)}});
    }

    const std::vector<QDate> places = Places(bars);
    const double place = chart.Area.width() / static_cast<double>(places.size());
    const double width = std::min(place * BarShare, WidestBar);
    const auto labelEvery = static_cast<size_t>(std::ceil(DateLabelWidth / place));
    for (size_t i = 0; i < places.size(); ++i) {
        const double middle = chart.Area.left() + (static_cast<double>(i) + 0.5) * place;
        if (i % labelEvery == 0)
            chart.Dates.push_back({{middle, chart.Area.bottom() + Chart::FontSize * 1.5},
                places[i].toString(u"MM/dd/yyyy"_s)});
        const auto bar = bars.find(places[i]);
        if (bar == bars.end())
            continue;
        double top = chart.Area.bottom();
        for (size_t series = 0; series < bar->second.size(); ++series) {
            const Currency hours = bar->second.at(series);
            if (hours.IsZero())
                continue;
            const double height = InHours(hours) * unit;
            top -= height;
            chart.Pieces.push_back(
                {QRectF(middle - width / 2, top, width, height), series, places[i], hours});
        }
    }
    return chart;
}
