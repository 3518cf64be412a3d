#pragma once

#include "exchange/BatchNote.h"
#include "exchange/EntryRows.h"
#include "exchange/LocalDatabases.h"
#include "exchange/Uploads.h"

#include <QString>

#include <memory>

/// Hands the entries of one company over to the accounting side, each of them exactly once,
/// wherever a run is killed.
///
/// The note of the Entries database makes that so. It has the name of the batch in which the
/// entries are delivered next, and, from before there is a file, the digest of that file; so no
/// hidden file is left without a note that names it. The name is reserved as soon as the one before
/// it is used: any copy of the database, however old, names the batch in which its entries have
/// come, or will.
///
///   note    file                  what a run that comes later does
///   ------  --------------------  -----------------------------------------------------------
///   none    none                  collects under a new name
///   batch   none, or hidden       collects under that name
///   batch   delivered             takes the entries that are in the file out of the table
///   batch   delivered, changed    ends with an error that names the file
///
/// Entries leave the table and the next name is reserved in one transaction. An entry that was
/// changed after it was delivered is another entry then: it stays, and comes with the next batch.
/// Two computers with copies of one program folder have the same name: the second to deliver is
/// refused by the name that is taken, and later finds in the first one's file what came from it.
///
/// Errors: clsRunTimeError; the entries are then as the table above says.
class Collection
{
public:
    /// `employeeNumber` becomes a part of the batch's name. `folder` is the accounting system's
    /// spelling of the company's code, if it is another one. `local` outlives the object.
    Collection(LocalDatabases &local, const QString &worklog, const QString &company,
        const QString &employeeNumber, const QString &folder = {});

    const QString &Company() const { return m_company; }

    /// Settles what an earlier run has left, then writes the note and the file under its hidden
    /// name. False when there is nothing to hand over.
    bool Prepare();
    /// Hands the prepared file over and takes its entries out of the table.
    void Deliver();
    /// Deletes all entries without handing them over; their number.
    qint64 Erase();

    qint64 Count() const { return m_count; } ///< entries in the prepared file
    QString File() const { return m_uploads.FileOf(m_batch); }
    /// Entries that an earlier run had handed over but not yet taken out.
    qint64 FinishedCount() const { return m_finishedCount; }

private:
    /// Errors: StoreErrors::BadRecord, naming a record whose check value does not hold.
    void RequireAsSaved(RecordStore::Handle entries);
    BatchNote ReadBatchNote(RecordStore::Handle entries);
    /// Takes out what was delivered in the file `delivered`.
    /// Errors: BadFile when the file is not as a client has delivered it; nothing has changed then.
    void Finish(RecordStore::Handle entries, const BatchNote &note, const QString &delivered);
    /// The text of the file with all entries.
    std::string ReadEntries(RecordStore::Handle entries);
    /// Reserves the name for the next delivery from a table without entries, unless it is so.
    void Reserve(RecordStore::Handle entries, const QString &batch);
    /// Takes one entry per line out of the table and reserves the name, in one transaction; the
    /// number of entries taken out.
    qint64 TakeOut(RecordStore::Handle entries, EntryLines lines, const QString &nextBatch);
    /// The same with all entries, as long as they are what they were at that version.
    bool TakeAllOut(RecordStore::Handle entries, quint64 version, const QString &nextBatch);

    LocalDatabases &m_local;
    QString m_company;
    QString m_employeeNumber;
    QString m_databaseName;
    Uploads m_uploads;
    QString m_batch;
    QString m_digest; // of the prepared file
    std::unique_ptr<LocalDatabases::Open> m_entries; // from Prepare() to Deliver()
    quint64 m_version = 0; // of the entries in the prepared file
    qint64 m_count = 0;
    qint64 m_finishedCount = 0;
};
