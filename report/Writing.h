#pragma once

#include "report/ReportRequest.h"

#include <QByteArray>
#include <QString>

/// The bytes of the report that is asked for.
/// Errors: those of ReadReport.
QByteArray MakeReport(const ReportRequest &request);

/// Into the file, which is there whole or not at all, or to standard output where there is none.
/// Errors: clsRunTimeError, naming the file.
void WriteReport(const QByteArray &bytes, const QString &output);
