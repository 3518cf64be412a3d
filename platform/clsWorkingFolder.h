#pragma once

#include <QString>

/// Makes a folder the process's working folder (and, where there are drives, its drive the
/// current one) and gives the one before back when it goes out of scope.
class clsWorkingFolder
{
public:
    /// Errors: clsRunTimeError 76, naming the folder, when it cannot be entered.
    explicit clsWorkingFolder(const QString &folder);
    ~clsWorkingFolder();
    clsWorkingFolder(const clsWorkingFolder &) = delete;
    clsWorkingFolder &operator=(const clsWorkingFolder &) = delete;

private:
    QString m_before;
};
