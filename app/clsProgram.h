#pragma once

#include "app/clsFolderLocks.h"
#include "entry/EntryListState.h"
#include "entry/EntryScreen.h"
#include "entry/frmEntryList.h"
#include "entry/modEntryInfo.h"
#include "entry/modEntryList.h"
#include "platform/clsClock.h"
#include "platform/clsFolderBrowser.h"
#include "platform/clsMessageBox.h"
#include "platform/clsProcess.h"
#include "platform/clsSendKeys.h"
#include "platform/clsSettings.h"
#include "session/EntryBeingEdited.h"
#include "session/FilterState.h"
#include "session/LookupState.h"
#include "session/SessionState.h"
#include "session/SortState.h"
#include "store/Tables.h"
#include "sync/modAfterSync.h"
#include "sync/modDeleteDatabases.h"
#include "sync/modSync.h"

#include <QObject>

#include <functional>
#include <memory>

class clsRunTimeError;

/// What the program takes from outside; tests hand in their own.
struct ProgramServices
{
    clsMessageBox &Messages;
    clsSendKeys &Keys;
    clsProcess &Process;
    const clsClock &Clock;
    clsSettings &Settings;
    clsFolderBrowser &Browser;
};

/// Reports an error that ends a start.
void ShowStartError(const clsRunTimeError &error, clsMessageBox &messages);

/// The whole program over one program folder: owns every object, starts up, starts up again after
/// a synchronisation or a deletion of the databases, and ends with its main window.
class clsProgram : public QObject
{
    Q_OBJECT

public:
    clsProgram(const QString &programFolder, const ProgramServices &services);
    ~clsProgram() override;

    /// Start-up from its beginning; safe to run again in the same process. Without a main window
    /// afterwards the user has been told why.
    void StartUp();

    frmEntryList *MainWindow() const { return m_window.get(); } ///< null when there is none
    Tables &Data() { return m_tables; } ///< the databases as the window has them open

    /// The menu handler: asks, unloads the main window, deletes and starts up again. Nothing has
    /// happened when the user does not want to, or keeps the window to save its changes.
    void DeleteDatabasesCommand();

signals:
    void MainWindowChanged(QWidget *window); ///< null when it has been unloaded
    void Ended(int exitStatus); ///< nothing is left to do

private:
    void StoreTheCodes();
    void OpenMainWindow(); ///< with the entries, or locked
    void ShowMainWindow();
    void SyncCommand();
    bool MayTakeWindowDown() const;
    void Report(const std::function<void()> &action); ///< tells the run-time error that it raises
    bool UnloadMainWindow(); ///< false: the user keeps it, with changes to save
    void MainWindowTerminated();
    void TryStartUp();
    void StartAgain(); ///< after everything that the restart begins anew
    void EndWithoutWindow(); ///< the last step of every start-up: the user has been told why
    void ReportSynchronization(); ///< whose outcome has not been reported yet

    ProgramServices m_services;
    clsFolderLocks m_locks; // before the tables: held until they are closed
    clsClientProcess m_client;
    Tables m_tables;
    SessionState m_session;
    EntryBeingEdited m_entry;
    FilterState m_filter;
    SortState m_sort;
    LookupState m_lookup;
    EntryListState m_list;
    EntryScreen m_screen;
    modBackup m_backup;
    modAfterSync m_afterSync;
    modSync m_sync;
    modDeleteDatabases m_deleteDatabases;
    modLookup m_lookupModule;
    modTransFilter m_transFilter;
    modHrsSumm m_hrsSumm;
    modConfigure m_configure;
    modSyncOptions m_syncOptions;
    modEntryInfo m_entryInfo;
    modEntryList m_entryList;
    std::unique_ptr<frmEntryList> m_window;
    bool m_commandRuns = false; // a command that takes the window down
};
