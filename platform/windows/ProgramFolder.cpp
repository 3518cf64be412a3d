#include "platform/Paths.h"

#include <QCoreApplication>
#include <QDir>

QString ProgramFolder()
{
    return QDir::toNativeSeparators(QCoreApplication::applicationDirPath());
}
