#include "platform/UserSettings.h"

std::unique_ptr<QSettings> UserSettings(const QString &programName)
{
    return std::make_unique<QSettings>(
        QSettings::NativeFormat, QSettings::UserScope, programName);
}
