#include "exchange/LocalDatabases.h"

#include "exchange/ExchangeErrors.h"
#include "platform/clsRunTimeError.h"
#include "platform/DurableFiles.h"
#include "platform/Paths.h"
#include "store/Records.h"
#include "store/StoreErrors.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

const std::array<QStringView, 7> ReferencePrefixes = {DatabasePrefix::Options,
    DatabasePrefix::Employee, DatabasePrefix::Multiplier, DatabasePrefix::Divisions,
    DatabasePrefix::Customers, DatabasePrefix::Projects, DatabasePrefix::Activities};

namespace {

constexpr qint64 DefinitionBytes = 64 * 1024; // of a file's beginning, with its tables' definitions

QByteArray DefinitionOf(const QString &name)
{
    return "CREATE TABLE \"" + name.toUtf8() + '"';
}

/// A file whose first bytes are damaged looks like another program's. Ours still has the statements
/// that have made its tables.
bool WasOurs(const QString &path, const QString &name)
{
    const QByteArray head = ReadFileHead(path, DefinitionBytes);
    return head.isEmpty()
        || (head.contains("CREATE TABLE Record_Store (Type_Code ")
            && head.contains(DefinitionOf(name)));
}

/// SQLite plays a journal back into the database of its name, or deletes it. Before that it is
/// looked at: another program's file stays, and is named.
/// An empty one, or one that begins with zeros, is what a loss of power leaves.
void RequireOwnJournal(const QString &path)
{
    constexpr qsizetype markLength = 8;
    static const QByteArray mark("\xD9\xD5\x05\xF9\x20\xA1\x63\xD7", markLength);
    if (!QFileInfo::exists(path))
        return;
    const QByteArray head = ReadFileHead(path, markLength);
    if (head != mark.left(head.size()) && head.count('\0') != head.size())
        RaiseExchangeError(ExchangeErrors::Refused,
            path + u": the file is not a journal of the database next to it; "_s
                + u"rename or delete it, and synchronize again"_s);
}

} // namespace

SyncOption SyncOptionFromText(const QString &text, const QString &company)
{
    if (text.size() != 1 || text.front() < u'0' || text.front() > u'3')
        RaiseExchangeError(ExchangeErrors::BadOption,
            u"The synchronisation option of company "_s + company + u" is \""_s + text
                + u"\", which is none of the digits 0 to 3"_s);
    return static_cast<SyncOption>(text.front().unicode() - u'0');
}

LocalDatabases::LocalDatabases(const QString &programFolder)
    : m_main(m_store, programFolder)
{
    m_main.StoreTheCodes({u"WkLg"_s, u"KVLM"_s, u"DATA"_s});
}

LocalDatabases::Open::Open(LocalDatabases &local, const QString &name)
    : Handle(local.OpenTable(name))
    , m_local(local)
{
}

LocalDatabases::Open::~Open()
{
    m_local.m_main.CloseTable(Handle);
}

QString LocalDatabases::JournalOf(const QString &name) const
{
    return FileOf(name) + u"-journal"_s;
}

RecordStore::Handle LocalDatabases::OpenTable(const QString &name)
{
    RequireOwnJournal(JournalOf(name));
    return m_main.OpenTableOrRaise(name);
}

template <class Record>
std::optional<Record> LocalDatabases::ReadFirst(const QString &name)
{
    try {
        const Open database(*this, name);
        Record record;
        if (database.Exists() && m_store.ReadRecord(database.Handle, record))
            return record;
    } catch (const clsRunTimeError &error) {
        TakeNoteOfDamage(name, error);
    }
    return {};
}

QString LocalDatabases::FileOf(const QString &name) const
{
    return RecordStore::FileName(JoinPath(Folder(), name));
}

bool LocalDatabases::FileExists(const QString &name) const
{
    return QFile::exists(FileOf(name));
}

bool LocalDatabases::IsDamage(const QString &name, const clsRunTimeError &error) const
{
    switch (error.Number()) {
    case StoreErrors::Damaged:
    case StoreErrors::BadRecord:
        return true;
    case StoreErrors::NotADatabase:
    case StoreErrors::ForeignCreator:
        return QFileInfo(FileOf(name)).isFile() && WasOurs(FileOf(name), name);
    default:
        return false;
    }
}

void LocalDatabases::TakeNoteOfDamage(const QString &name, const clsRunTimeError &error)
{
    if (!IsDamage(name, error))
        throw error;
    m_damaged.insert(name);
}

bool LocalDatabases::IsSound(const QString &name)
{
    try {
        return Open(*this, name).Exists();
    } catch (const clsRunTimeError &error) {
        TakeNoteOfDamage(name, error);
        return false;
    }
}

