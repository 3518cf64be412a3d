#pragma once

#include "exchange/Collection.h"
#include "exchange/ExchangeLog.h"
#include "exchange/LocalDatabases.h"
#include "exchange/Progress.h"
#include "exchange/StagedDatabases.h"
#include "store/Records.h"

#include <QString>
#include <QStringList>

#include <vector>

/// One synchronisation of one program folder, from its first file to its last.
///
/// Companies are the same when their codes differ only in case; this computer keeps its spelling,
/// because its databases are named after it. A company that the accounting system no longer lists
/// is never erased: its entries are collected if its option says so, otherwise it stays in the
/// Company table, see DroppedCompany.h.
///
/// Order:  everything that can be refused comes before everything that changes something.
///         1. Read and check all files; build every new database, in a folder of its own.
///         2. Write the entries of every company whose entries are collected, under hidden names.
///         3. Deliver them and take them out of the tables.
///         4. Delete the entries of every company whose option says so.
///         5. Move the new databases over the old ones.
/// Errors: clsRunTimeError. After one in 1 nothing has changed, after one in 2 no entry and no
///         reference database; after a later one, and after a kill anywhere, a new run goes on
///         where this one has ended, with every entry delivered once.
class ExchangeRun
{
public:
    /// `worklog` is the folder with the accounting system's files. All arguments outlive the
    /// object.
    ExchangeRun(const QString &worklog, const QString &programFolder, ExchangeLog &log,
        const ProgressReport &progress);

    void Run();

private:
    /// What is to be done with one company.
    struct Task
    {
        QString Company;
        QString Folder; ///< the code as the accounting system spells it
        SyncOption Option = SyncOption::Nothing;
        bool Rewrite = false;
        QString KeptSyncOption; ///< see ReferenceData::Build
        QString Employee_Number;
    };

    void PlanListed(const std::vector<CompanyRecord> &companies, const KnownCompanies &known);
    void PlanDropped(const KnownCompanies &known);
    /// One that the list on this computer has, or one without a place in it.
    void PlanDropped(const CompanyRecord &company, bool isInList);
    Task PlanOne(const QString &company, const QString &folder);
    SyncOption OptionOf(const LocalCompany &local, const Task &task) const;
    void AnnounceErasures();
    void BuildDatabases(StagedDatabases &staged);
    void PrepareCollections();
    void DeliverCollections();
    void EraseEntries();

    QString m_worklog;
    LocalDatabases m_local;
    ExchangeLog &m_log;
    const ProgressReport &m_progress;
    std::vector<Task> m_tasks;
    std::vector<CompanyRecord> m_list; // the Company table as it is to be
    bool m_isListStale = false; // it has to be written, whatever the options say
    std::vector<Collection> m_prepared;
    QStringList m_written; // told when it is true
};
