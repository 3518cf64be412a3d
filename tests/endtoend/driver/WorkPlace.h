#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// A program folder and an accounting installation of their own, as a user's computer has them.
class WorkPlace
{
public:
    /// `folderName` is the program folder's; the accounting root holds the sample companies.
    explicit WorkPlace(const QString &folderName = QStringLiteral("program"));
    ~WorkPlace(); ///< takes the user's settings along

    // Paths are written as the system writes them.
    QString ProgramFolder() const { return m_folder; }
    QString Root() const { return m_root; }
    QString FolderOfRoot() const; ///< which a user chooses to name the root
    QString InProgramFolder(const QString &name) const;
    QString InRoot(const QString &name) const; ///< with "/" between its steps
    QString Client() const { return InRoot(QStringLiteral("Home/pvxwin32.exe")); }

    void WriteLaunchFile() const; ///< mas90.ini for that root
    QString LaunchArguments() const; ///< its second line
    void RemoveLaunchFile() const;
    QStringList LaunchFileLines() const; ///< nothing when there is none

    /// Makes the root a client installation of a server.
    void MakeClientInstallation() const;
    /// What the user's settings hold under section/key.
    QString Setting(const QString &key) const;
    bool HasSettings() const; ///< whether any were ever saved

    /// Runs the client by hand, as a synchronisation would: the databases are there afterwards.
    void Synchronise() const;

    int FinishedRuns() const; ///< how often the client has come to its end, by its log

    /// The collected entries of a company: the data rows of all upload files.
    QStringList UploadedRows(const QString &company) const;

    /// Changes what the accounting side holds for a company.
    void Replace(const QString &company, const QString &table, const QByteArray &before,
        const QByteArray &after) const;

    QStringList Databases() const; ///< the names of the database files in the program folder

    /// The rows that answer a query on a database of the program folder, "|" between values.
    QString Query(const QString &database, const QString &sql) const;

    /// Journals in the program folder; there must be none between two runs.
    QStringList Journals() const;

private:
    QTemporaryDir m_place;
    QString m_folder;
    QString m_root;
};
