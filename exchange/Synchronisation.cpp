#include "exchange/Synchronisation.h"

#include "exchange/CommandLine.h"
#include "exchange/ExchangeErrors.h"
#include "exchange/ExchangeLog.h"
#include "exchange/ExchangeRun.h"
#include "exchange/frmProgress.h"
#include "platform/clsInstanceLock.h"
#include "platform/clsRunTimeError.h"
#include "platform/LockFiles.h"
#include "platform/Paths.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

constexpr int Failed = 1; // the exit status

QString RootOf(const QString &client)
{
    return QDir::toNativeSeparators(QFileInfo(QFileInfo(client).path()).path());
}

/// The folder of the accounting system's files; empty when the installation has none.
QString WorklogFolder(const QString &root)
{
    const QString folder = FindIgnoringCase(root, u"worklog"_s);
    return QFileInfo(folder).isDir() ? folder : QString();
}

/// Keeps the program and other clients from the databases of a program folder until it goes out of
/// scope, or the process ends.
class FolderLock
{
public:
    explicit FolderLock(const QString &programFolder)
    {
        try {
            m_lock.CreateAndHold(JoinPath(programFolder, DatabaseLockFile()));
        } catch (const clsRunTimeError &error) {
            if (error.Number() != RunTimeErrors::PermissionDenied)
                throw;
            RaiseExchangeError(ExchangeErrors::Refused,
                u"Worklog Remote is open in the folder "_s + programFolder
                    + u", or another synchronization is at work there"_s);
        }
    }
    ~FolderLock() { m_lock.CloseAndRemove(); }
    FolderLock(const FolderLock &) = delete;
    FolderLock &operator=(const FolderLock &) = delete;

private:
    clsInstanceLock m_lock;
};

/// What one synchronization works with.
struct Job
{
    QString Root;
    QString Worklog; ///< empty when the installation has none
    QString Argument; ///< the program folder as it was passed
    Progress &Window;
};

void RunJob(const Job &job, ExchangeLog &log)
{
    if (job.Worklog.isEmpty())
        throw clsRunTimeError(RunTimeErrors::PathNotFound, u"Exchange"_s,
            JoinPath(job.Root, u"worklog"_s) + u": the folder is missing"_s);
    const QString folder = ProgramFolderFromArgument(job.Argument);
    const FolderLock lock(folder);
    log.Write(u"Synchronization of "_s + folder);
    const ProgressReport report = [&](const QString &company, const QString &step, qint64 done,
                                      qint64 all) { job.Window.Report(company, step, done, all); };
    ExchangeRun(job.Worklog, folder, log, report).Run();
    log.Write(u"Done"_s);
}

SyncOutcome Run(const QString &client, const QString &programFolder, Progress &progress)
{
    const QString root = RootOf(client);
    const QString worklog = WorklogFolder(root);
    SyncOutcome outcome;
    if (!worklog.isEmpty())
        outcome.LogFile = JoinPath(worklog, u"exchange.log"_s);
    ExchangeLog log(outcome.LogFile, [&](const QString &line) { progress.AddLine(line); });
    try {
        RunJob({root, worklog, programFolder, progress}, log);
        return outcome;
    } catch (const clsRunTimeError &error) {
        outcome.Reason = error.Description();
    } catch (const std::exception &error) {
        outcome.Reason = QString::fromLocal8Bit(error.what());
    }
    outcome.ExitStatus = Failed;
    log.WriteError(outcome.Reason);
    return outcome;
}

} // namespace

int Synchronise(const QString &client, const QString &programFolder)
{
    Progress progress;
    if (!frmProgress::HasDisplay())
        return Run(client, programFolder, progress).ExitStatus;
    frmProgress window(progress);
    return window.Run([&] { return Run(client, programFolder, progress); }).ExitStatus;
}
