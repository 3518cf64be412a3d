#include "sync/UnusableDatabases.h"

#include "platform/DurableFiles.h"
#include "platform/Paths.h"
#include "store/StoreErrors.h"
#include "sync/BackupFolders.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

using Failure = modDBMain::Failure;

const QString StartAgain = QStringLiteral("start Worklog Remote again.");

QString FileOf(const modDBMain &main, const QString &name)
{
    return RecordStore::FileName(JoinPath(main.Folder(), name));
}

bool IsEntries(const modDBMain &main, const QString &name)
{
    return name.endsWith(main.GlobalName(DatabasePrefix::Entries));
}

/// Ours once, as far as anybody can tell: nothing but damage makes it what it is.
bool IsDamaged(const modDBMain &main, const Failure &failure)
{
    switch (failure.Error.Number()) {
    case StoreErrors::Damaged:
    case StoreErrors::BadRecord:
        return true;
    case StoreErrors::NotADatabase: {
        const QFileInfo file(FileOf(main, failure.Name));
        return file.isFile() && file.size() == 0;
    }
    default:
        return false;
    }
}

bool IsSound(RecordStore &store, const QString &path)
{
    if (QFileInfo::exists(RecordStore::FileName(path) + u"-journal"_s))
        return false;
    const RecordStore::Handle copy = store.OpenDatabase(1, path, 0, 0, 0, 0, 3);
    if (copy == 0)
        return false;
    const auto closed = qScopeGuard([&] { store.CloseDatabase(copy); });
    try {
        return store.DamagedRecords(copy).empty();
    } catch (const clsRunTimeError &) {
        return false;
    }
}

/// The folder of the newest sound copy, from the program folder on; empty without one.
QString NewestSoundCopy(Tables &tables, const QString &name)
{
    const BackupFolders folders(tables.Main.Folder());
    QStringList names = folders.Names();
    std::reverse(names.begin(), names.end());
    for (const QString &folder : names) {
        if (IsSound(tables.Store, JoinPath(folders.PathOf(folder), name)))
            return QDir::toNativeSeparators(
                QDir(tables.Main.Folder()).relativeFilePath(folders.PathOf(folder)));
    }
    return {};
}

QString EntriesAdvice(Tables &tables, const QString &name)
{
    const QString copy = NewestSoundCopy(tables, name);
    return copy.isEmpty()
        ? u" Do not delete it: it contains your entries. There is no sound copy; press F1."_s
        : u" Press F1 to restore your entries. The newest sound copy is in %1."_s.arg(copy);
}

QString DamageNotice(Tables &tables, const QString &name, const QString &file)
{
    if (IsEntries(tables.Main, name))
        return file + u" is damaged."_s + EntriesAdvice(tables, name);
    return file + u" is damaged. Press Sync to write it again."_s;
}

QString ForeignNotice(Tables &tables, const QString &name, const QString &file)
{
    const bool isFolder = QFileInfo(FileOf(tables.Main, name)).isDir();
    const QString what
        = file + (isFolder ? u" is a folder."_s : u" is not a database of Worklog Remote."_s);
    if (IsEntries(tables.Main, name))
        return what + EntriesAdvice(tables, name);
    const bool isOwn = name == tables.Main.GlobalName(DatabasePrefix::GlobalOptions);
    return what + u" Rename it, then "_s + (isOwn ? StartAgain : u"press Sync."_s);
}

} // namespace

bool IsUnusable(const clsRunTimeError &error)
{
    static constexpr std::array numbers = {StoreErrors::NotADatabase, StoreErrors::ForeignCreator,
        StoreErrors::Damaged, StoreErrors::BadRecord, StoreErrors::ReadOnly, StoreErrors::Locked};
    return std::find(numbers.begin(), numbers.end(), error.Number()) != numbers.end();
}

QString LockedNotice(Tables &tables)
{
    const std::vector<Failure> &failures = tables.Main.Failures();
    if (failures.empty())
        return {};
    const Failure failure = failures.front(); // a copy: opening others adds to the list
    const QString file = QFileInfo(FileOf(tables.Main, failure.Name)).fileName();
    if (IsDamaged(tables.Main, failure))
        return DamageNotice(tables, failure.Name, file);
    switch (failure.Error.Number()) {
    case StoreErrors::NotADatabase:
    case StoreErrors::ForeignCreator:
        return ForeignNotice(tables, failure.Name, file);
    case StoreErrors::Locked:
        return file + u" is in use by another program. Close that program, then "_s + StartAgain;
    case StoreErrors::NewerFormat:
        return file + u" was written by a newer version of Worklog Remote. Install that version."_s;
    case StoreErrors::ReadOnly:
        return file + u" is read-only. Allow writing, then "_s + StartAgain;
    default:
        return failure.Error.Description() + u". Correct this, then "_s + StartAgain;
    }
}

bool SetAsideIfDamaged(const modDBMain &main, const QString &name)
{
    const std::vector<Failure> &failures = main.Failures();
    const auto failure = std::find_if(failures.begin(), failures.end(),
        [&](const Failure &candidate) { return candidate.Name == name; });
    if (failure == failures.end() || !IsDamaged(main, *failure))
        return false;
    const QString file = FileOf(main, name);
    const QString aside = file + u".damaged"_s;
    if (QFileInfo::exists(file + u"-journal"_s))
        ReplaceFile(file + u"-journal"_s, aside + u"-journal"_s);
    else
        QFile::remove(aside + u"-journal"_s);
    ReplaceFile(file, aside);
    return true;
}
