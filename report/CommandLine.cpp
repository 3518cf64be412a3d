#include "report/CommandLine.h"

#include <QCommandLineParser>
#include <QFileInfo>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

const QString DateFormat = QStringLiteral("yyyy-MM-dd");

CommandLine Fault(const QString &text)
{
    CommandLine line;
    line.Fault = text;
    return line;
}

std::optional<ReportFormat> FormatNamed(const QString &name)
{
    if (name == "csv"_L1)
        return ReportFormat::Csv;
    if (name == "html"_L1)
        return ReportFormat::Html;
    if (name == "pdf"_L1)
        return ReportFormat::Pdf;
    return {};
}

void AddOptions(QCommandLineParser &parser)
{
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    for (const QString &flag : {u"help"_s, u"version"_s, u"totals"_s})
        parser.addOption(QCommandLineOption(flag));
    for (const QString &option : {u"folder"_s, u"company"_s, u"from"_s, u"to"_s, u"customer"_s,
             u"project"_s, u"activity"_s, u"format"_s, u"output"_s})
        parser.addOption(QCommandLineOption(option, QString(), option));
}

/// Reads the dates; the result is the fault, empty when there is none.
QString ReadDates(const QCommandLineParser &parser, ReportRequest &request)
{
    for (const auto &[option, date] : {std::pair<QString, QDate &>{u"from"_s, request.From},
             std::pair<QString, QDate &>{u"to"_s, request.To}}) {
        if (!parser.isSet(option))
            continue;
        date = QDate::fromString(parser.value(option), DateFormat);
        if (!date.isValid())
            return u"--%1: \"%2\" is no day; write it like 2026-03-09"_s.arg(
                option, parser.value(option));
    }
    if (request.From.isValid() && request.To.isValid() && request.To < request.From)
        return u"--to lies before --from"_s;
    return {};
}

/// Finds out the format from --format and the output's name, which must agree: an output of any
/// other name could be one of the databases.
QString ReadFormat(const QCommandLineParser &parser, ReportRequest &request)
{
    request.Output = parser.value(u"output"_s);
    const QString named = parser.value(u"format"_s);
    if (parser.isSet(u"format"_s) && !FormatNamed(named))
        return u"--format: \"%1\" is none of csv, html, pdf"_s.arg(named);
    if (parser.isSet(u"output"_s)) {
        const QString suffix = QFileInfo(request.Output).suffix().toLower();
        if (!FormatNamed(suffix))
            return u"--output: the name must end in .csv, .html or .pdf"_s;
        if (!named.isEmpty() && named != suffix)
            return u"--output ends in .%1, but --format is %2"_s.arg(suffix, named);
        request.Format = *FormatNamed(suffix);
        return {};
    }
    request.Format = FormatNamed(named).value_or(ReportFormat::Csv);
    if (request.Format == ReportFormat::Pdf)
        return u"a PDF needs a file: name it with --output"_s;
    return {};
}

} // namespace

CommandLine ParseCommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    AddOptions(parser);
    if (!parser.parse(QStringList{u"worklog-report"_s} + arguments))
        return Fault(parser.errorText());
    CommandLine line;
    if (parser.isSet(u"help"_s)) {
        line.What = CommandLine::Wish::ShowHelp;
        return line;
    }
    if (parser.isSet(u"version"_s)) {
        line.What = CommandLine::Wish::ShowVersion;
        return line;
    }
    for (const QString &option : parser.optionNames()) {
        if (parser.optionNames().count(option) > 1)
            return Fault(u"--%1 is given twice"_s.arg(option));
    }
    const QStringList what = parser.positionalArguments();
    if (what != QStringList{u"entries"_s} && what != QStringList{u"days"_s})
        return Fault(u"say which report: entries or days"_s);

    ReportRequest &request = line.Request;
    request.Content = what.front() == "days"_L1 ? ReportContent::Days : ReportContent::Entries;
    request.Folder = parser.value(u"folder"_s);
    request.Company = parser.value(u"company"_s);
    request.Customer = parser.value(u"customer"_s);
    request.Project = parser.value(u"project"_s);
    request.Activity = parser.value(u"activity"_s);
    request.Totals = parser.isSet(u"totals"_s);
    QString fault = ReadDates(parser, request);
    if (fault.isEmpty())
        fault = ReadFormat(parser, request);
    if (!fault.isEmpty())
        return Fault(fault);
    line.What = CommandLine::Wish::MakeReport;
    return line;
}

QString HelpText()
{
    return uR"(worklog-report entries|days [option...]

Writes a report of the entries that Worklog Remote keeps. It only reads: it changes
and locks nothing, and works while Worklog Remote is open.

  entries              one line an entry
  days                 one line a day: the hours by billing status, expenses not counted

  --company CODE       of this company; without it, of the one last worked in
  --from DATE          from this day on, such as 2026-03-09
  --to DATE            up to and including this day
  --customer CODE      of this customer only
  --project CODE       of this project only
  --activity CODE      of this activity only
  --output FILE        where to; .csv, .html or .pdf at its end says what is written.
                       A file of that name is replaced. Without it: standard output
  --format FORMAT      csv or html, for standard output; csv without it
  --totals             end a CSV with lines of totals; the others always have them
  --folder FOLDER      the folder in which Worklog Remote lies; without it, that of
                       worklog-report itself
  --help               show this text
  --version            show the version

Exit status: 0 done, 1 failed (the reason is on standard error), 2 called wrongly.
)"_s;
}
