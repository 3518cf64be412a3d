// Pipes and devices where files are expected: refused at once, and left as they are. A disk without
// space.

#include "report/Writing.h"
#include "tests/report/ReportFixture.h"
#include "tests/support/Raised.h"
#include "tests/support/SmallDisk.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

void MakePipe(const QString &path)
{
    ASSERT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
}

bool IsPipe(const QString &path)
{
    struct stat found = {};
    return ::lstat(QFile::encodeName(path).constData(), &found) == 0 && S_ISFIFO(found.st_mode);
}

class SpecialFiles : public testing::Test
{
protected:
    QString Database(const QString &name) const
    {
        return m_fixture.Folder() + u'/' + name + u"-WkLg.db"_s;
    }
    /// What the run that failed has written to standard error.
    std::string Refusal(const QStringList &arguments) const
    {
        QProcess process;
        process.start(QStringLiteral(WORKLOG_REPORT),
            QStringList{u"days"_s, u"--folder"_s, m_fixture.Folder()} + arguments);
        EXPECT_TRUE(process.waitForFinished(10000)) << "it waits for another process";
        EXPECT_EQ(process.exitCode(), 1);
        return process.readAllStandardError().toStdString();
    }

    ReportFixture m_fixture{ReportFixture::Company()};
    QTemporaryDir m_results;
};

} // namespace

TEST_F(SpecialFiles, APipeInPlaceOfADatabaseIsRefusedAtOnce)
{
    const QString entries = Database(u"ABCEntries"_s);
    ASSERT_TRUE(QFile::remove(entries));
    MakePipe(entries);
    EXPECT_EQ(Refusal({}),
        "worklog-report: The database is not a regular file: " + entries.toStdString() + "\n");
}

TEST_F(SpecialFiles, ADeviceInPlaceOfADatabaseIsRefusedAtOnce)
{
    const QString entries = Database(u"ABCEntries"_s);
    ASSERT_TRUE(QFile::remove(entries));
    ASSERT_TRUE(QFile::link(u"/dev/zero"_s, entries));
    EXPECT_EQ(Refusal({}),
        "worklog-report: The database is not a regular file: " + entries.toStdString() + "\n");
}

TEST_F(SpecialFiles, ALinkToADatabaseIsReadLikeTheDatabase)
{
    const QString entries = Database(u"ABCEntries"_s);
    const QString elsewhere = m_results.filePath(u"entries.db"_s);
    ASSERT_TRUE(QFile::rename(entries, elsewhere));
    ASSERT_TRUE(QFile::link(elsewhere, entries));
    EXPECT_EQ(m_fixture.Read().Company.Company_Code, u"ABC"_s);
}

TEST_F(SpecialFiles, APipeIsNoPlaceForAReport)
{
    const QString output = m_results.filePath(u"a.csv"_s);
    MakePipe(output);
    EXPECT_EQ(Refusal({u"--output"_s, output}),
        "worklog-report: The report cannot be written to " + output.toStdString()
            + ": this is not a regular file\n");
    EXPECT_TRUE(IsPipe(output));
    EXPECT_EQ(
        QDir(m_results.path()).entryList(QDir::Files | QDir::System), QStringList{u"a.csv"_s});
}

// Not with a device of the system: a report that replaced it would damage the computer.
TEST_F(SpecialFiles, ALinkToAPipeIsNoPlaceForAReport)
{
    const QString output = m_results.filePath(u"a.csv"_s);
    MakePipe(m_results.filePath(u"pipe"_s));
    ASSERT_TRUE(QFile::link(m_results.filePath(u"pipe"_s), output));
    EXPECT_EQ(Refusal({u"--output"_s, output}),
        "worklog-report: The report cannot be written to " + output.toStdString()
            + ": this is not a regular file\n");
    EXPECT_TRUE(IsPipe(m_results.filePath(u"pipe"_s)));
}

TEST_F(SpecialFiles, AFolderIsNoPlaceForAReport)
{
    const QString output = m_results.filePath(u"a.csv"_s);
    ASSERT_TRUE(QDir().mkpath(output));
    EXPECT_EQ(Refusal({u"--output"_s, output}),
        "worklog-report: The report cannot be written to " + output.toStdString()
            + ": this is a folder\n");
}

TEST_F(SpecialFiles, AFullDiskIsReportedAndLeavesThePreviousReport)
{
    const QString output = m_results.filePath(u"days.csv"_s);
    WriteReport("before", output);
    Raised raised;
    {
        const SmallDisk full(16);
        raised = RaisedBy([&] { WriteReport(QByteArray(100, 'x'), output); });
    }
    EXPECT_TRUE(raised.Names(output)) << qPrintable(raised.Description);
    QFile file(output);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "before");
    EXPECT_EQ(QDir(m_results.path()).entryList(QDir::Files), QStringList{u"days.csv"_s});
}
