#include "platform/ProgramArguments.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <string_view>
#include <sys/stat.h>

QStringList ProgramArguments(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QFile::decodeName(argv[i]));
    return arguments;
}

QString ProgramFile(const char *calledAs)
{
    // What a caller passes as the name is only believed when it leads to this program.
    struct stat called = {};
    struct stat own = {};
    if (std::string_view(calledAs).find('/') != std::string_view::npos
        && ::stat(calledAs, &called) == 0 && ::stat("/proc/self/exe", &own) == 0
        && called.st_dev == own.st_dev && called.st_ino == own.st_ino)
        return QFileInfo(QFile::decodeName(calledAs)).absoluteFilePath();
    return QCoreApplication::applicationFilePath();
}
