#include "app/clsApplication.h"
#include "tests/reliability/ProgramOnDisk.h"
#include "tests/support/FaultyDisk.h"

#include <cstdio>

/// Does one operation of the program and kills itself at one of its calls to the disk:
///
///     killed_operation <folder> <operation> <call>
///
/// Exit status 0: it came to the operation's end, and no failure was told.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (argc != 4)
        return 2;
    const QString folder = QString::fromLocal8Bit(argv[1]);
    const Operation &operation = OperationCalled(argv[2]);
    const int call = QByteArray(argv[3]).toInt();
    FaultyDisk disk(folder);
    clsRecordedMessages messages;
    clsApplication application(argc, argv, messages);
    ProgramOnDisk program(folder);
    if (operation.Prepare != nullptr) {
        program.StartUp();
        operation.Prepare(program);
    }
    disk.FailAt(call, DiskFault::Kill);
    operation.Run(program);
    disk.Repair();
    for (const QString &text : program.Failures() + messages.Texts())
        std::fprintf(stderr, "%s\n", qPrintable(text));
    return program.Failures().size() + messages.Shown.size() == 0
            || QByteArray(operation.Name).startsWith("deleting")
        ? 0
        : 1;
}
