#include "platform/DurableFiles.h"

#include "platform/clsRunTimeError.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <initializer_list>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void RaisePathError(const QString &path)
{
    throw clsRunTimeError(RunTimeErrors::PathAccess, u"Files"_s,
        path + u": "_s + QString::fromLocal8Bit(std::strerror(errno)));
}

void SyncPath(const QString &path, int flags)
{
    const int file = ::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC);
    if (file < 0)
        RaisePathError(path);
    const int result = ::fsync(file);
    const int reason = errno;
    ::close(file);
    errno = reason;
    if (result != 0)
        RaisePathError(path);
}

/// What came of one way to give a file a name that must be free.
enum class Moved
{
    Done,
    NameTaken,
    NotOffered ///< this file system or kernel knows no such call
};

/// What errno says about a move that failed; raises what is none of the answers.
Moved AnswerOf(const QString &to, std::initializer_list<int> notOffered)
{
    if (errno == EEXIST)
        return Moved::NameTaken;
    if (std::find(notOffered.begin(), notOffered.end(), errno) == notOffered.end())
        RaisePathError(to);
    return Moved::NotOffered;
}

/// The first choice: a link, unlike a rename, refuses a name that is taken, and network file
/// systems offer it more often than they do the rename below.
Moved LinkAndUnlink(const QString &from, const QString &to)
{
    if (::link(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0)
        return AnswerOf(to, {EPERM, EOPNOTSUPP, ENOTSUP, ENOSYS});
    if (::unlink(QFile::encodeName(from).constData()) != 0)
        RaisePathError(from);
    return Moved::Done;
}

/// For memory sticks and Windows shares, whose file systems have no links.
Moved RenameToFreeName(const QString &from, const QString &to)
{
    if (::renameat2(AT_FDCWD, QFile::encodeName(from).constData(), AT_FDCWD,
            QFile::encodeName(to).constData(), RENAME_NOREPLACE)
        != 0)
        return AnswerOf(to, {EINVAL, ENOSYS});
    return Moved::Done;
}

/// The last resort, where nothing refuses a name that is taken: somebody could take it between the
/// look and the rename, and would lose the file. A link that leads nowhere takes the name as well.
Moved LookAndRename(const QString &from, const QString &to)
{
    struct stat found = {};
    if (::lstat(QFile::encodeName(to).constData(), &found) == 0)
        return Moved::NameTaken;
    if (errno != ENOENT
        || ::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0)
        RaisePathError(to);
    return Moved::Done;
}

} // namespace

void SyncFile(const QString &path)
{
    // Neither a link nor a pipe: it may be a file of a folder that others can write to.
    SyncPath(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
}

void SyncFolder(const QString &folder)
{
    SyncPath(folder, O_RDONLY | O_DIRECTORY);
}

void ReplaceFile(const QString &from, const QString &to)
{
    if (::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0)
        RaisePathError(to);
    SyncFolder(QFileInfo(to).absolutePath());
}

bool TakeNewName(const QString &from, const QString &to)
{
    Moved moved = LinkAndUnlink(from, to);
    if (moved == Moved::NotOffered)
        moved = RenameToFreeName(from, to);
    if (moved == Moved::NotOffered)
        moved = LookAndRename(from, to);
    return moved != Moved::NameTaken;
}

bool MoveToNewName(const QString &from, const QString &to)
{
    if (!TakeNewName(from, to))
        return false;
    SyncFolder(QFileInfo(to).absolutePath());
    return true;
}
