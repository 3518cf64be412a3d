#include "sync/modSync.h"

#include "platform/clsRunTimeError.h"
#include "platform/clsWorkingFolder.h"
#include "platform/Paths.h"
#include "platform/RunWhileWaiting.h"
#include "sync/LaunchFile.h"
#include "sync/UnusableDatabases.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopedValueRollback>
#include <QScopeGuard>

#include <new>

using namespace Qt::StringLiterals;

std::optional<Installation> CheckInstallation(const QString &root)
{
    // What an empty or a relative path names depends on the working folder, and the client has
    // another one.
    if (root.isEmpty() || QDir::isRelativePath(root))
        return {};
    const auto isFile = [&](const QString &relative) {
        return QFileInfo(FindIgnoringCase(root, relative)).isFile();
    };
    std::optional<Installation> found;
    RunWhileWaiting([&] {
        if (isFile(u"soa/startup.m4p"_s))
            found = Installation::MAS90;
        else if (isFile(u"home/wkStatus.flp"_s))
            found = Installation::MAS200Client;
    });
    return found;
}

modSync::modSync(Tables &tables, SessionState &session, clsMessageBox &messages,
    clsProcess &process, modBackup &backup)
    : m_tables(tables)
    , m_session(session)
    , m_messages(messages)
    , m_process(process)
    , m_backup(backup)
{
}

void modSync::OpenAllDatabases()
{
    modDBMain &main = m_tables.Main;
    const auto open = [&](auto &table, QStringView prefix) {
        // A handle is closed before it is lost; the file would stay open behind it.
        table.Handle = main.CloseTable(table.Handle);
        table.Handle = main.OpenTable(main.CompanyName(m_session.CurrentCompanyCode, prefix));
        return table.IsOpen();
    };
    m_session.DatabasesReady = false;
    m_session.OpeningInProgress = false;
    m_tables.Entries.Handle = main.CloseTable(m_tables.Entries.Handle);

    bool all = open(m_tables.Options, DatabasePrefix::Options);
    all = open(m_tables.Employee, DatabasePrefix::Employee) && all;
    all = open(m_tables.Multiplier, DatabasePrefix::Multiplier) && all;
    all = open(m_tables.Divisions, DatabasePrefix::Divisions) && all;
    all = open(m_tables.Customers, DatabasePrefix::Customers) && all;
    all = open(m_tables.Projects, DatabasePrefix::Projects) && all;
    all = open(m_tables.Activities, DatabasePrefix::Activities) && all;
    if (!all)
        return;

    {
        const QScopedValueRollback<bool> opening(m_session.OpeningInProgress, true);
        open(m_tables.Entries, DatabasePrefix::Entries);
    }
    if (!m_tables.Entries.IsOpen()) {
        main.CreateEntries(main.CompanyName(m_session.CurrentCompanyCode, DatabasePrefix::Entries));
        if (!open(m_tables.Entries, DatabasePrefix::Entries))
            return;
    }
    m_session.DatabasesReady
        = Try(main.CompanyName(m_session.CurrentCompanyCode, DatabasePrefix::Options),
            [this] { m_tables.Options.LoadOptions(); });
}

bool modSync::Try(const QString &name, const std::function<void()> &action)
{
    try {
        action();
        return true;
    } catch (const clsRunTimeError &error) {
        if (!IsUnusable(error))
            throw;
        m_tables.Main.NoteFailure(name, error);
        return false;
    }
}

bool modSync::ReadAllDatabases()
{
    bool all = true;
    const auto read = [&](auto &table, QStringView prefix, auto readRecord) {
        const QString name = m_tables.Main.CompanyName(m_session.CurrentCompanyCode, prefix);
        auto record = table.Record;
        all = table.IsOpen() && Try(name, [&] {
            table.MoveFirst();
            (table.*readRecord)(record);
        }) && all;
    };
    read(m_tables.Options, DatabasePrefix::Options, &modDBOpts::ReadOptions);
    read(m_tables.Employee, DatabasePrefix::Employee, &modDBEmpl::ReadEmployee);
    read(m_tables.Multiplier, DatabasePrefix::Multiplier, &modDBMult::ReadMultiplier);
    read(m_tables.Divisions, DatabasePrefix::Divisions, &modDBDivi::ReadDivision);
    read(m_tables.Customers, DatabasePrefix::Customers, &modDBCust::ReadCustomer);
    read(m_tables.Projects, DatabasePrefix::Projects, &modDBProj::ReadProject);
    read(m_tables.Activities, DatabasePrefix::Activities, &modDBActi::ReadActivity);
    read(m_tables.Entries, DatabasePrefix::Entries, &modDBEntr::ReadEntry);
    return all;
}

void modSync::CloseAllDatabases()
{
    const auto close = [&](auto &table) { table.Handle = m_tables.Main.CloseTable(table.Handle); };
    if (m_session.SynchronisationInProgress || m_session.DeletionInProgress) {
        close(m_tables.Company);
        close(m_tables.GlobalOptions);
    }
    close(m_tables.Options);
    close(m_tables.Employee);
    close(m_tables.Multiplier);
    close(m_tables.Divisions);
    close(m_tables.Customers);
    close(m_tables.Projects);
    close(m_tables.Activities);
    close(m_tables.Entries);
}

