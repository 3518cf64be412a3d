#include "tests/entry/FailingFiles.h"

#include <sqlite3.h>

#include <atomic>
#include <utility>

/// SQLite's own disk behind ours.
struct FailingFiles::Disk
{
    /// SQLite gives the memory; what the real disk keeps of the file follows it.
    struct File
    {
        sqlite3_file Base;
        Disk *Owner;
        sqlite3_file *Real() { return static_cast<sqlite3_file *>(static_cast<void *>(this + 1)); }
    };
    static File &Of(sqlite3_file *file) { return *static_cast<File *>(static_cast<void *>(file)); }
    static sqlite3_file *RealOf(sqlite3_file *file) { return Of(file).Real(); }
    static const sqlite3_io_methods &MethodsOf(sqlite3_file *file)
    {
        return *RealOf(file)->pMethods;
    }
    static Disk &Of(sqlite3_vfs *vfs) { return *static_cast<Disk *>(vfs->pAppData); }
    static bool Fails(sqlite3_file *file) { return Of(file).Owner->NextFails(); }

    static int Open(
        sqlite3_vfs *vfs, sqlite3_filename path, sqlite3_file *base, int flags, int *outFlags)
    {
        Of(base) = {{nullptr}, &Of(vfs)};
        sqlite3_vfs *real = Of(vfs).Real;
        const int result = real->xOpen(real, path, RealOf(base), flags, outFlags);
        if (RealOf(base)->pMethods != nullptr)
            base->pMethods = &Methods();
        return result;
    }
    static int Close(sqlite3_file *file) { return MethodsOf(file).xClose(RealOf(file)); }
    static int Read(sqlite3_file *file, void *to, int bytes, sqlite3_int64 at)
    {
        return MethodsOf(file).xRead(RealOf(file), to, bytes, at);
    }
    static int Write(sqlite3_file *file, const void *from, int bytes, sqlite3_int64 at)
    {
        if (Fails(file))
            return SQLITE_IOERR_WRITE;
        return MethodsOf(file).xWrite(RealOf(file), from, bytes, at);
    }
    static int Truncate(sqlite3_file *file, sqlite3_int64 size)
    {
        if (Fails(file))
            return SQLITE_IOERR_TRUNCATE;
        return MethodsOf(file).xTruncate(RealOf(file), size);
    }
    static int Sync(sqlite3_file *file, int flags)
    {
        Of(file).Owner->OnFlush();
        if (Fails(file))
            return SQLITE_IOERR_FSYNC;
        return MethodsOf(file).xSync(RealOf(file), flags);
    }
    static int FileSize(sqlite3_file *file, sqlite3_int64 *size)
    {
        return MethodsOf(file).xFileSize(RealOf(file), size);
    }
    static int Lock(sqlite3_file *file, int level)
    {
        if (Fails(file))
            return SQLITE_IOERR_LOCK;
        return MethodsOf(file).xLock(RealOf(file), level);
    }
    static int Unlock(sqlite3_file *file, int level)
    {
        return MethodsOf(file).xUnlock(RealOf(file), level);
    }
    static int CheckReservedLock(sqlite3_file *file, int *isReserved)
    {
        return MethodsOf(file).xCheckReservedLock(RealOf(file), isReserved);
    }
    static int FileControl(sqlite3_file *file, int what, void *argument)
    {
        return MethodsOf(file).xFileControl(RealOf(file), what, argument);
    }
    static int SectorSize(sqlite3_file *file) { return MethodsOf(file).xSectorSize(RealOf(file)); }
    static int DeviceCharacteristics(sqlite3_file *file)
    {
        return MethodsOf(file).xDeviceCharacteristics(RealOf(file));
    }
    static const sqlite3_io_methods &Methods()
    {
        static const sqlite3_io_methods methods = {1, Close, Read, Write, Truncate, Sync, FileSize,
            Lock, Unlock, CheckReservedLock, FileControl, SectorSize, DeviceCharacteristics,
            nullptr, nullptr, nullptr, nullptr, nullptr, nullptr};
        return methods;
    }

    Disk()
        : Real(sqlite3_vfs_find(nullptr))
        , Own(*Real)
    {
        Own.zName = "failing";
        Own.szOsFile = static_cast<int>(sizeof(File)) + Real->szOsFile;
        Own.pAppData = this;
        Own.xOpen = Open;
        // The real disk finds its own data through itself.
        Own.xDelete = [](sqlite3_vfs *vfs, const char *path, int syncsFolder) {
            return Of(vfs).Real->xDelete(Of(vfs).Real, path, syncsFolder);
        };
        Own.xAccess = [](sqlite3_vfs *vfs, const char *path, int flags, int *result) {
            return Of(vfs).Real->xAccess(Of(vfs).Real, path, flags, result);
        };
        Own.xFullPathname = [](sqlite3_vfs *vfs, const char *path, int bytes, char *full) {
            return Of(vfs).Real->xFullPathname(Of(vfs).Real, path, bytes, full);
        };
    }

    bool NextFails()
    {
        const int call = ++Calls;
        const bool fails = call >= First && call < First + Count;
        Failed += fails ? 1 : 0;
        return fails;
    }

    sqlite3_vfs *Real;
    sqlite3_vfs Own;
    std::function<void()> OnFlush = [] {};
    std::atomic<int> Calls = 0; // tables are also read in threads of the store
    std::atomic<int> Failed = 0;
    std::atomic<int> First = 0;
    std::atomic<int> Count = 0;
};

FailingFiles::FailingFiles()
    : m_disk(std::make_unique<Disk>())
{
    sqlite3_vfs_register(&m_disk->Own, 1);
}

FailingFiles::~FailingFiles()
{
    sqlite3_vfs_unregister(&m_disk->Own);
    sqlite3_vfs_register(m_disk->Real, 1);
}

void FailingFiles::FailAt(int call, int count)
{
    m_disk->Calls = 0;
    m_disk->Failed = 0;
    m_disk->First = call;
    m_disk->Count = count;
}

void FailingFiles::Stop()
{
    m_disk->Count = 0;
}

void FailingFiles::BeforeFlush(std::function<void()> action)
{
    m_disk->OnFlush = std::move(action);
}

int FailingFiles::Failed() const
{
    return m_disk->Failed;
}

const char *FailingFiles::NameOfSafeDisk() const
{
    return m_disk->Real->zName;
}
