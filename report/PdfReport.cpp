#include "report/PdfReport.h"

#include <QBuffer>
#include <QFontMetricsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

// Lengths are in units of a hundredth of a point: fonts have whole sizes in them.
constexpr double Point = 100;
constexpr int UnitsPerInch = 7200;
constexpr double FooterHeight = 24 * Point;
constexpr double CellPadding = 4 * Point;
constexpr double RoomForHeadings = 60 * Point;
constexpr double LineWidth = 0.5 * Point;
constexpr double TitleSize = 16 * Point;
constexpr double SubtitleSize = 9.5 * Point;
constexpr double TextSize = 8.5 * Point;
constexpr double MarginMillimeters = 14;
constexpr size_t MostColumnsUpright = 7;
constexpr double LargestChartScale = 0.8 * Point;

QFont FontOf(double size, bool bold = false)
{
    QFont font(u"sans-serif"_s);
    font.setPixelSize(static_cast<int>(std::lround(size)));
    font.setBold(bold);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

/// A text in lines of that width, broken between words, or within one that is longer.
class Paragraph
{
public:
    Paragraph(const QString &text, const QFont &font, double width, Qt::Alignment alignment)
        : m_layout(QString(text).replace(u'\n', QChar::LineSeparator), font)
    {
        QTextOption option(alignment);
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        m_layout.setTextOption(option);
        m_layout.beginLayout();
        for (QTextLine line = m_layout.createLine(); line.isValid(); line = m_layout.createLine()) {
            line.setLineWidth(width);
            line.setPosition({0, m_height});
            m_height += line.height();
        }
        m_layout.endLayout();
    }

    double Height() const { return m_height; }
    void Draw(QPainter &painter, QPointF place) const { m_layout.draw(&painter, place); }

private:
    QTextLayout m_layout;
    double m_height = 0;
};

class PdfPainter
{
public:
    PdfPainter(const ReportTable &table, const Chart &chart, QPdfWriter &writer)
        : m_table(table)
        , m_chart(chart)
        , m_writer(writer)
        , m_painter(&writer)
        , m_width(writer.width())
        , m_bottom(writer.height() - FooterHeight)
        , m_grey(0x60, 0x60, 0x60)
    {
        MeasureColumns();
    }

    void Paint()
    {
        DrawHead();
        if (m_table.Rows.empty()) {
            m_painter.setFont(FontOf(SubtitleSize));
            DrawLine(m_table.Empty, Qt::black);
        } else {
            DrawTable();
        }
        DrawFooter();
    }

private:
    void MeasureColumns()
    {
        double shares = 0;
        for (const ReportTable::Column &column : m_table.Columns)
            shares += column.Share;
        for (const ReportTable::Column &column : m_table.Columns)
            m_widths.push_back(m_width * column.Share / shares);
    }

    void DrawLine(const QString &text, const QColor &colour)
    {
        m_painter.setPen(colour);
        const Paragraph paragraph(text, m_painter.font(), m_width, Qt::AlignLeft);
        paragraph.Draw(m_painter, {0, m_y});
        m_y += paragraph.Height();
    }

    void DrawHead()
    {
        m_painter.setFont(FontOf(TitleSize, true));
        DrawLine(m_table.Title, Qt::black);
        m_painter.setFont(FontOf(SubtitleSize));
        for (const QString &line : m_table.Subtitle)
            DrawLine(line, m_grey);
        m_y += 12 * Point;
        if (!m_chart.IsEmpty())
            DrawChart();
    }

    void DrawChart()
    {
        const double scale = std::min(m_width / Chart::Width, LargestChartScale);
        m_painter.save();
        m_painter.translate(0, m_y);
        m_painter.scale(scale / Point, scale / Point); // text keeps whole sizes
        m_painter.setFont(FontOf(Chart::FontSize * Point));
        for (const Chart::Line &line : m_chart.Lines) {
            m_painter.setPen(QPen(QColor(0xd0, 0xd0, 0xd0), LineWidth));
            m_painter.drawLine(QPointF(m_chart.Area.left(), line.Y) * Point,
                QPointF(m_chart.Area.right(), line.Y) * Point);
            DrawLabel(line.Hours, 1);
        }
        for (const Chart::Piece &piece : m_chart.Pieces)
            DrawBox(piece.Place, piece.Series);
        for (const Chart::Label &label : m_chart.Dates)
            DrawLabel(label, 0.5);
        for (size_t i = 0; i < Chart::AllSeries().size(); ++i) {
            DrawBox(m_chart.LegendBox(i), i);
            DrawLabel({m_chart.LegendText(i), Chart::AllSeries().at(i).Name}, 0);
        }
        m_painter.restore();
        m_y += Chart::Height * scale + 14 * Point;
    }

    void DrawBox(const QRectF &place, size_t series)
    {
        m_painter.fillRect(QRectF(place.topLeft() * Point, place.size() * Point),
            Chart::AllSeries().at(series).Colour);
    }

    /// `before`: the part of the text that stands left of its place.
    void DrawLabel(const Chart::Label &label, double before)
    {
        m_painter.setPen(m_grey);
        const double width = QFontMetricsF(m_painter.font()).horizontalAdvance(label.Text);
        m_painter.drawText(label.Place * Point - QPointF(width * before, 0), label.Text);
    }

    Paragraph CellText(const QStringList &cells, qsizetype index) const
    {
        const auto column = static_cast<size_t>(index);
        return {cells[index], m_painter.font(), m_widths[column] - 2 * CellPadding,
            m_table.Columns[column].IsNumber ? Qt::AlignRight : Qt::AlignLeft};
    }

    double HeightOf(const QStringList &cells) const
    {
        double height = 0;
        for (qsizetype i = 0; i < cells.size(); ++i)
            height = std::max(height, CellText(cells, i).Height());
        // What is longer than a page is cut.
        return std::min(height + 2 * CellPadding, m_bottom - RoomForHeadings);
    }

    void DrawCells(const QStringList &cells, double height)
    {
        m_painter.setPen(Qt::black);
        double x = 0;
        for (qsizetype i = 0; i < cells.size(); ++i) {
            const double width = m_widths[static_cast<size_t>(i)];
            m_painter.setClipRect(QRectF(x, m_y, width, height));
            CellText(cells, i).Draw(m_painter, {x + CellPadding, m_y + CellPadding});
            x += width;
        }
        m_painter.setClipping(false);
        m_y += height;
    }

    void DrawRule(double width)
    {
        m_painter.setPen(QPen(m_grey, width));
        m_painter.drawLine(QPointF(0, m_y), QPointF(m_width, m_y));
    }

    void DrawHeadings()
    {
        QStringList headings;
        for (const ReportTable::Column &column : m_table.Columns)
            headings.append(column.Heading);
        m_painter.setFont(FontOf(TextSize, true));
        DrawCells(headings, HeightOf(headings));
        DrawRule(2 * LineWidth);
        m_painter.setFont(FontOf(TextSize));
    }

    /// Begins a page, with the headings again, when `height` does not fit on this one.
    void MakeRoom(double height)
    {
        if (m_y + height <= m_bottom)
            return;
        const QFont font = m_painter.font();
        DrawFooter();
        m_writer.newPage();
        ++m_page;
        m_y = 0;
        DrawHeadings();
        m_painter.setFont(font);
    }

    void DrawTable()
    {
        MakeRoomForTheFirstRows();
        DrawHeadings();
        bool shaded = false;
        for (const QStringList &row : m_table.Rows) {
            const double height = HeightOf(row);
            MakeRoom(height);
            if (shaded)
                m_painter.fillRect(QRectF(0, m_y, m_width, height), QColor(0xf3, 0xf3, 0xf3));
            shaded = !shaded;
            DrawCells(row, height);
        }
        DrawTotals();
    }

    void MakeRoomForTheFirstRows()
    {
        if (m_y + 80 * Point <= m_bottom)
            return;
        DrawFooter();
        m_writer.newPage();
        ++m_page;
        m_y = 0;
    }

    void DrawTotals()
    {
        m_painter.setFont(FontOf(TextSize, true));
        double height = 0;
        for (const QStringList &row : m_table.Totals)
            height += HeightOf(row);
        MakeRoom(height); // they stay together
        DrawRule(2 * LineWidth);
        for (const QStringList &row : m_table.Totals)
            DrawCells(row, HeightOf(row));
    }

    void DrawFooter()
    {
        m_painter.setFont(FontOf(TextSize));
        m_painter.setPen(m_grey);
        const QRectF place(0, m_bottom, m_width, FooterHeight);
        m_painter.drawText(place, Qt::AlignLeft | Qt::AlignBottom, m_table.Title);
        m_painter.drawText(
            place, Qt::AlignRight | Qt::AlignBottom, u"Page "_s + QString::number(m_page));
    }

    const ReportTable &m_table;
    const Chart &m_chart;
    QPdfWriter &m_writer;
    QPainter m_painter;
    double m_width;
    double m_bottom;
    QColor m_grey;
    std::vector<double> m_widths;
    double m_y = 0;
    int m_page = 1;
};

} // namespace

QByteArray PdfReport(const ReportTable &table, const Chart &chart)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setResolution(UnitsPerInch);
    writer.setTitle(table.Title);
    writer.setCreator(u"Worklog Remote"_s);
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4),
        table.Columns.size() > MostColumnsUpright ? QPageLayout::Landscape : QPageLayout::Portrait,
        QMarginsF(MarginMillimeters, MarginMillimeters, MarginMillimeters, MarginMillimeters),
        QPageLayout::Millimeter));
    PdfPainter(table, chart, writer).Paint();
    return bytes;
}
