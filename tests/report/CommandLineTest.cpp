// How worklog-report is called.

#include "report/CommandLine.h"

#include "tests/support/PrintQt.h"

#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

CommandLine Parse(const QString &line)
{
    return ParseCommandLine(line.split(u' ', Qt::SkipEmptyParts));
}

} // namespace

TEST(ReportCommandLine, TakesEveryOption)
{
    const CommandLine line = Parse(
        u"days --company ABC --from 2026-03-01 --to 2026-03-31 --customer 0100 --project 1000 "
        u"--activity CONSULT --output a.b/march.PDF --folder /home/ada/worklog --totals"_s);
    ASSERT_EQ(line.What, CommandLine::Wish::MakeReport) << line.Fault.toStdString();
    const ReportRequest &request = line.Request;
    EXPECT_EQ(request.Content, ReportContent::Days);
    EXPECT_EQ(request.Format, ReportFormat::Pdf);
    EXPECT_EQ(request.Company, u"ABC"_s);
    EXPECT_EQ(request.From, QDate(2026, 3, 1));
    EXPECT_EQ(request.To, QDate(2026, 3, 31));
    EXPECT_EQ(request.Customer, u"0100"_s);
    EXPECT_EQ(request.Project, u"1000"_s);
    EXPECT_EQ(request.Activity, u"CONSULT"_s);
    EXPECT_EQ(request.Output, u"a.b/march.PDF"_s);
    EXPECT_EQ(request.Folder, u"/home/ada/worklog"_s);
    EXPECT_TRUE(request.Totals);
}

TEST(ReportCommandLine, NeedsNothingButTheReportsName)
{
    const CommandLine line = Parse(u"entries"_s);
    ASSERT_EQ(line.What, CommandLine::Wish::MakeReport);
    EXPECT_EQ(line.Request.Content, ReportContent::Entries);
    EXPECT_EQ(line.Request.Format, ReportFormat::Csv);
    EXPECT_TRUE(line.Request.Output.isEmpty());
    EXPECT_TRUE(line.Request.Folder.isEmpty());
    EXPECT_FALSE(line.Request.From.isValid());
    EXPECT_FALSE(line.Request.Totals);
}

TEST(ReportCommandLine, TakesACodeThatBeginsWithADash)
{
    EXPECT_EQ(ParseCommandLine({u"days"_s, u"--customer=-7"_s}).Request.Customer, u"-7"_s);
}

TEST(ReportCommandLine, SaysWhatIsWrong)
{
    struct Case
    {
        const char *Line;
        const char *Fault;
    };
    const std::vector<Case> cases = {
        {"", "say which report: entries or days"},
        {"hours", "say which report: entries or days"},
        {"entries days", "say which report: entries or days"},
        {"entries --from 03/09/2026", "--from: \"03/09/2026\" is no day; write it like 2026-03-09"},
        {"entries --to 2026-02-30", "--to: \"2026-02-30\" is no day; write it like 2026-03-09"},
        {"entries --from 2026-03-02 --to 2026-03-01", "--to lies before --from"},
        {"entries --format xls", "--format: \"xls\" is none of csv, html, pdf"},
        {"entries --format pdf", "a PDF needs a file: name it with --output"},
        {"entries --output ABCEntries-WkLg.db",
            "--output: the name must end in .csv, .html or .pdf"},
        {"entries --output report", "--output: the name must end in .csv, .html or .pdf"},
        {"entries --output a.csv --format html", "--output ends in .csv, but --format is html"},
        {"entries --company ABC --company XYZ", "--company is given twice"},
    };
    for (const Case &one : cases) {
        const CommandLine line = Parse(QString::fromLatin1(one.Line));
        EXPECT_EQ(line.What, CommandLine::Wish::NotUnderstood) << one.Line;
        EXPECT_EQ(line.Fault, QString::fromLatin1(one.Fault)) << one.Line;
    }
    for (const char *line : {"entries --colour", "entries --company"}) {
        EXPECT_EQ(Parse(QString::fromLatin1(line)).What, CommandLine::Wish::NotUnderstood) << line;
        EXPECT_FALSE(Parse(QString::fromLatin1(line)).Fault.isEmpty()) << line;
    }
}

TEST(ReportCommandLine, ExplainsEveryOptionInTheHelpAndInTheManual)
{
    QFile file(QStringLiteral(WORKLOG_REPORT_MANUAL));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString manual = QString::fromUtf8(file.readAll()).remove(u'\\');
    const QString help = HelpText();
    for (const char *option : {"company", "from", "to", "customer", "project", "activity", "output",
             "format", "totals", "folder", "help", "version"}) {
        const QString text = u"--"_s + QString::fromLatin1(option);
        EXPECT_TRUE(help.contains(text)) << option;
        EXPECT_TRUE(manual.contains(text)) << option;
    }
    // And nothing that there is not.
    for (const QString &text : {help, manual}) {
        const QRegularExpression option(u"--([a-z]+)"_s);
        for (auto match = option.globalMatch(text); match.hasNext();) {
            const QString name = match.next().captured(1);
            const CommandLine line = ParseCommandLine({u"--"_s + name, u"x"_s});
            EXPECT_FALSE(line.Fault.contains(u"nknown option"_s)) << name.toStdString();
        }
    }
}
