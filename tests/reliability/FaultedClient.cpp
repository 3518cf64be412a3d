#include "exchange/Synchronisation.h"
#include "tests/support/FaultyDisk.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

time_t theClockIsAhead = 0; // seconds

} // namespace

/// Every clock that shows the time of day, also the toolkit's.
extern "C" int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    const auto result = static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    if (clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE)
        time->tv_sec += theClockIsAhead;
    return result;
}

/// The exchange client, to which something happens at one of its calls to the disk, or whose clock
/// is wrong:
///
///     faulted_client <client> <program folder> <fault> <call>
///
/// <client> is the file in Home whose root is synchronized; the fault is kill, kill-both,
/// terminate, pause, or clock, where <call> says by how many seconds the clock is ahead. Writes the
/// number of calls to standard output if it comes to its end. Exit status: the client's.
int main(int argc, char **argv)
{
    if (argc < 5)
        return 2;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QByteArray fault = argv[3];
    int ownName = 1;
    const QApplication application(ownName, argv);
    const QString client = QString::fromLocal8Bit(argv[1]);
    QString program = QString::fromLocal8Bit(argv[2]);
    FaultyDisk disk({client.section(QLatin1Char('/'), 0, -3),
        QString(program).replace(QLatin1Char('*'), QLatin1Char(' '))});
    if (fault == "clock")
        theClockIsAhead = std::atol(argv[4]);
    else
        disk.FailAt(std::atoi(argv[4]),
            fault == "pause"           ? DiskFault::Pause
                : fault == "terminate" ? DiskFault::Terminate
                : fault == "kill-both" ? DiskFault::KillBoth
                                       : DiskFault::Kill);
    const int status = Synchronise(client, program);
    std::printf("%d calls\n", disk.Repair());
    return status;
}
