#pragma once

#include "report/Report.h"

#include <QByteArray>

/// The report as CSV: RFC 4180, UTF-8, a line of headings; days as "yyyy-MM-dd", numbers with ".".
///
/// Safe:  a text that a spreadsheet program would take for a formula begins with an apostrophe.
/// Shape: with `totals` the lines of totals follow, "Total" in the first column.
QByteArray CsvReport(const Report &report, bool totals);
