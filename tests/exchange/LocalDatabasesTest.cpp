#include "tests/exchange/Installation.h"

#include "platform/Paths.h"
#include "tests/support/OtherProgram.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <vector>

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

/// One kind of damage to a file.
struct Damage
{
    const char *Name;
    QByteArray (*Of)(QByteArray sound);
    bool IsSeenWhenOpened = true;
};

QByteArray Changed(QByteArray contents, qsizetype at, char bits)
{
    contents[at] = static_cast<char>(contents[at] ^ bits);
    return contents;
}

const std::vector<Damage> Damages = {
    {"cut off", [](QByteArray sound) { return sound.left(300); }},
    {"without a byte", [](QByteArray) { return QByteArray(); }},
    {"its first byte changed", [](QByteArray sound) { return Changed(sound, 0, 1); }},
    {"its creator changed", [](QByteArray sound) { return Changed(sound, 70, 4); }},
    {"a page changed", [](QByteArray sound) { return Changed(sound, 2 * 4096, 8); }, false},
    {"a page's free space changed",
        [](QByteArray sound) { return Changed(sound, 2 * 4096 + 7, 5); }, false},
    {"a bit of the last value of a record changed",
        [](QByteArray sound) { return Changed(sound, 3 * 4096 - 1, 2); }, false},
};

TEST(LocalDatabases, ADamagedReferenceDatabaseIsSetAsideAndWrittenWhateverTheOption)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    const QString file = DatabaseFileOf(place, u"ABCCustomers-WkLg"_s);
    const QString aside = file + u".damaged"_s;
    for (const QString &option : {u"0"_s, u"1"_s, u"2"_s, u"3"_s}) {
        for (const Damage &damage : Damages) {
            SCOPED_TRACE(damage.Name + (", option " + option.toStdString()));
            place.Choose(u"ABC"_s, option);
            const QByteArray damaged = damage.Of(Contents(file));
            Overwrite(file, damaged);
            const Outcome outcome = place.Synchronise();
            EXPECT_EQ(outcome.ExitStatus, 0) << qPrintable(outcome.Errors);
            EXPECT_EQ(place.CustomerNames(u"ABC"_s).size(), 2);
            EXPECT_EQ(place.Options(u"ABC"_s).Sync_Option, option);
            // A rewrite that comes anyway does not read the pages of what it replaces.
            const bool isKept = !damaged.isEmpty()
                && (damage.IsSeenWhenOpened || option == u"1"_s || option == u"3"_s);
            EXPECT_EQ(QFile::exists(aside), isKept);
            if (isKept) {
                EXPECT_EQ(Contents(aside), damaged);
                EXPECT_TRUE(place.Log().contains(u"set aside as "_s + aside));
                ASSERT_TRUE(QFile::remove(aside));
            }
        }
    }
}

TEST(LocalDatabases, EveryReferenceDatabaseIsWrittenAgainAfterDamage)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"ABC"_s, {EntryNumber(1)});
    for (const QString &name : {u"Company"_s, u"ABCOptions"_s, u"ABCEmployee"_s, u"ABCMultiplier"_s,
             u"ABCDivisions"_s, u"ABCProjects"_s, u"ABCActivities"_s}) {
        for (const Damage &damage : Damages) {
            SCOPED_TRACE(name.toStdString() + " " + damage.Name);
            place.Choose(u"ABC"_s, u"1"_s);
            const QString file = DatabaseFileOf(place, name + u"-WkLg"_s);
            const QByteArray sound = Contents(file);
            Overwrite(file, damage.Of(sound));
            const Outcome outcome = place.Synchronise();
            EXPECT_EQ(outcome.ExitStatus, 0) << qPrintable(outcome.Errors);
            EXPECT_EQ(Contents(file).size(), sound.size());
            EXPECT_EQ(place.Companies(), QStringList{u"ABC"_s});
        }
    }
    EXPECT_EQ(place.Uploads(u"ABC"_s).size(), 1) << "the entry is delivered once";
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
    EXPECT_EQ(place.Options(u"ABC"_s).Sync_Option, u"0"_s);
}

