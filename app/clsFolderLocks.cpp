#include "app/clsFolderLocks.h"

#include "platform/clsRunTimeError.h"
#include "platform/LockFiles.h"
#include "platform/Paths.h"

#include <QFileInfo>
#include <QScopeGuard>

using namespace Qt::StringLiterals;

clsFolderLocks::clsFolderLocks(const QString &programFolder)
    : m_folder(programFolder)
{
}

clsFolderLocks::~clsFolderLocks()
{
    m_databases.CloseAndRemove();
}

void clsFolderLocks::Hold()
{
    m_instance.CreateAndHold(JoinPath(m_folder, u"WLRemote.txt"_s));
    if (!m_databases.IsHeld())
        HoldDatabases();
}

void clsFolderLocks::HoldDatabases()
{
    try {
        RequireNoClient();
        m_databases.CreateAndHold(JoinPath(m_folder, DatabaseLockFile()));
    } catch (const clsRunTimeError &error) {
        m_instance.Close();
        if (error.Number() != RunTimeErrors::PermissionDenied)
            throw;
        throw clsRunTimeError(SynchronizationRunning, u"FolderLocks"_s,
            u"A synchronization is still running in the folder "_s + m_folder
                + u". Start Worklog Remote again when it has ended"_s);
    }
}

void clsFolderLocks::RequireNoClient() const
{
    // Only a program that holds its own lock makes this one.
    const QString file = JoinPath(m_folder, ClientLockFile());
    if (!QFileInfo::exists(file))
        return;
    clsInstanceLock client;
    client.CreateAndHold(file);
    client.CloseAndRemove();
}

void clsFolderLocks::GiveDatabasesToClient()
{
    try {
        m_client.CreateAndHold(JoinPath(m_folder, ClientLockFile()));
        m_client.LetChildrenHold();
    } catch (const clsRunTimeError &error) {
        m_client.CloseAndRemove();
        // What an earlier client has left running on Windows holds it, which is as good.
        if (error.Number() != RunTimeErrors::PermissionDenied)
            throw;
    }
    m_databases.CloseAndRemove();
}

void clsFolderLocks::TakeDatabasesBack()
{
    m_client.ReleaseForAll();
    try {
        m_databases.CreateAndHold(JoinPath(m_folder, DatabaseLockFile()));
    } catch (const clsRunTimeError &) {
        return; // the next Hold() tries again and reports it
    }
}

clsClientProcess::clsClientProcess(clsFolderLocks &locks, clsProcess &process)
    : m_locks(locks)
    , m_process(process)
{
}

bool clsClientProcess::RunAndWait(
    const QString &program, const QString &arguments, const QString &folder)
{
    m_locks.GiveDatabasesToClient();
    const auto ended = qScopeGuard([this] { m_locks.TakeDatabasesBack(); });
    return m_process.RunAndWait(program, arguments, folder);
}
