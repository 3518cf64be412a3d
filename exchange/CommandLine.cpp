#include "exchange/CommandLine.h"

#include "platform/clsRunTimeError.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

CommandLine ParseCommandLine(const QStringList &arguments)
{
    if (arguments == QStringList{u"--help"_s})
        return {CommandLine::Wish::ShowHelp, {}};
    const bool hasFolder = arguments.size() >= 2 && !arguments.last().isEmpty();
    // What stands between is for other accounting systems' clients.
    if (hasFolder && arguments.first() == "-hd"_L1)
        return {CommandLine::Wish::Synchronise, arguments.last()};
    if (hasFolder && arguments.first() == "--sample"_L1 && arguments.size() == 2)
        return {CommandLine::Wish::MakeSample, arguments.last()};
    return {};
}

QString UsageText()
{
    return uR"(Exchanges time and expense entries with an accounting system's CSV files.

  pvxwin32.exe -hd [argument...] "<program folder>"
      Synchronises the program folder with the installation in whose Home folder
      this program lies. A "*" in the program folder stands for a blank.

  pvxwin32.exe --sample <root>
      Makes an installation with two companies to try things out.

  pvxwin32.exe --help
      Shows this text.

Exit status: 0 done, 1 failed (see worklog/exchange.log under the root),
2 called wrongly.
)"_s;
}

QString ProgramFolderFromArgument(const QString &argument)
{
    if (QFileInfo(argument).isDir())
        return argument;
    const QString withBlanks = QString(argument).replace(u'*', u' ');
    if (QFileInfo(withBlanks).isDir())
        return withBlanks;
    throw clsRunTimeError(RunTimeErrors::PathNotFound, u"Exchange"_s,
        u"There is no such program folder: "_s + withBlanks);
}
