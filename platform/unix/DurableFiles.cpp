#include "platform/DurableFiles.h"

#include "platform/clsRunTimeError.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
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

} // namespace

void SyncFile(const QString &path)
{
    SyncPath(path, O_RDONLY);
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

bool MoveToNewName(const QString &from, const QString &to)
{
    // A link, unlike a rename, refuses a name that is taken.
    if (::link(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0) {
        if (errno == EEXIST)
            return false;
        RaisePathError(to);
    }
    if (::unlink(QFile::encodeName(from).constData()) != 0)
        RaisePathError(from);
    SyncFolder(QFileInfo(to).absolutePath());
    return true;
}
