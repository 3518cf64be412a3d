#pragma once

#include "platform/clsClock.h"
#include "store/Tables.h"
#include "sync/BackupFolders.h"

#include <QString>
#include <QStringList>

/// Copies of the entries, made before the exchange client can change them.
///
/// Files:  <name>.db in a folder per synchronization, see BackupFolders; the newest ten are kept. A
///         copy is the file as it was, under its own name; it is restored by copying it over the
///         one in the program folder while the program does not run. A copy that is equal to the
///         one made after it is not kept: however often a synchronization is repeated, the copies
///         that differ stay.
/// Errors: clsRunTimeError, naming the file, when a copy cannot be made: then no program may change
///         the entries.
class modBackup
{
public:
    static constexpr qsizetype Kept = 10;

    modBackup(Tables &tables, const clsClock &clock); // both outlive it

    /// Copies every Entries database of the folder, listed companies' or not, durably, and reads
    /// each copy again. A SyncNote with the options in force and `worklog` is in their folder from
    /// then on, see modAfterSync.
    /// \pre no database is open, and none has a journal.
    void CopyEntries(const QString &worklog);

    /// Deletes all copies.
    void DeleteCopies();

private:
    QStringList EntriesFiles(const QString &folder, const QString &ending) const;
    void CopyOriginal(const QString &name, const QString &to);
    /// Reserves the name of the batch in which the entries are delivered next, unless that is done:
    /// a copy that is restored later is then recognized by it, and delivered only once.
    void ReserveBatch(const QString &name, RecordStore::Handle entries);
    QString CompanyOf(const QString &name) const; ///< of an Entries database
    QString OptionOf(const QString &name); ///< empty when it cannot be read
    void CopyAll(const QStringList &files, const QString &folder, const QString &worklog);
    bool AreSame(const QString &one, const QString &other) const;
    void RemoveOld(const QString &newest) const;
    void RemoveFolder(const QString &name) const;

    Tables &m_tables;
    const clsClock &m_clock;
    BackupFolders m_folders;
};
