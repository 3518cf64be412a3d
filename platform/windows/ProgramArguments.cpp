#include "platform/ProgramArguments.h"

#include "platform/clsProcess.h"

#include <string>

#include <windows.h>

using namespace Qt::StringLiterals;

namespace {

QString OwnFile()
{
    constexpr DWORD longestPath = 32768;
    std::wstring path(longestPath, L'\0');
    path.resize(::GetModuleFileNameW(nullptr, path.data(), longestPath));
    return QString::fromStdWString(path);
}

/// What follows the program in a command line. A synchronisation names it without quotes, blanks
/// and all.
QString WithoutProgram(const QString &commandLine, const QString &program)
{
    if (commandLine.startsWith(u'"'))
        return commandLine.mid(commandLine.indexOf(u'"', 1) + 1);
    if (commandLine.startsWith(program + u' ', Qt::CaseInsensitive))
        return commandLine.mid(program.size());
    const qsizetype end = commandLine.indexOf(u' ');
    return end < 0 ? QString() : commandLine.mid(end);
}

} // namespace

/// The C library would take "*" for the files of the folder, and a backslash before a closing quote
/// for a quote that belongs to the name.
QStringList ProgramArguments(int, char **)
{
    return SplitCommandLine(
        WithoutProgram(QString::fromWCharArray(::GetCommandLineW()), OwnFile()));
}

/// Windows keeps the name.
QString ProgramFile(const char *)
{
    return OwnFile();
}
