#pragma once

#include <QString>

/// Synchronises one program folder: finds the installation that the client belongs to, keeps a
/// second client away from the folder, shows how far the work is, and tells the log and standard
/// error what went wrong.
///
/// `client` is the client's own file: the installation's root is the folder above the one that it
/// is in. `programFolder` is the text as it was passed. The result is the client's exit status, 0
/// or 1; nothing is raised.
int Synchronise(const QString &client, const QString &programFolder);
