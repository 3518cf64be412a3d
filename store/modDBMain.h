#pragma once

#include "store/DatabaseNames.h"
#include "store/RecordStore.h"

#include <QString>

/// Opens, closes, creates and deletes the databases of one program folder.
///
/// Names:  as DatabaseNames.h builds them. A name that cannot be a file's name (a company code
///         with a path separator in it) is a database that cannot be opened.
/// Errors: those of the record store; a missing database is handle 0, not an error.
class modDBMain
{
public:
    modDBMain(RecordStore &store, const QString &programFolder); // the store outlives it

    /// From then on databases are created, and expected, with these codes.
    void StoreTheCodes(const StoreCodes &codes);
    const StoreCodes &Codes() const { return m_codes; }
    const QString &Folder() const { return m_folder; }

    QString GlobalName(QStringView prefix) const;
    QString CompanyName(const QString &company, QStringView prefix) const;

    RecordStore::Handle OpenTable(const QString &name);
    /// Closes an open one; always 0, for the caller to store.
    RecordStore::Handle CloseTable(RecordStore::Handle handle);
    void DeleteTable(const QString &name); ///< a missing one is no error

    void CreateGlobalOptions(const QString &name); ///< leaves it closed, like the two below
    void CreateEntries(const QString &name);
    void CreateHoursSummary(const QString &name); ///< a scratch table

private:
    enum class Kind
    {
        Plain,
        WithCheckValues, ///< holds what nobody could give us again
        Scratch
    };
    void CreateOne(const QString &name, QStringView schemaText, Kind kind = Kind::Plain);
    QString PathOf(const QString &name) const;

    RecordStore &m_store;
    QString m_folder;
    StoreCodes m_codes;
};
