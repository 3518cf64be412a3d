#include "sync/modBackup.h"

#include "platform/clsRunTimeError.h"
#include "platform/DurableFiles.h"
#include "platform/Paths.h"
#include "platform/PlainFiles.h"
#include "store/BatchName.h"
#include "store/StoreErrors.h"
#include "sync/FileContents.h"
#include "sync/SyncNote.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

const QString Ending = QStringLiteral(".db");
const QString Journal = QStringLiteral(".db-journal");

} // namespace

modBackup::modBackup(Tables &tables, const clsClock &clock)
    : m_tables(tables)
    , m_clock(clock)
    , m_folders(tables.Main.Folder())
{
}

QStringList modBackup::EntriesFiles(const QString &folder, const QString &ending) const
{
    const QString name = m_tables.Main.GlobalName(DatabasePrefix::Entries);
    return QDir(folder).entryList({u'*' + name + ending}, QDir::Files, QDir::Name);
}

void modBackup::CopyOriginal(const QString &name, const QString &to)
{
    // No other program writes while it is read. What cannot be opened is copied as it is.
    std::optional<RecordStore::Batch> lock;
    RecordStore::Handle handle = 0;
    const auto closed = qScopeGuard([&] {
        lock.reset();
        m_tables.Main.CloseTable(handle);
    });
    try {
        handle = m_tables.Main.OpenTableOrRaise(name);
        if (handle != 0) {
            ReserveBatch(name, handle);
            lock.emplace(m_tables.Store, handle);
        }
    } catch (const clsRunTimeError &error) {
        if (error.Number() == StoreErrors::Locked)
            throw;
    }
    CopyContents(JoinPath(m_tables.Main.Folder(), name + Ending), to);
}

QString modBackup::CompanyOf(const QString &name) const
{
    return name.chopped(m_tables.Main.GlobalName(DatabasePrefix::Entries).size());
}

void modBackup::ReserveBatch(const QString &name, RecordStore::Handle entries)
{
    if (!m_tables.Store.ReadNote(entries).isEmpty())
        return;
    modDBMain &main = m_tables.Main;
    modDBEmpl employee(m_tables.Store);
    try {
        employee.Handle
            = main.OpenTable(main.CompanyName(CompanyOf(name), DatabasePrefix::Employee));
        if (employee.IsOpen())
            employee.LoadEmployee();
    } catch (const clsRunTimeError &) {
        employee.Record = {}; // the name goes without the number
    }
    main.CloseTable(employee.Handle);
    m_tables.Store.WriteNote(entries, NewBatchName(employee.Record.Employee_Number));
}

QString modBackup::OptionOf(const QString &name)
{
    modDBMain &main = m_tables.Main;
    try {
        modDBOpts options(m_tables.Store);
        options.Handle = main.OpenTable(main.CompanyName(CompanyOf(name), DatabasePrefix::Options));
        const auto closed = qScopeGuard([&] { main.CloseTable(options.Handle); });
        if (options.IsOpen() && options.ReadOptions(options.Record))
            return options.Record.Sync_Option;
    } catch (const clsRunTimeError &) {
        return {}; // the report says that it is not known
    }
    return {};
}

void modBackup::CopyAll(const QStringList &files, const QString &folder, const QString &worklog)
{
    const QString program = m_tables.Main.Folder();
    SyncNote note;
    note.Worklog = worklog;
    for (const QString &file : files) {
        const QString name = file.chopped(Ending.size());
        CopyOriginal(name, JoinPath(folder, file));
        LimitRights(JoinPath(folder, file), JoinPath(program, file));
        note.Options.insert(name, OptionOf(name));
    }
    // Only a damaged database still has one; without it the copy would be worth less.
    for (const QString &file : EntriesFiles(program, Journal)) {
        CopyContents(JoinPath(program, file), JoinPath(folder, file));
        LimitRights(JoinPath(folder, file), JoinPath(program, file));
    }
    WriteSyncNote(folder, note);
}

void modBackup::CopyEntries(const QString &worklog)
{
    const QString program = m_tables.Main.Folder();
    const QStringList files = EntriesFiles(program, Ending);
    if (files.isEmpty())
        return;
    for (const QString &interrupted : m_folders.UnfinishedNames())
        RemoveFolder(interrupted);
    const QString name = m_folders.NextName(m_clock.Now());
    const QString unfinished = m_folders.PathOf(BackupFolders::UnfinishedName(name));
    if (!QDir().mkpath(unfinished))
        throw clsRunTimeError(RunTimeErrors::PathAccess, u"Backup"_s,
            u"The entries cannot be copied to "_s + unfinished + u": the folder cannot be made ("_s
                + qt_error_string() + u")"_s);
    auto failed = qScopeGuard([&] { RemoveFolder(BackupFolders::UnfinishedName(name)); });
    SyncFolder(program); // it holds the name of the folder of all copies
    CopyAll(files, unfinished, worklog);
    SyncFolder(unfinished);
    ReplaceFile(unfinished, m_folders.PathOf(name));
    failed.dismiss();
    RemoveOld(name);
}

bool modBackup::AreSame(const QString &one, const QString &other) const
{
    const QString first = m_folders.PathOf(one);
    const QString second = m_folders.PathOf(other);
    QStringList files = EntriesFiles(first, Ending) + EntriesFiles(first, Journal);
    return files == EntriesFiles(second, Ending) + EntriesFiles(second, Journal)
        && std::all_of(files.begin(), files.end(), [&](const QString &file) {
               return HaveSameContents(JoinPath(first, file), JoinPath(second, file));
           });
}

void modBackup::RemoveOld(const QString &newest) const
{
    QStringList names = m_folders.Names();
    names.removeOne(newest);
    if (!names.isEmpty() && AreSame(names.last(), newest))
        RemoveFolder(names.takeLast());
    while (names.size() >= Kept)
        RemoveFolder(names.takeFirst());
}

void modBackup::RemoveFolder(const QString &name) const
{
    // Files of other programs stay.
    QDir folder(m_folders.PathOf(name));
    for (const QString &ending : {Ending, Journal}) {
        for (const QString &file : EntriesFiles(folder.path(), ending))
            folder.remove(file);
    }
    QFile::remove(SyncNotePath(folder.path()));
    QDir().rmdir(folder.path());
}

void modBackup::DeleteCopies()
{
    for (const QString &name : m_folders.UnfinishedNames() + m_folders.Names()) {
        RemoveFolder(name);
        if (!EntriesFiles(m_folders.PathOf(name), u"*"_s).isEmpty())
            RaiseStoreError(StoreErrors::NotDeleted,
                u"The copies of the entries cannot be deleted: "_s + m_folders.PathOf(name));
    }
    QDir().rmdir(m_folders.Path());
}
