#include "tests/packages/windows/Desktop.h"

#include <QDir>
#include <QList>
#include <QScopeGuard>

#include <functional>
#include <stdexcept>

#include <qtestsupport_core.h>
#include <tlhelp32.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int Deadline = 30000;

using Visitor = std::function<void(HWND)>;

BOOL CALLBACK Visit(HWND window, LPARAM visitor)
{
    if (IsWindowVisible(window))
        (*reinterpret_cast<const Visitor *>(visitor))(window);
    return TRUE;
}

QList<HWND> VisibleWindows()
{
    QList<HWND> windows;
    const Visitor visitor = [&](HWND window) { windows.append(window); };
    EnumWindows(Visit, reinterpret_cast<LPARAM>(&visitor));
    return windows;
}

QString TitleOf(HWND window)
{
    wchar_t title[256];
    return QString::fromWCharArray(title, GetWindowTextW(window, title, 256)).trimmed();
}

DWORD ProcessOf(HWND window)
{
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process;
}

/// The text of a control of another process, which must be asked for it; "" if it is busy.
QString TextOf(HWND control)
{
    wchar_t text[2048] = {};
    DWORD_PTR length = 0;
    const LRESULT answered = SendMessageTimeoutW(
        control, WM_GETTEXT, 2048, reinterpret_cast<LPARAM>(text), SMTO_ABORTIFHUNG, 1000, &length);
    return answered == 0 ? QString() : QString::fromWCharArray(text);
}

QStringList TextsIn(HWND window)
{
    QStringList texts;
    const Visitor visitor = [&](HWND control) { texts.append(TextOf(control)); };
    EnumChildWindows(window, Visit, reinterpret_cast<LPARAM>(&visitor));
    return texts;
}

QString WhatIsToBeSeen()
{
    QString all;
    for (const HWND window : VisibleWindows())
        all += u"\n  \""_s + TitleOf(window) + u"\": "_s + TextsIn(window).join(u" | "_s);
    return all;
}

void End(DWORD processId)
{
    const HANDLE process = OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, processId);
    if (process == nullptr)
        return;
    TerminateProcess(process, 1);
    WaitForSingleObject(process, Deadline); // only then its files are free
    CloseHandle(process);
}

QList<DWORD> ProcessesOf(const QString &partOfPath)
{
    QList<DWORD> found;
    const HANDLE list = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    const auto closed = qScopeGuard([&] { CloseHandle(list); });
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(list, &entry); more; more = Process32NextW(list, &entry)) {
        const HANDLE process
            = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, entry.th32ProcessID);
        wchar_t path[1024];
        DWORD length = 1024;
        if (process != nullptr && QueryFullProcessImageNameW(process, 0, path, &length)
            && QDir::fromNativeSeparators(QString::fromWCharArray(path, int(length)))
                   .contains(partOfPath, Qt::CaseInsensitive))
            found.append(entry.th32ProcessID);
        if (process != nullptr)
            CloseHandle(process);
    }
    return found;
}

} // namespace

SeenDialog SeenDialog::WaitFor(const QString &title, const QString &text)
{
    HWND found = nullptr;
    const auto isThere = [&] {
        for (const HWND window : VisibleWindows()) {
            if (TitleOf(window) == title && TextsIn(window).join(u'\n').contains(text))
                found = window;
        }
        return found != nullptr;
    };
    if (!QTest::qWaitFor(isThere, Deadline))
        throw std::runtime_error(QString(u"There is no dialog \"%1\" that says \"%2\", but:%3"_s)
                                     .arg(title, text, WhatIsToBeSeen())
                                     .toStdString());
    return SeenDialog(found);
}

QStringList SeenDialog::Texts() const
{
    return TextsIn(m_window);
}

void SeenDialog::Key(WORD key) const
{
    // A dialog that has just appeared may have no control with the focus yet: the key would be
    // lost.
    const auto hasTheKeyboard = [&] {
        if (GetForegroundWindow() != m_window)
            SetForegroundWindow(m_window);
        GUITHREADINFO thread = {};
        thread.cbSize = sizeof thread;
        return GetGUIThreadInfo(GetWindowThreadProcessId(m_window, nullptr), &thread)
            && thread.hwndActive == m_window && IsChild(m_window, thread.hwndFocus)
            && GetForegroundWindow() == m_window;
    };
    if (!QTest::qWaitFor(hasTheKeyboard, Deadline))
        throw std::runtime_error("The dialog does not get the keyboard.");
    INPUT input[2] = {};
    for (INPUT &event : input) {
        event.type = INPUT_KEYBOARD;
        event.ki.wVk = key;
    }
    input[1].ki.dwFlags = KEYEVENTF_KEYUP;
    if (SendInput(2, input, sizeof(INPUT)) != 2)
        throw std::runtime_error("The key cannot be pressed.");
}

bool ShowsAWindow(qint64 processId)
{
    const QList<HWND> windows = VisibleWindows();
    return std::any_of(windows.begin(), windows.end(),
        [&](HWND window) { return qint64(ProcessOf(window)) == processId; });
}

void EndProcessesWithWindow(const QString &title)
{
    for (const HWND window : VisibleWindows()) {
        if (TitleOf(window) == title)
            End(ProcessOf(window));
    }
}

bool IsRunning(const QString &partOfPath)
{
    return !ProcessesOf(partOfPath).isEmpty();
}

void EndProcessesOf(const QString &partOfPath)
{
    for (const DWORD process : ProcessesOf(partOfPath))
        End(process);
}
