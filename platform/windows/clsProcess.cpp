#include "platform/clsProcess.h"

#include <QDir>
#include <QEventLoop>
#include <QWinEventNotifier>

#include <string>

#include <windows.h>

using namespace Qt::StringLiterals;

bool clsSystemProcess::RunAndWait(
    const QString &program, const QString &arguments, const QString &folder)
{
    // The text goes to the program as it stands: on this system each splits it for itself. Where
    // the program's own name ends is said apart from it, for names with blanks.
    const std::wstring file = QDir::toNativeSeparators(program).toStdWString();
    std::wstring commandLine
        = (QDir::toNativeSeparators(program) + u' ' + arguments).toStdWString();
    const std::wstring home = QDir::toNativeSeparators(folder).toStdWString();

    STARTUPINFOW window = {};
    window.cb = sizeof window;
    window.dwFlags = STARTF_USESHOWWINDOW;
    window.wShowWindow = SW_SHOWNORMAL;
    PROCESS_INFORMATION started = {};
    // Inherited is what was made to be: the lock that says that this program is at work.
    if (::CreateProcessW(file.c_str(), commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr,
            home.c_str(), &window, &started)
        == 0)
        return false;
    ::CloseHandle(started.hThread);
    // Its window may come to the front, where ours has been.
    ::AllowSetForegroundWindow(started.dwProcessId);

    QEventLoop untilEnded;
    QWinEventNotifier ended(started.hProcess);
    QObject::connect(&ended, &QWinEventNotifier::activated, &untilEnded, [&] {
        ended.setEnabled(false); // the handle tells the end for ever
        untilEnded.quit();
    });
    untilEnded.exec();
    // Somebody may have told the application to quit; the process is not abandoned for that.
    ::WaitForSingleObject(started.hProcess, INFINITE);
    ended.setEnabled(false);
    ::CloseHandle(started.hProcess);
    return true;
}
