#pragma once

#include <QDate>
#include <QString>

enum class ReportContent
{
    Entries,
    Days
};

enum class ReportFormat
{
    Csv,
    Html,
    Pdf
};

/// What is asked of a report. An empty code and an invalid date do not restrict.
struct ReportRequest
{
    ReportContent Content = ReportContent::Entries;
    ReportFormat Format = ReportFormat::Csv;
    QString Folder; ///< where the databases lie; empty: where the program lies
    QString Company; ///< empty: the one last worked in
    QString Customer;
    QString Project;
    QString Activity;
    QDate From;
    QDate To; ///< the last day that counts
    QString Output; ///< empty: standard output
    bool Totals = false; ///< in CSV; the other formats always have them
};
