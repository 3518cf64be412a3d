// Times the program's windows against the limits.
//
// Called as windowbench <folder>, where <folder> holds the companies that bench.sh has made.

#include "app/clsApplication.h"
#include "bench/CompanyBench.h"
#include "bench/CompanyMaker.h"
#include "bench/MillionBench.h"
#include "bench/StartBench.h"

#include <QDir>
#include <QTemporaryDir>

#include <cstdio>
#include <exception>

using namespace Qt::StringLiterals;

namespace {

const std::vector<std::pair<QString, std::string>> Companies
    = {{u"10k"_s, "10,000"}, {u"100k"_s, "100,000"}};
constexpr int IdleMilliseconds = 10000;

QString ProgramIn(const QString &folder)
{
    for (const QString &name : {u"WorklogRemote"_s, u"WL.HLP"_s})
        QFile::copy(QStringLiteral(WORKLOG_BUILT_PROGRAMS) + u'/' + name, folder + u'/' + name);
    return folder + u"/WorklogRemote"_s;
}

QString BareWindow()
{
    return QCoreApplication::applicationDirPath() + u"/barewindow"_s;
}

void MeasureStart(const QString &folder, const std::string &size, Report &report)
{
    const QString place = folder + u"/program"_s;
    const QString program = ProgramIn(place);
    std::vector<double> bare;
    std::vector<double> started;
    Limits::Rows rows;
    const Pair read = TimePairs(
        [&] {
            Limits::Refresh(
                Limits::ReadCompany(place.toStdString(), MadeCompanyCode.toStdString()), {}, rows);
        },
        [&] {
            bare.push_back(StartUntilPainted(BareWindow(), 0).Milliseconds);
            started.push_back(StartUntilPainted(program, 2).Milliseconds);
        });
    report.Add({"started", size, Median(started), 1.3 * (read.Limit + Median(bare)), "ms",
        "1.3 x (" + Decimal(read.Limit) + " + " + Decimal(Median(bare)) + ")"});
}

double Megabytes(const QString &folder, const QString &pattern)
{
    double bytes = 0;
    for (const QFileInfo &file : QDir(folder).entryInfoList({pattern}, QDir::Files))
        bytes += static_cast<double>(file.size());
    return bytes / 1e6;
}

void MeasureResting(const QString &folder, Report &report)
{
    const QString place = folder + u"/program"_s;
    const QString program = ProgramIn(place);
    const double bare = StartUntilPainted(BareWindow(), 0).PeakKilobytes / 1e3;
    const double peak = StartUntilPainted(program, 2).PeakKilobytes / 1e3;
    const double data = Megabytes(place, u"*.db"_s) - Megabytes(place, u"*Customers*.db"_s);
    report.Add({"peak memory, listed window", "100,000 entries, 1,000,000 projects", peak,
        3 * data + bare, "MB", "3 x " + Decimal(data) + " + " + Decimal(bare)});
    report.Add({"wake-ups while idle", "10 s",
        static_cast<double>(IdleWakeUps(program, 2, IdleMilliseconds)), 0, "times", "none"});
}

/// A full synchronisation, by the client as its own process: it collects all entries and writes
/// the reference databases anew. The limit loads the same CSV files.
void MeasureClient(const QString &folder, Report &report)
{
    const QString root = folder + u"/accounting"_s;
    const QString place = folder + u"/program"_s;
    const QString entries = place + u"/BIGEntries-WkLg.db"_s;
    const QString kept = folder + u"/entries.kept"_s;
    QFile::copy(entries, kept);
    const QTemporaryDir loaded(folder + u"/loaded"_s);
    const Pair times = TimePairs(
        [&] {
            Limits::LoadCsv((root + u"/worklog/BIG"_s).toStdString(), loaded.path().toStdString());
        },
        [&] { Synchronise(root, place); },
        [&] {
            QFile::remove(entries);
            QFile::copy(kept, entries);
        });
    QFile::remove(entries);
    QFile::rename(kept, entries);
    report.Add({"full synchronisation", "100,000 entries, 1,000,000 projects", times.Work,
        2 * times.Limit, "ms", "2 x " + Decimal(times.Limit)});
}

/// How much longer work may take when there is ten times as much.
void AddGrowth(const CompanyBench &small, const CompanyBench &large, Report &report)
{
    constexpr double mostGrowth = 12;
    for (const auto &[work, milliseconds] : large.Times) {
        const double most = work == RowSelected ? MostSearchGrowth : mostGrowth;
        report.Add({"growth: " + work, "10,000 to 100,000", milliseconds / small.Times.at(work),
            most, "times", Decimal(most) + " times"});
    }
}

void MeasureCompanies(const QString &folder, Report &report)
{
    std::vector<std::unique_ptr<CompanyBench>> benches;
    for (const auto &[name, size] : Companies) {
        MeasureStart(folder + u'/' + name, size, report);
        auto bench = std::make_unique<CompanyBench>(folder + u'/' + name, size, report);
        bench->MeasureAll();
        benches.push_back(std::move(bench));
    }
    AddGrowth(*benches.front(), *benches.back(), report);
}

} // namespace

int main(int argc, char **argv)
{
    clsRecordedMessages messages;
    const clsApplication application(argc, argv, messages);
    QApplication::setQuitOnLastWindowClosed(false);
    const QString folder = QCoreApplication::arguments().value(1);
    Report report;
    try {
        MeasureCompanies(folder, report);
        MeasureSearchGrowth(folder + u"/customers10k"_s, folder + u"/customers100k"_s, report);
        MeasureClient(folder + u"/projects"_s, report);
        MeasureResting(folder + u"/projects"_s, report);
        const MillionBench million(folder + u"/million"_s, report);
        million.MeasureFind();
        million.MeasureLookup();
        million.MeasureWindow();
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 2;
    }
    return report.Print() ? 0 : 1;
}
