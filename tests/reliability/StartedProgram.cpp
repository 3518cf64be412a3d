#include "app/clsApplication.h"
#include "tests/reliability/ProgramOnDisk.h"

#include <cstdio>

/// Starts the program over a folder, writes "window" or what it told instead, one line, and holds
/// on until its standard input ends.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (argc != 2)
        return 2;
    clsRecordedMessages messages;
    clsApplication application(argc, argv, messages);
    ProgramOnDisk program(QString::fromLocal8Bit(argv[1]));
    program.StartUp();
    std::puts(program.Window() != nullptr ? "window"
                                          : qPrintable(program.Failures().join(QLatin1Char('|'))));
    std::fflush(stdout);
    while (std::getchar() != EOF) { }
    return 0;
}
