#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

/// The folders of a program folder that contain the copies of its entries, one per synchronization:
/// backup/<number>-<time>, such as backup/000017-20260309-103000.
///
/// Order:  that of the numbers, which count up: a wrong clock cannot make an old copy the newest
///         one. Folders of an earlier version, named after their time alone, come first.
class BackupFolders
{
public:
    explicit BackupFolders(const QString &programFolder);

    const QString &Path() const { return m_path; } ///< of the folder that contains them
    QString PathOf(const QString &name) const;

    QStringList Names() const; ///< of complete copies, the oldest first
    QStringList UnfinishedNames() const; ///< of those whose making was interrupted
    QString NextName(const QDateTime &now) const;
    static QString UnfinishedName(const QString &name); ///< until it is complete

private:
    QStringList NamesWith(bool unfinished) const;

    QString m_path;
};
