// The built worklog-report as its own process.

#include "tests/report/ReportFixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

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
    QByteArray Written(const QString &name) const
    {
        QFile file(m_results.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    ReportFixture m_fixture{Company()};
    QTemporaryDir m_results;
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
