#include "platform/DurableFiles.h"

#include "platform/clsRunTimeError.h"

#include <QDir>

#include <string>

#include <windows.h>

// windows.h gives this name to a function of its own.
#undef ReplaceFile

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void RaisePathError(const QString &path, DWORD reason)
{
    throw clsRunTimeError(RunTimeErrors::PathAccess, u"Files"_s,
        path + u": "_s + qt_error_string(static_cast<int>(reason)));
}

std::wstring Native(const QString &path)
{
    return QDir::toNativeSeparators(path).toStdWString();
}

/// Virus scanners and indexers open a file for a moment after it was written, and keep others from
/// renaming it.
bool MayPass(DWORD reason)
{
    return reason == ERROR_SHARING_VIOLATION || reason == ERROR_LOCK_VIOLATION
        || reason == ERROR_ACCESS_DENIED;
}

/// Renames; waits for a moment where somebody is in the way. What hindered it, or ERROR_SUCCESS.
DWORD Move(const QString &from, const QString &to, DWORD how)
{
    constexpr int mostTries = 20;
    constexpr DWORD pause = 50; // ms
    for (int tries = 1;; ++tries) {
        if (::MoveFileExW(Native(from).c_str(), Native(to).c_str(), how) != 0)
            return ERROR_SUCCESS;
        const DWORD reason = ::GetLastError();
        if (!MayPass(reason) || tries == mostTries)
            return reason;
        ::Sleep(pause);
    }
}

bool Exists(const QString &path)
{
    return ::GetFileAttributesW(Native(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool MoveToFreeName(const QString &from, const QString &to, DWORD how)
{
    const DWORD reason = Exists(to) ? ERROR_ALREADY_EXISTS : Move(from, to, how);
    if (reason == ERROR_ALREADY_EXISTS || reason == ERROR_FILE_EXISTS)
        return false;
    if (reason != ERROR_SUCCESS)
        RaisePathError(to, reason);
    return true;
}

} // namespace

void SyncFile(const QString &path)
{
    const HANDLE file = ::CreateFileW(Native(path).c_str(), GENERIC_WRITE,
        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
        FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        RaisePathError(path, ::GetLastError());
    const DWORD reason = ::FlushFileBuffers(file) != 0 ? ERROR_SUCCESS : ::GetLastError();
    ::CloseHandle(file);
    if (reason != ERROR_SUCCESS)
        RaisePathError(path, reason);
}

/// Windows has no such call: its file systems write their names in a log of their own, in order,
/// and the moves below wait for it.
void SyncFolder(const QString &folder)
{
    const DWORD attributes = ::GetFileAttributesW(Native(folder).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        RaisePathError(folder, ::GetLastError());
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
        RaisePathError(folder, ERROR_DIRECTORY);
}

void ReplaceFile(const QString &from, const QString &to)
{
    const DWORD reason = Move(from, to, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
    if (reason != ERROR_SUCCESS)
        RaisePathError(to, reason);
}

bool TakeNewName(const QString &from, const QString &to)
{
    return MoveToFreeName(from, to, 0);
}

bool MoveToNewName(const QString &from, const QString &to)
{
    return MoveToFreeName(from, to, MOVEFILE_WRITE_THROUGH);
}
