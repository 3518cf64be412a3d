#include "sync/FileContents.h"

#include "platform/clsRunTimeError.h"
#include "platform/DurableFiles.h"

#include <QByteArrayView>
#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 PieceBytes = 1024 * 1024;
constexpr auto Read = QIODevice::ReadOnly | QIODevice::Unbuffered;

[[noreturn]] void RaiseNotCopied(const QString &fileName, const QString &reason)
{
    throw clsRunTimeError(RunTimeErrors::PathAccess, u"Backup"_s,
        u"The entries cannot be copied to "_s + fileName + u": "_s + reason);
}

/// A part of a file, read into the same memory again and again.
class Piece
{
public:
    /// Reads the next one; empty at the end and after an error.
    void ReadFrom(QFile &file)
    {
        m_length = std::max<qint64>(file.read(m_bytes.data(), m_bytes.size()), 0);
    }
    QByteArrayView Bytes() const { return QByteArrayView(m_bytes).first(m_length); }

private:
    QByteArray m_bytes = QByteArray(PieceBytes, Qt::Uninitialized);
    qint64 m_length = 0;
};

/// From where both files are to their ends.
bool HaveSameRest(QFile &one, QFile &other)
{
    Piece first;
    Piece second;
    do {
        first.ReadFrom(one);
        second.ReadFrom(other);
        if (first.Bytes() != second.Bytes())
            return false;
    } while (!first.Bytes().isEmpty());
    return one.error() == QFile::NoError && other.error() == QFile::NoError;
}

void WriteCopy(QFile &original, const QString &to)
{
    QFile copy(to);
    if (!copy.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        RaiseNotCopied(to, copy.errorString());
    Piece piece;
    for (piece.ReadFrom(original); !piece.Bytes().isEmpty(); piece.ReadFrom(original)) {
        if (copy.write(piece.Bytes().data(), piece.Bytes().size()) != piece.Bytes().size())
            RaiseNotCopied(to, copy.errorString());
    }
    if (original.error() != QFile::NoError)
        RaiseNotCopied(to, original.errorString());
    copy.close();
    SyncFile(to);
}

} // namespace

void CopyContents(const QString &from, const QString &to)
{
    // Open until the copy has been compared: to close it would end a lock that is held on it.
    QFile original(from);
    if (!original.open(Read))
        RaiseNotCopied(to, original.errorString());
    WriteCopy(original, to);
    QFile copy(to);
    if (!original.seek(0) || !copy.open(Read) || !HaveSameRest(original, copy))
        RaiseNotCopied(to, u"it does not read as it was written"_s);
}

bool HaveSameContents(const QString &one, const QString &other)
{
    QFile first(one);
    QFile second(other);
    return first.open(Read) && second.open(Read) && first.size() == second.size()
        && HaveSameRest(first, second);
}
