#pragma once

#include "report/Report.h"

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QString>

#include <array>
#include <vector>

/// Where the parts of the chart "hours by day and billing status" lie: one stacked bar a day.
///
/// Units: of a sheet that is Width by Height; whoever draws it scales.
/// Shape: up to three months stand as a calendar, with a place for every day; in a longer time only
///        days with hours have one. Hours below zero are not drawn.
struct Chart
{
    static constexpr double Width = 720;
    static constexpr double Height = 260;
    static constexpr double FontSize = 10;

    struct Series
    {
        QString Name;
        QColor Colour;
    };
    struct Piece
    {
        QRectF Place;
        size_t Series = 0; ///< in AllSeries
        QDate Date;
        Currency Hours;
    };
    struct Label
    {
        QPointF Place; ///< the middle of its base line, or its right end at the hours' axis
        QString Text;
    };
    struct Line
    {
        double Y = 0;
        Label Hours;
    };

    QRectF Area; ///< that the bars stand in
    std::vector<Piece> Pieces;
    std::vector<Line> Lines; ///< across the area, the lowest one being zero
    std::vector<Label> Dates;

    bool IsEmpty() const { return Pieces.empty(); }
    QRectF LegendBox(size_t series) const;
    QPointF LegendText(size_t series) const; ///< the left end of its base line
    static const std::array<Series, 3> &AllSeries();
};

Chart LayOutChart(const std::vector<Report::Day> &days);
