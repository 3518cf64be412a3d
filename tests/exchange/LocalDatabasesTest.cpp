#include "tests/exchange/Installation.h"

#include "platform/Paths.h"
#include "tests/support/OtherProgram.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

QString DatabaseFileOf(const Installation &place, const QString &name)
{
    return JoinPath(place.Program, name + u".db"_s);
}

void Overwrite(const QString &path, const QByteArray &contents)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(contents), contents.size());
}

QByteArray Contents(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

/// A program that is killed in the middle of a write leaves its journal behind. Here: the journal
/// of an unfinished write, as it was while that was under way, beside the file as it was then.
void LeaveUnfinishedWrite(const QString &database, const QString &table)
{
    const QString journal = database + u"-journal"_s;
    QByteArray halfWritten;
    QByteArray undo;
    {
        OtherProgram other(database);
        other.Execute(u"PRAGMA cache_size = 1; PRAGMA cache_spill = 1; BEGIN"_s);
        other.Execute(
            u"UPDATE \"%1\" SET Customer_Name = zeroblob(0) || hex(randomblob(2000))"_s.arg(table));
        halfWritten = Contents(database);
        undo = Contents(journal);
    } // takes the write back
    ASSERT_NE(Contents(database), halfWritten);
    Overwrite(database, halfWritten);
    Overwrite(journal, undo);
}

TEST(LocalDatabases, AMissingReferenceDatabaseHasAllOfTheCompanyWritten)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    for (const QString &option : {u"1"_s, u"3"_s}) {
        place.Choose(u"ABC"_s, option);
        ASSERT_TRUE(QFile::remove(DatabaseFileOf(place, u"ABCDivisions-WkLg"_s)));
        place.PutEntries(u"ABC"_s, {EntryNumber(1)});
        place.Replace(u"ABC/Customers.csv"_s, "Acme", option.toUtf8() + "Acme");
        ASSERT_EQ(place.Synchronise().ExitStatus, 0);
        EXPECT_TRUE(QFile::exists(DatabaseFileOf(place, u"ABCDivisions-WkLg"_s)));
        EXPECT_TRUE(place.CustomerNames(u"ABC"_s).first().contains(option + u"Acme"_s));
        EXPECT_EQ(place.Options(u"ABC"_s).Sync_Option, option);
        EXPECT_EQ(place.Entries(u"ABC"_s).empty(), option == u"1"_s);
    }
}

TEST(LocalDatabases, ANewCompanyIsWrittenWhateverItsOption)
{
    Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.Choose(u"ABC"_s, u"3"_s);
    place.AddCompany(u"NEW"_s);
    place.Replace(u"NEW/Options.csv"_s, "Ledger,0", "Ledger,3");
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    EXPECT_EQ(place.Companies(), (QStringList{u"ABC"_s, u"NEW"_s}));
    EXPECT_EQ(place.Options(u"NEW"_s).Sync_Option, u"3"_s);
}

TEST(LocalDatabases, AMissingCompanyListIsWritten)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.Choose(u"ABC"_s, u"3"_s);
    ASSERT_TRUE(QFile::remove(DatabaseFileOf(place, u"Company-WkLg"_s)));
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    EXPECT_EQ(place.Companies(), QStringList{u"ABC"_s});
}

TEST(LocalDatabases, ADamagedReferenceDatabaseIsMended)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.Choose(u"ABC"_s, u"3"_s);
    const QString file = DatabaseFileOf(place, u"ABCCustomers-WkLg"_s);
    Overwrite(file, Contents(file).left(300));
    const Outcome outcome = place.Synchronise();
    EXPECT_EQ(outcome.ExitStatus, 0) << qPrintable(outcome.Errors);
    EXPECT_EQ(place.CustomerNames(u"ABC"_s).size(), 2);
}

