#pragma once

#include <QString>
#include <QTemporaryDir>

#include <chrono>

/// A copy of databases as they stood at one moment each, in a folder of its own that goes with the
/// object. The originals are only read, and never locked: whoever is writing is not held up.
///
/// Errors: clsRunTimeError, naming the file: a database that cannot be read, or that somebody is
///         writing all the time, or was when the computer or the program died.
class Snapshot
{
public:
    /// `folder`: where the databases lie; `patience`: how long somebody may go on writing.
    explicit Snapshot(const QString &folder, std::chrono::milliseconds patience = DefaultPatience);

    QString Folder() const { return m_copies.path(); }

    /// Copies the database of that name; false when there is none.
    bool Take(const QString &name);

private:
    static constexpr std::chrono::milliseconds DefaultPatience{5000};

    QString m_folder;
    std::chrono::milliseconds m_patience;
    QTemporaryDir m_copies;
};
