#pragma once

#include "report/Chart.h"
#include "report/ReportTable.h"

#include <QByteArray>

/// The report as a PDF on A4: the chart, then the table over as many pages as it takes, its
/// headings on each. Tables with many columns lie across.
///
/// Needs a QGuiApplication, which gives the fonts.
QByteArray PdfReport(const ReportTable &table, const Chart &chart);
