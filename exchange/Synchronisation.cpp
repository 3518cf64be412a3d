#include "exchange/Synchronisation.h"

#include "exchange/CommandLine.h"
#include "exchange/ExchangeErrors.h"
#include "exchange/ExchangeLog.h"
#include "exchange/ExchangeRun.h"
#include "exchange/frmProgress.h"
#include "platform/clsInstanceLock.h"
#include "platform/clsRunTimeError.h"
#include "platform/Paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

constexpr int Done = 0;
constexpr int Failed = 1;

QString InstallationRoot()
{
    return QDir::toNativeSeparators(QFileInfo(ProgramFolder()).path());
}

/// The accounting side's files; empty when the installation has none.
QString WorklogFolder()
{
    const QString folder = FindIgnoringCase(InstallationRoot(), u"worklog"_s);
    return QFileInfo(folder).isDir() ? folder : QString();
}

/// Keeps other clients out of a program folder until it goes out of scope, or the process ends.
class FolderLock
{
public:
    explicit FolderLock(const QString &programFolder)
        : m_fileName(JoinPath(programFolder, u"exchange.lock"_s))
    {
        try {
            m_lock.CreateAndHold(m_fileName);
        } catch (const clsRunTimeError &error) {
            if (error.Number() != RunTimeErrors::PermissionDenied)
                throw;
            RaiseExchangeError(ExchangeErrors::Refused,
                u"Another synchronisation is at work in the folder "_s + programFolder);
        }
    }
    // While the lock is held: afterwards the file may be another client's. Windows removes no file
    // that is held, and so not another client's either.
    ~FolderLock()
    {
        if (QFile::remove(m_fileName))
            return;
        m_lock.Close();
        QFile::remove(m_fileName);
    }
    FolderLock(const FolderLock &) = delete;
    FolderLock &operator=(const FolderLock &) = delete;

private:
    QString m_fileName;
    clsInstanceLock m_lock;
};

void RunIn(const QString &worklog, const QString &argument, ExchangeLog &log)
{
    if (worklog.isEmpty())
        throw clsRunTimeError(RunTimeErrors::PathNotFound, u"Exchange"_s,
            JoinPath(InstallationRoot(), u"worklog"_s) + u": the folder is missing"_s);
    const QString folder = ProgramFolderFromArgument(argument);
    const FolderLock lock(folder);
    log.Write(u"Synchronisation of "_s + folder);
    frmProgress window(HasDisplay());
    const ProgressReport progress
        = [&](const QString &company, const QString &table, qint64 done, qint64 all) {
              window.ShowProgress(company, table, done, all);
          };
    ExchangeRun(worklog, folder, log, progress).Run();
    log.Write(u"Done"_s);
}

} // namespace

int Synchronise(const QString &programFolder)
{
    const QString worklog = WorklogFolder();
    ExchangeLog log(worklog.isEmpty() ? QString() : JoinPath(worklog, u"exchange.log"_s));
    try {
        RunIn(worklog, programFolder, log);
        return Done;
    } catch (const clsRunTimeError &error) {
        log.WriteError(error.Description());
    } catch (const std::exception &error) {
        log.WriteError(QString::fromLocal8Bit(error.what()));
    }
    return Failed;
}
