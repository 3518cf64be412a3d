#pragma once

#include "report/Chart.h"
#include "report/ReportTable.h"

#include <QByteArray>

/// The report as one HTML file that needs no other: the chart as inline SVG, then the table.
/// Whatever comes from the databases is text, never markup.
QByteArray HtmlReport(const ReportTable &table, const Chart &chart);
