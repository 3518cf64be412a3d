#pragma once

#include <functional>
#include <memory>

/// SQLite's files, which fail while a test wants them to: a call that locks, writes, truncates or
/// flushes a file reports an error at once, as a locked file or a bad disk does after a wait.
///
/// Shape: replaces SQLite's default disk while the object lives; files that are opened meanwhile
///        must be closed before it goes. One object at a time.
class FailingFiles
{
public:
    FailingFiles();
    ~FailingFiles();
    FailingFiles(const FailingFiles &) = delete;
    FailingFiles &operator=(const FailingFiles &) = delete;

    /// The call-th call from now on fails, and the count - 1 calls after it.
    void FailAt(int call, int count);
    void Stop(); ///< from now on nothing fails
    /// Runs before each flush of a file, on the thread that flushes.
    void BeforeFlush(std::function<void()> action);
    int Failed() const; ///< calls that have failed since FailAt
    const char *NameOfSafeDisk() const; ///< to open a file with that never fails

private:
    struct Disk;
    std::unique_ptr<Disk> m_disk;
};
