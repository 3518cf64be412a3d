// Writes down how it was called, for ProcessTest: into the file "called" of its working folder.

#include "platform/ProgramArguments.h"

#include <QDir>
#include <QFile>

#include <windows.h>

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    STARTUPINFOW window = {};
    ::GetStartupInfoW(&window);
    const bool shown = (window.dwFlags & STARTF_USESHOWWINDOW) != 0
        && window.wShowWindow == SW_SHOWNORMAL;
    QFile file(u"called"_s);
    if (!file.open(QIODevice::WriteOnly))
        return 1;
    QStringList lines{QString::fromWCharArray(::GetCommandLineW()),
        QDir::toNativeSeparators(QDir::currentPath()), shown ? u"shown"_s : u"hidden"_s};
    lines += ProgramArguments(argc, argv);
    file.write(lines.join(u'\n').toUtf8());
    return 0;
}
