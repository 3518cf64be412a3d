#include "sync/LaunchFile.h"

#include "platform/clsRunTimeError.h"
#include "platform/Paths.h"

#include <QStringDecoder>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

/// Two lines of paths; whatever is longer is no launch file.
constexpr qint64 MostBytes = 64 * 1024;

QString Decoded(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8); // drops a byte order mark
    const QString text = decoder(bytes);
    return decoder.hasError() ? QString::fromLatin1(bytes) : text;
}

} // namespace

LaunchFile ReadLaunchFile(const QString &path)
{
    const QStringList lines = Decoded(ReadFileHead(path, MostBytes)).split(u'\n');
    const auto line = [&](qsizetype number) {
        QString text = lines.value(number);
        if (text.endsWith(u'\r'))
            text.chop(1);
        return text;
    };
    const LaunchFile launch{line(0).trimmed(), line(1)};
    const bool hasSecondLine = lines.size() > 2 || !lines.value(1).isEmpty();
    if (launch.Root.isEmpty() || !hasSecondLine)
        throw clsRunTimeError(RunTimeErrors::PastEndOfFile, u"LaunchFile"_s,
            u"The file does not hold its two lines: "_s + path);
    return launch;
}

QString ClientArguments(const LaunchFile &launch, const QString &programFolder)
{
    return u"-hd "_s + launch.Arguments + u" \""_s + QString(programFolder).replace(u' ', u'*')
        + u'"';
}

QString ClientCommandLine(const LaunchFile &launch, const QString &programFolder)
{
    return JoinPath(launch.Root, u"Home/pvxwin32.exe"_s) + u' '
        + ClientArguments(launch, programFolder);
}
