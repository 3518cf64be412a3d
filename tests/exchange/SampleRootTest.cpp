#include "exchange/SampleData.h"
#include "platform/Paths.h"
#include "tests/exchange/Installation.h"
#include "tests/support/Deadline.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

/// Every value that a column has in either company.
QSet<QString> ValuesOf(const QString &table, const QString &column)
{
    QSet<QString> values;
    for (const auto &company : {SampleTablesOfABC(), SampleTablesOfXYZ()}) {
        for (const SampleTable &candidate : company) {
            if (candidate.Name != table)
                continue;
            const qsizetype at = candidate.Header.indexOf(column);
            EXPECT_GE(at, 0) << qPrintable(column);
            for (const QStringList &record : candidate.Records)
                values.insert(record[at]);
        }
    }
    return values;
}

QStringList FilesUnder(const QString &folder)
{
    QStringList files;
    QDirIterator at(folder, QDir::Files, QDirIterator::Subdirectories);
    while (at.hasNext())
        files.append(QDir(folder).relativeFilePath(at.next()));
    files.sort();
    return files;
}

TEST(SampleRoot, TheClientInItSynchronises)
{
    const Installation place;
    const QTemporaryDir parent;
    const QString root = parent.filePath(u"new/root"_s);
    ASSERT_EQ(place.Call({u"--sample"_s, root}).ExitStatus, 0);
    EXPECT_TRUE(QFile::exists(JoinPath(root, u"soa/startup.m4p"_s)));
    QFile settings(JoinPath(root, u"launcher/sota.ini"_s));
    ASSERT_TRUE(settings.open(QIODevice::ReadOnly));
    EXPECT_EQ(settings.readAll(), "[Active Server]\nserver;10000;\n");

    QProcess client;
    client.start(JoinPath(root, u"Home/pvxwin32.exe"_s), {u"-hd"_s, place.Program});
    ASSERT_TRUE(client.waitForFinished(DeadlineMilliseconds));

    EXPECT_EQ(client.exitCode(), 0) << client.readAllStandardError().constData();
    EXPECT_EQ(place.Companies(), (QStringList{u"ABC"_s, u"XYZ"_s}));
    EXPECT_GT(place.CustomerNames(u"ABC"_s).size(), 50);
}

TEST(SampleRoot, ARootWithAWorklogFolderIsRefusedUntouched)
{
    const Installation place;
    const QStringList before = FilesUnder(place.Root);
    const Outcome outcome = place.Call({u"--sample"_s, place.Root});
    EXPECT_EQ(outcome.ExitStatus, 1);
    EXPECT_TRUE(outcome.Errors.contains(u"worklog"_s));
    EXPECT_EQ(FilesUnder(place.Root), before);
}

TEST(SampleRoot, EveryFlagHasBothValues)
{
    const QSet<QString> both = {u"Y"_s, u"N"_s};
    int flags = 0;
    for (const SampleTable &table : SampleTablesOfABC()) {
        for (const QString &column : table.Header) {
            const QSet<QString> values = ValuesOf(table.Name, column);
            if (values.intersects(both)) {
                ++flags;
                EXPECT_EQ(values, both) << qPrintable(table.Name + u'.' + column);
            }
        }
    }
    EXPECT_EQ(flags, 7 + 3 + 1 + 2); // Options, Employee, Customers, Activities
}

TEST(SampleRoot, EveryDefaultBillingStatusAndBothRatePermissionsOccur)
{
    EXPECT_EQ(ValuesOf(u"Activities"_s, u"Dflt_Billing_Status"_s),
        (QSet<QString>{u""_s, u"1"_s, u"2"_s, u"3"_s}));
    EXPECT_EQ(ValuesOf(u"Employee"_s, u"Rate_Permission"_s), (QSet<QString>{u"1"_s, u"4"_s}));
}

TEST(SampleRoot, RatesAreZeroAndNotAtEveryLevel)
{
    for (const QString &table :
        {u"Employee"_s, u"Divisions"_s, u"Customers"_s, u"Projects"_s, u"Activities"_s}) {
        const QSet<QString> rates = ValuesOf(table, u"Rate"_s);
        EXPECT_TRUE(rates.contains(u"0"_s)) << qPrintable(table);
        EXPECT_GT(rates.size(), 1) << qPrintable(table);
    }
    EXPECT_TRUE(ValuesOf(u"Customers"_s, u"Division_Number"_s).contains(QString()));
}

/// The records of a table of ABC that begin with these cells.
std::vector<QStringList> RecordsOfABC(const QString &table, const QStringList &cells)
{
    std::vector<QStringList> records;
    for (const SampleTable &candidate : SampleTablesOfABC()) {
        for (const QStringList &record : candidate.Records) {
            if (candidate.Name == table && record.first(cells.size()) == cells)
                records.push_back(record);
        }
    }
    return records;
}

TEST(SampleRoot, ABCLetsANewcomerEnterTimeAndExpensesAtOnce)
{
    ASSERT_EQ(RecordsOfABC(u"Options"_s, {}).size(), 1U);
    // From Billing_Option_Switch on: switch, expenses, project required, name, synchronisation.
    EXPECT_EQ(RecordsOfABC(u"Options"_s, {}).front().mid(9),
        (QStringList{u"Y"_s, u"Y"_s, u"N"_s, u"Sample Ledger"_s, u"0"_s}));
    EXPECT_EQ(RecordsOfABC(u"Employee"_s, {u"007"_s}).front()[5], u"4"_s);
    EXPECT_EQ(RecordsOfABC(u"Customers"_s, {u"0100"_s}).size(), 1U);
    EXPECT_EQ(RecordsOfABC(u"Projects"_s, {u"0100"_s, u"1000"_s}).size(), 1U);
    EXPECT_EQ(RecordsOfABC(u"Activities"_s, {u"CONSULT"_s, u"Consulting"_s, u"N"_s}).size(), 1U);
    EXPECT_EQ(RecordsOfABC(u"Activities"_s, {u"MEALS"_s, u"Meals"_s, u"Y"_s}).size(), 1U);
}

} // namespace
