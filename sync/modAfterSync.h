#pragma once

#include "store/Tables.h"
#include "sync/BackupFolders.h"
#include "sync/SyncNote.h"

#include <QString>
#include <QStringList>

/// What the user has to know after a synchronization: which entries are gone that were there
/// before, also when the sync option asked for that; which cannot be read any more; which stay
/// behind in a company that the accounting system no longer lists. It says what the program knows.
/// What the exchange client has done with the entries is not read back, so the report points to the
/// uploads and the log before it points to the copy.
///
/// The comparison is due while there is a SyncNote: at the start-up that follows the
/// synchronization, or, when the program was killed meanwhile, at the next one.
class modAfterSync
{
public:
    explicit modAfterSync(Tables &tables); // outlives it

    /// Empty when there is nothing to report, or no comparison is due.
    QString Report();
    /// The report has been shown: no comparison is due from now on.
    void Finish();

private:
    QString WhatBecameOf(const QString &name, const QString &copyFolder, const QString &option);
    qsizetype CountMissing(const QString &name, const QString &copyFolder);
    RecordStore::Handle OpenCopy(const QString &path);
    QString CompanyOf(const QString &name) const; ///< of an Entries database
    QStringList DroppedCompanies();

    Tables &m_tables;
    BackupFolders m_folders;
};
