#include "platform/clsInstanceLock.h"

#include "platform/clsRunTimeError.h"

#include <QDir>
#include <QFile>

#include <windows.h>

using namespace Qt::StringLiterals;

/// A file held open in a sharing mode that lets others read it only.
class clsInstanceLock::Channel
{
public:
    Channel(HANDLE file, const QString &path)
        : Path(path)
        , m_file(file)
    {
    }
    ~Channel() { ::CloseHandle(m_file); }
    Channel(const Channel &) = delete;
    Channel &operator=(const Channel &) = delete;

    HANDLE File() const { return m_file; }

    const QString Path;

private:
    HANDLE m_file;
};

clsInstanceLock::clsInstanceLock() = default;
clsInstanceLock::~clsInstanceLock() = default;

void clsInstanceLock::CreateAndHold(const QString &path)
{
    // The handle is not inherited, see LetChildrenHold.
    const HANDLE file = ::CreateFileW(qUtf16Printable(QDir::toNativeSeparators(path)),
        GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        const DWORD reason = ::GetLastError();
        if (reason == ERROR_SHARING_VIOLATION)
            throw clsRunTimeError(
                RunTimeErrors::PermissionDenied, u"InstanceLock"_s, u"Permission denied"_s);
        throw clsRunTimeError(RunTimeErrors::PathAccess, u"InstanceLock"_s,
            u"The file cannot be created: "_s + path + u" ("_s
                + qt_error_string(static_cast<int>(reason)) + u")"_s);
    }
    m_channel = std::make_unique<Channel>(file, path);
}

void clsInstanceLock::Close()
{
    m_channel.reset();
}

void clsInstanceLock::CloseAndRemove()
{
    const QString path = m_channel ? m_channel->Path : QString();
    m_channel.reset();
    // Windows removes no file that another process holds.
    if (!path.isEmpty())
        QFile::remove(path);
}

void clsInstanceLock::LetChildrenHold()
{
    if (::SetHandleInformation(m_channel->File(), HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT) == 0)
        throw clsRunTimeError(RunTimeErrors::PathAccess, u"InstanceLock"_s,
            u"The lock cannot be shared: "_s + m_channel->Path);
}

void clsInstanceLock::ReleaseForAll()
{
    CloseAndRemove();
}

bool clsInstanceLock::IsHeld() const
{
    return m_channel != nullptr;
}
