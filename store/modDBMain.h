#pragma once

#include "store/DatabaseNames.h"
#include "store/RecordStore.h"

#include <QString>

#include <vector>

/// Opens, closes, creates and deletes the databases of one program folder.
///
/// Names:  as DatabaseNames.h builds them. A name that cannot be a file's name (a company code
///         with a path separator in it) is a database that cannot be opened.
/// Errors: those of the record store. A database that is missing or cannot be opened is handle 0,
///         not an error.
class modDBMain
{
public:
    modDBMain(RecordStore &store, const QString &programFolder); // the store outlives it

    /// From then on databases are created, and expected, with these codes: the first step of
    /// every start-up.
    void StoreTheCodes(const StoreCodes &codes);
    const StoreCodes &Codes() const { return m_codes; }
    const QString &Folder() const { return m_folder; }

    QString GlobalName(QStringView prefix) const;
    QString CompanyName(const QString &company, QStringView prefix) const;

    /// 0 for a missing database and for one that cannot be opened; the latter is then among
    /// Failures().
    RecordStore::Handle OpenTable(const QString &name);
    /// The same for callers that must tell the two apart: 0 for a missing database only.
    RecordStore::Handle OpenTableOrRaise(const QString &name);
    /// Closes an open one; always 0, for the caller to store.
    RecordStore::Handle CloseTable(RecordStore::Handle handle);
    void DeleteTable(const QString &name); ///< a missing one is no error

    /// Leaves it closed. An error is not raised: OpenTable then returns 0, and the reason is among
    /// Failures().
    void CreateGlobalOptions(const QString &name);
    void CreateEntries(const QString &name); ///< likewise
    void CreateHoursSummary(const QString &name); ///< a scratch table, left closed; raises

    struct Failure
    {
        QString Name; ///< of the database
        clsRunTimeError Error;
    };
    /// Why databases could not be opened or created, since ForgetFailures or StoreTheCodes. One
    /// that has been opened or deleted later is not among them.
    const std::vector<Failure> &Failures() const { return m_failures; }
    /// Adds a database that opens but cannot be read or written.
    void NoteFailure(const QString &name, const clsRunTimeError &error);
    void ForgetFailures() { m_failures.clear(); }

private:
    enum class Kind
    {
        Plain,
        WithCheckValues, ///< holds what nobody could give us again
        Scratch
    };
    void CreateOne(const QString &name, QStringView schemaText, Kind kind);
    void ForgetFailureOf(const QString &name);
    void CreateOrNote(const QString &name, QStringView schemaText, Kind kind);
    QString PathOf(const QString &name) const;

    RecordStore &m_store;
    QString m_folder;
    StoreCodes m_codes;
    std::vector<Failure> m_failures;
};
