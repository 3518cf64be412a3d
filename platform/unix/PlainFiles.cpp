#include "platform/PlainFiles.h"

#include "platform/clsRunTimeError.h"

#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QString NotRegular = u"this is not a regular file"_s;

constexpr mode_t ReadAndWrite = 0666;
constexpr mode_t FolderRights = 03777; // with those that have new files take the folder's group

// O_NONBLOCK: a pipe is opened at once, seen to be one, and refused.
constexpr int SafeFlags = O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

[[noreturn]] void Raise(const QString &path, const QString &reason)
{
    throw clsRunTimeError(RunTimeErrors::PathAccess, u"Files"_s, path + u": "_s + reason);
}

[[noreturn]] void RaiseErrno(const QString &path, PlainFileUse use)
{
    if (errno == ENOENT && use == PlainFileUse::Read)
        throw clsRunTimeError(
            RunTimeErrors::FileNotFound, u"Files"_s, u"File not found: "_s + path);
    if (errno == ELOOP)
        Raise(path, u"the file is a link, which is not followed"_s);
    if (errno == ENXIO) // a pipe that no process reads from
        Raise(path, NotRegular);
    Raise(path, QString::fromLocal8Bit(std::strerror(errno)));
}

QByteArray FolderOf(const QString &path)
{
    return QFile::encodeName(QFileInfo(path).path());
}

/// Gives an open file the group of `model`, then the rights: the rights of a group are for no
/// other.
void TakeRights(int file, const struct stat &own, const struct stat &model, mode_t rights)
{
    const bool hasGroup
        = own.st_gid == model.st_gid || ::fchown(file, static_cast<uid_t>(-1), model.st_gid) == 0;
    [[maybe_unused]] const int refused
        = ::fchmod(file, hasGroup ? rights : rights & ~static_cast<mode_t>(S_IRWXG));
}

/// What `path` itself and `model` are, with the path open.
struct Pair
{
    int File = -1;
    struct stat Own = {};
    struct stat Model = {};
    bool IsKnown = false; // false when either cannot be looked at

    Pair(const QString &path, const QByteArray &model)
    {
        if (::stat(model.constData(), &Model) != 0)
            return;
        File = ::open(QFile::encodeName(path).constData(), SafeFlags | O_RDONLY);
        IsKnown = File >= 0 && ::fstat(File, &Own) == 0;
    }
    ~Pair()
    {
        if (File >= 0)
            ::close(File);
    }
    Pair(const Pair &) = delete;
    Pair &operator=(const Pair &) = delete;
};

/// Not with O_CREAT alone: in a folder that every account may write to, Linux then refuses the file
/// of another account.
int OpenToAppend(const QByteArray &name)
{
    const int existing = ::open(name.constData(), SafeFlags | O_WRONLY | O_APPEND);
    if (existing >= 0 || errno != ENOENT)
        return existing;
    const int made = ::open(
        name.constData(), SafeFlags | O_WRONLY | O_APPEND | O_CREAT | O_EXCL, ReadAndWrite);
    // Another client may have made it between the two calls.
    return made < 0 && errno == EEXIST ? ::open(name.constData(), SafeFlags | O_WRONLY | O_APPEND)
                                       : made;
}

int OpenRaw(const QByteArray &name, PlainFileUse use)
{
    switch (use) {
    case PlainFileUse::Read:
        return ::open(name.constData(), SafeFlags | O_RDONLY);
    case PlainFileUse::Append:
        return OpenToAppend(name);
    case PlainFileUse::CreateNew:
        return ::open(name.constData(), SafeFlags | O_WRONLY | O_CREAT | O_EXCL, ReadAndWrite);
    }
    return -1;
}

QIODevice::OpenMode ModeOf(PlainFileUse use)
{
    switch (use) {
    case PlainFileUse::Read:
        return QIODevice::ReadOnly;
    case PlainFileUse::Append: // each write is one call, so that lines of two processes never mix
        return QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered;
    case PlainFileUse::CreateNew:
        return QIODevice::WriteOnly | QIODevice::Unbuffered;
    }
    return {};
}

} // namespace

void OpenPlainFile(QFile &file, PlainFileUse use, qint64 maxBytes)
{
    const QString path = file.fileName();
    const int opened = OpenRaw(QFile::encodeName(path), use);
    if (opened < 0)
        RaiseErrno(path, use);
    struct stat about = {};
    const bool isKnown = ::fstat(opened, &about) == 0;
    if (!isKnown || !S_ISREG(about.st_mode) || about.st_size > maxBytes) {
        ::close(opened);
        if (isKnown && S_ISREG(about.st_mode))
            Raise(path,
                u"the file has more than the "_s + QString::number(maxBytes) + u" bytes allowed"_s);
        Raise(path, NotRegular);
    }
    if (!file.open(opened, ModeOf(use), QFileDevice::AutoCloseHandle)) {
        ::close(opened);
        Raise(path, file.errorString());
    }
}

void TakeRightsOfFolder(const QString &path)
{
    const Pair pair(path, FolderOf(path));
    if (pair.IsKnown)
        TakeRights(pair.File, pair.Own, pair.Model,
            pair.Model.st_mode & (S_ISDIR(pair.Own.st_mode) ? FolderRights : ReadAndWrite));
}

void LimitRights(const QString &path, const QString &model)
{
    const Pair pair(path, QFile::encodeName(model));
    if (pair.IsKnown)
        TakeRights(
            pair.File, pair.Own, pair.Model, pair.Own.st_mode & pair.Model.st_mode & FolderRights);
}

void WriteWhole(QFile &file, const QString &path, QByteArrayView bytes)
{
    // Where space runs out, the first write is short, and the next one has the reason.
    while (!bytes.isEmpty()) {
        const qint64 written = file.write(bytes.data(), bytes.size());
        if (written <= 0)
            Raise(path, file.errorString());
        bytes = bytes.sliced(written);
    }
}
