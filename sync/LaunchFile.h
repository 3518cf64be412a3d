#pragma once

#include <QString>

/// mas90.ini: how to start the accounting client.
struct LaunchFile
{
    QString Root; ///< line 1: the installation's root folder
    QString Arguments; ///< line 2: the argument text for the client
};

/// Reads the first two lines as they are, without their line ends; see TextLines for the forms that
/// the file may have.
/// Errors: clsRunTimeError 53 when the file is missing, 62 when it has fewer than two lines, 75
///         when it cannot be read; each names the file.
LaunchFile ReadLaunchFile(const QString &path);

/// Its first line alone, which is enough to configure the rest again.
/// Errors: as above; 62 when the file is empty.
QString ReadLaunchRoot(const QString &path);

/// Writes the two lines as UTF-8, whole or not at all: on the disk on return.
/// Errors: clsRunTimeError 75, naming the file; what was there before is then still there.
void WriteLaunchFile(const QString &path, const LaunchFile &launch);

// In these texts a double quote inside a path or a name is doubled, as SplitCommandLine reads it.

/// The argument text for a MAS 90 installation.
QString MAS90Arguments(const QString &root);
/// The argument text for a MAS 200 client.
QString MAS200Arguments(const QString &root, const QString &host, const QString &port);

/// The text that starts the client: root & "Home", pvxwin32.exe -hd, the arguments, and the
/// program folder in double quotes with each blank as "*".
QString ClientCommandLine(const LaunchFile &launch, const QString &programFolder);

/// What follows the program in that text.
QString ClientArguments(const LaunchFile &launch, const QString &programFolder);

/// Whether the client would receive that folder: a double quote too many in the launch file takes
/// in what follows it, and in a name with both spaces and stars the two cannot be told apart.
bool TellsFolder(const QString &clientArguments, const QString &programFolder);
