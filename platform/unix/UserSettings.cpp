#include "platform/UserSettings.h"

#include "platform/DurableFiles.h"

#include <QFileInfo>

std::unique_ptr<QSettings> UserSettings(const QString &programName)
{
    return std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope, programName);
}

void SyncUserSettings(const QSettings &settings)
{
    // The toolkit waits for the file's contents, and not for its name.
    SyncFolder(QFileInfo(settings.fileName()).path());
}
