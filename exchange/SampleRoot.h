#pragma once

#include <QString>

/// Makes an installation to try things out: the marker file, the client, the server's settings and
/// the CSV files of two invented companies (SampleData.h).
///
/// Files:  <root>/soa/startup.m4p, <root>/Home/pvxwin32.exe (a copy of `client`),
///         <root>/launcher/sota.ini, <root>/worklog/... Of these, what is there already stays.
/// Errors: clsRunTimeError. A root with a worklog folder is refused before anything is written:
///         its files are somebody's.
void MakeSampleRoot(const QString &root, const QString &client);
