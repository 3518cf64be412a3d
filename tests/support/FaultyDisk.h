#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <QStringList>

#include <initializer_list>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <random>
#include <string>
#include <vector>

struct sqlite3_vfs;

enum class DiskFault
{
    Full, ///< what needs space fails: writing, creating, putting on the disk
    InputOutput, ///< every call fails
    Kill, ///< the process is killed before the call
    KillBoth, ///< and the process that has started it
    Terminate, ///< the process is asked to end, as at the end of a session
    Pause, ///< makes a file "paused" in the folder WORKLOG_PAUSES and waits for a file "go" there
    DeletedAnyway, ///< deleting a file does it and is reported as failed
    PowerLoss ///< the call and all that follow fail; see LosePower
};

enum class FaultLasts
{
    Once,
    ForGood
};

/// The disk under some folders, which fails at the n-th call that changes something on it.
///
/// Counted: opening, writing, truncating, syncing and deleting, as SQLite asks for them, and
///          what everybody else asks the C library for: opening a new file, write, mkdir, unlink,
///          link, rename and fsync. Of a Full disk only those that can meet it, and of
///          DeletedAnyway only deleting.
/// Lost:    with the power, what was not synced of all these.
/// Shape:   SQLite's default disk is replaced while the object lives, and the calls of the C
///          library always pass through here; one object at a time.
class FaultyDisk
{
public:
    explicit FaultyDisk(const QString &folder);
    explicit FaultyDisk(const QStringList &folders);
    ~FaultyDisk();
    FaultyDisk(const FaultyDisk &) = delete;
    FaultyDisk &operator=(const FaultyDisk &) = delete;

    /// Counting begins again, and what is on the disk by now is there to stay. Call 0 never comes,
    /// so that calls are counted only.
    void FailAt(int call, DiskFault fault, FaultLasts lasts = FaultLasts::ForGood);
    /// From now on nothing fails; the number of calls that were counted.
    int Repair();
    bool HasFailed() const { return !m_failedCall.isEmpty(); }
    /// How often something was put on the disk since FailAt, by SQLite or anybody else: contents of
    /// files and names in folders.
    int Flushes() const { return m_flushes; }
    const QByteArray &FailedCall() const { return m_failedCall; } ///< "write ABC.db-journal"
    /// What was counted since FailAt, in order; of these kinds only, as in "rename mas90.ini".
    std::vector<std::string> Calls(std::initializer_list<const char *> kinds) const;

    /// Leaves on the disk what a loss of power now would: what was synced, and of the rest, sector
    /// by sector, what chance wants; nothing of it without `random`. \pre no file is open.
    void LosePower(std::mt19937 *random);

    // What the calls themselves need.
    enum class Call
    {
        Open,
        Create,
        Write,
        Truncate,
        Sync,
        Delete,
        Rename
    };
    struct Vfs;
    bool Watches(const QByteArray &path) const;
    bool Fails(Call call, const QByteArray &path);
    bool DeletesAnyway() const { return m_fault == DiskFault::DeletedAnyway; }
    void CountFlush() { ++m_flushes; }
    bool IsFull() const { return m_fault == DiskFault::Full; }
    void ContentsChange(const QByteArray &path); ///< before they do
    void NameChanges(const QByteArray &path); ///< before it does
    void HasNewName(const QByteArray &from, const QByteArray &to); ///< a file or a folder
    void HasSecondName(const QByteArray &from, const QByteArray &to);
    void Synced(const QByteArray &path); ///< a file, or all names in a folder

private:
    using Contents = std::optional<QByteArray>; // none: there is no such file
    /// A name, and how what the disk has under it differs from what programs see.
    struct Unsynced
    {
        Contents Durable; // what the disk has
        bool NameDiffers = false; // the disk has no such name, or another file under it
        bool ContentsDiffer = false; // the file that programs see was not synced
        QByteArray Written; // then: what the disk has of that file
    };
    Unsynced &EntryOf(const QByteArray &path);
    static Contents Read(const QByteArray &path);
    static void Restore(const QByteArray &path, const Contents &contents);
    static QByteArray Mixed(const QByteArray &a, const QByteArray &b, std::mt19937 &random);

    void Stop(); ///< where the fault is the process's own, not the call's

    QByteArrayList m_folders;
    std::unique_ptr<Vfs> m_vfs;
    DiskFault m_fault = DiskFault::InputOutput;
    FaultLasts m_lasts = FaultLasts::Once;
    int m_failAt = 0;
    int m_calls = 0;
    int m_flushes = 0;
    QByteArray m_failedCall;
    std::vector<QByteArray> m_callsMade;
    std::map<QByteArray, Unsynced> m_unsynced;
    std::recursive_mutex m_mutex; // reference data is written on two threads
};
