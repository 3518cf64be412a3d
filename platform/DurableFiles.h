#pragma once

#include <QString>

/// File operations whose effect is on the disk when they return, unless they say otherwise.
///
/// Errors: clsRunTimeError 75, naming the file; what was there before is then still there.

/// Waits until the contents of a closed file are on the disk.
void SyncFile(const QString &path);

/// Waits until the names in a folder are on the disk.
void SyncFolder(const QString &folder);

/// Gives `from` the name `to` in one step, in place of what stood there, durably. Both lie on
/// one file system.
void ReplaceFile(const QString &from, const QString &to);

/// Gives `from` the name `to`, unless `to` exists: then false, and nothing has changed. Waits for
/// no disk: for files that are of no use after a crash.
bool TakeNewName(const QString &from, const QString &to);

/// Gives `from` the name `to` durably, unless `to` exists: then false, and nothing has changed.
bool MoveToNewName(const QString &from, const QString &to);
