#pragma once

#include "platform/clsInstanceLock.h"

#include <QString>
#include <QTemporaryDir>

/// A temporary folder for copies of databases that no other account can enter. It is removed with
/// the object. After a process that was killed, the next folder that is made removes it.
///
/// Shape:  a file in the folder is locked while the process runs. A folder without that file is
///         not ours, and one whose file is locked is in use.
/// Errors: clsRunTimeError when the folder cannot be made.
class CopyFolder
{
public:
    CopyFolder();

    QString Path() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
    clsInstanceLock m_lock; // released before the folder is removed
};
