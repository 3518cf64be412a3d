#pragma once

#include <QString>

/// mas90.ini: how to start the accounting client.
struct LaunchFile
{
    QString Root; ///< line 1: the installation's root folder
    QString Arguments; ///< line 2: the argument text for the client
};

/// Reads the two lines, with CR LF or LF ends, with or without a byte order mark, as UTF-8 or,
/// where they are none, in Latin-1.
/// Errors: clsRunTimeError 53 when the file is missing, 62 when it has fewer than two lines or
///         an empty root, 75 when it cannot be read; each names the file.
LaunchFile ReadLaunchFile(const QString &path);

/// The text that starts the client: root & "Home", pvxwin32.exe -hd, the arguments, and the
/// program folder in double quotes with each blank as "*".
QString ClientCommandLine(const LaunchFile &launch, const QString &programFolder);

/// What follows the program in that text.
QString ClientArguments(const LaunchFile &launch, const QString &programFolder);
