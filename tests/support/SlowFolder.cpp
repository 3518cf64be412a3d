#include "tests/support/SlowFolder.h"

#include <QFile>

#include <chrono>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// The C library's call carries no data of ours, so it finds the folder here.
std::atomic<SlowFolder *> theFolder = nullptr;

} // namespace

SlowFolder::SlowFolder(const QString &folder)
    : m_folder(QFile::encodeName(folder))
{
    theFolder = this;
}

SlowFolder::~SlowFolder()
{
    theFolder = nullptr;
}

void SlowFolder::Answer()
{
    m_isSlow = false;
    m_answer.release();
}

void SlowFolder::Look(const char *path)
{
    if (path == nullptr || !QByteArrayView(path).startsWith(m_folder))
        return;
    ++m_looks;
    if (m_isSlow && !m_answer.try_acquire_for(std::chrono::seconds(10)))
        m_gaveUp = true;
}

extern "C" {

int statx(int folder, const char *path, int flags, unsigned mask, struct statx *about) noexcept
{
    if (SlowFolder *slow = theFolder)
        slow->Look(path);
    return static_cast<int>(::syscall(SYS_statx, folder, path, flags, mask, about));
}

int access(const char *path, int mode) noexcept
{
    if (SlowFolder *slow = theFolder)
        slow->Look(path);
    return static_cast<int>(::syscall(SYS_faccessat, AT_FDCWD, path, mode));
}
}