TEST(LocalDatabases, ADatabaseWithOtherFieldsIsWrittenAgain)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"ABC"_s, {EntryNumber(1)});
    ASSERT_TRUE(QFile::remove(DatabaseFileOf(place, u"ABCOptions-WkLg"_s)));
    BuildDatabase<CompanyRecord>(place.Program, u"ABCOptions-WkLg"_s, {{u"x"_s, u"x"_s, u"x"_s}});
    const Outcome outcome = place.Synchronise();
    EXPECT_EQ(outcome.ExitStatus, 0) << qPrintable(outcome.Errors);
    EXPECT_EQ(place.Options(u"ABC"_s).Accounting_Name, u"Ledger"_s);
    EXPECT_EQ(place.Uploads(u"ABC"_s).size(), 1);
}

TEST(LocalDatabases, ADamagedOptionsDatabaseLosesNoEntry)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"ABC"_s, {EntryNumber(1)});
    place.Replace(u"ABC/Options.csv"_s, "Ledger,0", "Ledger,2");
    const QString file = DatabaseFileOf(place, u"ABCOptions-WkLg"_s);
    Overwrite(file, Contents(file).left(300));
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    EXPECT_EQ(place.Uploads(u"ABC"_s).size(), 1);
    EXPECT_EQ(place.Options(u"ABC"_s).Sync_Option, u"2"_s);
}

TEST(LocalDatabases, AMissingOptionsDatabaseLosesNoEntry)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"ABC"_s, {EntryNumber(1)});
    place.Replace(u"ABC/Options.csv"_s, "Ledger,0", "Ledger,2");
    ASSERT_TRUE(QFile::remove(DatabaseFileOf(place, u"ABCOptions-WkLg"_s)));
    const Outcome outcome = place.Synchronise();
    ASSERT_EQ(outcome.ExitStatus, 0) << qPrintable(outcome.Errors);
    EXPECT_EQ(place.Uploads(u"ABC"_s).size(), 1);
    EXPECT_TRUE(place.Entries(u"ABC"_s).empty());
    EXPECT_EQ(place.Options(u"ABC"_s).Sync_Option, u"2"_s);
}

TEST(LocalDatabases, ADroppedCompanyWhoseChoiceIsLostHandsOver)
{
    Installation place;
    place.AddCompany(u"OLD"_s);
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"OLD"_s, {EntryNumber(1)});
    ASSERT_TRUE(QFile::remove(DatabaseFileOf(place, u"OLDOptions-WkLg"_s)));
    place.DropCompany(u"OLD"_s);
    const Outcome outcome = place.Synchronise();
    ASSERT_EQ(outcome.ExitStatus, 0) << qPrintable(outcome.Errors);
    EXPECT_EQ(place.Uploads(u"OLD"_s).size(), 1);
    EXPECT_TRUE(place.Entries(u"OLD"_s).empty());
    EXPECT_FALSE(QFile::exists(DatabaseFileOf(place, u"OLDOptions-WkLg"_s)));
}

TEST(LocalDatabases, AFileOfSomebodyElseIsNeverReplaced)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    for (const QString &name : {u"Company-WkLg"_s, u"ABCOptions-WkLg"_s, u"ABCActivities-WkLg"_s}) {
        const QString file = DatabaseFileOf(place, name);
        const QByteArray ours = Contents(file);
        Overwrite(file, "a letter to my aunt");
        const QMap<QString, QByteArray> before = place.LocalFiles();
        const Outcome outcome = place.Synchronise();
        EXPECT_EQ(outcome.ExitStatus, 1);
        EXPECT_TRUE(outcome.Errors.contains(name)) << qPrintable(outcome.Errors);
        EXPECT_EQ(place.LocalFiles(), before);
        Overwrite(file, ours);
    }
}

TEST(LocalDatabases, ADamagedEntriesDatabaseIsAnError)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"ABC"_s, {EntryNumber(1)});
    const QString file = DatabaseFileOf(place, u"ABCEntries-WkLg"_s);
    Overwrite(file, Contents(file).left(300));
    const QMap<QString, QByteArray> before = place.LocalFiles();
    const Outcome outcome = place.Synchronise();
    EXPECT_EQ(outcome.ExitStatus, 1);
    EXPECT_TRUE(outcome.Errors.contains(u"ABCEntries-WkLg"_s));
    EXPECT_EQ(place.LocalFiles(), before);
}

