#pragma once

#include <QString>

/// Synchronises one program folder: finds the installation that the client belongs to, keeps a
/// second client away from the folder, shows how far the work is, and tells the log and standard
/// error what went wrong.
///
/// `programFolder` is the text as it was passed. The result is the client's exit status, 0 or 1;
/// nothing is raised.
int Synchronise(const QString &programFolder);
