#include "tests/support/FaultyDisk.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// The C library's calls carry no data of ours, so they find the disk here.
FaultyDisk *theDisk = nullptr;
/// SQLite's own calls of the C library are counted as what SQLite asked for.
thread_local int insideSqlite = 0;

struct InsideSqlite
{
    InsideSqlite() { ++insideSqlite; }
    ~InsideSqlite() { --insideSqlite; }
    InsideSqlite(const InsideSqlite &) = delete;
    InsideSqlite &operator=(const InsideSqlite &) = delete;
};

constexpr qsizetype SectorBytes = 512;

const char *NameOf(FaultyDisk::Call call)
{
    constexpr std::array names
        = {"open ", "create ", "write ", "truncate ", "sync ", "delete ", "rename "};
    return names.at(static_cast<size_t>(call));
}

} // namespace

/// SQLite's own disk with ours in front of it.
struct FaultyDisk::Vfs
{
    /// SQLite gives the memory; what the real disk keeps of the file follows it.
    struct File
    {
        sqlite3_file Base;
        FaultyDisk *Disk;
        const char *Path; // SQLite keeps it for as long as the file is open; null: not watched
        bool IsJournal;
        sqlite3_file *Real() { return static_cast<sqlite3_file *>(static_cast<void *>(this + 1)); }
    };
    static File &Of(sqlite3_file *file) { return *static_cast<File *>(static_cast<void *>(file)); }
    static FaultyDisk &DiskOf(sqlite3_vfs *vfs)
    {
        return *static_cast<FaultyDisk *>(vfs->pAppData);
    }
    static sqlite3_vfs *RealOf(sqlite3_vfs *vfs) { return DiskOf(vfs).m_vfs->Real; }

    static bool Fails(File &file, Call call)
    {
        return file.Path != nullptr && file.Disk->Fails(call, file.Path);
    }

    static int Open(
        sqlite3_vfs *vfs, sqlite3_filename path, sqlite3_file *base, int flags, int *outFlags)
    {
        const InsideSqlite inside;
        FaultyDisk &disk = DiskOf(vfs);
        File &file = Of(base);
        file = {{nullptr}, &disk, nullptr, (flags & SQLITE_OPEN_MAIN_JOURNAL) != 0};
        if (path != nullptr && disk.Watches(path)) {
            const bool creates = (flags & SQLITE_OPEN_CREATE) != 0 && ::access(path, F_OK) != 0;
            if (disk.Fails(creates ? Call::Create : Call::Open, path))
                return SQLITE_CANTOPEN;
            if (creates)
                disk.NameChanges(path);
            file.Path = path;
        }
        const int result = RealOf(vfs)->xOpen(RealOf(vfs), path, file.Real(), flags, outFlags);
        if (file.Real()->pMethods != nullptr)
            base->pMethods = &Methods();
        return result;
    }
    static int Delete(sqlite3_vfs *vfs, const char *path, int syncsFolder)
    {
        const InsideSqlite inside;
        FaultyDisk &disk = DiskOf(vfs);
        const bool watched = disk.Watches(path) && ::access(path, F_OK) == 0;
        const bool fails = watched && disk.Fails(Call::Delete, path);
        if (fails && !disk.DeletesAnyway())
            return SQLITE_IOERR_DELETE;
        if (watched)
            disk.NameChanges(path);
        const int result = RealOf(vfs)->xDelete(RealOf(vfs), path, syncsFolder);
        if (fails)
            return SQLITE_IOERR_DELETE;
        if (watched && syncsFolder != 0)
            disk.Synced(QFileInfo(QFile::decodeName(path)).path().toUtf8());
        return result;
    }

