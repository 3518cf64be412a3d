#pragma once

#include <QString>

/// Where files lie: the one place that joins and looks up paths.

/// folder & separator & name, with the platform's separator. A separator that the folder already
/// ends with is not doubled; "/" inside `name` becomes the platform's separator.
QString JoinPath(const QString &folder, const QString &name);

/// The folder of the running program's file, without a separator at its end.
/// Errors: clsRunTimeError 75 for a folder whose name is not UTF-8: its files cannot be named.
QString ProgramFolder();

/// The existing file or folder `relative` under `root`, whatever the case of its letters:
/// accounting installations mix "Home" and "home". Empty when there is none. An entry with the
/// very letters wins over one that differs in case, unless the rest is only found below the other.
QString FindIgnoringCase(const QString &root, const QString &relative);

/// The folder `path`, or the nearest one above it that is there; the user's own for no path at all.
QString NearestFolder(const QString &path);

/// The first `most` bytes of a plain file.
/// Errors: those of OpenPlainFile.
QByteArray ReadFileHead(const QString &path, qint64 most);
