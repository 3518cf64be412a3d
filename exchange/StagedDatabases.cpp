#include "exchange/StagedDatabases.h"

#include "exchange/ExchangeErrors.h"
#include "platform/DurableFiles.h"
#include "platform/Paths.h"
#include "platform/PlainFiles.h"
#include "store/StagingFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

StagedDatabases::StagedDatabases(LocalDatabases &local)
    : m_local(local)
    , m_folder(JoinPath(local.Folder(), StagingFolderName()))
{
    Remove();
    if (QFileInfo::exists(m_folder))
        RaiseExchangeError(ExchangeErrors::Refused,
            m_folder + u": this is in the place of a folder of the synchronization; "_s
                + u"rename or delete it, and synchronize again"_s);
    // For its user alone, like a database that the user has made private.
    if (!QDir().mkdir(m_folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
        RaiseExchangeError(ExchangeErrors::Refused,
            m_folder + u": the folder cannot be made: "_s + qt_error_string());
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

QStringList StagedDatabases::MoveIn()
{
    QStringList setAside;
    // All of the old ones first: a refusal then comes before anything has been replaced.
    for (const QString &name : m_finished)
        m_local.Settle(name);
    for (const QString &name : m_finished) {
        const QString staged = RecordStore::FileName(PathOf(name));
        const QString old = RecordStore::FileName(JoinPath(m_local.Folder(), name));
        LimitRights(staged, old);
        setAside.append(m_local.SetAsideIfDamaged(name));
        ReplaceFile(staged, old);
    }
    m_finished.clear();
    setAside.removeAll(QString());
    return setAside;
}