    static int Close(sqlite3_file *file)
    {
        const InsideSqlite inside;
        return Of(file).Real()->pMethods->xClose(Of(file).Real());
    }
    static int Read(sqlite3_file *file, void *to, int bytes, sqlite3_int64 at)
    {
        return Of(file).Real()->pMethods->xRead(Of(file).Real(), to, bytes, at);
    }
    static int Write(sqlite3_file *base, const void *from, int bytes, sqlite3_int64 at)
    {
        const InsideSqlite inside;
        File &file = Of(base);
        if (Fails(file, Call::Write))
            return file.Disk->IsFull() ? SQLITE_FULL : SQLITE_IOERR_WRITE;
        if (file.Path != nullptr)
            file.Disk->ContentsChange(file.Path);
        return file.Real()->pMethods->xWrite(file.Real(), from, bytes, at);
    }
    static int Truncate(sqlite3_file *base, sqlite3_int64 size)
    {
        const InsideSqlite inside;
        File &file = Of(base);
        if (Fails(file, Call::Truncate))
            return SQLITE_IOERR_TRUNCATE;
        if (file.Path != nullptr)
            file.Disk->ContentsChange(file.Path);
        return file.Real()->pMethods->xTruncate(file.Real(), size);
    }
    static int Sync(sqlite3_file *base, int flags)
    {
        const InsideSqlite inside;
        File &file = Of(base);
        if (Fails(file, Call::Sync))
            return SQLITE_IOERR_FSYNC;
        const int result = file.Real()->pMethods->xSync(file.Real(), flags);
        if (file.Path != nullptr)
            file.Disk->Synced(file.Path);
        // With a journal's contents SQLite also puts its name on the disk.
        if (file.Path != nullptr && file.IsJournal)
            file.Disk->Synced(QFileInfo(QFile::decodeName(file.Path)).path().toUtf8());
        return result;
    }
    static int FileSize(sqlite3_file *file, sqlite3_int64 *size)
    {
        return Of(file).Real()->pMethods->xFileSize(Of(file).Real(), size);
    }
    static int Lock(sqlite3_file *file, int level)
    {
        return Of(file).Real()->pMethods->xLock(Of(file).Real(), level);
    }
    static int Unlock(sqlite3_file *file, int level)
    {
        return Of(file).Real()->pMethods->xUnlock(Of(file).Real(), level);
    }
    static int CheckReservedLock(sqlite3_file *file, int *isReserved)
    {
        return Of(file).Real()->pMethods->xCheckReservedLock(Of(file).Real(), isReserved);
    }
    static int FileControl(sqlite3_file *file, int what, void *argument)
    {
        return Of(file).Real()->pMethods->xFileControl(Of(file).Real(), what, argument);
    }
    static int SectorSize(sqlite3_file *file)
    {
        return Of(file).Real()->pMethods->xSectorSize(Of(file).Real());
    }
    static int DeviceCharacteristics(sqlite3_file *)
    {
        return 0; // promises nothing: no write is atomic, and all that is not synced may be lost
    }

    static const sqlite3_io_methods &Methods()
    {
        static const sqlite3_io_methods methods = {1, Close, Read, Write, Truncate, Sync, FileSize,
            Lock, Unlock, CheckReservedLock, FileControl, SectorSize, DeviceCharacteristics,
            nullptr, nullptr, nullptr, nullptr, nullptr, nullptr};
        return methods;
    }

    explicit Vfs(FaultyDisk &disk)
        : Real(sqlite3_vfs_find(nullptr))
        , Own(*Real)
    {
        Own.zName = "faulty";
        Own.szOsFile = static_cast<int>(sizeof(File)) + Real->szOsFile;
        Own.pAppData = &disk;
        Own.xOpen = Open;
        Own.xDelete = Delete;
        // The real disk finds its own data through itself.
        Own.xAccess = [](sqlite3_vfs *vfs, const char *path, int flags, int *result) {
            return RealOf(vfs)->xAccess(RealOf(vfs), path, flags, result);
        };
        Own.xFullPathname = [](sqlite3_vfs *vfs, const char *path, int bytes, char *full) {
            return RealOf(vfs)->xFullPathname(RealOf(vfs), path, bytes, full);
        };
    }

    sqlite3_vfs *Real;
    sqlite3_vfs Own;
};

FaultyDisk::FaultyDisk(const QString &folder)
    : FaultyDisk(QStringList(folder))
{
}

