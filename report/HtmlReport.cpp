#include "report/HtmlReport.h"

using namespace Qt::StringLiterals;

namespace {

const QString Style = QStringLiteral(R"(
:root { color-scheme: light dark; }
body { font: 15px/1.45 system-ui, sans-serif; margin: 2rem auto; max-width: 78rem; padding: 0 1rem; }
h1 { font-size: 1.5rem; margin: 0 0 .2rem; }
p { margin: 0; opacity: .8; }
figure { margin: 1.5rem 0; }
svg { display: block; height: auto; max-width: 50rem; width: 100%; }
svg text { fill: currentColor; font: 10px system-ui, sans-serif; }
svg line { stroke: currentColor; stroke-opacity: .2; }
.scroll { overflow-x: auto; }
table { border-collapse: collapse; font-variant-numeric: tabular-nums; margin-top: 1.5rem; }
th, td { padding: .3rem .7rem; text-align: left; vertical-align: top; }
thead th { border-bottom: 2px solid; }
tbody tr:nth-child(even) { background: rgba(128, 128, 128, .12); }
td { white-space: pre-wrap; }
.n { text-align: right; white-space: nowrap; }
tfoot td, tfoot th { border-top: 1px solid rgba(128, 128, 128, .5); font-weight: bold; }
tfoot tr:first-child > * { border-top: 2px solid; }
@media print { body { margin: 0; max-width: none; } thead { display: table-header-group; } }
)");

/// Text for between two tags, or between double quotes. What HTML forbids becomes a mark.
QString Escaped(const QString &text)
{
    QString plain = text;
    for (QChar &c : plain) {
        const char16_t code = c.unicode();
        if ((code < 0x20 && code != '\t' && code != '\n' && code != '\r')
            || (code >= 0x7f && code < 0xa0) || code == 0xfffe || code == 0xffff)
            c = QChar::ReplacementCharacter;
    }
    return plain.toHtmlEscaped().replace(u'\'', u"&#39;"_s);
}

QString Number(double value)
{
    return QString::number(value, 'f', 2);
}

class SvgChart
{
public:
    QString Draw(const Chart &chart)
    {
        Add(u"<svg viewBox=\"0 0 %1 %2\" role=\"img\" aria-labelledby=\"chart-title\">"_s
            u"<title id=\"chart-title\">Hours by day and billing status</title>"_s.arg(
                Number(Chart::Width), Number(Chart::Height)));
        Legend(chart);
        for (const Chart::Line &line : chart.Lines) {
            Add(u"<line x1=\"%1\" x2=\"%2\" y1=\"%3\" y2=\"%3\"/>"_s.arg(
                Number(chart.Area.left()), Number(chart.Area.right()), Number(line.Y)));
            Text(line.Hours, u"end"_s);
        }
        for (const Chart::Piece &piece : chart.Pieces)
            Draw(piece);
        for (const Chart::Label &label : chart.Dates)
            Text(label, u"middle"_s);
        Add(u"</svg>"_s);
        return m_svg;
    }

private:
    void Add(const QString &markup) { m_svg += markup + u'\n'; }

    void Rect(const QRectF &place, size_t series, const QString &title)
    {
        Add(u"<rect x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\" fill=\"%5\">%6</rect>"_s.arg(
            Number(place.x()), Number(place.y()), Number(place.width()), Number(place.height()),
            Chart::AllSeries().at(series).Colour.name(), title));
    }

    void Text(const Chart::Label &label, const QString &anchor)
    {
        Add(u"<text x=\"%1\" y=\"%2\" text-anchor=\"%3\">%4</text>"_s.arg(
            Number(label.Place.x()), Number(label.Place.y()), anchor, Escaped(label.Text)));
    }

    void Draw(const Chart::Piece &piece)
    {
        const QString what = u"%1: %2 %3"_s.arg(piece.Date.toString(u"MM/dd/yyyy"_s),
            FormatCurrency(piece.Hours, 2, LeadingZero::Yes),
            Chart::AllSeries().at(piece.Series).Name);
        Rect(piece.Place, piece.Series, u"<title>"_s + Escaped(what) + u"</title>"_s);
    }

    void Legend(const Chart &chart)
    {
        for (size_t i = 0; i < Chart::AllSeries().size(); ++i) {
            const QRectF box = chart.LegendBox(i);
            Rect(box, i, {});
            Text({chart.LegendText(i), Chart::AllSeries().at(i).Name}, u"start"_s);
        }
    }

    QString m_svg;
};

QString Row(const QStringList &cells, const std::vector<ReportTable::Column> &columns,
    const QString &firstTag)
{
    QString row = u"<tr>"_s;
    for (qsizetype i = 0; i < cells.size(); ++i) {
        const QString tag = i == 0 ? firstTag : u"td"_s;
        const QString scope = tag == "th"_L1 ? u" scope=\"row\""_s : QString();
        const QString align
            = columns[static_cast<size_t>(i)].IsNumber ? u" class=\"n\""_s : QString();
        row += u"<%1%2%3>%4</%1>"_s.arg(tag, scope, align, Escaped(cells[i]));
    }
    return row + u"</tr>\n"_s;
}

QString Table(const ReportTable &table)
{
    QString html = u"<div class=\"scroll\">\n<table>\n<thead>\n<tr>"_s;
    for (const ReportTable::Column &column : table.Columns)
        html += u"<th scope=\"col\"%1>%2</th>"_s.arg(
            column.IsNumber ? u" class=\"n\""_s : QString(), Escaped(column.Heading));
    html += u"</tr>\n</thead>\n<tbody>\n"_s;
    for (const QStringList &row : table.Rows)
        html += Row(row, table.Columns, u"td"_s);
    html += u"</tbody>\n<tfoot>\n"_s;
    for (const QStringList &row : table.Totals)
        html += Row(row, table.Columns, u"th"_s);
    return html + u"</tfoot>\n</table>\n</div>\n"_s;
}

} // namespace

QByteArray HtmlReport(const ReportTable &table, const Chart &chart)
{
    QString html = u"<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\"/>\n"_s
                   u"<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"/>\n"_s
                   u"<meta http-equiv=\"Content-Security-Policy\" "_s
                   u"content=\"default-src 'none'; style-src 'unsafe-inline'\"/>\n"_s;
    html += u"<title>"_s + Escaped(table.Title) + u"</title>\n<style>"_s + Style
        + u"</style>\n</head>\n<body>\n"_s;
    html += u"<h1>"_s + Escaped(table.Title) + u"</h1>\n"_s;
    for (const QString &line : table.Subtitle)
        html += u"<p>"_s + Escaped(line) + u"</p>\n"_s;
    if (!chart.IsEmpty())
        html += u"<figure>\n"_s + SvgChart().Draw(chart) + u"</figure>\n"_s;
    html += table.Rows.empty() ? u"<p>"_s + Escaped(table.Empty) + u"</p>\n"_s : Table(table);
    return (html + u"</body>\n</html>\n"_s).toUtf8();
}
