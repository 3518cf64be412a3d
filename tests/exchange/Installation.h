#pragma once

#include "store/Records.h"
#include "store/Tables.h"
#include "tests/support/SampleCompany.h"

#include <QMap>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>
#include <vector>

/// What a run of the client came to.
struct Outcome
{
    int ExitStatus = -1; ///< -1: it did not end by itself
    QString Output;
    QString Errors;
};

/// An accounting installation with the built client in it, and a program folder: a test's own.
///
/// There is one company at first, ABC, with a record or two in each file. Entries databases are
/// made as the program makes them.
class Installation
{
    // The paths below are made of them.
    QTemporaryDir m_folder;
    QTemporaryDir m_programs{SampleFolderTemplate()};

public:
    Installation();

    QString Root;
    QString Worklog;
    QString Program;

    void AddCompany(const QString &code); ///< its files, and its line in Company.csv
    void DropCompany(const QString &code); ///< its line in Company.csv
    /// Writes a file under worklog, folders included.
    void Write(const QString &file, const QByteArray &contents) const;
    QByteArray Read(const QString &file) const; ///< of a file under worklog
    void Replace(const QString &file, const QByteArray &old, const QByteArray &now) const;

    /// Runs the client as a synchronisation does and waits for its end.
    Outcome Synchronise() const;
    Outcome Call(const QStringList &arguments,
        const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment()) const;
    std::unique_ptr<QProcess> Start() const; ///< the same, without waiting
    QString Client() const;

    /// The tables of the program folder with the codes stored; close what you open.
    std::unique_ptr<Tables> Open() const;
    void PutEntries(const QString &company, const std::vector<EntryRecord> &entries) const;
    std::vector<EntryRecord> Entries(const QString &company) const;
    void PutNote(const QString &company, const QString &note) const;
    QString Note(const QString &company) const;
    void Choose(const QString &company, const QString &syncOption) const;
    OptionsRecord Options(const QString &company) const;
    QStringList CustomerNames(const QString &company) const;
    QStringList Companies() const;

    /// Every file of the program folder with its contents.
    QMap<QString, QByteArray> LocalFiles() const;
    /// Names of the upload files that the accounting side sees, sorted.
    QStringList Uploads(const QString &company) const;
    QStringList HiddenUploads(const QString &company) const; ///< names of those it does not see
    QString UploadPath(const QString &company, const QString &name) const;
    QString Log() const;

private:
    void WriteCompanyList() const;

    QStringList m_companies;
};

/// An entry that differs from those of other numbers.
EntryRecord EntryNumber(int number);

/// What an upload file with these entries holds: written out here, without
/// the client's own code.
QByteArray UploadOf(const std::vector<int> &numbers);
/// The lines of a whole upload file behind its first one, sorted; their line ends are checked.
QStringList UploadedLines(const QString &path);
/// The same for the entries of these numbers.
QStringList LinesOf(const std::vector<int> &numbers);

/// Whether the note of an Entries database says that no batch is being delivered: it has only the
/// name for the next one.
bool IsSettled(const QString &note);

/// The fields of an entry, to be compared and printed.
QString TextOf(const EntryRecord &entry);
QStringList TextsOf(const std::vector<EntryRecord> &entries);
