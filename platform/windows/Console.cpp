#include "platform/Console.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <io.h>

#include <windows.h>

namespace {

/// A program with windows has no console of its own, but may have been given a file or a pipe.
bool IsGiven(DWORD stream)
{
    const HANDLE handle = ::GetStdHandle(stream);
    return handle != nullptr && handle != INVALID_HANDLE_VALUE;
}

/// The programs print UTF-8. Whoever uses the console afterwards finds it as it was.
void ShowUtf8()
{
    static const UINT before = ::GetConsoleOutputCP();
    if (before == 0)
        return; // there is no console
    ::SetConsoleOutputCP(CP_UTF8);
    std::atexit([] { ::SetConsoleOutputCP(before); });
}

} // namespace

void UseCallersConsole()
{
    const bool outputGiven = IsGiven(STD_OUTPUT_HANDLE);
    const bool errorGiven = IsGiven(STD_ERROR_HANDLE);
    const bool attached
        = !(outputGiven && errorGiven) && ::AttachConsole(ATTACH_PARENT_PROCESS) != 0;
    ShowUtf8();
    if (attached && !outputGiven)
        std::freopen("CONOUT$", "w", stdout);
    if (attached && !errorGiven)
        std::freopen("CONOUT$", "w", stderr);
}

void SendOutputAsItIs()
{
    std::fflush(stdout);
    ::_setmode(::_fileno(stdout), _O_BINARY);
}
