// Starts at the same moment, and places where no lock can be held.

#include "tests/support/Deadline.h"
#include "tests/support/SampleCompany.h"
#include "tests/support/Soak.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

class LockRaces : public testing::Test
{
protected:
    LockRaces() { BuildSampleCompanies(m_folder.path(), {SampleCompany()}); }

    /// Reports "window" or the message that it told instead, and holds on until it is told to end.
    static void Start(QProcess &process, const QString &folder)
    {
        process.start(QStringLiteral(STARTED_PROGRAM), {folder});
    }
    static QByteArray Report(QProcess &process)
    {
        QByteArray line;
        while (!line.endsWith('\n') && process.waitForReadyRead(DeadlineMilliseconds))
            line += process.readAllStandardOutput();
        return line.trimmed();
    }
    static void End(QProcess &process)
    {
        process.closeWriteChannel();
        EXPECT_TRUE(process.waitForFinished(DeadlineMilliseconds));
    }
    QByteArray ReportOfOne(const QString &folder)
    {
        QProcess process;
        Start(process, folder);
        const QByteArray report = Report(process);
        End(process);
        return report;
    }

    QTemporaryDir m_folder{SampleFolderTemplate()};
};

const QByteArray Refused = "Error 70; Worklog Remote is already running.";

} // namespace

TEST_F(LockRaces, OfTwoStartsAlwaysOneOpensItsWindow)
{
    const int races = Rounds(12, 500);
    for (int race = 0; race < races; ++race) {
        std::array<QProcess, 2> programs;
        for (QProcess &program : programs)
            Start(program, m_folder.path());
        std::array<QByteArray, 2> reports = {Report(programs[0]), Report(programs[1])};
        std::sort(reports.begin(), reports.end());
        ASSERT_EQ(reports[0], Refused) << "race " << race;
        ASSERT_EQ(reports[1], "window") << "race " << race;
        for (QProcess &program : programs)
            End(program);
    }
    TellCount("races of two starts", races);
}

TEST_F(LockRaces, TheLockOfADeadProcessIsTaken)
{
    QProcess dead;
    Start(dead, m_folder.path());
    ASSERT_EQ(Report(dead), "window");
    EXPECT_EQ(ReportOfOne(m_folder.path()), Refused);
    dead.kill();
    ASSERT_TRUE(dead.waitForFinished(DeadlineMilliseconds));
    EXPECT_TRUE(QFile::exists(m_folder.filePath(u"WLRemote.txt"_s)));
    EXPECT_EQ(ReportOfOne(m_folder.path()), "window");
}

TEST_F(LockRaces, PlacesWithoutALockAreNamedAndNotCalledRunning)
{
    const QString lock = m_folder.filePath(u"WLRemote.txt"_s);
    ASSERT_EQ(::mkdir(QFile::encodeName(lock).constData(), 0700), 0); // a folder in the way
    const QByteArray report = ReportOfOne(m_folder.path());
    EXPECT_TRUE(report.startsWith("Error 75; The file cannot be created: " + lock.toUtf8()))
        << report.toStdString();
    // Also for an administrator, whom no permission stops: a medium that cannot be written.
    const QByteArray readOnly = ReportOfOne(u"/sys/kernel"_s);
    EXPECT_TRUE(
        readOnly.startsWith("Error 75; The file cannot be created: /sys/kernel/WLRemote.txt"))
        << readOnly.toStdString();
    const QByteArray gone = ReportOfOne(m_folder.filePath(u"gone"_s));
    EXPECT_TRUE(gone.startsWith(
        "Error 75; The file cannot be created: " + m_folder.filePath(u"gone"_s).toUtf8()))
        << gone.toStdString();
}
