#pragma once

#include "platform/clsClock.h"
#include "store/Tables.h"

#include <QString>

#include <vector>

/// Copies of the entries, made before the accounting client gets at them.
///
/// Files:  backup/<time>/<name>.db in the program folder, one folder a synchronisation, the newest
///         ten kept. A copy is the file as it was, under its own name; it is put back by copying it
///         over the one in the program folder while the program does not run.
/// Errors: clsRunTimeError, naming the file, when a copy cannot be made: then nothing may get at
///         the entries.
class modBackup
{
public:
    static constexpr qsizetype Kept = 10;

    modBackup(Tables &tables, const clsClock &clock); // both outlive it

    /// Copies every Entries database of the folder, listed companies' or not, durably, and reads
    /// each copy back.
    /// \pre no database is open, and none has a journal.
    void CopyEntries();

    /// What to tell the user after the synchronisation that followed CopyEntries: entries that are
    /// gone although the accounting side was asked neither to take nor to erase them, or that
    /// cannot be read any more, and where their copy is. Empty when there is nothing to tell.
    QString WhatIsMissing();
    void Forget() { m_copies.clear(); } ///< from now on nothing is missing

    /// Deletes all copies.
    void DeleteCopies();

private:
    struct Copy
    {
        QString Name; ///< of the database
        bool MayBeTaken = false; ///< its company's option says so
    };

    QString BackupFolder() const;
    QString FolderOf(const QString &time) const;
    QStringList EntriesFiles(const QString &folder, const QString &ending) const;
    QStringList Times() const; ///< the copies' folders, the oldest first
    QString NewTime() const;
    QByteArray ReadOriginal(const QString &name);
    /// Reserves the name of the batch in which the entries are delivered next, unless that is done:
    /// a copy that is restored later is then recognized by it, and delivered only once.
    void ReserveBatch(const QString &name, RecordStore::Handle entries);
    QString CompanyOf(const QString &name) const; ///< of an Entries database
    static void WriteCopy(const QString &fileName, const QByteArray &contents);
    bool MayBeTaken(const QString &name);
    QString MissingFrom(const Copy &copy);
    qsizetype CountMissing(const Copy &copy);
    void RemoveFolder(const QString &time) const;

    Tables &m_tables;
    const clsClock &m_clock;
    QString m_time; // of the last copies
    std::vector<Copy> m_copies;
};
