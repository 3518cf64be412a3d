#pragma once

#include <QByteArrayView>
#include <QFile>
#include <QString>

/// The one way to open a file in a folder that other accounts can write to.
///
/// The file is a plain one: a link in the last step of its path is not followed, and a pipe or a
/// device is refused without waiting for its other end. The kind is checked on the open file, so
/// that nothing can take its place in between.

enum class PlainFileUse
{
    Read, ///< the file exists
    Append, ///< at its end; the file is created when it is missing
    CreateNew ///< the file must not exist
};

/// No text file of ours comes near it.
constexpr qint64 MaxPlainFileBytes = qint64(2) * 1024 * 1024 * 1024;

/// Opens `file`, which has its name and is closed. It has no name while it is open.
/// Errors: clsRunTimeError, naming the file and the reason: 53 when a file to be read is missing,
/// 75
///         for any other, among them a file with more than `maxBytes`.
void OpenPlainFile(QFile &file, PlainFileUse use, qint64 maxBytes = MaxPlainFileBytes);

/// Gives a new file or folder the group of the folder that it is in, and the rights: those to read
/// and write for a file, all for a folder. Every account that may write in the folder can then
/// write there too, whatever the umask of the first one. Where the system refuses, the path stays
/// as it is; where it refuses the group, no group gets rights. On Windows a file inherits its
/// rights.
void TakeRightsOfFolder(const QString &path);

/// Gives `path` the group of `model` and takes every right away that `model` does not have. Nothing
/// happens without a `model`.
void LimitRights(const QString &path, const QString &model);

/// Writes all of the bytes into a file that OpenPlainFile has opened. `path` is its name.
/// Errors: clsRunTimeError 75, naming the file and the system's reason.
void WriteWhole(QFile &file, const QString &path, QByteArrayView bytes);
