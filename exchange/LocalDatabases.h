#pragma once

#include "store/modDBMain.h"
#include "store/Records.h"
#include "store/RecordStore.h"

#include <QSet>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>
#include <vector>

class clsRunTimeError;

/// What a synchronisation does with a company; the user chooses it in the program.
enum class SyncOption
{
    CollectAndRewrite, ///< "0"
    CollectOnly, ///< "1"
    EraseAndRewrite, ///< "2": the entries are deleted without being collected
    Nothing ///< "3"
};

/// The option in a database or a file.
/// Errors: BadOption, naming the option and the company.
SyncOption SyncOptionFromText(const QString &text, const QString &company);

/// The companies of this computer.
struct KnownCompanies
{
    bool HasList = false; ///< there is a Company database, and it is sound
    std::vector<CompanyRecord> Listed; ///< its records
    /// Codes of those that have an Entries database, in the list or not.
    QStringList WithEntries;
};

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
/// Errors: those of the record store. A reference database that is damaged is treated as missing,
///         because the accounting system has its contents: a new one takes its place, and the
///         damaged one is set aside. Another program's file is always an error and stays as it is.
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

    KnownCompanies Companies();
    LocalCompany Examine(const QString &company);
    /// 0 without an Entries database; std::nullopt when it is damaged.
    std::optional<qint64> CountEntries(const QString &company);
    /// Whether every page of the company's reference databases is sound. Reads all of them.
    bool ArePagesSound(const QString &company);

    /// Finishes or takes back what was left unfinished in a database that is about to be replaced,
    /// so that no journal remains: the next program to open the new file would play it into that.
    /// Errors: StoreErrors::Locked when another program is writing.
    void Settle(const QString &name);

    /// Gives a database that was found damaged, and its journal, a name next to it, in place of an
    /// earlier one. The new file name; empty for a sound database and for one without a byte.
    QString SetAsideIfDamaged(const QString &name);

private:
    template <class Record>
    std::optional<Record> ReadFirst(const QString &name);
    RecordStore::Handle OpenTable(const QString &name);
    QString JournalOf(const QString &name) const;
    QString FileOf(const QString &name) const;
    bool FileExists(const QString &name) const;
    std::optional<std::vector<CompanyRecord>> ReadCompanyList();
    /// Whether the file is the database that was made under its name, not a copy of another one.
    bool WasMadeAs(const QString &name) const;
    /// Whether there is a database of that name that can be opened.
    bool IsSound(const QString &name);
    /// Raises again what is no damage; remembers a database that is damaged.
    void TakeNoteOfDamage(const QString &name, const clsRunTimeError &error);
    bool IsDamage(const QString &name, const clsRunTimeError &error) const;

    RecordStore m_store;
    modDBMain m_main;
    QSet<QString> m_damaged; // names
};

/// The beginnings of the names of a company's reference databases, in the order of opening.
extern const std::array<QStringView, 7> ReferencePrefixes;
