#include "platform/clsRunTimeError.h"
#include "platform/Console.h"
#include "platform/Display.h"
#include "platform/Paths.h"
#include "platform/ProgramArguments.h"
#include "report/CommandLine.h"
#include "report/Writing.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <cstdio>
#include <new>

using namespace Qt::StringLiterals;

namespace {

constexpr int Failed = 1;
constexpr int CalledWrongly = 2;

void Print(std::FILE *where, const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), where);
}

int Fail(const QString &reason)
{
    Print(stderr, u"worklog-report: "_s + reason + u'\n');
    return Failed;
}

int Report(ReportRequest request)
{
    try {
        if (request.Folder.isEmpty())
            request.Folder = ProgramFolder();
        WriteReport(MakeReport(request), request.Output);
        return 0;
    } catch (const clsRunTimeError &error) {
        return Fail(error.Description());
    } catch (const std::bad_alloc &) {
        return Fail(u"Out of memory"_s);
    }
}

} // namespace

int main(int argc, char **argv)
{
    UseCallersConsole();
    const CommandLine line = ParseCommandLine(ProgramArguments(argc, argv));
    int ownName = 1; // the arguments are none of the toolkit's business
    switch (line.What) {
    case CommandLine::Wish::ShowHelp:
        Print(stdout, HelpText());
        return 0;
    case CommandLine::Wish::ShowVersion:
        Print(stdout, u"worklog-report "_s + QStringLiteral(WORKLOG_VERSION) + u'\n');
        return 0;
    case CommandLine::Wish::NotUnderstood:
        Print(stderr, u"worklog-report: "_s + line.Fault + u". See worklog-report --help.\n"_s);
        return CalledWrongly;
    case CommandLine::Wish::MakeReport:
        break;
    }
    if (line.Request.Format != ReportFormat::Pdf) {
        const QCoreApplication application(ownName, argv);
        return Report(line.Request);
    }
    NeedNoDisplay();
    const QGuiApplication application(ownName, argv);
    return Report(line.Request);
}
