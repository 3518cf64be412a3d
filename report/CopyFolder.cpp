#include "report/CopyFolder.h"

#include "platform/clsRunTimeError.h"
#include "store/StoreErrors.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

const QString Prefix = QStringLiteral("worklog-report-");
const QString LockName = QStringLiteral("in-use.lock");

void RemoveIfUnused(const QString &path)
{
    QDir folder(path);
    if (!QFileInfo(folder.filePath(LockName)).isFile())
        return;
    clsInstanceLock lock;
    try {
        lock.CreateAndHold(folder.filePath(LockName));
    } catch (const clsRunTimeError &) {
        return; // in use, or not accessible
    }
    for (const QString &name : folder.entryList(QDir::Files | QDir::Hidden | QDir::System)) {
        if (name != LockName)
            folder.remove(name);
    }
    lock.CloseAndRemove();
    QDir().rmdir(path);
}

/// Of the same account only: the temporary folder can belong to every account.
void RemoveLeftovers(const QString &own)
{
    const uint owner = QFileInfo(own).ownerId();
    const QFileInfoList folders
        = QDir(QFileInfo(own).path())
              .entryInfoList({Prefix + u"??????"_s}, QDir::Dirs | QDir::NoSymLinks);
    for (const QFileInfo &folder : folders) {
        if (folder.filePath() != own && folder.ownerId() == owner)
            RemoveIfUnused(folder.filePath());
    }
}

} // namespace

CopyFolder::CopyFolder()
    : m_folder(QDir(QDir::tempPath()).filePath(Prefix + u"XXXXXX"_s))
{
    if (!m_folder.isValid())
        RaiseStoreError(StoreErrors::WriteFailed,
            u"There is no space for a copy of the databases: "_s + m_folder.errorString());
    m_lock.CreateAndHold(m_folder.filePath(LockName));
    RemoveLeftovers(m_folder.path());
}
