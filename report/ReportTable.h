#pragma once

#include "report/Report.h"

#include <QString>
#include <QStringList>

#include <vector>

/// The report as a table of texts: what HTML and PDF show alike.
struct ReportTable
{
    struct Column
    {
        QString Heading;
        bool IsNumber = false;
        double Share = 1; ///< of the width
    };

    QString Title;
    QStringList Subtitle; ///< lines below it
    std::vector<Column> Columns;
    std::vector<QStringList> Rows;
    std::vector<QStringList> Totals;
    QString Empty; ///< what to say where there is no row
};

/// `decimalSign` is the system's; days as "MM/dd/yyyy".
ReportTable TabulateReport(const Report &report, QChar decimalSign);
