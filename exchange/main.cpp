#include "exchange/CommandLine.h"
#include "exchange/ExchangeLog.h"
#include "exchange/SampleRoot.h"
#include "exchange/Synchronisation.h"
#include "platform/clsReadableStyle.h"
#include "platform/clsRunTimeError.h"
#include "platform/Console.h"
#include "platform/Display.h"
#include "platform/Look.h"
#include "platform/ProgramArguments.h"
#include "platform/ProgramIcon.h"

#include <QApplication>
#include <QCoreApplication>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int Failed = 1;
constexpr int CalledWrongly = 2;

int MakeSample(const QString &root)
{
    try {
        MakeSampleRoot(root, QCoreApplication::applicationFilePath());
        return 0;
    } catch (const clsRunTimeError &error) {
        TellStandardError(error.Description());
        return Failed;
    }
}

} // namespace

int main(int argc, char **argv)
{
    UseCallersConsole();
    const CommandLine command = ParseCommandLine(ProgramArguments(argc, argv));
    // The arguments are none of the toolkit's business: it would take those out that it knows.
    int ownName = 1;
    switch (command.What) {
    case CommandLine::Wish::ShowHelp:
        std::fputs(UsageText().toUtf8().constData(), stdout);
        return 0;
    case CommandLine::Wish::NotUnderstood:
        std::fputs(UsageText().toUtf8().constData(), stderr);
        return CalledWrongly;
    case CommandLine::Wish::MakeSample: {
        const QCoreApplication application(ownName, argv);
        return MakeSample(command.Folder);
    }
    case CommandLine::Wish::Synchronise:
        break;
    }
    ChooseDisplay();
    ChooseLook();
    const QApplication application(ownName, argv);
    QApplication::setWindowIcon(ProgramIcon());
    UseReadableLook();
    return Synchronise(ProgramFile(argv[0]), command.Folder);
}
