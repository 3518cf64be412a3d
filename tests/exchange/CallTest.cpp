#include "tests/exchange/Installation.h"

#include "platform/clsInstanceLock.h"
#include "platform/Paths.h"
#include "tests/support/OtherProgram.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

QProcessEnvironment WithoutDisplay()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(u"DISPLAY"_s);
    environment.remove(u"WAYLAND_DISPLAY"_s);
    environment.remove(u"QT_QPA_PLATFORM"_s);
    return environment;
}

QStringList JournalsIn(const Installation &place)
{
    return QStringList(place.LocalFiles().keys()).filter(u"-journal"_s);
}

TEST(Call, AnythingElseShowsTheUsage)
{
    const Installation place;
    for (const QStringList &arguments : {QStringList(), {u"-hd"_s}, {u"--sample"_s}, {u"-x"_s}}) {
        const Outcome outcome = place.Call(arguments);
        EXPECT_EQ(outcome.ExitStatus, 2);
        EXPECT_TRUE(outcome.Errors.contains(u"--sample <root>"_s)) << qPrintable(outcome.Errors);
        EXPECT_TRUE(outcome.Output.isEmpty());
    }
}

TEST(Call, HelpGoesToStandardOutput)
{
    const Outcome outcome = Installation().Call({u"--help"_s});
    EXPECT_EQ(outcome.ExitStatus, 0);
    EXPECT_TRUE(outcome.Output.contains(u"-hd"_s));
    EXPECT_TRUE(outcome.Errors.isEmpty());
}

TEST(Call, AFirstSynchronisationWritesEverythingAndLeavesNothingElse)
{
    const Installation place; // its program folder has a blank and a letter outside ASCII
    const Outcome outcome = place.Synchronise();
    EXPECT_EQ(outcome.ExitStatus, 0) << qPrintable(outcome.Errors);
    QStringList names = QDir(place.Program).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    EXPECT_EQ(names.join(u' '),
        u"ABCActivities-WkLg.db ABCCustomers-WkLg.db ABCDivisions-WkLg.db ABCEmployee-WkLg.db "_s
        u"ABCMultiplier-WkLg.db ABCOptions-WkLg.db ABCProjects-WkLg.db Company-WkLg.db"_s);
    EXPECT_EQ(place.CustomerNames(u"ABC"_s), (QStringList{u"Acme"_s, u"Brünnhof"_s}));
    EXPECT_EQ(place.Companies(), QStringList{u"ABC"_s});
    EXPECT_TRUE(place.Log().contains(u"ABC: written: Options 1, Employee 1"_s));
    EXPECT_FALSE(QFile::exists(place.UploadPath(u"ABC"_s, QString())));
}

TEST(Call, RecordsAreFoundByTheirKeys)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    const auto tables = place.Open();
    tables->Projects.Handle = tables->Main.OpenTable(u"ABCProjects-WkLg"_s);
    EXPECT_TRUE(tables->Projects.Find(0, u"0100           1000           "_s));
    tables->Activities.Handle = tables->Main.OpenTable(u"ABCActivities-WkLg"_s);
    ASSERT_TRUE(tables->Activities.Find(0, u"MEALS          "_s));
    ActivityRecord meals;
    ASSERT_TRUE(tables->Activities.ReadActivity(meals));
    EXPECT_EQ(meals.Activity_Number, u"MEALS"_s);
    EXPECT_EQ(meals.Expense, u"Y"_s);
    EXPECT_EQ(meals.Unit_Cost, Currency::FromScaled(4250));
    EXPECT_EQ(meals.Dflt_Billing_Status, QString());
    tables->Divisions.Handle = tables->Main.OpenTable(u"ABCDivisions-WkLg"_s);
    EXPECT_TRUE(tables->Divisions.Find(0, u"01"_s));
}

TEST(Call, OtherProgramsSeeTypedColumns)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    OtherProgram other(JoinPath(place.Program, u"ABCCustomers-WkLg.db"_s));
    EXPECT_EQ(
        other.Values(u"SELECT type FROM pragma_table_info('ABCCustomers-WkLg') ORDER BY cid DESC "_s
                     u"LIMIT 1"_s),
        u"INTEGER"_s);
    EXPECT_EQ(other.Values(u"SELECT typeof(Rate) || Rate || '|' || typeof(Customer_Number) || "_s
                           u"Customer_Number FROM [ABCCustomers-WkLg] LIMIT 1"_s),
        u"integer950000|text0100"_s);
}

TEST(Call, ItWorksWhereThereIsNoDisplay)
{
    const Installation place;
    const Outcome outcome = place.Call({u"-hd"_s, place.Program}, WithoutDisplay());
    EXPECT_EQ(outcome.ExitStatus, 0) << qPrintable(outcome.Errors);
}

TEST(Call, ItWorksWhereTheDisplayCannotBeReached)
{
    const Installation place;
    for (const QString &variable : {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s}) {
        QProcessEnvironment environment = WithoutDisplay();
        environment.insert(variable, u":7654"_s);
        const Outcome outcome = place.Call({u"-hd"_s, place.Program}, environment);
        EXPECT_EQ(outcome.ExitStatus, 0) << qPrintable(variable) << qPrintable(outcome.Errors);
    }
}

TEST(Call, AMissingProgramFolderIsLogged)
{
    const Installation place;
    const Outcome outcome = place.Call({u"-hd"_s, u"x"_s, place.Program + u"*2"_s});
    EXPECT_EQ(outcome.ExitStatus, 1);
    EXPECT_TRUE(outcome.Errors.contains(u"There is no such program folder"_s));
    EXPECT_TRUE(place.Log().contains(u"Error: There is no such program folder"_s));
}

