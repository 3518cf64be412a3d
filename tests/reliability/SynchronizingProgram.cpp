#include "app/clsApplication.h"
#include "tests/reliability/ProgramOnDisk.h"
#include "tests/support/FaultyDisk.h"

#include <cstdio>

/// Starts the program over a folder and synchronizes it, with a client of its own:
///
///     synchronizing_program <folder> [kill|terminate <call>]
///
/// which ends it at that call to the disk in the folder. What it reported is written to standard
/// output, a line each. Exit status 0: it came to its end, with its window open again.
int main(int argc, char **argv)
{
    if (argc < 2)
        return 2;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QString folder = QString::fromLocal8Bit(argv[1]);
    FaultyDisk disk(folder);
    clsRecordedMessages messages;
    int ownName = 1;
    clsApplication application(ownName, argv, messages);
    clsSystemProcess process;
    ProgramOnDisk program(folder, &process);
    program.StartUp();
    if (argc > 3)
        disk.FailAt(QByteArray(argv[3]).toInt(),
            QByteArray(argv[2]) == "terminate" ? DiskFault::Terminate : DiskFault::Kill);
    if (program.Window() != nullptr)
        program.Click("cmdSync");
    disk.Repair();
    for (const QString &text : program.Failures() + messages.Texts())
        std::printf("%s\n", qPrintable(text));
    return program.Window() != nullptr ? 0 : 1;
}
