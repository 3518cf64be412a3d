// The HTML of a report: well-formed, alone, and without a word of markup from the data.

#include "report/HtmlReport.h"

#include "tests/support/PrintQt.h"

#include <QXmlStreamReader>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QString Hostile = QStringLiteral("<script>alert('&quot;\"')</script>\x01\x7f\x9f&amp;");

/// The texts of all elements of that name, and how many elements there are of each.
struct Document
{
    explicit Document(const QByteArray &html)
    {
        QXmlStreamReader reader(html);
        QStringList open;
        while (!reader.atEnd()) {
            reader.readNext();
            if (reader.isStartElement()) {
                open.append(reader.name().toString());
                ++Count[open.last()];
                Texts[open.last()].append(QString());
            } else if (reader.isCharacters() && !open.isEmpty()) {
                Texts[open.last()].last() += reader.text();
            } else if (reader.isEndElement()) {
                open.removeLast();
            }
        }
        EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    }

    QMap<QString, QStringList> Texts;
    QMap<QString, int> Count;
};

ReportTable Table(const QStringList &row)
{
    ReportTable table;
    table.Title = u"Hours"_s;
    table.Columns = {{u"Date"_s, false, 1}, {u"Billable"_s, true, 1}};
    table.Rows = {row};
    table.Totals = {{u"Totals"_s, u"7.50"_s}};
    table.Empty = u"No hours."_s;
    return table;
}

} // namespace

TEST(ReportHtml, ShowsEveryCellAndTotal)
{
    const Document html(HtmlReport(Table({u"03/09/2026"_s, u"7.50"_s}), Chart()));
    EXPECT_EQ(html.Texts[u"title"_s], QStringList{u"Hours"_s});
    EXPECT_EQ(html.Texts[u"td"_s], (QStringList{u"03/09/2026"_s, u"7.50"_s, u"7.50"_s}));
    EXPECT_EQ(html.Texts[u"th"_s], (QStringList{u"Date"_s, u"Billable"_s, u"Totals"_s}));
    EXPECT_EQ(html.Count.value(u"svg"_s), 0);
}

TEST(ReportHtml, LetsABrowserLoadNothingAndRunNothing)
{
    EXPECT_TRUE(HtmlReport(Table({u"a"_s, u"b"_s}), Chart())
                    .contains("<meta http-equiv=\"Content-Security-Policy\" "
                              "content=\"default-src 'none'; style-src 'unsafe-inline'\"/>"));
}

TEST(ReportHtml, TakesNothingFromTheDataForMarkup)
{
    ReportTable table = Table({Hostile, Hostile});
    table.Title = Hostile;
    table.Subtitle = {Hostile};
    table.Columns[0].Heading = Hostile;
    table.Totals = {{Hostile, Hostile}};
    const QByteArray bytes = HtmlReport(table, Chart());
    const Document html(bytes);
    QString shown = Hostile;
    for (const char16_t forbidden : {u'\x01', u'\x7f', u'\x9f'})
        shown.replace(forbidden, QChar::ReplacementCharacter);
    EXPECT_EQ(html.Count.value(u"script"_s), 0);
    EXPECT_EQ(html.Texts[u"h1"_s], QStringList{shown});
    EXPECT_EQ(html.Texts[u"p"_s], QStringList{shown});
    EXPECT_EQ(html.Texts[u"td"_s], (QStringList{shown, shown, shown}));
    EXPECT_FALSE(bytes.contains("<script"));
}

TEST(ReportHtml, HasAPieceOfTheChartForEachStatusOfADay)
{
    const Report::Day day{QDate(2026, 3, 9), Currency::FromWhole(4), Currency::FromWhole(2),
        Currency::FromWhole(1), {}, {}};
    const Document html(HtmlReport(Table({u"03/09/2026"_s, u"4.00"_s}), LayOutChart({day})));
    EXPECT_EQ(html.Count.value(u"svg"_s), 1);
    EXPECT_EQ(html.Count.value(u"rect"_s), 6); // three of them are the legend's
    EXPECT_THAT(html.Texts[u"title"_s],
        testing::ElementsAre(u"Hours"_s, u"Hours by day and billing status"_s,
            u"03/09/2026: 4.00 Billable"_s, u"03/09/2026: 2.00 No Charge"_s,
            u"03/09/2026: 1.00 Do Not Bill"_s));
}

TEST(ReportHtml, WithoutRowsSaysSo)
{
    ReportTable table = Table({});
    table.Rows.clear();
    const Document html(HtmlReport(table, Chart()));
    EXPECT_EQ(html.Count.value(u"table"_s), 0);
    EXPECT_EQ(html.Texts[u"p"_s], QStringList{u"No hours."_s});
}
