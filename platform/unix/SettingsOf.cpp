#include "platform/SettingsOf.h"

std::unique_ptr<QSettings> SettingsOf(const QString &programName)
{
    // There is no organisation: the program's name stands alone, as the top level of its settings.
    return std::make_unique<QSettings>(
        QSettings::NativeFormat, QSettings::UserScope, programName);
}
