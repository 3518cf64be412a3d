#include "sync/modDeleteDatabases.h"

#include "platform/clsRunTimeError.h"
#include "platform/Paths.h"
#include "store/StagingFolder.h"
#include "store/StoreErrors.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

using namespace Qt::StringLiterals;

modDeleteDatabases::modDeleteDatabases(
    Tables &tables, modSync &sync, modBackup &backup, clsMessageBox &messages)
    : m_tables(tables)
    , m_sync(sync)
    , m_backup(backup)
    , m_messages(messages)
{
}

bool modDeleteDatabases::AskDelete()
{
    return m_messages.Ask(u"W A R N I N G\r\n\r\nAll application data will be lost.\r\n\r\n"
                          u"Do you wish to continue?"_s,
               MessageIcon::Exclamation, MessageButtons::YesNo, MessageAnswer::No)
        == MessageAnswer::Yes;
}

bool modDeleteDatabases::DeleteAllDatabases()
{
    modDBMain &main = m_tables.Main;
    try {
        m_sync.CloseAllDatabases();
        DeleteCompanies();
        DeleteOne(main.GlobalName(DatabasePrefix::Company));
        m_tables.GlobalOptions.Handle = main.CloseTable(m_tables.GlobalOptions.Handle);
        DeleteOne(main.GlobalName(DatabasePrefix::GlobalOptions));
        DeleteStaging();
        m_backup.DeleteCopies();
        return true;
    } catch (const clsRunTimeError &) {
        return false; // the caller reports it
    }
}

void modDeleteDatabases::DeleteOne(const QString &name)
{
    m_tables.Main.DeleteTable(name);
    const QString damaged = JoinPath(m_tables.Main.Folder(), name + u".db.damaged"_s);
    for (const QString &file : {damaged, damaged + u"-journal"_s}) {
        if (QFile::exists(file) && !QFile::remove(file))
            RaiseStoreError(StoreErrors::NotDeleted, u"The database cannot be deleted: "_s + file);
    }
}

void modDeleteDatabases::DeleteStaging()
{
    const QString folder = JoinPath(m_tables.Main.Folder(), StagingFolderName());
    if (QFileInfo(folder).isSymLink())
        QFile::remove(folder); // and not what it leads to
    else
        QDir(folder).removeRecursively();
    if (QFileInfo::exists(folder))
        RaiseStoreError(StoreErrors::NotDeleted, u"The folder cannot be deleted: "_s + folder);
}

void modDeleteDatabases::DeleteCompanies()
{
    modDBMain &main = m_tables.Main;
    modDBComp &company = m_tables.Company;
    const auto closed = qScopeGuard([&] { company.Handle = main.CloseTable(company.Handle); });
    company.Handle = main.OpenTableOrRaise(main.GlobalName(DatabasePrefix::Company));
    if (!company.IsOpen())
        return;
    for (company.MoveFirst(); !company.IsEndOfTable(); company.MoveNext()) {
        company.ReadCompany(company.Record);
        DeleteCompanyDatabases(company.Record.Company_Code);
    }
}

void modDeleteDatabases::DeleteCompanyDatabases(const QString &companyCode)
{
    modDBMain &main = m_tables.Main;
    const auto remove = [&](auto &table, QStringView prefix) {
        table.Handle = main.CloseTable(table.Handle);
        DeleteOne(main.CompanyName(companyCode, prefix));
    };
    remove(m_tables.Options, DatabasePrefix::Options);
    remove(m_tables.Employee, DatabasePrefix::Employee);
    remove(m_tables.Multiplier, DatabasePrefix::Multiplier);
    remove(m_tables.Divisions, DatabasePrefix::Divisions);
    remove(m_tables.Customers, DatabasePrefix::Customers);
    remove(m_tables.Projects, DatabasePrefix::Projects);
    remove(m_tables.Activities, DatabasePrefix::Activities);
    remove(m_tables.Entries, DatabasePrefix::Entries);
    remove(m_tables.HoursSummary, DatabasePrefix::HoursSummary);
}
