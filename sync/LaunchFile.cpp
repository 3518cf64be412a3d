#include "sync/LaunchFile.h"

#include "platform/clsProcess.h"
#include "platform/clsRunTimeError.h"
#include "platform/DurableFiles.h"
#include "platform/Paths.h"
#include "platform/PlainFiles.h"
#include "sync/TextLines.h"

#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

using namespace Qt::StringLiterals;

namespace {

/// Two lines of paths; whatever is longer is no launch file.
constexpr qint64 MostBytes = 64 * 1024;

/// At least `count` of them.
QStringList LaunchLines(const QString &path, qsizetype count)
{
    const QStringList lines = TextLines(ReadFileHead(path, MostBytes));
    if (lines.size() < count)
        throw clsRunTimeError(RunTimeErrors::PastEndOfFile, u"LaunchFile"_s,
            u"The file does not hold its two lines: "_s + path);
    return lines;
}

void WriteText(const QString &path, const QString &text)
{
    QFile::remove(path); // a leftover, whatever it is
    QFile file(path);
    OpenPlainFile(file, PlainFileUse::CreateNew);
    file.setTextModeEnabled(true);
    WriteWhole(file, path, text.toUtf8());
}

QString Quoted(QString text)
{
    return u'"' + text.replace(u'"', u"\"\""_s) + u'"';
}

/// The accounting system turns them back.
QString Starred(QString folder)
{
    return folder.replace(u' ', u'*');
}

} // namespace

LaunchFile ReadLaunchFile(const QString &path)
{
    // Cut off, the arguments would name another folder, or none.
    if (QFileInfo(path).size() > MostBytes)
        throw clsRunTimeError(RunTimeErrors::PathAccess, u"LaunchFile"_s,
            u"The file has more than "_s + QString::number(MostBytes) + u" bytes: "_s + path);
    const QStringList lines = LaunchLines(path, 2);
    return {lines[0], lines[1]};
}

QString ReadLaunchRoot(const QString &path)
{
    return LaunchLines(path, 1).first();
}

void WriteLaunchFile(const QString &path, const LaunchFile &launch)
{
    const QString unfinished = path + u".new"_s;
    auto failed = qScopeGuard([&] { QFile::remove(unfinished); });
    WriteText(unfinished, launch.Root + u'\n' + launch.Arguments + u'\n');
    LimitRights(unfinished, path);
    SyncFile(unfinished);
    ReplaceFile(unfinished, path);
    failed.dismiss();
}

QString MAS90Arguments(const QString &root)
{
    return u"%1 %2 -ARG RUN_DIRECT UION * WLWXBA"_s.arg(
        Quoted(JoinPath(root, u"launcher/sota.ini"_s)),
        Quoted(JoinPath(root, u"kv/kv_startup.m4p"_s)));
}

QString MAS200Arguments(const QString &root, const QString &host, const QString &port)
{
    return u"%1 KV_Client -ARG %2 %3 \"KV_DIRECT\" -ARG=RUN_DIRECT UION * WLWXBA"_s.arg(
        Quoted(JoinPath(root, u"launcher/sota.ini"_s)), Quoted(host), Quoted(port));
}

QString ClientArguments(const LaunchFile &launch, const QString &programFolder)
{
    return u"-hd "_s + launch.Arguments + u' ' + Quoted(Starred(programFolder));
}

bool TellsFolder(const QString &clientArguments, const QString &programFolder)
{
    if (programFolder.contains(u' ') && programFolder.contains(u'*'))
        return false;
    const QStringList arguments = SplitCommandLine(clientArguments);
    return !arguments.isEmpty() && arguments.last() == Starred(programFolder);
}

QString ClientCommandLine(const LaunchFile &launch, const QString &programFolder)
{
    return JoinPath(launch.Root, u"Home/pvxwin32.exe"_s) + u' '
        + ClientArguments(launch, programFolder);
}
