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

/// A file held by an advisory lock, which belongs to the open file: it ends when the last process
/// that has it open ends. The programs that this process starts do not, see LetChildrenHold.
class clsInstanceLock::Channel
{
public:
    Channel(int file, const QByteArray &name)
        : m_file(file)
        , m_name(name)
    {
    }
    ~Channel() { ::close(m_file); }
    Channel(const Channel &) = delete;
    Channel &operator=(const Channel &) = delete;

    int File() const { return m_file; }
    const QByteArray &Name() const { return m_name; }

private:
    int m_file;
    QByteArray m_name;
};

namespace {

[[noreturn]] void Raise(int number, const QString &description)
{
    throw clsRunTimeError(number, u"InstanceLock"_s, description);
}

/// Whether the name still belongs to the open file: another process may have removed or replaced it
/// since.
bool StillNames(const QByteArray &path, int file)
{
    struct stat named = {};
    struct stat opened = {};
    return ::lstat(path.constData(), &named) == 0 && ::fstat(file, &opened) == 0
        && named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}

bool IsRegular(int file)
{
    struct stat opened = {};
    return ::fstat(file, &opened) == 0 && S_ISREG(opened.st_mode);
}

int OpenLocked(const QString &path, const QByteArray &name)
{
    for (;;) {
        // A link could lead to any file of the user's, which would be emptied, and a pipe would
        // wait for its other end.
        const int file = ::open(name.constData(),
            O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666);
        if (file < 0)
            Raise(RunTimeErrors::PathAccess,
                u"The file cannot be created: "_s + path + u" ("_s
                    + (errno == ELOOP ? u"a link is in its place"_s
                                      : QString::fromLocal8Bit(std::strerror(errno)))
                    + u")"_s);
        if (!IsRegular(file)) {
            ::close(file);
            Raise(RunTimeErrors::PathAccess,
                u"The file cannot be created: "_s + path + u" (it is not a regular file)"_s);
        }
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
    const QByteArray name = QFile::encodeName(path);
    const int file = OpenLocked(path, name);
    m_channel = std::make_unique<Channel>(file, name);
    if (::ftruncate(file, 0) != 0)
        Raise(RunTimeErrors::PathAccess, u"The file cannot be emptied: "_s + path);
}

void clsInstanceLock::Close()
{
    m_channel.reset();
}

void clsInstanceLock::CloseAndRemove()
{
    // While the lock is held, and only under the name that is still the lock's: the file of any
    // other process stays.
    if (m_channel && StillNames(m_channel->Name(), m_channel->File()))
        ::unlink(m_channel->Name().constData());
    m_channel.reset();
}

void clsInstanceLock::LetChildrenHold()
{
    if (::fcntl(m_channel->File(), F_SETFD, 0) != 0)
        Raise(RunTimeErrors::PathAccess,
            u"The lock cannot be shared: "_s + QFile::decodeName(m_channel->Name()));
}

void clsInstanceLock::ReleaseForAll()
{
    // The file is removed first, while nobody else can hold it. Another descriptor of the open file
    // is needed to release it afterwards: closing one of them releases it for this process alone.
    const int file = m_channel ? ::fcntl(m_channel->File(), F_DUPFD_CLOEXEC, 0) : -1;
    CloseAndRemove();
    if (file < 0)
        return;
    ::flock(file, LOCK_UN);
    ::close(file);
}

bool clsInstanceLock::IsHeld() const
{
    return m_channel != nullptr;
}
