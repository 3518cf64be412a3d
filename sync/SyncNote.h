#pragma once

#include <QHash>
#include <QString>

#include <optional>

/// What the entries are compared with after a synchronization. It is on the disk, in the folder of
/// the copies, from before the exchange client starts until the outcome has been reported: a
/// program that was killed meanwhile knows at its next start that the comparison is still to be
/// done.
struct SyncNote
{
    QString Worklog; ///< the installation's folder with the uploads and the log; empty without one
    QHash<QString, QString> Options; ///< by Entries database; empty when it could not be read
};

/// Durable except for its name, which is on the disk when that of the folder's contents is.
/// Errors: clsRunTimeError 75, naming the file.
void WriteSyncNote(const QString &folder, const SyncNote &note);
/// std::nullopt without a note. One that cannot be read knows nothing: all of it is empty.
std::optional<SyncNote> ReadSyncNote(const QString &folder);
void RemoveSyncNote(const QString &folder); ///< durable; nothing happens without a note

QString SyncNotePath(const QString &folder);
