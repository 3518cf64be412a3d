#pragma once

#include <QString>

/// Large files, a piece at a time.

/// Copies a file, durably except for its name, and reads the copy again.
/// Errors: clsRunTimeError 75, naming the copy, also when it does not read as the original.
void CopyContents(const QString &from, const QString &to);

/// False also when one of the files cannot be read.
bool HaveSameContents(const QString &one, const QString &other);
