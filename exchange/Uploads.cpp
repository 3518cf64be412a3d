#include "exchange/Uploads.h"

#include "exchange/ExchangeErrors.h"
#include "platform/clsRunTimeError.h"
#include "platform/DurableFiles.h"
#include "platform/Paths.h"
#include "platform/PlainFiles.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

using namespace Qt::StringLiterals;

namespace {

const QString UploadsName = u"uploads"_s;

[[noreturn]] void RaisePathError(const QString &path, const QString &reason)
{
    throw clsRunTimeError(RunTimeErrors::PathAccess, u"Exchange"_s, path + u": "_s + reason);
}

/// The folder of that name, made when there is none; its name is on the disk.
QString FolderIn(const QString &parent, const QString &name)
{
    const QString found = FindIgnoringCase(parent, name);
    if (QFileInfo(found).isDir())
        return found;
    const QString made = JoinPath(parent, name);
    if (!found.isEmpty() || !QDir().mkdir(made))
        RaisePathError(made,
            u"the folder cannot be made: "_s
                + (found.isEmpty() ? qt_error_string() : u"a file is in its place"_s));
    TakeRightsOfFolder(made);
    SyncFolder(parent);
    return made;
}

/// A file that is on the disk when this returns; its name is when that of its folder is.
void WriteNew(const QString &fileName, const std::string &contents)
{
    QFile file(fileName);
    OpenPlainFile(file, PlainFileUse::CreateNew);
    auto failed = qScopeGuard([&] { QFile::remove(fileName); });
    WriteWhole(file, fileName, contents);
    file.close();
    TakeRightsOfFolder(fileName);
    SyncFile(fileName);
    failed.dismiss();
}

/// The folder of that name, or what it would be called.
QString PlaceIn(const QString &parent, const QString &name)
{
    const QString found = FindIgnoringCase(parent, name);
    return found.isEmpty() ? JoinPath(parent, name) : found;
}

} // namespace

Uploads::Uploads(const QString &worklog, const QString &company)
    : m_worklog(worklog)
    , m_company(company)
{
}

QString Uploads::PlaceOf(const QString &fileName) const
{
    return JoinPath(PlaceIn(PlaceIn(m_worklog, m_company), UploadsName), fileName);
}

QString Uploads::FileOf(const QString &batch) const
{
    return PlaceOf(batch + u".csv"_s);
}

QString Uploads::PartOf(const QString &batch) const
{
    return PlaceOf(u'.' + batch + u".part"_s);
}

QString Uploads::DigestFileOf(const QString &batch) const
{
    return PlaceOf(u'.' + batch + u".sha256"_s);
}

QString Uploads::Delivered(const QString &batch) const
{
    // Also below another spelling of the company's code, should both folders be there.
    const QString uploads = m_company + u'/' + UploadsName + u'/';
    const QString waiting = FindIgnoringCase(m_worklog, uploads + batch + u".csv"_s);
    return waiting.isEmpty()
        ? FindIgnoringCase(m_worklog, uploads + u"imported/"_s + batch + u".csv"_s)
        : waiting;
}

void Uploads::Secure(const QString &delivered)
{
    SyncFile(delivered);
    SyncFolder(QFileInfo(delivered).absolutePath());
}

QString Uploads::DigestOf(const std::string &contents)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(QByteArrayView(contents.data(), static_cast<qsizetype>(contents.size())));
    return QString::fromLatin1(hash.result().toHex());
}

QString Uploads::DigestOfFile(const QString &fileName)
{
    QFile file(fileName);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    OpenPlainFile(file, PlainFileUse::Read);
    if (!hash.addData(&file))
        RaisePathError(fileName, file.errorString());
    return QString::fromLatin1(hash.result().toHex());
}

void Uploads::MakeFolder() const
{
    FolderIn(FolderIn(m_worklog, m_company), UploadsName);
}

QString Uploads::RecordedDigest(const QString &batch) const
{
    constexpr qint64 digestLength = 64;
    const QString fileName = DigestFileOf(batch);
    return QFileInfo::exists(fileName) ? QString::fromLatin1(ReadFileHead(fileName, digestLength))
                                       : QString();
}

void Uploads::Write(const QString &batch, const std::string &contents) const
{
    // Removed, never overwritten: a run that was killed while it delivered the file can have left
    // both names, and they are then one and the same file.
    Discard(batch);
    WriteNew(PartOf(batch), contents);
}

void Uploads::RecordDigest(const QString &batch, const QString &digest) const
{
    QFile::remove(DigestFileOf(batch));
    try {
        WriteNew(DigestFileOf(batch), digest.toStdString());
    } catch (const clsRunTimeError &) {
        return; // the file is delivered, with a record or without
    }
}

void Uploads::HandOver(const QString &batch) const
{
    if (!MoveToNewName(PartOf(batch), FileOf(batch)))
        RaiseExchangeError(ExchangeErrors::Refused, u"The file exists already: "_s + FileOf(batch));
}

void Uploads::Discard(const QString &batch) const
{
    QFile file(PartOf(batch));
    if (!file.exists())
        return;
    if (!file.remove())
        RaisePathError(file.fileName(), file.errorString());
    // The note that names the file may be gone soon, and must not go before it.
    SyncFolder(QFileInfo(file).absolutePath());
}
