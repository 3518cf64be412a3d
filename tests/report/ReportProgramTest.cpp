// The built worklog-report as its own process.

#include "tests/report/ReportFixture.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// What ends a line of a message.
#ifdef Q_OS_WIN
const QByteArray LineEnd = "\r\n";
#else
const QByteArray LineEnd = "\n";
#endif

struct Ended
{
    int Status = -1;
    QByteArray Output;
    QByteArray Errors;
};

Ended Called(const QStringList &arguments, const QString &program = QStringLiteral(WORKLOG_REPORT))
{
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished());
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
        process.readAllStandardOutput(), process.readAllStandardError()};
}

/// A run with a temporary folder of its own, in which its copies are.
class ReportRun
{
public:
    ReportRun(const QStringList &arguments, const QString &temporaryFolder)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const QString &name : {u"TMPDIR"_s, u"TMP"_s, u"TEMP"_s})
            environment.insert(name, temporaryFolder);
        m_process.setProcessEnvironment(environment);
        m_process.start(QStringLiteral(WORKLOG_REPORT), arguments);
    }
    void Kill()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    int Status()
    {
        EXPECT_TRUE(m_process.waitForFinished());
        return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }
    QByteArray Errors() { return m_process.readAllStandardError(); }

private:
    QProcess m_process;
};

