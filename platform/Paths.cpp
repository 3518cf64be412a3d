#include "platform/Paths.h"

#include "platform/PlainFiles.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

/// The names in a folder that differ from `step` in case at most, the very letters first.
QStringList NamesLike(const QString &folder, const QString &step)
{
    QStringList like;
    if (QFileInfo::exists(JoinPath(folder, step)))
        like.append(step);
    const QStringList names = QDir(folder).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &name : names) {
        if (name != step && name.compare(step, Qt::CaseInsensitive) == 0)
            like.append(name);
    }
    return like;
}

QString FindSteps(const QString &folder, const QStringList &steps)
{
    if (steps.isEmpty())
        return QFileInfo::exists(folder) ? folder : QString();
    // "Home" and "home" can stand side by side, each with a part of the files.
    for (const QString &name : NamesLike(folder, steps.front())) {
        const QString found = FindSteps(JoinPath(folder, name), steps.mid(1));
        if (!found.isEmpty())
            return found;
    }
    return {};
}

} // namespace

QString JoinPath(const QString &folder, const QString &name)
{
    const QString native = QDir::toNativeSeparators(name);
    if (folder.endsWith(QDir::separator()) || folder.endsWith(u'/'))
        return folder + native;
    return folder + QDir::separator() + native;
}

QString FindIgnoringCase(const QString &root, const QString &relative)
{
    // On a network each look can take long, and the letters are usually those that were asked for.
    const QString asWritten = JoinPath(root, relative);
    if (!relative.isEmpty() && QFileInfo::exists(asWritten))
        return asWritten;
    return FindSteps(root, QDir::fromNativeSeparators(relative).split(u'/', Qt::SkipEmptyParts));
}

QString NearestFolder(const QString &path)
{
    if (path.isEmpty())
        return QDir::homePath();
    QString folder = QDir::cleanPath(QDir(path).absolutePath());
    while (!QFileInfo(folder).isDir() && !QDir(folder).isRoot())
        folder = QFileInfo(folder).path();
    return folder;
}

QByteArray ReadFileHead(const QString &path, qint64 most)
{
    QFile file(path);
    OpenPlainFile(file, PlainFileUse::Read);
    return file.read(most);
}
