#pragma once

#include <QString>

#include <string>

/// The folder <worklog>/<company>/uploads, in which a company's entries are handed over.
///
/// Files:  <batch>.csv is complete and on the disk whenever it stands there. Until then it is
///         .<batch>.part, which no other program may read. .<batch>.sha256 has the digest of the
///         file as it was delivered. imported/ is where the accounting system may put the files
///         that it has taken in.
/// Errors: clsRunTimeError naming the file.
class Uploads
{
public:
    Uploads(const QString &worklog, const QString &company);

    /// The batch's file, wherever the accounting side has put it; empty when it was never handed
    /// over.
    QString Delivered(const QString &batch) const;

    /// Waits until a file that was handed over, and its name, are on the disk: a run that was
    /// killed may have gone before they were.
    static void Secure(const QString &delivered);

    /// Makes the folder unless it is there.
    void MakeFolder() const;
    /// Writes the batch's file under its hidden name, in place of one that was left there. It is
    /// on the disk when this returns. The folder is there.
    void Write(const QString &batch, const std::string &contents) const;
    /// Gives the hidden file its final name, in one durable step.
    void HandOver(const QString &batch) const;
    /// Removes the batch's hidden file if there is one, durably.
    void Discard(const QString &batch) const;

    /// Keeps the digest of a batch's file with the uploads, for computers whose note is older than
    /// the file. A record that cannot be written is left out.
    void RecordDigest(const QString &batch, const QString &digest) const;
    /// Empty when there is no record.
    QString RecordedDigest(const QString &batch) const;

    QString FileOf(const QString &batch) const;

    /// SHA-256 of a file's bytes, as 64 lower-case hexadecimal digits.
    static QString DigestOf(const std::string &contents);
    static QString DigestOfFile(const QString &fileName);

private:
    QString PlaceOf(const QString &fileName) const;
    QString PartOf(const QString &batch) const;
    QString DigestFileOf(const QString &batch) const;

    QString m_worklog;
    QString m_company;
};
