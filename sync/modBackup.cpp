#include "sync/modBackup.h"

#include "platform/clsRunTimeError.h"
#include "platform/DurableFiles.h"
#include "platform/Paths.h"
#include "platform/PlainFiles.h"
#include "store/BatchName.h"
#include "store/StoreErrors.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QScopeGuard>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

const QString Ending = QStringLiteral(".db");
const QString Journal = QStringLiteral(".db-journal");
const QString Unfinished = QStringLiteral(".new");

[[noreturn]] void RaiseNotCopied(const QString &fileName, const QString &reason)
{
    throw clsRunTimeError(RunTimeErrors::PathAccess, u"Backup"_s,
        u"The entries cannot be copied to "_s + fileName + u": "_s + reason);
}

QByteArray ReadWhole(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        RaiseNotCopied(fileName, file.errorString());
    QByteArray contents = file.readAll();
    if (file.error() != QFile::NoError)
        RaiseNotCopied(fileName, file.errorString());
    return contents;
}

void MakeFolder(const QString &folder)
{
    if (!QDir().mkpath(folder))
        RaiseNotCopied(folder, u"the folder cannot be made: "_s + qt_error_string());
}

/// All records of a table, each with the number of times that it is there.
QHash<QString, qsizetype> CountedRecords(RecordStore &store, RecordStore::Handle handle)
{
    QHash<QString, qsizetype> records;
    EntryRecord entry;
    for (store.MoveFirst(handle); store.ReadRecord(handle, entry); store.MoveNext(handle)) {
        QString text;
        const int fields = static_cast<int>(std::tuple_size_v<decltype(entry.Fields())>);
        for (int field = 0; field < fields; ++field)
            text += store.ReadField(handle, field) + u'\x1f';
        ++records[text];
    }
    return records;
}

} // namespace

modBackup::modBackup(Tables &tables, const clsClock &clock)
    : m_tables(tables)
    , m_clock(clock)
{
}

QString modBackup::BackupFolder() const
{
    return JoinPath(m_tables.Main.Folder(), u"backup"_s);
}

QString modBackup::FolderOf(const QString &time) const
{
    return JoinPath(BackupFolder(), time);
}

QStringList modBackup::EntriesFiles(const QString &folder, const QString &ending) const
{
    const QString name = m_tables.Main.GlobalName(DatabasePrefix::Entries);
    return QDir(folder).entryList({u'*' + name + ending}, QDir::Files, QDir::Name);
}

QStringList modBackup::Times() const
{
    QStringList times
        = QDir(BackupFolder()).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    static const QRegularExpression ours(u"^\\d{8}-\\d{6}(-\\d\\d)?(\\.new)?$"_s);
    erase_if(times, [&](const QString &name) { return !ours.match(name).hasMatch(); });
    return times;
}

QString modBackup::NewTime() const
{
    const QString now = m_clock.Now().toString(u"yyyyMMdd-HHmmss"_s);
    QString time = now;
    for (int more = 2; QFileInfo::exists(FolderOf(time)) && more < 100; ++more)
        time = now + u"-%1"_s.arg(more, 2, 10, QLatin1Char('0'));
    return time;
}

QByteArray modBackup::ReadOriginal(const QString &name)
{
    // Nobody writes while it is read. What cannot be opened is copied as it lies there.
    std::optional<RecordStore::Batch> lock;
    RecordStore::Handle handle = 0;
    const auto closed = qScopeGuard([&] {
        lock.reset();
        m_tables.Main.CloseTable(handle);
    });
    try {
        handle = m_tables.Main.OpenTable(name);
        if (handle != 0) {
            ReserveBatch(name, handle);
            lock.emplace(m_tables.Store, handle);
        }
    } catch (const clsRunTimeError &error) {
        if (error.Number() == StoreErrors::Locked)
            throw;
    }
    return ReadWhole(JoinPath(m_tables.Main.Folder(), name + Ending));
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

void modBackup::WriteCopy(const QString &fileName, const QByteArray &contents)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size()
        || !file.flush())
        RaiseNotCopied(fileName, file.errorString());
    file.close();
    SyncFile(fileName);
    if (ReadWhole(fileName) != contents)
        RaiseNotCopied(fileName, u"it does not read as it was written"_s);
}

bool modBackup::MayBeTaken(const QString &name)
{
    modDBMain &main = m_tables.Main;
    const QString company = CompanyOf(name);
    try {
        modDBOpts options(m_tables.Store);
        options.Handle = main.OpenTable(main.CompanyName(company, DatabasePrefix::Options));
        const auto closed = qScopeGuard([&] { main.CloseTable(options.Handle); });
        if (!options.IsOpen() || !options.ReadOptions(options.Record))
            return false;
        const QString option = options.Record.Sync_Option;
        return option == "0"_L1 || option == "1"_L1 || option == "2"_L1;
    } catch (const clsRunTimeError &) {
        return false; // nobody has been asked for anything that can be read
    }
}

