#include "platform/PlainFiles.h"

#include "platform/clsRunTimeError.h"

#include <QDir>

#include <fcntl.h>
#include <io.h>
#include <string>

#include <windows.h>

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void Raise(const QString &path, const QString &reason)
{
    throw clsRunTimeError(RunTimeErrors::PathAccess, u"Files"_s, path + u": "_s + reason);
}

[[noreturn]] void RaiseReason(const QString &path, DWORD reason)
{
    if (reason == ERROR_FILE_NOT_FOUND || reason == ERROR_PATH_NOT_FOUND)
        throw clsRunTimeError(
            RunTimeErrors::FileNotFound, u"Files"_s, u"File not found: "_s + path);
    Raise(path, qt_error_string(static_cast<int>(reason)));
}

/// How a use opens a file, for the system, for the C library and for the toolkit.
struct How
{
    DWORD Access;
    DWORD Disposition;
    int Flags;
    QIODevice::OpenMode Mode;
};

How HowTo(PlainFileUse use)
{
    switch (use) {
    case PlainFileUse::Read:
        break;
    case PlainFileUse::Append: // each write is one call, so that lines of two processes never mix
        return {FILE_APPEND_DATA | FILE_READ_ATTRIBUTES | SYNCHRONIZE, OPEN_ALWAYS,
            _O_APPEND | _O_BINARY | _O_WRONLY,
            QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered};
    case PlainFileUse::CreateNew:
        return {GENERIC_WRITE, CREATE_NEW, _O_BINARY | _O_WRONLY,
            QIODevice::WriteOnly | QIODevice::Unbuffered};
    }
    return {GENERIC_READ, OPEN_EXISTING, _O_BINARY | _O_RDONLY, QIODevice::ReadOnly};
}

HANDLE OpenHandle(const QString &path, const How &how, DWORD flags)
{
    const std::wstring name = QDir::toNativeSeparators(path).toStdWString();
    const HANDLE opened = ::CreateFileW(name.c_str(), how.Access,
        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, how.Disposition,
        FILE_ATTRIBUTE_NORMAL | flags, nullptr);
    if (opened == INVALID_HANDLE_VALUE)
        RaiseReason(path, ::GetLastError());
    return opened;
}

/// What is wrong with an open file; empty when it may be used.
QString Problem(HANDLE opened, qint64 maxBytes)
{
    if (::GetFileType(opened) != FILE_TYPE_DISK)
        return u"this is not a regular file"_s;
    LARGE_INTEGER size = {};
    if (::GetFileSizeEx(opened, &size) == 0 || size.QuadPart > maxBytes)
        return u"the file has more than the "_s + QString::number(maxBytes) + u" bytes allowed"_s;
    return {};
}

} // namespace

void OpenPlainFile(QFile &file, PlainFileUse use, qint64 maxBytes)
{
    const QString path = file.fileName();
    const How how = HowTo(use);
    HANDLE opened = OpenHandle(path, how, FILE_FLAG_OPEN_REPARSE_POINT);
    FILE_ATTRIBUTE_TAG_INFO tag = {};
    ::GetFileInformationByHandleEx(opened, FileAttributeTagInfo, &tag, sizeof tag);
    if ((tag.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
        ::CloseHandle(opened);
        if (tag.ReparseTag == IO_REPARSE_TAG_SYMLINK)
            Raise(path, u"the file is a link, which is not followed"_s);
        // Files that are kept elsewhere until they are read carry a mark of the same kind.
        opened = OpenHandle(path, how, 0);
    }
    const QString problem = Problem(opened, maxBytes);
    if (!problem.isEmpty()) {
        ::CloseHandle(opened);
        Raise(path, problem);
    }
    const int descriptor = ::_open_osfhandle(reinterpret_cast<intptr_t>(opened), how.Flags);
    if (descriptor < 0) {
        ::CloseHandle(opened);
        Raise(path, u"the file cannot be opened"_s);
    }
    if (!file.open(descriptor, how.Mode, QFileDevice::AutoCloseHandle)) {
        ::_close(descriptor);
        Raise(path, file.errorString());
    }
}

/// New files have the access list that their folder hands down.
void TakeRightsOfFolder(const QString &) { }

void LimitRights(const QString &, const QString &) { }

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
