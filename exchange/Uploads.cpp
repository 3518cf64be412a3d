#include "exchange/Uploads.h"

#include "exchange/ExchangeErrors.h"
#include "platform/clsRunTimeError.h"
#include "platform/DurableFiles.h"
#include "platform/Paths.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString UploadsName = u"uploads"_s;

[[noreturn]] void RaisePathError(const QFile &file)
{
    throw clsRunTimeError(
        RunTimeErrors::PathAccess, u"Exchange"_s, file.fileName() + u": "_s + file.errorString());
}

bool IsSafeInFileName(QChar c)
{
    return c.unicode() < 128 && c.isLetterOrNumber();
}

/// The folder of that name, made when there is none; its name is on the disk.
QString FolderIn(const QString &parent, const QString &name)
{
    const QString found = FindIgnoringCase(parent, name);
    if (QFileInfo(found).isDir())
        return found;
    const QString made = JoinPath(parent, name);
    if (!found.isEmpty() || !QDir().mkdir(made))
        throw clsRunTimeError(
            RunTimeErrors::PathAccess, u"Exchange"_s, made + u": the folder cannot be made"_s);
    SyncFolder(parent);
    return made;
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

QString Uploads::NewBatchName(const QString &employeeNumber)
{
    QString employee = employeeNumber.isEmpty() ? u"unknown"_s : employeeNumber;
    for (QChar &c : employee) {
        if (!IsSafeInFileName(c))
            c = u'_';
    }
    const QString random
        = QString::number(QRandomGenerator::system()->generate(), 16).rightJustified(8, u'0');
    return QDateTime::currentDateTimeUtc().toString(u"yyyyMMdd-HHmmss"_s) + u'-' + employee + u'-'
        + random;
}

bool Uploads::IsBatchName(const QString &text)
{
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar c) {
        return IsSafeInFileName(c) || c == u'-' || c == u'_';
    });
}

QString Uploads::FileOf(const QString &batch) const
{
    return JoinPath(PlaceIn(PlaceIn(m_worklog, m_company), UploadsName), batch + u".csv"_s);
}

QString Uploads::PartOf(const QString &batch) const
{
    return JoinPath(PlaceIn(PlaceIn(m_worklog, m_company), UploadsName), u'.' + batch + u".part"_s);
}

QString Uploads::Delivered(const QString &batch) const
{
    const QString uploads = PlaceIn(PlaceIn(m_worklog, m_company), UploadsName);
    const QString waiting = FindIgnoringCase(uploads, batch + u".csv"_s);
    return waiting.isEmpty() ? FindIgnoringCase(uploads, u"imported/"_s + batch + u".csv"_s)
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
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file))
        RaisePathError(file);
    return QString::fromLatin1(hash.result().toHex());
}

void Uploads::MakeFolder() const
{
    FolderIn(FolderIn(m_worklog, m_company), UploadsName);
}

void Uploads::Write(const QString &batch, const std::string &contents) const
{
    // Removed, never overwritten: a run that was killed while it handed the file over can have
    // left both names, and they are then one and the same file.
    Discard(batch);
    QFile file(PartOf(batch));
    const qint64 size = static_cast<qint64>(contents.size());
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        RaisePathError(file);
    if (file.write(contents.data(), size) != size || !file.flush()) {
        QFile::remove(file.fileName());
        RaisePathError(file);
    }
    file.close();
    SyncFile(file.fileName());
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
        RaisePathError(file);
    // The note that names the file may be gone soon, and must not go before it.
    SyncFolder(QFileInfo(file).absolutePath());
}
