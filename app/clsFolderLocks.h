#pragma once

#include "platform/clsInstanceLock.h"
#include "platform/clsProcess.h"

#include <QString>

/// The number of the run-time error of a start while a client works in the folder.
constexpr int SynchronizationRunning = 2002;

/// The locks on a program folder, by which one process at a time works with its databases.
///
/// Files:  WLRemote.txt          the program, from its start to its end
///         exchange.lock         who works with the databases: the program while it may have them
///                               open, otherwise an exchange client
///         synchronization.lock  a client that the program has started, to its end. It inherits
///                               this lock, so there is no moment without one, it outlives a
///                               program that was killed, and no client needs to know of it.
/// A file that a crash left behind locks nothing.
class clsFolderLocks
{
public:
    explicit clsFolderLocks(const QString &programFolder);
    ~clsFolderLocks(); ///< releases what is held

    /// Errors: 70 while another instance runs, SynchronizationRunning while a client works in the
    ///         folder, 75 when a file cannot be locked for another reason.
    void Hold();
    /// The databases stay this program's.
    void CloseInstanceLock() { m_instance.Close(); }

    /// \pre no database is open. Errors: 75, when there can be no lock for the client.
    void GiveDatabasesToClient();
    /// After the client has ended. What it has left running does not count, unless that works with
    /// the databases: then they are not held, and the next Hold() raises SynchronizationRunning.
    void TakeDatabasesBack();

    bool AreHeld() const { return m_instance.IsHeld() && m_databases.IsHeld(); }

private:
    void HoldDatabases();
    void RequireNoClient() const;

    QString m_folder;
    clsInstanceLock m_instance;
    clsInstanceLock m_databases;
    clsInstanceLock m_client;
};

/// Starts the accounting client and gives it the databases while it works.
class clsClientProcess : public clsProcess
{
public:
    clsClientProcess(clsFolderLocks &locks, clsProcess &process); // both outlive it

    bool RunAndWait(
        const QString &program, const QString &arguments, const QString &folder) override;

private:
    clsFolderLocks &m_locks;
    clsProcess &m_process;
};