TEST(LocalDatabases, ABitThatTurnsCollectIntoEraseErasesNothing)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"ABC"_s, {EntryNumber(1), EntryNumber(2)});
    place.Choose(u"ABC"_s, u"0"_s);
    const QString file = DatabaseFileOf(place, u"ABCOptions-WkLg"_s);
    const QByteArray sound = Contents(file);
    const qsizetype option = sound.lastIndexOf("Ledger0") + 6;
    ASSERT_GT(option, 6);
    Overwrite(file, Changed(sound, option, '0' ^ '2'));
    const Outcome outcome = place.Synchronise();
    EXPECT_EQ(outcome.ExitStatus, 0) << qPrintable(outcome.Errors);
    EXPECT_EQ(place.Uploads(u"ABC"_s).size(), 1);
    EXPECT_FALSE(place.Log().contains(u"without collecting"_s));
    EXPECT_EQ(place.Options(u"ABC"_s).Sync_Option, u"0"_s);
    EXPECT_TRUE(place.Log().contains(u"set aside as "_s + file));
}

TEST(LocalDatabases, AChoiceThatAnotherProgramWritesCounts)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"ABC"_s, {EntryNumber(1)});
    OtherProgram(DatabaseFileOf(place, u"ABCOptions-WkLg"_s))
        .Execute(u"UPDATE \"ABCOptions-WkLg\" SET Sync_Option = '2'"_s);
    EXPECT_EQ(place.Synchronise().ExitStatus, 0);
    EXPECT_TRUE(place.Uploads(u"ABC"_s).isEmpty());
    EXPECT_TRUE(place.Log().contains(u"deleted 1 entry without collecting"_s));
}

TEST(LocalDatabases, ADatabaseOfANewerVersionIsRefusedByNameAndStays)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"ABC"_s, {EntryNumber(1)});
    const QString file = DatabaseFileOf(place, u"ABCCustomers-WkLg"_s);
    OtherProgram(file).Execute(u"UPDATE Record_Store SET Format_Version = 3"_s);
    const QMap<QString, QByteArray> before = place.LocalFiles();
    const Outcome outcome = place.Synchronise();
    EXPECT_EQ(outcome.ExitStatus, 1);
    EXPECT_TRUE(
        outcome.Errors.contains(u"A newer version of Worklog Remote wrote the database: "_s + file))
        << qPrintable(outcome.Errors);
    EXPECT_EQ(place.LocalFiles(), before);
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
    EXPECT_EQ(place.Options(u"ABC"_s).Sync_Option, u"0"_s);
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
    EXPECT_TRUE(outcome.Errors.contains(journal + u": this is not a regular file"_s))
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
    for (const QByteArray &contents : {QByteArray("\xD9\xD5\x05\xF9\x20\xA1\x63\xD7 and so on"),
             QByteArray(512, '\0'), QByteArray()}) {
        ASSERT_TRUE(QFile::remove(file));
        Overwrite(file + u"-journal"_s, contents);
        ASSERT_EQ(place.Synchronise().ExitStatus, 0);
        EXPECT_FALSE(QFile::exists(file + u"-journal"_s));
        EXPECT_EQ(place.CustomerNames(u"ABC"_s).size(), 2);
    }
}

TEST(LocalDatabases, AFileOfAnotherProgramNamedLikeAJournalIsLeftAlone)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"ABC"_s, {EntryNumber(1)});
    for (const QString &name :
        {u"ABCCustomers-WkLg"_s, u"ABCEntries-WkLg"_s, u"Company-WkLg"_s, u"XYZOptions-WkLg"_s}) {
        const QString journal = DatabaseFileOf(place, name) + u"-journal"_s;
        Overwrite(journal, "a letter to my aunt");
        const QMap<QString, QByteArray> before = place.LocalFiles();
        const Outcome outcome = place.Synchronise();
        if (name.startsWith(u"XYZ"_s)) { // of no company of this computer
            EXPECT_EQ(outcome.ExitStatus, 0);
        } else {
            EXPECT_EQ(outcome.ExitStatus, 1);
            EXPECT_TRUE(outcome.Errors.contains(journal)) << qPrintable(outcome.Errors);
            EXPECT_EQ(place.LocalFiles(), before);
        }
        EXPECT_EQ(Contents(journal), "a letter to my aunt");
        ASSERT_TRUE(QFile::remove(journal));
    }
}

} // namespace
