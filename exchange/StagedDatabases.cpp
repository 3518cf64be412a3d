#include "exchange/StagedDatabases.h"

#include "exchange/ExchangeErrors.h"
#include "platform/DurableFiles.h"
#include "platform/Paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

StagedDatabases::StagedDatabases(LocalDatabases &local)
    : m_local(local)
    , m_folder(JoinPath(local.Folder(), u"exchange-staging"_s))
{
    Remove();
    if (QFileInfo::exists(m_folder) || !QDir().mkdir(m_folder))
        RaiseExchangeError(ExchangeErrors::Refused, u"The folder cannot be made: "_s + m_folder);
}

StagedDatabases::~StagedDatabases()
{
    Remove();
}

void StagedDatabases::Remove() const
{
    // A link is taken away without a look at where it leads.
    if (QFileInfo(m_folder).isSymLink())
        QFile::remove(m_folder);
    else
        QDir(m_folder).removeRecursively();
}

QString StagedDatabases::PathOf(const QString &name) const
{
    return JoinPath(m_folder, name);
}

RecordStore::Handle StagedDatabases::Create(const QString &name, QStringView schemaText)
{
    const StoreCodes &codes = m_local.Main().Codes();
    const RecordStore::Handle handle
        = m_store.CreateDatabase(PathOf(name), CodeNumber(codes.Type), CodeNumber(codes.Creator));
    m_store.CreateTable(handle, name, schemaText.toString());
    return handle;
}

void StagedDatabases::Close(RecordStore::Handle handle, const QString &name)
{
    m_store.CloseDatabase(handle);
    m_finished.append(name);
}

void StagedDatabases::MoveIn()
{
    // All of the old ones first: a refusal then comes before anything has been replaced.
    for (const QString &name : m_finished)
        m_local.Settle(name);
    for (const QString &name : m_finished)
        ReplaceFile(RecordStore::FileName(PathOf(name)),
            RecordStore::FileName(JoinPath(m_local.Folder(), name)));
    m_finished.clear();
}