void modBackup::CopyEntries()
{
    m_copies.clear();
    const QString program = m_tables.Main.Folder();
    const QStringList files = EntriesFiles(program, Ending);
    if (files.isEmpty())
        return;
    m_time = NewTime();
    const QString unfinished = FolderOf(m_time + Unfinished);
    RemoveFolder(m_time + Unfinished);
    MakeFolder(unfinished);
    auto failed = qScopeGuard([&] { RemoveFolder(m_time + Unfinished); });
    SyncFolder(program); // it holds the name of the folder of all copies
    std::vector<Copy> copies;
    for (const QString &file : files) {
        const QString name = file.chopped(Ending.size());
        WriteCopy(JoinPath(unfinished, file), ReadOriginal(name));
        LimitRights(JoinPath(unfinished, file), JoinPath(program, file));
        copies.push_back({name, MayBeTaken(name)});
    }
    // Only a damaged database still has one; without it the copy would be worth less.
    for (const QString &file : EntriesFiles(program, Journal)) {
        WriteCopy(JoinPath(unfinished, file), ReadWhole(JoinPath(program, file)));
        LimitRights(JoinPath(unfinished, file), JoinPath(program, file));
    }
    SyncFolder(unfinished);
    ReplaceFile(unfinished, FolderOf(m_time));
    failed.dismiss();
    m_copies = std::move(copies);

    QStringList times = Times();
    times.removeOne(m_time); // the newest, whatever the clock says
    while (times.size() >= Kept)
        RemoveFolder(times.takeFirst());
}

QString modBackup::WhatIsMissing()
{
    QStringList texts;
    for (const Copy &copy : m_copies) {
        const QString missing = MissingFrom(copy);
        if (!missing.isEmpty())
            texts.append(missing);
    }
    if (texts.isEmpty())
        return {};
    return texts.join(u"\n\n"_s) + u"\n\nA copy from before the synchronization is kept in\n"_s
        + FolderOf(m_time);
}

QString modBackup::MissingFrom(const Copy &copy)
{
    const QString file = JoinPath(m_tables.Main.Folder(), copy.Name + Ending);
    try {
        const qsizetype missing = CountMissing(copy);
        if (missing == 0)
            return {};
        return (missing == 1 ? u"An entry is"_s : QString::number(missing) + u" entries are"_s)
            + u" no longer in "_s + file + u", and nobody was asked to collect or erase entries."_s;
    } catch (const clsRunTimeError &error) {
        return u"The entries cannot be read any more: "_s + error.Description();
    }
}

qsizetype modBackup::CountMissing(const Copy &copy)
{
    modDBMain &main = m_tables.Main;
    RecordStore &store = m_tables.Store;
    const RecordStore::Handle now = main.OpenTable(copy.Name);
    const auto closed = qScopeGuard([&] { main.CloseTable(now); });
    if (now != 0)
        store.MoveFirst(now); // raises when it cannot be read
    if (copy.MayBeTaken)
        return 0;
    const RecordStore::Handle before
        = store.OpenDatabase(1, JoinPath(FolderOf(m_time), copy.Name), 0, 0, 0, 0, 3);
    const auto closedToo = qScopeGuard([&] { main.CloseTable(before); });
    const QHash<QString, qsizetype> left
        = now != 0 ? CountedRecords(store, now) : QHash<QString, qsizetype>();
    const QHash<QString, qsizetype> were = CountedRecords(store, before);
    qsizetype missing = 0;
    for (auto record = were.begin(); record != were.end(); ++record)
        missing += std::max<qsizetype>(record.value() - left.value(record.key()), 0);
    return missing;
}

void modBackup::RemoveFolder(const QString &time) const
{
    // What somebody else has put there stays.
    QDir folder(FolderOf(time));
    for (const QString &ending : {Ending, Journal}) {
        for (const QString &name : EntriesFiles(folder.path(), ending))
            folder.remove(name);
    }
    QDir().rmdir(folder.path());
}

void modBackup::DeleteCopies()
{
    Forget();
    for (const QString &time : Times()) {
        RemoveFolder(time);
        if (!EntriesFiles(FolderOf(time), u"*"_s).isEmpty())
            RaiseStoreError(StoreErrors::NotDeleted,
                u"The copies of the entries cannot be deleted: "_s + FolderOf(time));
    }
    QDir().rmdir(BackupFolder());
}