std::optional<std::vector<CompanyRecord>> LocalDatabases::ReadCompanyList()
{
    const QString name = m_main.GlobalName(DatabasePrefix::Company);
    try {
        const Open database(*this, name);
        if (!database.Exists())
            return {};
        std::vector<CompanyRecord> list;
        CompanyRecord record;
        for (m_store.MoveFirst(database.Handle); m_store.ReadRecord(database.Handle, record);
             m_store.MoveNext(database.Handle))
            list.push_back(record);
        return list;
    } catch (const clsRunTimeError &error) {
        TakeNoteOfDamage(name, error);
        return {};
    }
}

bool LocalDatabases::WasMadeAs(const QString &name) const
{
    try {
        return ReadFileHead(FileOf(name), DefinitionBytes).contains(DefinitionOf(name));
    } catch (const clsRunTimeError &) {
        return false; // it is reported when a company of the list needs it
    }
}

KnownCompanies LocalDatabases::Companies()
{
    KnownCompanies known;
    if (auto list = ReadCompanyList()) {
        known.HasList = true;
        known.Listed = std::move(*list);
    }
    const QString entries = m_main.GlobalName(DatabasePrefix::Entries);
    const QString ending = RecordStore::FileName(entries);
    for (const QString &file :
        QDir(Folder()).entryList({u'*' + ending}, QDir::Files | QDir::NoSymLinks, QDir::Name)) {
        const QString company = file.chopped(ending.size());
        if (WasMadeAs(company + entries))
            known.WithEntries.append(company);
    }
    return known;
}

std::optional<qint64> LocalDatabases::CountEntries(const QString &company)
{
    const QString name = m_main.CompanyName(company, DatabasePrefix::Entries);
    try {
        const Open database(*this, name);
        return database.Exists() ? m_store.GetRecordCount(database.Handle) : 0;
    } catch (const clsRunTimeError &error) {
        TakeNoteOfDamage(name, error);
        return {};
    }
}

LocalCompany LocalDatabases::Examine(const QString &company)
{
    LocalCompany found;
    const auto options
        = ReadFirst<OptionsRecord>(m_main.CompanyName(company, DatabasePrefix::Options));
    const auto employee
        = ReadFirst<EmployeeRecord>(m_main.CompanyName(company, DatabasePrefix::Employee));
    if (options)
        found.Sync_Option = options->Sync_Option;
    else
        // Entries are made in a company that was written, and so has had a choice.
        found.IsChoiceLost = FileExists(m_main.CompanyName(company, DatabasePrefix::Options))
            || FileExists(m_main.CompanyName(company, DatabasePrefix::Entries));
    if (employee)
        found.Employee_Number = employee->Employee_Number;
    // Not all_of: each of the databases is opened, so that a foreign one is found now and not when
    // half of the new ones are in place.
    const auto sound = std::count_if(ReferencePrefixes.begin(), ReferencePrefixes.end(),
        [&](QStringView prefix) { return IsSound(m_main.CompanyName(company, prefix)); });
    found.Complete = options && employee && sound == std::ssize(ReferencePrefixes);
    return found;
}

bool LocalDatabases::ArePagesSound(const QString &company)
{
    bool sound = true;
    for (const QStringView prefix : ReferencePrefixes) {
        const QString name = m_main.CompanyName(company, prefix);
        try {
            const Open database(*this, name);
            if (database.Exists())
                m_store.CheckIntegrity(database.Handle);
        } catch (const clsRunTimeError &error) {
            TakeNoteOfDamage(name, error);
            sound = false;
        }
    }
    return sound;
}

QString LocalDatabases::SetAsideIfDamaged(const QString &name)
{
    const QString file = FileOf(name);
    if (!m_damaged.contains(name) || QFileInfo(file).size() == 0)
        return {};
    const QString aside = file + u".damaged"_s;
    QFile::remove(aside + u"-journal"_s);
    if (QFile::exists(JournalOf(name)))
        ReplaceFile(JournalOf(name), aside + u"-journal"_s);
    ReplaceFile(file, aside);
    return aside;
}

void LocalDatabases::Settle(const QString &name)
{
    try {
        const Open database(*this, name); // plays an unfinished write back
        if (database.Exists())
            RecordStore::Batch probe(m_store, database.Handle); // refused while another writes
    } catch (const clsRunTimeError &error) {
        TakeNoteOfDamage(name, error);
    }
    // That of a damaged database goes with it.
    const QString journal = JournalOf(name);
    if (!m_damaged.contains(name) && QFile::exists(journal) && !QFile::remove(journal))
        RaiseExchangeError(ExchangeErrors::Refused, u"A leftover cannot be removed: "_s + journal);
}
