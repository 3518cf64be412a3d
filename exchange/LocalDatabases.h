#pragma once

#include "store/modDBMain.h"
#include "store/RecordStore.h"

#include <QString>
#include <QStringList>

#include <array>
#include <optional>

/// What a synchronisation does with a company; the user chooses it in the program.
enum class SyncOption
{
    CollectAndRewrite, ///< "0"
    CollectOnly, ///< "1"
    EraseAndRewrite, ///< "2": the entries are deleted without being collected
    Nothing ///< "3"
};

/// The option that stands in a database or a file.
/// Errors: BadOption, naming the option and the company.
SyncOption SyncOptionFromText(const QString &text, const QString &company);

/// What the databases on this computer say about a company.
struct LocalCompany
{
    bool Complete = false; ///< all seven reference databases are there and sound
    QString Sync_Option; ///< as its Options database has it; empty when that cannot be read
    /// There is an Options or an Entries database, but no option can be read.
    bool IsChoiceLost = false;
    QString Employee_Number; ///< empty when its Employee database is missing or cannot be read
};

/// The databases of the program folder that is being synchronised.
///
/// Errors: those of the record store. A reference database that is damaged counts as missing,
///         because the accounting side has its contents and a rewrite mends it; a file that is
///         somebody else's is always an error and stays as it is.
class LocalDatabases
{
public:
    explicit LocalDatabases(const QString &programFolder);
    LocalDatabases(const LocalDatabases &) = delete;
    LocalDatabases &operator=(const LocalDatabases &) = delete;

    /// A database that closes with its scope.
    class Open
    {
    public:
        Open(LocalDatabases &local, const QString &name);
        ~Open();
        Open(const Open &) = delete;
        Open &operator=(const Open &) = delete;

        bool Exists() const { return Handle != 0; }

        RecordStore::Handle Handle;

    private:
        LocalDatabases &m_local;
    };

    RecordStore &Store() { return m_store; }
    const modDBMain &Main() const { return m_main; }
    const QString &Folder() const { return m_main.Folder(); }

    /// The codes in the Company database; nothing when there is no such database or it is damaged.
    std::optional<QStringList> CompanyCodes();
    LocalCompany Examine(const QString &company);

    /// Finishes or takes back what was left unfinished in a database that is about to be replaced,
    /// so that no journal remains: the next program to open the new file would play it into that.
    /// Errors: StoreErrors::Locked when another program is writing.
    void Settle(const QString &name);

private:
    template <class Record>
    std::optional<Record> ReadFirst(const QString &name);
    bool FileExists(const QString &name) const;
    /// Whether there is a sound database of that name.
    bool IsSound(const QString &name);

    RecordStore m_store;
    modDBMain m_main;
};

/// The beginnings of the names of a company's reference databases, in the order of opening.
extern const std::array<QStringView, 7> ReferencePrefixes;
