#pragma once

#include "store/Tables.h"

#include <QString>

/// What to do about the databases among the store's Failures(): those that are there but cannot be
/// opened, or opened but not read.

/// Whether the error is about the file itself, and not about the disk or a program's use of it.
bool IsUnusable(const clsRunTimeError &error);

/// The line at the bottom of the locked window: which file it is and what the user does about it.
/// Entries are never fetched again, so for them it names the newest copy that is sound. Empty
/// without a failure.
QString LockedNotice(Tables &tables);

/// Gives a damaged database that only this program writes another name next to it, so that it can
/// be created again. False for one of another program, a folder, and one that is in use: they stay.
/// Errors: clsRunTimeError 75, naming the file.
bool SetAsideIfDamaged(const modDBMain &main, const QString &name);
