#include "platform/SettingsOf.h"

using namespace Qt::StringLiterals;

std::unique_ptr<QSettings> SettingsOf(const QString &programName)
{
    // By its path: without an organisation the toolkit puts a level of its own below the name.
    return std::make_unique<QSettings>(
        u"HKEY_CURRENT_USER\\Software\\"_s + programName, QSettings::NativeFormat);
}