FaultyDisk::FaultyDisk(const QStringList &folders)
    : m_vfs(std::make_unique<Vfs>(*this))
{
    for (const QString &folder : folders)
        m_folders.append(QFileInfo(folder).canonicalFilePath().toUtf8());
    sqlite3_vfs_register(&m_vfs->Own, 1);
    theDisk = this;
}

FaultyDisk::~FaultyDisk()
{
    theDisk = nullptr;
    sqlite3_vfs_unregister(&m_vfs->Own);
    sqlite3_vfs_register(m_vfs->Real, 1);
}

void FaultyDisk::FailAt(int call, DiskFault fault, FaultLasts lasts)
{
    m_failAt = call;
    m_fault = fault;
    m_lasts = lasts;
    m_calls = 0;
    m_flushes = 0;
    m_failedCall.clear();
    m_callsMade.clear();
    m_unsynced.clear();
}

std::vector<std::string> FaultyDisk::Calls(std::initializer_list<const char *> kinds) const
{
    std::vector<std::string> calls;
    for (const QByteArray &call : m_callsMade) {
        const auto isOfKind = [&](const char *kind) { return call.startsWith(kind); };
        if (std::any_of(kinds.begin(), kinds.end(), isOfKind))
            calls.push_back(call.toStdString());
    }
    return calls;
}

int FaultyDisk::Repair()
{
    m_failAt = 0;
    return m_calls;
}

bool FaultyDisk::Watches(const QByteArray &path) const
{
    return std::any_of(m_folders.begin(), m_folders.end(),
        [&](const QByteArray &folder) { return path.startsWith(folder); });
}

bool FaultyDisk::Fails(Call call, const QByteArray &path)
{
    const std::scoped_lock lock(m_mutex);
    if (m_fault == DiskFault::DeletedAnyway && call != Call::Delete)
        return false;
    const bool needsSpace = call == Call::Create || call == Call::Write || call == Call::Sync;
    if (m_fault == DiskFault::Full && !needsSpace)
        return false;
    ++m_calls;
    m_callsMade.push_back(NameOf(call) + path.mid(path.lastIndexOf('/') + 1));
    if (m_failAt == 0 || m_calls < m_failAt)
        return false;
    if (m_lasts == FaultLasts::Once && m_calls > m_failAt)
        return false;
    if (m_failedCall.isEmpty())
        m_failedCall = m_callsMade.back();
    if (m_fault < DiskFault::Kill || m_fault > DiskFault::Pause)
        return true;
    Stop();
    return false;
}

void FaultyDisk::Stop()
{
    if (m_fault == DiskFault::Pause) {
        m_failAt = 0;
        const QDir folder(qEnvironmentVariable("WORKLOG_PAUSES"));
        QFile paused(folder.filePath(QStringLiteral("paused")));
        if (!paused.open(QIODevice::WriteOnly))
            qFatal("there is no folder to pause in");
        while (!folder.exists(QStringLiteral("go")))
            ::usleep(1000);
        return;
    }
    if (m_fault == DiskFault::KillBoth)
        ::kill(::getppid(), SIGKILL);
    ::kill(::getpid(), m_fault == DiskFault::Terminate ? SIGTERM : SIGKILL);
    // A process that handles the signal goes on; any other ends here.
    m_failAt = 0;
}

FaultyDisk::Unsynced &FaultyDisk::EntryOf(const QByteArray &path)
{
    const auto [at, isNew] = m_unsynced.try_emplace(path);
    if (isNew)
        at->second.Durable = Read(path);
    return at->second;
}

void FaultyDisk::ContentsChange(const QByteArray &path)
{
    const std::scoped_lock lock(m_mutex);
    Unsynced &file = EntryOf(path);
    if (!std::exchange(file.ContentsDiffer, true))
        file.Written = Read(path).value_or(QByteArray());
}

void FaultyDisk::NameChanges(const QByteArray &path)
{
    const std::scoped_lock lock(m_mutex);
    EntryOf(path).NameDiffers = true;
}

