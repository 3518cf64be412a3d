#include "platform/ProgramArguments.h"

#include <QFile>

QStringList ProgramArguments(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QFile::decodeName(argv[i]));
    return arguments;
}
