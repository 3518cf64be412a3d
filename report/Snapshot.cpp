#include "report/Snapshot.h"

#include "platform/clsRunTimeError.h"
#include "platform/Paths.h"
#include "store/RecordStore.h"
#include "store/StoreErrors.h"

#include <QDateTime>
#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int PauseMilliseconds = 20;
constexpr qint64 ChangeCounterOffset = 24; // of the file format
constexpr qint64 ChangeCounterBytes = 4;

/// What differs after a write.
struct Stamp
{
    QByteArray ChangeCounter;
    QDateTime Written;
    qint64 Size = 0;

    friend bool operator==(const Stamp &, const Stamp &) = default;
};

Stamp StampOf(QFile &file)
{
    Stamp stamp;
    if (file.seek(ChangeCounterOffset))
        stamp.ChangeCounter = file.read(ChangeCounterBytes);
    stamp.Written = file.fileTime(QFileDevice::FileModificationTime);
    stamp.Size = file.size();
    return stamp;
}

/// The file's bytes, or nothing when somebody has been writing meanwhile: a write leaves a journal
/// beside the file until it is complete, and counts itself in the file.
std::optional<QByteArray> ReadAtRest(const QString &fileName)
{
    const QString journal = fileName + u"-journal"_s;
    QFile file(fileName);
    // Unbuffered, or the second look would see what the first one has read.
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        RaiseStoreError(StoreErrors::Unreadable,
            u"The database cannot be read: "_s + fileName + u" ("_s + file.errorString() + u")"_s);
    if (QFileInfo::exists(journal))
        return {};
    const Stamp before = StampOf(file);
    file.seek(0);
    const QByteArray bytes = file.readAll();
    if (QFileInfo::exists(journal) || StampOf(file) != before || bytes.size() != before.Size)
        return {};
    return bytes;
}

void Write(const QString &fileName, const QByteArray &bytes)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        RaiseStoreError(StoreErrors::WriteFailed,
            u"There is no room for a copy of the databases: "_s + file.errorString());
}

} // namespace

Snapshot::Snapshot(const QString &folder, std::chrono::milliseconds patience)
    : m_folder(folder)
    , m_patience(patience)
{
    if (!m_copies.isValid())
        RaiseStoreError(StoreErrors::WriteFailed,
            u"There is no room for a copy of the databases: "_s + m_copies.errorString());
}

bool Snapshot::Take(const QString &name)
{
    const QString fileName = RecordStore::FileName(JoinPath(m_folder, name));
    const QDeadlineTimer patience(m_patience);
    while (QFileInfo::exists(fileName)) {
        if (QFileInfo(fileName).isDir())
            RaiseStoreError(StoreErrors::NotADatabase, u"The database is a folder: "_s + fileName);
        if (const std::optional<QByteArray> bytes = ReadAtRest(fileName)) {
            Write(RecordStore::FileName(JoinPath(m_copies.path(), name)), *bytes);
            return true;
        }
        if (patience.hasExpired())
            RaiseStoreError(StoreErrors::Locked,
                u"The database is being written, or was when the program or the computer died: "_s
                    + fileName + u". Start Worklog Remote once, and try again."_s);
        QThread::msleep(PauseMilliseconds);
    }
    return false;
}
