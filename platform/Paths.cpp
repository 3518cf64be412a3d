#include "platform/Paths.h"

#include "platform/clsRunTimeError.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

QString JoinPath(const QString &folder, const QString &name)
{
    const QString native = QDir::toNativeSeparators(name);
    if (folder.endsWith(QDir::separator()) || folder.endsWith(u'/'))
        return folder + native;
    return folder + QDir::separator() + native;
}

QString ProgramFolder()
{
    return QDir::toNativeSeparators(QCoreApplication::applicationDirPath());
}

QString FindIgnoringCase(const QString &root, const QString &relative)
{
    QString found = root;
    const QStringList steps = QDir::fromNativeSeparators(relative).split(u'/', Qt::SkipEmptyParts);
    for (const QString &step : steps) {
        const QString asWritten = JoinPath(found, step);
        if (QFileInfo::exists(asWritten)) {
            found = asWritten;
            continue;
        }
        const QStringList names = QDir(found).entryList(
            QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
        const auto match = std::find_if(names.begin(), names.end(),
            [&](const QString &name) { return name.compare(step, Qt::CaseInsensitive) == 0; });
        if (match == names.end())
            return {};
        found = JoinPath(found, *match);
    }
    return found;
}

QByteArray ReadFileHead(const QString &path, qint64 most)
{
    QFile file(path);
    if (!QFileInfo::exists(path))
        throw clsRunTimeError(
            RunTimeErrors::FileNotFound, u"Files"_s, u"File not found: "_s + path);
    if (QFileInfo(path).isDir() || !file.open(QIODevice::ReadOnly))
        throw clsRunTimeError(
            RunTimeErrors::PathAccess, u"Files"_s, u"The file cannot be read: "_s + path);
    return file.read(most);
}
