#include "store/modDBMain.h"

#include "platform/Paths.h"
#include "store/Records.h"
#include "store/StoreErrors.h"

using namespace Qt::StringLiterals;

namespace {

bool CanBeFileName(const QString &name)
{
    return !name.contains(u'/') && !name.contains(u'\\') && !name.contains(QChar(u'\0'));
}

} // namespace

modDBMain::modDBMain(RecordStore &store, const QString &programFolder)
    : m_store(store)
    , m_folder(programFolder)
{
}

void modDBMain::StoreTheCodes(const StoreCodes &codes)
{
    m_codes = codes;
    ForgetFailures();
    m_store.SetCreator(CodeNumber(codes.Creator));
}

QString modDBMain::GlobalName(QStringView prefix) const
{
    return GlobalDatabaseName(prefix, m_codes.Creator);
}

QString modDBMain::CompanyName(const QString &company, QStringView prefix) const
{
    return CompanyDatabaseName(company, prefix, m_codes.Creator);
}

QString modDBMain::PathOf(const QString &name) const
{
    return JoinPath(m_folder, name);
}

RecordStore::Handle modDBMain::OpenTable(const QString &name)
{
    if (!CanBeFileName(name))
        return 0;
    const RecordStore::Handle handle = m_store.OpenDatabase(1, PathOf(name), 0, 0, 0, 0, 3);
    const bool isMissing = handle == 0 && !m_store.OpenFailure();
    if (!isMissing) // of a missing one, a failed creation may be known
        ForgetFailureOf(name);
    if (m_store.OpenFailure())
        m_failures.push_back({name, *m_store.OpenFailure()});
    return handle;
}

void modDBMain::NoteFailure(const QString &name, const clsRunTimeError &error)
{
    ForgetFailureOf(name);
    m_failures.push_back({name, error});
}

void modDBMain::ForgetFailureOf(const QString &name)
{
    std::erase_if(m_failures, [&](const Failure &failure) { return failure.Name == name; });
}

RecordStore::Handle modDBMain::OpenTableOrRaise(const QString &name)
{
    const RecordStore::Handle handle = OpenTable(name);
    if (handle == 0 && CanBeFileName(name) && m_store.OpenFailure())
        throw clsRunTimeError(*m_store.OpenFailure());
    return handle;
}

RecordStore::Handle modDBMain::CloseTable(RecordStore::Handle handle)
{
    if (handle != 0)
        m_store.CloseDatabase(handle);
    return 0;
}

void modDBMain::DeleteTable(const QString &name)
{
    if (CanBeFileName(name))
        m_store.DeleteDatabase(PathOf(name), 0, 0);
    ForgetFailureOf(name);
}

void modDBMain::CreateGlobalOptions(const QString &name)
{
    CreateOrNote(name, GlobalOptionsRecord::SchemaText, Kind::Plain);
}

void modDBMain::CreateEntries(const QString &name)
{
    CreateOrNote(name, EntryRecord::SchemaText, Kind::WithCheckValues);
}

void modDBMain::CreateHoursSummary(const QString &name)
{
    CreateOne(name, HoursSummaryRecord::SchemaText, Kind::Scratch);
}

void modDBMain::CreateOrNote(const QString &name, QStringView schemaText, Kind kind)
{
    try {
        CreateOne(name, schemaText, kind);
    } catch (const clsRunTimeError &error) {
        NoteFailure(name, error);
    }
}

void modDBMain::CreateOne(const QString &name, QStringView schemaText, Kind kind)
{
    if (!CanBeFileName(name))
        RaiseStoreError(
            StoreErrors::BadArgument, u"The database name cannot be a file's name: "_s + name);
    RecordStore::Handle handle = m_store.CreateDatabase(
        PathOf(name), CodeNumber(m_codes.Type), CodeNumber(m_codes.Creator));
    try {
        if (kind == Kind::Scratch)
            m_store.MakeScratch(handle);
        if (kind == Kind::WithCheckValues)
            m_store.KeepCheckValues(handle);
        m_store.CreateTable(handle, name, schemaText.toString());
    } catch (...) {
        CloseTable(handle);
        throw;
    }
    CloseTable(handle);
}