/// The databases below a folder.
QStringList CopiesIn(const QString &folder)
{
    QStringList copies;
    QDirIterator files(folder, {u"*.db"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        copies.append(files.next());
    return copies;
}

class ReportProgram : public testing::Test
{
protected:
    static SampleCompany Company()
    {
        SampleCompany company = ReportFixture::Company();
        company.Entries = {ReportFixture::Entry(QDate(2026, 3, 9), 15000, 1000000, u"1"_s)};
        return company;
    }
    QStringList InFolder(QStringList arguments) const
    {
        return arguments + QStringList{u"--folder"_s, m_fixture.Folder()};
    }
    /// Lets each run wait for the end of a write, when it has copied the other databases.
    void BeginAWrite() const
    {
        QFile journal(Database(u"ABCEntries"_s) + u"-journal"_s);
        ASSERT_TRUE(journal.open(QIODevice::WriteOnly));
        journal.write("something");
    }
    void EndTheWrite() const { QFile::remove(Database(u"ABCEntries"_s) + u"-journal"_s); }
    void WaitForCopies() const
    {
        const QDeadlineTimer deadline(10000);
        while (CopiesIn(m_temporary.path()).size() < 5 && !deadline.hasExpired())
            QThread::yieldCurrentThread();
        ASSERT_GE(CopiesIn(m_temporary.path()).size(), 5);
    }
    QString Database(const QString &name) const
    {
        return m_fixture.Folder() + u'/' + name + u"-WkLg.db"_s;
    }
    QByteArray Written(const QString &name) const
    {
        QFile file(m_results.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    ReportFixture m_fixture{Company()};
    QTemporaryDir m_results;
    QTemporaryDir m_temporary;
};

} // namespace

TEST_F(ReportProgram, WritesCsvToStandardOutputByDefault)
{
    const Ended ended = Called(InFolder({u"days"_s}));
    EXPECT_EQ(ended.Status, 0) << ended.Errors.toStdString();
    EXPECT_EQ(ended.Errors, QByteArray());
    EXPECT_TRUE(ended.Output.endsWith("2026-03-09,1.50,0.00,0.00,1.50,150.00\r\n"))
        << ended.Output.toStdString();
}

TEST_F(ReportProgram, WritesEachFormatIntoAFileOfItsName)
{
    for (const auto &[name, start] : std::map<QString, QByteArray>{
             {u"a.csv"_s, "\"Date\","}, {u"a.html"_s, "<!DOCTYPE html>"}, {u"a.pdf"_s, "%PDF-"}}) {
        const Ended ended
            = Called(InFolder({u"entries"_s, u"--output"_s, m_results.filePath(name)}));
        EXPECT_EQ(ended.Status, 0) << ended.Errors.toStdString();
        EXPECT_EQ(ended.Output, QByteArray());
        EXPECT_TRUE(Written(name).startsWith(start)) << name.toStdString();
    }
}

TEST_F(ReportProgram, FindsTheDatabasesBesideItself)
{
    const QString copy
        = m_fixture.Folder() + u'/' + QFileInfo(QStringLiteral(WORKLOG_REPORT)).fileName();
    ASSERT_TRUE(QFile::copy(QStringLiteral(WORKLOG_REPORT), copy));
    const Ended ended = Called({u"entries"_s}, copy);
    EXPECT_EQ(ended.Status, 0) << ended.Errors.toStdString();
    EXPECT_TRUE(ended.Output.contains("CONSULT"));
}

TEST_F(ReportProgram, TellsAFailureAndLeavesTheFormerReport)
{
    const QString output = m_results.filePath(u"a.csv"_s);
    ASSERT_EQ(Called(InFolder({u"days"_s, u"--output"_s, output})).Status, 0);
    const QByteArray before = Written(u"a.csv"_s);
    const Ended ended
        = Called(InFolder({u"days"_s, u"--company"_s, u"NONE"_s, u"--output"_s, output}));
    EXPECT_EQ(ended.Status, 1);
    EXPECT_EQ(
        ended.Errors, "worklog-report: There is no company \"NONE\"; there are: ABC" + LineEnd);
    EXPECT_EQ(Written(u"a.csv"_s), before);
}

TEST_F(ReportProgram, TellsThatAFileCannotBeWritten)
{
    const QString output = m_results.filePath(u"nowhere/a.csv"_s);
    const Ended ended = Called(InFolder({u"days"_s, u"--output"_s, output}));
    EXPECT_EQ(ended.Status, 1);
    EXPECT_TRUE(ended.Errors.startsWith(
        "worklog-report: The report cannot be written to " + output.toUtf8()))
        << ended.Errors.toStdString();
}

TEST_F(ReportProgram, CalledWronglyPointsToItsHelp)
{
    const Ended ended = Called({u"hours"_s});
    EXPECT_EQ(ended.Status, 2);
    EXPECT_EQ(ended.Errors,
        "worklog-report: say which report: entries or days. See worklog-report --help." + LineEnd);
    EXPECT_EQ(ended.Output, QByteArray());
}

TEST_F(ReportProgram, ShowsItsHelpAndItsVersion)
{
    EXPECT_TRUE(Called({u"--help"_s}).Output.startsWith("worklog-report entries|days"));
    EXPECT_EQ(Called({u"--help"_s}).Status, 0);
    EXPECT_TRUE(Called({u"--version"_s}).Output.startsWith("worklog-report "));
    EXPECT_EQ(Called({u"--version"_s}).Status, 0);
}

TEST_F(ReportProgram, RemovesTheCopiesOfARunThatWasKilled)
{
    BeginAWrite();
    ReportRun killed(InFolder({u"days"_s}), m_temporary.path());
    WaitForCopies();
    killed.Kill();
    EXPECT_FALSE(CopiesIn(m_temporary.path()).isEmpty());
    EndTheWrite();
    EXPECT_EQ(ReportRun(InFolder({u"days"_s}), m_temporary.path()).Status(), 0);
    EXPECT_EQ(
        QDir(m_temporary.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList());
}

TEST_F(ReportProgram, LeavesTheCopiesOfARunThatIsStillReading)
{
    BeginAWrite();
    ReportRun slow(InFolder({u"days"_s}), m_temporary.path());
    WaitForCopies();
    const QStringList before = CopiesIn(m_temporary.path());
    const ReportFixture other(Company());
    EXPECT_EQ(
        ReportRun({u"days"_s, u"--folder"_s, other.Folder()}, m_temporary.path()).Status(), 0);
    EXPECT_EQ(CopiesIn(m_temporary.path()), before);
    EndTheWrite();
    EXPECT_EQ(slow.Status(), 0) << slow.Errors().toStdString();
    EXPECT_EQ(CopiesIn(m_temporary.path()), QStringList());
}

TEST_F(ReportProgram, LeavesFoldersOfThatNameThatItHasNotMade)
{
    const QDir temporary(m_temporary.path());
    ASSERT_TRUE(temporary.mkpath(u"worklog-report-abcdef"_s));
    ASSERT_TRUE(QFile::copy(
        Database(u"Company"_s), temporary.filePath(u"worklog-report-abcdef/Company-WkLg.db"_s)));
    EXPECT_EQ(ReportRun(InFolder({u"days"_s}), m_temporary.path()).Status(), 0);
    EXPECT_EQ(CopiesIn(m_temporary.path()),
        QStringList{temporary.filePath(u"worklog-report-abcdef/Company-WkLg.db"_s)});
}
