#include "exchange/LocalDatabases.h"

#include "exchange/ExchangeErrors.h"
#include "platform/clsRunTimeError.h"
#include "platform/Paths.h"
#include "store/Records.h"
#include "store/StoreErrors.h"

#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

const std::array<QStringView, 7> ReferencePrefixes = {DatabasePrefix::Options,
    DatabasePrefix::Employee, DatabasePrefix::Multiplier, DatabasePrefix::Divisions,
    DatabasePrefix::Customers, DatabasePrefix::Projects, DatabasePrefix::Activities};

namespace {

/// Whether a rewrite mends what the error tells: the file is ours, but not whole.
bool IsDamage(const clsRunTimeError &error)
{
    return error.Number() == StoreErrors::Damaged || error.Number() == StoreErrors::BadRecord;
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
    : Handle(local.m_main.OpenTable(name))
    , m_local(local)
{
}

LocalDatabases::Open::~Open()
{
    m_local.m_main.CloseTable(Handle);
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
        if (!IsDamage(error))
            throw;
    }
    return {};
}

bool LocalDatabases::FileExists(const QString &name) const
{
    return QFile::exists(RecordStore::FileName(JoinPath(Folder(), name)));
}

bool LocalDatabases::IsSound(const QString &name)
{
    try {
        return Open(*this, name).Exists();
    } catch (const clsRunTimeError &error) {
        if (!IsDamage(error))
            throw;
        return false;
    }
}

std::optional<QStringList> LocalDatabases::CompanyCodes()
{
    try {
        const Open database(*this, m_main.GlobalName(DatabasePrefix::Company));
        if (!database.Exists())
            return {};
        QStringList codes;
        CompanyRecord record;
        for (m_store.MoveFirst(database.Handle); m_store.ReadRecord(database.Handle, record);
             m_store.MoveNext(database.Handle))
            codes.append(record.Company_Code);
        return codes;
    } catch (const clsRunTimeError &error) {
        if (!IsDamage(error))
            throw;
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
    // No all_of: each of the databases is looked at, so that a foreign one is found now and not
    // when half of the new ones are in place.
    const auto sound = std::count_if(ReferencePrefixes.begin(), ReferencePrefixes.end(),
        [&](QStringView prefix) { return IsSound(m_main.CompanyName(company, prefix)); });
    found.Complete = options && employee && sound == std::ssize(ReferencePrefixes);
    return found;
}

void LocalDatabases::Settle(const QString &name)
{
    try {
        const Open database(*this, name); // plays an unfinished write back
        if (database.Exists())
            RecordStore::Batch probe(m_store, database.Handle); // refused while another writes
    } catch (const clsRunTimeError &error) {
        if (!IsDamage(error))
            throw;
    }
    const QString journal = RecordStore::FileName(JoinPath(Folder(), name)) + u"-journal"_s;
    if (QFile::exists(journal) && !QFile::remove(journal))
        RaiseExchangeError(ExchangeErrors::Refused, u"A leftover cannot be removed: "_s + journal);
}