TEST(Call, AMissingWorklogFolderIsTold)
{
    const Installation place;
    ASSERT_TRUE(QDir(place.Worklog).removeRecursively());
    const Outcome outcome = place.Synchronise();
    EXPECT_EQ(outcome.ExitStatus, 1);
    EXPECT_TRUE(outcome.Errors.contains(u"worklog: the folder is missing"_s));
}

TEST(Call, NamesUnderTheRootAreFoundInAnyCase)
{
    const Installation place;
    const QString shouting = JoinPath(place.Root, u"WORKLOG"_s);
    ASSERT_TRUE(
        QDir().rename(JoinPath(place.Worklog, u"ABC"_s), JoinPath(place.Worklog, u"abc"_s)));
    ASSERT_TRUE(QFile::rename(
        JoinPath(place.Worklog, u"Company.csv"_s), JoinPath(place.Worklog, u"COMPANY.CSV"_s)));
    ASSERT_TRUE(QDir().rename(place.Worklog, shouting));
    const Outcome outcome = place.Synchronise();
    EXPECT_EQ(outcome.ExitStatus, 0) << qPrintable(outcome.Errors);
    EXPECT_TRUE(QFile::exists(JoinPath(shouting, u"exchange.log"_s)));
}

TEST(Call, ALogThatCannotBeWrittenDoesNotStopTheRun)
{
    const Installation place;
    ASSERT_TRUE(QDir(place.Worklog).mkdir(u"exchange.log"_s));
    const Outcome outcome = place.Synchronise();
    EXPECT_EQ(outcome.ExitStatus, 0);
    EXPECT_EQ(outcome.Errors.count(u"the log cannot be written"_s), 1);
    EXPECT_EQ(place.Companies(), QStringList{u"ABC"_s});
}

TEST(Call, OneFolderIsSynchronisedByOneClientAtATime)
{
    const Installation place;
    clsInstanceLock lock;
    lock.CreateAndHold(JoinPath(place.Program, u"exchange.lock"_s));
    const Outcome refused = place.Synchronise();
    EXPECT_EQ(refused.ExitStatus, 1);
    EXPECT_TRUE(refused.Errors.contains(
        u"Worklog Remote is open in the folder %1, or another synchronization is at work there"_s
            .arg(place.Program)))
        << refused.Errors.toStdString();
    lock.Close();
    EXPECT_EQ(place.Synchronise().ExitStatus, 0);
}

TEST(Call, ALockThatAKilledRunHasLeftHoldsNobodyUp)
{
    for (const QByteArray &contents : {QByteArray(), QByteArray("4711\npvxwin32.exe\nhere\n")}) {
        const Installation place;
        QFile lock(JoinPath(place.Program, u"exchange.lock"_s));
        ASSERT_TRUE(lock.open(QIODevice::WriteOnly));
        ASSERT_EQ(lock.write(contents), contents.size());
        lock.close();
        EXPECT_EQ(place.Synchronise().ExitStatus, 0);
        EXPECT_FALSE(lock.exists());
    }
}

TEST(Call, AFileInThePlaceOfTheStagingFolderIsNamedAndStays)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    const QString staging = JoinPath(place.Program, u"exchange-staging"_s);
    QFile file(staging);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const QMap<QString, QByteArray> before = place.LocalFiles();
    const Outcome outcome = place.Synchronise();
    EXPECT_EQ(outcome.ExitStatus, 1);
    EXPECT_TRUE(outcome.Errors.contains(staging + u": this is in the place of a folder"_s))
        << qPrintable(outcome.Errors);
    EXPECT_EQ(place.LocalFiles(), before);
}

#ifdef Q_OS_UNIX // On Windows only administrators make symbolic links

TEST(Call, ThroughALinkTheRootIsTheOneThatItWasCalledUnder)
{
    const Installation place;
    const QTemporaryDir other;
    const QString home = other.filePath(u"root/Home"_s);
    ASSERT_TRUE(QDir().mkpath(home));
    const QString link = JoinPath(home, u"pvxwin32.exe"_s);
    ASSERT_TRUE(QFile::link(place.Client(), link));
    const auto call = [&](const QString &program, const QString &folder) {
        QProcess client;
        client.setWorkingDirectory(folder);
        client.start(program, {u"-hd"_s, u"x"_s, place.Program});
        EXPECT_TRUE(client.waitForFinished(-1));
        return QString::fromUtf8(client.readAllStandardError());
    };
    const QString missing = other.filePath(u"root/worklog"_s) + u": the folder is missing"_s;
    EXPECT_TRUE(call(link, home).contains(missing)) << "refused without touching the other root";
    EXPECT_EQ(place.Log(), QString());
    ASSERT_TRUE(QDir().rename(place.Worklog, other.filePath(u"root/worklog"_s)));
    EXPECT_EQ(call(link, home), QString());
    EXPECT_EQ(place.Companies(), QStringList{u"ABC"_s});
}

#endif

TEST(Call, LeftoversOfAKilledRunAreRemoved)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    const QString staging = JoinPath(place.Program, u"exchange-staging"_s);
    ASSERT_TRUE(QDir().mkdir(staging));
    ASSERT_TRUE(QFile::copy(JoinPath(place.Program, u"ABCOptions-WkLg.db"_s),
        JoinPath(staging, u"ABCOptions-WkLg.db"_s)));
    EXPECT_EQ(place.Synchronise().ExitStatus, 0);
    EXPECT_FALSE(QFile::exists(staging));
    EXPECT_TRUE(JournalsIn(place).isEmpty());
}

} // namespace