void FaultyDisk::HasNewName(const QByteArray &from, const QByteArray &to)
{
    const std::scoped_lock lock(m_mutex);
    HasSecondName(from, to);
    m_unsynced[from].ContentsDiffer = false;
    std::map<QByteArray, Unsynced> inside;
    for (auto entry = m_unsynced.begin(); entry != m_unsynced.end();) {
        if (!entry->first.startsWith(from + '/')) {
            ++entry;
            continue;
        }
        inside.emplace(to + entry->first.mid(from.size()), entry->second);
        entry = m_unsynced.erase(entry);
    }
    m_unsynced.merge(inside);
}

void FaultyDisk::HasSecondName(const QByteArray &from, const QByteArray &to)
{
    const std::scoped_lock lock(m_mutex);
    const auto file = m_unsynced.find(from);
    m_unsynced[to].ContentsDiffer = file != m_unsynced.end() && file->second.ContentsDiffer;
    if (m_unsynced[to].ContentsDiffer)
        m_unsynced[to].Written = file->second.Written;
}

void FaultyDisk::Synced(const QByteArray &path)
{
    const std::scoped_lock lock(m_mutex);
    // A file's contents: whether it keeps its name is the folder's.
    const auto file = m_unsynced.find(path);
    if (file != m_unsynced.end()) {
        file->second.ContentsDiffer = false;
        if (!file->second.NameDiffers)
            m_unsynced.erase(file);
    }
    // A folder's names: contents that were not synced stay so.
    for (auto entry = m_unsynced.begin(); entry != m_unsynced.end();) {
        const QByteArray &name = entry->first;
        const bool isHere = name.left(name.lastIndexOf('/')) == path;
        if (isHere && !entry->second.ContentsDiffer) {
            entry = m_unsynced.erase(entry);
            continue;
        }
        if (isHere && std::exchange(entry->second.NameDiffers, false))
            entry->second.Durable = entry->second.Written;
        ++entry;
    }
}

FaultyDisk::Contents FaultyDisk::Read(const QByteArray &path)
{
    QFile file(QFile::decodeName(path));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

void FaultyDisk::Restore(const QByteArray &path, const Contents &contents)
{
    QFile file(QFile::decodeName(path));
    if (!contents) {
        QDir folder(file.fileName());
        folder.exists() ? folder.removeRecursively() : file.remove();
        return;
    }
    if (!QFileInfo(QFileInfo(file).path()).isDir())
        return; // its folder was lost, too
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)
        || file.write(*contents) != contents->size())
        qFatal("the file cannot be put back: %s", path.constData());
}

QByteArray FaultyDisk::Mixed(const QByteArray &a, const QByteArray &b, std::mt19937 &random)
{
    QByteArray mixed(random() % 2 == 0 ? a.size() : b.size(), '\0');
    for (qsizetype at = 0; at < mixed.size(); at += SectorBytes) {
        const QByteArray sector = (random() % 2 == 0 ? a : b).mid(at, SectorBytes);
        mixed.replace(
            at, std::min(sector.size(), mixed.size() - at), sector.left(mixed.size() - at));
    }
    return mixed;
}

void FaultyDisk::LosePower(std::mt19937 *random)
{
    Repair();
    const auto cleared = qScopeGuard([this] { m_unsynced.clear(); }); // of what is done here
    for (const auto &[path, was] : std::exchange(m_unsynced, {})) {
        const Contents now = Read(path);
        if (random == nullptr)
            Restore(path, was.Durable);
        else if (was.ContentsDiffer && now)
            Restore(path, Mixed(was.Durable.value_or(QByteArray()), *now, *random));
        else if ((*random)() % 2 == 0)
            Restore(path, was.Durable);
    }
}

// The C library's calls, in front of its own for this program and every library in it.

