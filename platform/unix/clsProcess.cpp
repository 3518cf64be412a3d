#include "platform/clsProcess.h"

#include <QEventLoop>
#include <QProcess>

bool clsSystemProcess::RunAndWait(
    const QString &program, const QString &arguments, const QString &folder)
{
    QProcess process;
    process.setProgram(program);
    process.setArguments(SplitCommandLine(arguments));
    process.setWorkingDirectory(folder);
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.setInputChannelMode(QProcess::ForwardedInputChannel);

    QEventLoop untilEnded;
    bool started = true;
    QObject::connect(&process, &QProcess::finished, &untilEnded, &QEventLoop::quit);
    QObject::connect(
        &process, &QProcess::errorOccurred, &untilEnded, [&](QProcess::ProcessError error) {
            if (error != QProcess::FailedToStart)
                return;
            started = false;
            untilEnded.quit();
        });
    process.start();
    if (started && process.state() != QProcess::NotRunning)
        untilEnded.exec();
    // Somebody may have told the application to quit; the process is not abandoned for that.
    if (started)
        process.waitForFinished(-1);
    return started;
}
