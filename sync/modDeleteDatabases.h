#pragma once

#include "platform/clsMessageBox.h"
#include "store/Tables.h"
#include "sync/modSync.h"

#include <QString>

/// Deletes the local databases, so that the computer can start afresh.
class modDeleteDatabases
{
public:
    /// All outlive it.
    modDeleteDatabases(Tables &tables, modSync &sync, modBackup &backup, clsMessageBox &messages);

    /// Warns, with No as the default; true when the user wants to go on.
    bool AskDelete();

    /// Deletes the nine databases of every company that is listed, then the two global ones, each
    /// with what the exchange client has kept of a damaged one. A missing one is no error. What a
    /// killed client has left and the copies of the entries go last. A company that the accounting
    /// system no longer lists is listed here while it has entries; the databases of one that is not
    /// stay (intentional).
    /// False when one could not be deleted or the list could not be read; what comes after it in
    /// that order is still there.
    /// \pre SessionState::DeletionInProgress is set, so that all databases are closed first.
    bool DeleteAllDatabases();

private:
    void DeleteCompanies();
    void DeleteCompanyDatabases(const QString &companyCode);
    void DeleteOne(const QString &name);
    void DeleteStaging();

    Tables &m_tables;
    modSync &m_sync;
    modBackup &m_backup;
    clsMessageBox &m_messages;
};
