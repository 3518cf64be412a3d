#include "app/clsProgram.h"

#include "app/DatabaseCheck.h"
#include "platform/clsRunTimeError.h"
#include "platform/WindowPlace.h"

#include <QApplication>
#include <QScopedValueRollback>

#include <cstdlib>
#include <new>

using namespace Qt::StringLiterals;

void ShowStartError(const clsRunTimeError &error, clsMessageBox &messages)
{
    const QString start = u"Error "_s + QString::number(error.Number()) + u"; "_s;
    if (error.Number() == RunTimeErrors::PermissionDenied)
        messages.Tell(start + u"Worklog Remote is already running."_s);
    else
        messages.Tell(start + error.Description(), MessageIcon::Critical);
}

clsProgram::clsProgram(const QString &programFolder, const ProgramServices &services)
    : m_services(services)
    , m_locks(programFolder)
    , m_client(m_locks, services.Process)
    , m_tables(programFolder)
    , m_backup(m_tables, services.Clock)
    , m_afterSync(m_tables)
    , m_sync(m_tables, m_session, services.Messages, m_client, m_backup)
    , m_deleteDatabases(m_tables, m_sync, m_backup, services.Messages)
    , m_lookupModule(m_tables, m_session, m_entry, m_filter, m_lookup, services.Messages)
    , m_transFilter(m_tables, m_filter, m_lookup)
    , m_hrsSumm(m_tables, m_session, m_filter, m_sort)
    , m_configure(m_tables, m_session, services.Settings, services.Browser, services.Messages,
          services.Clock)
    , m_syncOptions(m_tables, m_session, services.Clock)
    , m_entryInfo(m_tables, m_session, m_entry, m_lookup, m_list, m_screen, services.Messages,
          services.Clock)
    , m_entryList(m_tables, m_sync, m_session, m_filter, m_sort, m_list, m_entryInfo, m_screen,
          services.Messages, services.Clock)
{
    m_entryList.EndProgram = [] { std::exit(EXIT_FAILURE); };
    m_lookupModule.EndProgram = m_entryList.EndProgram;
}

clsProgram::~clsProgram() = default;

void clsProgram::StoreTheCodes()
{
    m_tables.Main.StoreTheCodes({u"WkLg"_s, u"KVLM"_s, u"DATA"_s});
}

void clsProgram::StartUp()
{
    TryStartUp();
    // Here, because the program may have been killed while the last synchronization ran.
    Report([this] { ReportSynchronization(); });
    EndWithoutWindow();
}

void clsProgram::EndWithoutWindow()
{
    if (!m_window)
        emit Ended(EXIT_FAILURE);
}

void clsProgram::TryStartUp()
{
    try {
        StoreTheCodes();
        m_locks.Hold();
        m_session.NotSynchronised = !CheckDatabases(m_tables, m_session, m_sync);
        OpenMainWindow();
        if (m_session.NotSynchronised)
            m_services.Messages.Tell(SynchronizeFirst());
    } catch (const clsRunTimeError &error) {
        ShowStartError(error, m_services.Messages);
    } catch (const std::bad_alloc &) {
        m_services.Messages.Tell(
            u"Error %1; Out of memory"_s.arg(RunTimeErrors::OutOfMemory), MessageIcon::Critical);
    }
}

void clsProgram::OpenMainWindow()
{
    ShowMainWindow();
    try {
        m_window->LoadEntryList();
        return;
    } catch (const clsRunTimeError &) {
        // Some damage is found only when the records are read. It locks the window, too.
        if (m_session.NotSynchronised || m_sync.ReadAllDatabases()
            || m_tables.Main.Failures().empty())
            throw;
    }
    m_session.NotSynchronised = true;
    m_list.LastCompany.clear();
    m_sync.CloseAllDatabases();
    ShowMainWindow();
    m_window->LoadEntryList();
}