namespace {

bool IsCounted(const char *path)
{
    return theDisk != nullptr && insideSqlite == 0 && theDisk->Watches(path);
}

bool FailsWith(FaultyDisk::Call call, const char *path)
{
    if (!IsCounted(path) || !theDisk->Fails(call, path))
        return false;
    errno = theDisk->IsFull() ? ENOSPC : EIO;
    return true;
}

std::array<char, 4096> PathOf(int file)
{
    std::array<char, 4096> path = {};
    const std::string link = "/proc/self/fd/" + std::to_string(file);
    if (::readlink(link.c_str(), path.data(), path.size() - 1) < 0)
        path[0] = '\0';
    return path;
}

/// The mode follows where the flags may create a file.
int OpenFile(const char *path, int flags, va_list &more)
{
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
    if (IsCounted(path)) {
        const bool isThere = ::access(path, F_OK) == 0;
        if (!isThere && (flags & O_CREAT) != 0) {
            if (FailsWith(FaultyDisk::Call::Create, path))
                return -1;
            theDisk->NameChanges(path);
        }
        if (isThere && (flags & O_TRUNC) != 0)
            theDisk->ContentsChange(path);
    }
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

void CountFlush(const char *path)
{
    if (theDisk != nullptr && theDisk->Watches(path))
        theDisk->CountFlush();
}

} // namespace

extern "C" {

int unlink(const char *path) noexcept
{
    const bool fails = FailsWith(FaultyDisk::Call::Delete, path);
    const int reason = errno;
    if (fails && !theDisk->DeletesAnyway())
        return -1;
    if (IsCounted(path))
        theDisk->NameChanges(path);
    const int result = static_cast<int>(syscall(SYS_unlink, path));
    if (!fails)
        return result;
    errno = reason;
    return -1;
}

int link(const char *from, const char *to) noexcept
{
    if (FailsWith(FaultyDisk::Call::Create, to))
        return -1;
    if (IsCounted(to))
        theDisk->NameChanges(to);
    const int result = static_cast<int>(syscall(SYS_link, from, to));
    if (IsCounted(to) && result == 0)
        theDisk->HasSecondName(from, to);
    return result;
}

int rename(const char *from, const char *to) noexcept
{
    if (FailsWith(FaultyDisk::Call::Rename, to))
        return -1;
    if (IsCounted(to)) {
        theDisk->NameChanges(from);
        theDisk->NameChanges(to);
    }
    const int result = static_cast<int>(syscall(SYS_rename, from, to));
    if (IsCounted(to) && result == 0)
        theDisk->HasNewName(from, to);
    return result;
}

int fsync(int file)
{
    const std::array<char, 4096> path = PathOf(file);
    CountFlush(path.data());
    if (FailsWith(FaultyDisk::Call::Sync, path.data()))
        return -1;
    const int result = static_cast<int>(syscall(SYS_fsync, file));
    if (IsCounted(path.data()))
        theDisk->Synced(path.data());
    return result;
}

int mkdir(const char *path, mode_t mode) noexcept
{
    if (::access(path, F_OK) != 0) {
        if (FailsWith(FaultyDisk::Call::Create, path))
            return -1;
        if (IsCounted(path))
            theDisk->NameChanges(path);
    }
    return static_cast<int>(syscall(SYS_mkdir, path, mode));
}

int open(const char *path, int flags, ...)
{
    va_list more;
    va_start(more, flags);
    const int file = OpenFile(path, flags, more);
    va_end(more);
    return file;
}

int open64(const char *path, int flags, ...)
{
    va_list more;
    va_start(more, flags);
    const int file = OpenFile(path, flags, more);
    va_end(more);
    return file;
}

ssize_t write(int file, const void *bytes, size_t count)
{
    if (theDisk != nullptr && insideSqlite == 0) {
        const std::array<char, 4096> path = PathOf(file);
        if (FailsWith(FaultyDisk::Call::Write, path.data()))
            return -1;
        if (IsCounted(path.data()))
            theDisk->ContentsChange(path.data());
    }
    return syscall(SYS_write, file, bytes, count);
}

/// The toolkit gives a file its name when its contents are on the disk.
int linkat(int fromFolder, const char *from, int toFolder, const char *to, int flags) noexcept
{
    if (FailsWith(FaultyDisk::Call::Create, to))
        return -1;
    if (IsCounted(to))
        theDisk->NameChanges(to);
    return static_cast<int>(syscall(SYS_linkat, fromFolder, from, toFolder, to, flags));
}

// Only SQLite's, which is watched where SQLite asks for it.
int fdatasync(int file)
{
    CountFlush(PathOf(file).data());
    return static_cast<int>(syscall(SYS_fdatasync, file));
}
}
