#include "platform/Console.h"

#include <cstdio>
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

} // namespace

void UseCallersConsole()
{
    const bool outputGiven = IsGiven(STD_OUTPUT_HANDLE);
    const bool errorGiven = IsGiven(STD_ERROR_HANDLE);
    if ((outputGiven && errorGiven) || ::AttachConsole(ATTACH_PARENT_PROCESS) == 0)
        return;
    ::SetConsoleOutputCP(CP_UTF8);
    if (!outputGiven)
        std::freopen("CONOUT$", "w", stdout);
    if (!errorGiven)
        std::freopen("CONOUT$", "w", stderr);
}

void SendOutputAsItIs()
{
    std::fflush(stdout);
    ::_setmode(::_fileno(stdout), _O_BINARY);
}
