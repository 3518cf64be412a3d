#include "platform/clsWorkingFolder.h"

#include "platform/clsRunTimeError.h"

#include <QDir>

using namespace Qt::StringLiterals;

clsWorkingFolder::clsWorkingFolder(const QString &folder)
    : m_before(QDir::currentPath())
{
    if (!QDir::setCurrent(folder))
        throw clsRunTimeError(
            RunTimeErrors::PathNotFound, u"Files"_s, u"Path not found: "_s + folder);
}

clsWorkingFolder::~clsWorkingFolder()
{
    QDir::setCurrent(m_before);
}
