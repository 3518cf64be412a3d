#include "bench/StartBench.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <chrono>
#include <memory>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

double Now()
{
    return std::chrono::duration<double, std::milli>(
        std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

/// A process with the probe loaded.
class ProbedProcess
{
public:
    ProbedProcess(const QString &program, int rows, bool stays)
        : m_note(m_folder.filePath(u"first-paint"_s))
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"QT_PLUGIN_PATH"_s, QStringLiteral(WORKLOG_BENCH_PLUGINS));
        environment.insert(u"QT_QPA_GENERIC_PLUGINS"_s, u"firstpaint"_s);
        environment.insert(u"WORKLOG_FIRST_PAINT"_s, m_note);
        environment.insert(u"WORKLOG_FIRST_ROWS"_s, QString::number(rows));
        if (stays)
            environment.insert(u"WORKLOG_STAY"_s, u"1"_s);
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::ForwardedChannels);
        m_begin = Now();
        m_process.start(program, QStringList());
    }
    ~ProbedProcess()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    bool WaitForEnd() { return m_process.waitForFinished(60000); }
    qint64 Id() const { return m_process.processId(); }

    /// Nothing while the window is not painted.
    bool Painted(FirstPaint &paint) const
    {
        QFile file(m_note);
        if (!file.open(QIODevice::ReadOnly))
            return false;
        const QList<QByteArray> numbers = file.readLine().trimmed().split(' ');
        if (numbers.size() != 2)
            return false;
        paint = {numbers[0].toDouble() - m_begin, numbers[1].toDouble()};
        return true;
    }

private:
    QTemporaryDir m_folder;
    QString m_note;
    QProcess m_process;
    double m_begin = 0;
};

/// How often all threads of the process have given up the processor to wait.
int WaitsOf(qint64 process)
{
    int waits = 0;
    QProcess cat;
    cat.start(u"sh"_s, {u"-c"_s, u"cat /proc/%1/task/*/status"_s.arg(process)});
    cat.waitForFinished();
    for (const QByteArray &line : cat.readAllStandardOutput().split('\n')) {
        if (line.startsWith("voluntary_ctxt_switches:"))
            waits += line.split(':').last().trimmed().toInt();
    }
    return waits;
}

} // namespace

FirstPaint StartUntilPainted(const QString &program, int rows)
{
    ProbedProcess process(program, rows, false);
    FirstPaint paint;
    if (!process.WaitForEnd() || !process.Painted(paint))
        throw std::runtime_error("never painted: " + program.toStdString());
    return paint;
}

int IdleWakeUps(const QString &program, int rows, int milliseconds)
{
    const ProbedProcess process(program, rows, true);
    FirstPaint paint;
    while (!process.Painted(paint))
        QThread::msleep(20);
    QThread::msleep(2000); // what follows the first paint is over then
    const int before = WaitsOf(process.Id());
    QThread::msleep(static_cast<unsigned long>(milliseconds));
    return WaitsOf(process.Id()) - before;
}
