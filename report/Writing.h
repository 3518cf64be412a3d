#pragma once

#include "report/ReportRequest.h"

#include <QByteArray>
#include <QString>

/// The bytes of the report that is asked for.
/// Errors: those of ReadReport.
QByteArray MakeReport(const ReportRequest &request);

/// Writes the report into the file, completely or not at all; to standard output without a name.
/// Errors: clsRunTimeError, naming the file, also for a folder, a pipe, or a device, which are
///         left unchanged.
void WriteReport(const QByteArray &bytes, const QString &output);