void clsProgram::ShowMainWindow()
{
    m_screen = EntryScreen();
    m_window.reset(); // before the new one: leaving, it lets go of the grid
    const EntryDialogs dialogs{
        m_lookupModule, m_transFilter, m_hrsSumm, m_configure, m_syncOptions, m_filter};
    m_window = std::make_unique<frmEntryList>(
        m_entryList, m_entryInfo, m_list, dialogs, m_screen, m_services.Messages, m_services.Keys);
    // These take the window down, so they wait until its own event handlers have returned.
    connect(m_window.get(), &frmEntryList::SyncRequested, this, &clsProgram::SyncCommand,
        Qt::QueuedConnection);
    connect(m_window.get(), &frmEntryList::DeleteDatabasesRequested, this,
        &clsProgram::DeleteDatabasesCommand, Qt::QueuedConnection);
    connect(m_window.get(), &frmEntryList::Terminated, this, &clsProgram::MainWindowTerminated);
    emit MainWindowChanged(m_window.get());
    RestoreWindowPlace(*m_window, m_services.Settings);
    m_window->show();
}

void clsProgram::MainWindowTerminated()
{
    SaveWindowPlace(*m_window, m_services.Settings);
    Report([this] {
        if (!m_session.NotSynchronised && !m_session.SynchronisationInProgress)
            m_entryList.SaveLastCompany();
    });
    Report([this] { m_sync.CloseAllDatabases(); });
    if (!m_session.SynchronisationInProgress && !m_session.DeletionInProgress)
        emit Ended(EXIT_SUCCESS);
}

bool clsProgram::UnloadMainWindow()
{
    if (!m_window->close())
        return false;
    m_window.reset();
    emit MainWindowChanged(nullptr);
    return true;
}

bool clsProgram::MayTakeWindowDown() const
{
    // The command was queued: meanwhile the window may have been closed, or a message box, in
    // whose event loop this is running, may stand on one of the window's own event handlers.
    return m_window && m_window->isVisible() && !m_commandRuns && !m_tables.Store.IsCommitting()
        && QApplication::activeModalWidget() == nullptr;
}

void clsProgram::Report(const std::function<void()> &action)
{
    try {
        action();
    } catch (const clsRunTimeError &error) {
        m_services.Messages.Tell(error.Message());
    }
}

void clsProgram::SyncCommand()
{
    if (!MayTakeWindowDown())
        return;
    const QScopedValueRollback<bool> running(m_commandRuns, true);
    if (!m_window->MayLeaveEntry())
        return;
    m_entryInfo.Changed = false;
    const QScopedValueRollback<bool> inProgress(m_session.SynchronisationInProgress, true);
    Report([this] { m_entryList.SaveLastCompany(); });
    if (!UnloadMainWindow())
        return;
    m_sync.RunSynchronisation();
    StartAgain();
}

void clsProgram::DeleteDatabasesCommand()
{
    if (!MayTakeWindowDown())
        return;
    const QScopedValueRollback<bool> running(m_commandRuns, true);
    if (!m_deleteDatabases.AskDelete())
        return;
    // Set before the window closes, or the program would end with it.
    m_session.DeletionInProgress = true;
    if (!UnloadMainWindow()) {
        m_session.DeletionInProgress = false;
        return;
    }
    m_entryInfo.Changed = false;
    if (!m_deleteDatabases.DeleteAllDatabases())
        m_services.Messages.Tell(u"Failed to delete databases."_s);
    m_session.DeletionInProgress = false;
    StartAgain();
}

void clsProgram::ReportSynchronization()
{
    if (!m_locks.AreHeld())
        return; // another process works with the databases
    const QString report = m_afterSync.Report();
    if (!report.isEmpty())
        m_services.Messages.Tell(report);
    m_afterSync.Finish();
}

void clsProgram::StartAgain()
{
    m_locks.CloseInstanceLock();
    m_session.CurrentCompanyCode.clear();
    m_list.LastCompany.clear();
    StartUp();
}
