#include "report/Writing.h"

#include "platform/clsRunTimeError.h"
#include "platform/Console.h"
#include "report/Chart.h"
#include "report/CsvReport.h"
#include "report/HtmlReport.h"
#include "report/PdfReport.h"
#include "report/Report.h"
#include "report/ReportTable.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSaveFile>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void RaiseNotWritten(const QString &what, const QString &reason)
{
    throw clsRunTimeError(RunTimeErrors::PathAccess, u"Report"_s,
        u"The report cannot be written to %1: %2"_s.arg(what, reason));
}

/// Replacing the file would replace a pipe, or a device of the whole computer.
void RequireRegularFile(const QString &output)
{
    const QFileInfo target(output);
    if (target.isDir())
        RaiseNotWritten(output, u"this is a folder"_s);
    if (target.exists() && !target.isFile())
        RaiseNotWritten(output, u"this is not a regular file"_s);
}

} // namespace

QByteArray MakeReport(const ReportRequest &request)
{
    const Report report = ReadReport(request);
    if (request.Format == ReportFormat::Csv)
        return CsvReport(report, request.Totals);
    const ReportTable table = TabulateReport(report, QLocale().decimalPoint().at(0));
    const Chart chart = LayOutChart(report.Days);
    return request.Format == ReportFormat::Html ? HtmlReport(table, chart)
                                                : PdfReport(table, chart);
}

void WriteReport(const QByteArray &bytes, const QString &output)
{
    if (output.isEmpty()) {
        SendOutputAsItIs();
        QFile standardOutput;
        if (!standardOutput.open(stdout, QIODevice::WriteOnly)
            || standardOutput.write(bytes) != bytes.size() || !standardOutput.flush())
            RaiseNotWritten(u"standard output"_s, standardOutput.errorString());
        return;
    }
    RequireRegularFile(output);
    QSaveFile file(output);
    // Committing alone would replace the previous report by one that does not fit the disk.
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush()
        || !file.commit())
        RaiseNotWritten(output, file.errorString());
}
