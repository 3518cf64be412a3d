#pragma once

#include "platform/clsMessageBox.h"
#include "platform/clsProcess.h"
#include "session/SessionState.h"
#include "store/Tables.h"
#include "sync/modBackup.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

/// What the accounting installation under a root folder is.
enum class Installation
{
    MAS90, ///< holds soa/startup.m4p
    MAS200Client ///< holds home/wkStatus.flp only
};

/// What users see who have never synchronized.
inline QString SynchronizeFirst()
{
    return QStringLiteral("Please perform a synchronization first.");
}

/// Recognises an installation by its marker files, whatever the case of their letters; nothing
/// when neither is there, nor for a relative path. A slow root is waited for (see RunWhileWaiting).
std::optional<Installation> CheckInstallation(const QString &root);

/// Opens and closes the databases of a company, and runs a synchronisation: starts the accounting
/// client on this program's folder and waits until it has ended.
///
/// Files:  mas90.ini in the program folder, line 1 the installation's root, line 2 the client's
///         arguments; UTF-8 or the system's encoding, with or without a byte order mark.
/// Errors: RunSynchronisation reports its own to the user; the rest raises those of the store.
class modSync
{
public:
    /// All outlive it.
    modSync(Tables &tables, SessionState &session, clsMessageBox &messages, clsProcess &process,
        modBackup &backup);

    /// Opens the seven reference databases of the current company and, when all are there, its
    /// entries, which are created when missing. What was open is closed first. When the databases
    /// are not ready afterwards, the store's Failures() are those that could not be opened or
    /// created.
    void OpenAllDatabases();
    /// Reads every open database of the company: damage that opening does not see is found before
    /// anything is entered with it. False when one cannot be read, which is then among the store's
    /// Failures(), or is not open. Cursors are on the first record afterwards.
    bool ReadAllDatabases();
    /// Runs what opens or reads a database; false when it turns out to be unusable, and it is then
    /// among the store's Failures().
    /// Errors: all others of the action.
    bool Try(const QString &name, const std::function<void()> &action);
    /// Closes the company's databases; during a synchronisation or a deletion the two global
    /// ones too.
    void CloseAllDatabases();

    /// Copies the entries before the client is started; without the copies it is not. What became
    /// of the entries, modAfterSync reports after the restart. \pre the main window is unloaded.
    /// All databases are closed afterwards.
    void RunSynchronisation();

    /// Records in the global options whether any company has entries; false, and the user has
    /// been told, when that could not be found out.
    bool CheckEntriesExist();

private:
    std::optional<QStringList> CompanyCodes(); ///< std::nullopt when they cannot be read
    bool AnyEntries(const QStringList &companies);
    void RecordEntriesExist(bool any);
    void SettleJournals();
    void StartClientAndWait();

    Tables &m_tables;
    SessionState &m_session;
    clsMessageBox &m_messages;
    clsProcess &m_process;
    modBackup &m_backup;
};
