// What is wrong with the computer or the root is said in words that a user can act on.

#include "tests/exchange/Installation.h"

#include "platform/Paths.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QProcess>

#include <csignal>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

/// A run on a disk on which no file grows past the size; what it says.
QString RunOnSmallDisk(const Installation &place, rlim_t bytes)
{
    QProcess client;
    client.setChildProcessModifier([bytes] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {bytes, bytes};
        setrlimit(RLIMIT_FSIZE, &limit);
    });
    client.start(place.Client(), {u"-hd"_s, u"x"_s, place.Program});
    EXPECT_TRUE(client.waitForFinished(-1));
    EXPECT_EQ(client.exitCode(), 1);
    return QString::fromUtf8(client.readAllStandardError());
}

TEST(FailureReason, AFullDiskOfTheRootIsNamedWithTheUpload)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.Choose(u"ABC"_s, u"1"_s);
    EntryRecord entry = EntryNumber(1);
    entry.Description = QString(400'000, u'"'); // twice as long in the file
    place.PutEntries(u"ABC"_s, {entry});

    const QString errors = RunOnSmallDisk(place, 600'000);

    EXPECT_TRUE(errors.contains(place.UploadPath(u"ABC"_s, {}))) << qPrintable(errors);
    EXPECT_TRUE(errors.contains(u"File too large"_s)) << qPrintable(errors);
    EXPECT_FALSE(errors.contains(u"Unknown error"_s)) << qPrintable(errors);
    EXPECT_EQ(place.Entries(u"ABC"_s).size(), 1U);
    EXPECT_EQ(place.Synchronise().ExitStatus, 0);
    EXPECT_TRUE(place.Entries(u"ABC"_s).empty());
    EXPECT_EQ(place.Uploads(u"ABC"_s).size(), 1);
}

TEST(FailureReason, AFullDiskOfTheComputerIsNamedWithTheDatabase)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    QByteArray customers
        = "Customer_Number,Customer_Name,Division_Number,No_Charge,Rate\n0100,A,,N,0\n";
    for (int i = 1000; i < 20'000; ++i)
        customers += QByteArray::number(i) + ",Acme,,N,0\n";
    place.Write(u"ABC/Customers.csv"_s, customers);
    const QMap<QString, QByteArray> before = place.LocalFiles();

    const QString errors = RunOnSmallDisk(place, 300'000);

    EXPECT_TRUE(errors.contains(u"ABCCustomers-WkLg.db"_s)) << qPrintable(errors);
    EXPECT_TRUE(errors.contains(u"File too large"_s)) << qPrintable(errors);
    EXPECT_EQ(place.LocalFiles(), before);
}

TEST(FailureReason, APathThatIsTooLongForADatabaseIsSaidToBe)
{
    const Installation place;
    QString folder = place.Program;
    while (QFile::encodeName(folder).size() < 490)
        folder += u"/ABCDEFGHIJKLMNOPQRSTUVWXYZ"_s;
    ASSERT_TRUE(QDir().mkpath(folder));
    const Outcome outcome = place.Call({u"-hd"_s, u"x"_s, folder});
    EXPECT_EQ(outcome.ExitStatus, 1);
    EXPECT_TRUE(outcome.Errors.contains(u"longer than the 512 bytes"_s))
        << qPrintable(outcome.Errors);
    EXPECT_TRUE(QDir(folder).isEmpty());
}

TEST(FailureReason, ALockedDatabaseIsNamed)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    const auto tables = place.Open();
    const RecordStore::Batch writing(tables->Store, tables->Main.OpenTable(u"ABCCustomers-WkLg"_s));
    const Outcome outcome = place.Synchronise();
    EXPECT_EQ(outcome.ExitStatus, 1);
    EXPECT_TRUE(outcome.Errors.contains(
        u"is locked by another program: "_s + JoinPath(place.Program, u"ABCCustomers-WkLg.db"_s)))
        << qPrintable(outcome.Errors);
}

TEST(FailureReason, AFileInThePlaceOfTheUploadsIsNamed)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"ABC"_s, {EntryNumber(1)});
    place.Write(u"ABC/uploads"_s, "a file");
    const Outcome outcome = place.Synchronise();
    EXPECT_EQ(outcome.ExitStatus, 1);
    EXPECT_TRUE(
        outcome.Errors.contains(u"uploads: the folder cannot be made: a file is in its place"_s))
        << qPrintable(outcome.Errors);
}

} // namespace
