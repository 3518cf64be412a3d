#pragma once

#include <QSettings>
#include <QString>

#include <memory>

/// Where the system keeps a user's settings for a program: on Linux the file <program>.conf among
/// the user's settings, on Windows HKEY_CURRENT_USER\Software\<program> in the registry. There is
/// no organisation: the program's name stands alone.
std::unique_ptr<QSettings> UserSettings(const QString &programName);

/// Waits until what was changed in them is on the disk; the settings have synced without an error.
void SyncUserSettings(const QSettings &settings);
