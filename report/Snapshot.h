#pragma once

#include "report/CopyFolder.h"

#include <QString>

#include <chrono>

/// Copies of databases, each as it was at one moment, in a temporary folder. The originals are only
/// read and never locked, so no program that writes has to wait.
///
/// Errors: clsRunTimeError, naming the file: a database that cannot be read, that is no regular
///         file, or that is being written all the time, or was when the computer or the program
///         ended.
class Snapshot
{
public:
    /// `folder`: where the databases are; `patience`: how long a write may last.
    explicit Snapshot(const QString &folder, std::chrono::milliseconds patience = DefaultPatience);

    QString Folder() const { return m_copies.Path(); }

    /// Copies the database of that name; false when there is none.
    bool Take(const QString &name);

private:
    static constexpr std::chrono::milliseconds DefaultPatience{5000};

    QString m_folder;
    std::chrono::milliseconds m_patience;
    CopyFolder m_copies;
};