TEST(LocalDatabases, AnUnfinishedWriteIsNotPlayedIntoTheNewDatabase)
{
    const Installation place;
    QByteArray customers = "Customer_Number,Customer_Name,Division_Number,No_Charge,Rate\n";
    for (int i = 0; i < 200; ++i)
        customers += QByteArray::number(i) + ",Old " + QByteArray(200, 'x') + ",,N,0\n";
    customers += "0100,Acme,,N,0\n";
    place.Write(u"ABC/Customers.csv"_s, customers);
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    const QString file = DatabaseFileOf(place, u"ABCCustomers-WkLg"_s);
    LeaveUnfinishedWrite(file, u"ABCCustomers-WkLg"_s);
    place.Write(u"ABC/Customers.csv"_s, QByteArray(customers).replace("Old", "New"));

    const Outcome outcome = place.Synchronise();

    ASSERT_EQ(outcome.ExitStatus, 0) << qPrintable(outcome.Errors);
    EXPECT_FALSE(QFile::exists(file + u"-journal"_s));
    const QStringList names = place.CustomerNames(u"ABC"_s);
    EXPECT_EQ(names.size(), 201);
    EXPECT_EQ(names.filter(u"New"_s).size(), 200);
}

TEST(LocalDatabases, ALockOnTheLastDatabaseReplacesNone)
{
    Installation place;
    place.AddCompany(u"TWO"_s);
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.Replace(u"Company.csv"_s, "Company ABC", "Renamed");
    place.Replace(u"ABC/Customers.csv"_s, "Acme", "Renamed");
    place.Replace(u"TWO/Customers.csv"_s, "Acme", "Renamed");
    const QMap<QString, QByteArray> before = place.LocalFiles();
    Outcome outcome;
    {
        OtherProgram other(DatabaseFileOf(place, u"TWOActivities-WkLg"_s));
        other.Execute(u"BEGIN IMMEDIATE"_s); // lets others read
        outcome = place.Synchronise();
        other.Execute(u"ROLLBACK"_s);
    }

    EXPECT_EQ(outcome.ExitStatus, 1);
    EXPECT_TRUE(outcome.Errors.contains(u"TWOActivities-WkLg"_s)) << qPrintable(outcome.Errors);
    EXPECT_EQ(place.LocalFiles(), before);
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    EXPECT_EQ(place.CustomerNames(u"ABC"_s).first(), u"Renamed"_s);
    EXPECT_EQ(place.CustomerNames(u"TWO"_s).first(), u"Renamed"_s);
}

TEST(LocalDatabases, AJournalThatCannotBeRemovedReplacesNone)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.Replace(u"ABC/Customers.csv"_s, "Acme", "Renamed");
    const QString last = DatabaseFileOf(place, u"ABCActivities-WkLg"_s);
    ASSERT_TRUE(QFile::remove(last)); // would get the journal's pages
    const QString journal = last + u"-journal"_s;
    ASSERT_TRUE(QDir().mkpath(journal + u"/in the way"_s));
    const QMap<QString, QByteArray> before = place.LocalFiles();

    const Outcome outcome = place.Synchronise();

    EXPECT_EQ(outcome.ExitStatus, 1);
    EXPECT_TRUE(outcome.Errors.contains(u"A leftover cannot be removed: "_s + journal))
        << qPrintable(outcome.Errors);
    EXPECT_EQ(place.LocalFiles(), before);
    ASSERT_TRUE(QDir(journal).removeRecursively());
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    EXPECT_EQ(place.CustomerNames(u"ABC"_s).first(), u"Renamed"_s);
}

TEST(LocalDatabases, AJournalWithoutItsDatabaseIsRemoved)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    const QString file = DatabaseFileOf(place, u"ABCCustomers-WkLg"_s);
    ASSERT_TRUE(QFile::rename(file, file + u"-journal"_s));
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    EXPECT_FALSE(QFile::exists(file + u"-journal"_s));
    EXPECT_EQ(place.CustomerNames(u"ABC"_s).size(), 2);
}

} // namespace