std::optional<QStringList> modSync::CompanyCodes()
{
    modDBComp &company = m_tables.Company;
    const QString name = m_tables.Main.GlobalName(DatabasePrefix::Company);
    QStringList codes;
    {
        const QScopedValueRollback<bool> opening(m_session.OpeningInProgress, true);
        Try(name, [&] { company.Handle = m_tables.Main.OpenTableOrRaise(name); });
    }
    if (!company.IsOpen())
        return {};
    const auto closed
        = qScopeGuard([&] { company.Handle = m_tables.Main.CloseTable(company.Handle); });
    // A list that cannot be read is like one that cannot be opened: the client writes it again.
    const bool isSound = Try(name, [&] {
        for (company.MoveFirst(); !company.IsEndOfTable(); company.MoveNext()) {
            company.ReadCompany(company.Record);
            codes.append(company.Record.Company_Code);
        }
    });
    return isSound ? std::optional(codes) : std::nullopt;
}

bool modSync::AnyEntries(const QStringList &companies)
{
    modDBMain &main = m_tables.Main;
    bool any = false;
    for (const QString &company : companies) {
        modDBEntr entries(m_tables.Store);
        const auto closed = qScopeGuard([&] { entries.Handle = main.CloseTable(entries.Handle); });
        const QString name = main.CompanyName(company, DatabasePrefix::Entries);
        Try(name, [&] { entries.Handle = main.OpenTableOrRaise(name); });
        if (entries.IsOpen())
            any = entries.GetRecordCount() != 0 || any;
    }
    return any;
}

void modSync::RecordEntriesExist(bool any)
{
    modDBMain &main = m_tables.Main;
    modDBGOpts &options = m_tables.GlobalOptions;
    const QString name = main.GlobalName(DatabasePrefix::GlobalOptions);
    options.Handle = main.CloseTable(options.Handle);
    const auto closed = qScopeGuard([&] { options.Handle = main.CloseTable(options.Handle); });
    const bool isSound = Try(name, [&] { options.TakeHandle(main.OpenTableOrRaise(name)); });
    if (!isSound) {
        // Only this program writes this table again. A file that cannot be set aside records
        // nothing and does not stop the run.
        options.TakeHandle(main.CloseTable(options.Handle));
        if (!SetAsideIfDamaged(main, name))
            return;
        main.CreateGlobalOptions(name);
        options.TakeHandle(main.OpenTableOrRaise(name));
    }
    options.Record.Entries_Exist = any ? u"Y"_s : u"N"_s;
    if (isSound)
        options.UpdateGlobalOptions(options.Record);
    else
        options.AddGlobalOptions(options.Record);
}

bool modSync::CheckEntriesExist()
{
    modDBMain &main = m_tables.Main;
    try {
        m_tables.Company.Handle = main.CloseTable(m_tables.Company.Handle);
        m_tables.Options.Handle = main.CloseTable(m_tables.Options.Handle);
        if (const std::optional<QStringList> companies = CompanyCodes())
            RecordEntriesExist(AnyEntries(*companies));
        return true;
    } catch (const clsRunTimeError &) {
        m_messages.Tell(u"Unable to determine if entries exist. Sync unsuccessful."_s);
        return false;
    }
}

/// Plays back what an interrupted write left beside a database that this run has not opened: the
/// client must find no journal. A database that cannot be opened keeps its journal, which holds
/// the only good copy of its pages.
void modSync::SettleJournals()
{
    const QDir folder(m_tables.Main.Folder());
    const QString ending = u".db-journal"_s;
    for (QString name : folder.entryList({u'*' + ending}, QDir::Files)) {
        name.chop(ending.size());
        try {
            const RecordStore::Handle handle = m_tables.Main.OpenTableOrRaise(name);
            m_tables.Main.CloseTable(handle);
            if (handle == 0)
                QFile::remove(folder.filePath(name + ending)); // its database is gone
        } catch (const clsRunTimeError &) {
            // A damaged database is for the client to replace, so it does not stop the run.
            continue;
        }
    }
}

void modSync::StartClientAndWait()
{
    const QString folder = m_tables.Main.Folder();
    const LaunchFile launch = ReadLaunchFile(JoinPath(folder, u"mas90.ini"_s));
    if (!CheckInstallation(launch.Root)) {
        m_messages.Tell(u"Unable to launch MAS 90 or MAS 200."_s);
        return;
    }
    SettleJournals();
    QString home;
    QString program;
    RunWhileWaiting([&] {
        home = FindIgnoringCase(launch.Root, u"Home"_s);
        program = FindIgnoringCase(launch.Root, u"Home/pvxwin32.exe"_s);
    });
    const QString arguments = ClientArguments(launch, folder);
    const clsWorkingFolder inHome(home.isEmpty() ? JoinPath(launch.Root, u"Home"_s) : home);
    m_backup.CopyEntries(FindIgnoringCase(launch.Root, u"worklog"_s));
    if (program.isEmpty() || !TellsFolder(arguments, folder)
        || !m_process.RunAndWait(program, arguments, home))
        throw clsRunTimeError(RunTimeErrors::ProcessNotStarted, u"MAS 90 and MAS 200 Sync"_s,
            u"Unable to start program "_s + ClientCommandLine(launch, folder));
}

void modSync::RunSynchronisation()
{
    try {
        m_session.SynchronisationInProgress = true;
        CloseAllDatabases();
        if (CheckEntriesExist())
            StartClientAndWait();
    } catch (const clsRunTimeError &error) {
        m_messages.Tell(error.Message());
    } catch (const std::bad_alloc &) {
        m_messages.Tell(
            clsRunTimeError(RunTimeErrors::OutOfMemory, {}, u"Out of memory"_s).Message());
    }
}
