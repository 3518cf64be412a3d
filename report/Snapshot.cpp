#include "report/Snapshot.h"

#include "platform/clsRunTimeError.h"
#include "platform/Paths.h"
#include "platform/PlainFiles.h"
#include "store/RecordStore.h"
#include "store/StoreErrors.h"

#include <QDateTime>
#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

using namespace Qt::StringLiterals;

namespace {

constexpr int PauseMilliseconds = 20;
constexpr qint64 ChangeCounterOffset = 24; // of the file format
constexpr qint64 ChangeCounterBytes = 4;
constexpr qint64 BlockBytes = qint64(1024) * 1024;

/// What differs after a write.
struct Stamp
{
    QByteArray ChangeCounter;
    QDateTime Written;
    qint64 Size = 0;

    friend bool operator==(const Stamp &, const Stamp &) = default;
};

void OpenToRead(QFile &file)
{
    try {
        OpenPlainFile(file, PlainFileUse::Read);
    } catch (const clsRunTimeError &error) {
        RaiseStoreError(
            StoreErrors::Unreadable, u"The database cannot be read: "_s + error.Description());
    }
}

/// Opens the file each time: an open one would repeat what it has read before.
Stamp StampOf(const QString &fileName)
{
    QFile file(fileName);
    OpenToRead(file);
    Stamp stamp;
    if (file.seek(ChangeCounterOffset))
        stamp.ChangeCounter = file.read(ChangeCounterBytes);
    stamp.Written = file.fileTime(QFileDevice::FileModificationTime);
    stamp.Size = file.size();
    return stamp;
}

void CopyBytes(const QString &from, const QString &to)
{
    QFile source(from);
    OpenToRead(source);
    QFile copy(to);
    bool written = copy.open(QIODevice::WriteOnly);
    while (written) {
        const QByteArray block = source.read(BlockBytes);
        if (block.isEmpty())
            break;
        written = copy.write(block) == block.size();
    }
    if (!written || !copy.flush())
        RaiseStoreError(StoreErrors::WriteFailed,
            u"There is no space for a copy of the databases: "_s + copy.errorString());
}

/// False when the file was being written meanwhile: a write leaves a journal next to the file until
/// it is complete, and counts itself in the file.
bool CopyAtRest(const QString &from, const QString &to)
{
    const QString journal = from + u"-journal"_s;
    const Stamp before = StampOf(from);
    if (QFileInfo::exists(journal))
        return false;
    CopyBytes(from, to);
    return !QFileInfo::exists(journal) && StampOf(from) == before
        && QFileInfo(to).size() == before.Size;
}

} // namespace

Snapshot::Snapshot(const QString &folder, std::chrono::milliseconds patience)
    : m_folder(folder)
    , m_patience(patience)
{
}

bool Snapshot::Take(const QString &name)
{
    const QString fileName = RecordStore::FileName(JoinPath(m_folder, name));
    const QDeadlineTimer patience(m_patience);
    while (QFileInfo::exists(fileName)) {
        if (QFileInfo(fileName).isDir())
            RaiseStoreError(StoreErrors::NotADatabase, u"The database is a folder: "_s + fileName);
        if (!QFileInfo(fileName).isFile())
            RaiseStoreError(
                StoreErrors::NotADatabase, u"The database is not a regular file: "_s + fileName);
        // A link is read like the database that it leads to.
        if (CopyAtRest(QFileInfo(fileName).canonicalFilePath(),
                RecordStore::FileName(JoinPath(m_copies.Path(), name))))
            return true;
        if (patience.hasExpired())
            RaiseStoreError(StoreErrors::Locked,
                u"The database is being written, or was when the program or the computer died: "_s
                    + fileName + u". Start Worklog Remote once, and try again."_s);
        QThread::msleep(PauseMilliseconds);
    }
    return false;
}
