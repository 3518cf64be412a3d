#include "platform/UserSettings.h"

using namespace Qt::StringLiterals;

std::unique_ptr<QSettings> UserSettings(const QString &programName)
{
    // By its path: below the name of an organisation another level would come in between.
    return std::make_unique<QSettings>(
        u"HKEY_CURRENT_USER\\Software\\"_s + programName, QSettings::NativeFormat);
}

void SyncUserSettings(const QSettings &)
{
    // The toolkit has flushed the registry.
}
