#pragma once

#include <QSettings>
#include <QString>

#include <memory>

/// Where the system keeps what the user has set in the program of that name: a file of its own, or
/// on Windows the key Software\<name> of the user's registry.
std::unique_ptr<QSettings> SettingsOf(const QString &programName);
