#include "platform/clsInstanceLock.h"

#include "platform/clsRunTimeError.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

/// A file held by an advisory lock, which ends with the process and is not handed on to the
/// programs that it starts.
class clsInstanceLock::Channel
{
public:
    explicit Channel(int file)
        : m_file(file)
    {
    }
    ~Channel() { ::close(m_file); }
    Channel(const Channel &) = delete;
    Channel &operator=(const Channel &) = delete;

private:
    int m_file;
};

namespace {

[[noreturn]] void Raise(int number, const QString &description)
{
    throw clsRunTimeError(number, u"InstanceLock"_s, description);
}

/// Whether the name still belongs to the open file: somebody may have removed or replaced it
/// between opening and locking.
bool StillNames(const QByteArray &path, int file)
{
    struct stat named = {};
    struct stat opened = {};
    return ::stat(path.constData(), &named) == 0 && ::fstat(file, &opened) == 0
        && named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}

int OpenLocked(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    for (;;) {
        const int file = ::open(name.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
        if (file < 0)
            Raise(RunTimeErrors::PathAccess,
                u"The file cannot be created: "_s + path + u" ("_s
                    + QString::fromLocal8Bit(std::strerror(errno)) + u")"_s);
        if (::flock(file, LOCK_EX | LOCK_NB) != 0) {
            const int reason = errno;
            ::close(file);
            if (reason == EWOULDBLOCK)
                Raise(RunTimeErrors::PermissionDenied, u"Permission denied"_s);
            Raise(RunTimeErrors::PathAccess,
                u"The file cannot be locked: "_s + path + u" ("_s
                    + QString::fromLocal8Bit(std::strerror(reason)) + u")"_s);
        }
        if (StillNames(name, file))
            return file;
        ::close(file);
    }
}

} // namespace

clsInstanceLock::clsInstanceLock() = default;
clsInstanceLock::~clsInstanceLock() = default;

void clsInstanceLock::CreateAndHold(const QString &path)
{
    const int file = OpenLocked(path);
    m_channel = std::make_unique<Channel>(file);
    if (::ftruncate(file, 0) != 0)
        Raise(RunTimeErrors::PathAccess, u"The file cannot be emptied: "_s + path);
}

void clsInstanceLock::Close()
{
    m_channel.reset();
}

bool clsInstanceLock::IsHeld() const
{
    return m_channel != nullptr;
}
