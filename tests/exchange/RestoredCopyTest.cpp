// Entries databases that come back from a copy, or exist twice: whatever has been delivered from
// them is not delivered again, and no later run is refused for them.

#include "exchange/Collection.h"
#include "exchange/EntryRows.h"
#include "platform/Paths.h"
#include "tests/exchange/Installation.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

class RestoredCopy : public testing::Test
{
protected:
    RestoredCopy()
    {
        EXPECT_EQ(Place.Synchronise().ExitStatus, 0);
        Place.PutEntries(u"ABC"_s, {}); // as the program makes it when it opens the company
        EXPECT_EQ(Place.Synchronise().ExitStatus, 0);
        Add({1, 2, 2});
    }

    void Add(const std::vector<int> &numbers) const
    {
        std::vector<EntryRecord> entries;
        for (const int number : numbers)
            entries.push_back(EntryNumber(number));
        Place.PutEntries(u"ABC"_s, entries);
    }

    QString EntriesFile() const { return JoinPath(Place.Program, u"ABCEntries-WkLg.db"_s); }

    QByteArray Copy() const
    {
        QFile file(EntriesFile());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    void Restore(const QByteArray &copy) const
    {
        QFile file(EntriesFile());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(copy), copy.size());
    }

    void Synchronise() const
    {
        const Outcome outcome = Place.Synchronise();
        EXPECT_EQ(outcome.ExitStatus, 0) << qPrintable(outcome.Errors);
        EXPECT_TRUE(Place.Entries(u"ABC"_s).empty());
        EXPECT_TRUE(IsSettled(Place.Note(u"ABC"_s))) << qPrintable(Place.Note(u"ABC"_s));
    }

    /// Moves the uploads to where the accounting system may put what it has taken in.
    void Import() const
    {
        ASSERT_TRUE(QDir(Place.Worklog).mkpath(u"ABC/uploads/imported"_s));
        for (const QString &name : Place.Uploads(u"ABC"_s))
            ASSERT_TRUE(QFile::rename(Place.UploadPath(u"ABC"_s, name),
                Place.UploadPath(u"ABC"_s, u"imported/"_s + name)));
    }

    void ExpectDelivered(const std::vector<int> &numbers) const
    {
        QStringList expected;
        for (const int number : numbers)
            expected.append(u"Entry "_s + QString::number(number));
        QStringList delivered;
        for (const QString &folder : {u""_s, u"imported/"_s}) {
            const QDir files(Place.UploadPath(u"ABC"_s, folder));
            for (const QString &name : files.entryList({u"*.csv"_s}, QDir::Files)) {
                for (const auto &[line, count] : ReadEntryLines(files.filePath(name)))
                    for (qint64 i = 0; i < count; ++i)
                        delivered.append(QString::fromStdString(line).section(u',', 18).trimmed());
            }
        }
        delivered.sort();
        expected.sort();
        EXPECT_EQ(delivered, expected);
    }

    const Installation Place;
};

TEST_F(RestoredCopy, DeliversNothingTwice)
{
    const QByteArray copy = Copy();
    Synchronise();
    Restore(copy);
    Synchronise();
    ExpectDelivered({1, 2, 2});
}

TEST_F(RestoredCopy, DeliversWhatIsEnteredAfterwardsEvenIfItIsEqual)
{
    const QByteArray copy = Copy();
    Synchronise();
    Restore(copy);
    Add({1, 3});
    Synchronise();
    ExpectDelivered({1, 1, 2, 2, 3});
}

TEST_F(RestoredCopy, OfAWeekAgoDeliversNothingTwiceWhateverCameSince)
{
    const QByteArray copy = Copy();
    Add({3}); // entered after the copy was made, and lost with it
    Synchronise();
    Import();
    for (const int number : {4, 5}) {
        Add({number});
        Synchronise();
        Import();
    }
    Restore(copy);
    Add({6});
    Synchronise();
    ExpectDelivered({1, 2, 2, 3, 4, 5, 6});
    Restore(copy);
    Synchronise();
    ExpectDelivered({1, 2, 2, 3, 4, 5, 6});
}

TEST_F(RestoredCopy, OfAnInterruptedRunBlocksNothing)
{
    {
        LocalDatabases local(Place.Program);
        Collection collection(local, Place.Worklog, u"ABC"_s, u"007"_s);
        ASSERT_TRUE(collection.Prepare());
    }
    const QByteArray copy = Copy(); // its note has the digest of three entries
    Add({9});
    Synchronise(); // under the same name, with four
    Restore(copy);
    Add({10});
    Synchronise();
    ExpectDelivered({1, 2, 2, 9, 10});
}

TEST_F(RestoredCopy, OfErasedEntriesIsCollected)
{
    const QByteArray copy = Copy();
    Place.Choose(u"ABC"_s, u"2"_s);
    Synchronise();
    ExpectDelivered({});
    Place.Choose(u"ABC"_s, u"0"_s);
    Add({7});
    Synchronise();
    Restore(copy);
    Synchronise();
    ExpectDelivered({1, 2, 2, 7});
}

TEST_F(RestoredCopy, FindsAnAlteredUploadAndTakesNothingOut)
{
    const QByteArray copy = Copy();
    Synchronise();
    const QString upload = u"ABC/uploads/"_s + Place.Uploads(u"ABC"_s).value(0);
    const QByteArray original = Place.Read(upload);
    Place.Replace(upload, "1.0000", "1"); // as a spreadsheet program saves it
    Restore(copy);
    const Outcome outcome = Place.Synchronise();
    EXPECT_EQ(outcome.ExitStatus, 1);
    EXPECT_TRUE(outcome.Errors.contains(upload)) << qPrintable(outcome.Errors);
    EXPECT_EQ(Place.Entries(u"ABC"_s).size(), 3U);
    Place.Write(upload, original);
    Synchronise();
    ExpectDelivered({1, 2, 2});
}

/// A program folder that was copied to another computer.
class CopiedFolder : public RestoredCopy
{
protected:
    CopiedFolder()
    {
        EXPECT_TRUE(QDir().mkpath(Other));
        for (const QFileInfo &file : QDir(Place.Program).entryInfoList(QDir::Files))
            EXPECT_TRUE(QFile::copy(file.filePath(), JoinPath(Other, file.fileName())));
    }

    Outcome SynchroniseOther() const { return Place.Call({u"-hd"_s, u"x"_s, Other}); }

    /// Entries of the other computer.
    void AddToOther(int number) const
    {
        Tables tables(Other);
        tables.Main.StoreTheCodes({u"WkLg"_s, u"KVLM"_s, u"DATA"_s});
        tables.Entries.Handle = tables.Main.OpenTable(u"ABCEntries-WkLg"_s);
        tables.Entries.AddEntry(EntryNumber(number));
    }

    qint32 CountOfOther() const
    {
        Tables tables(Other);
        tables.Main.StoreTheCodes({u"WkLg"_s, u"KVLM"_s, u"DATA"_s});
        tables.Entries.Handle = tables.Main.OpenTable(u"ABCEntries-WkLg"_s);
        return tables.Store.GetRecordCount(tables.Entries.Handle);
    }

    const QString Other = Place.Program + u" of another computer"_s;
};

TEST_F(CopiedFolder, DeliversOnlyWhatTheFirstHasNotDelivered)
{
    Add({3});
    AddToOther(4);
    Synchronise();
    const Outcome outcome = SynchroniseOther();
    EXPECT_EQ(outcome.ExitStatus, 0) << qPrintable(outcome.Errors);
    EXPECT_EQ(CountOfOther(), 0);
    ExpectDelivered({1, 2, 2, 3, 4});
    AddToOther(5);
    EXPECT_EQ(SynchroniseOther().ExitStatus, 0);
    Add({6});
    Synchronise();
    ExpectDelivered({1, 2, 2, 3, 4, 5, 6});
}

TEST_F(CopiedFolder, LosesNothingWhenBothDeliverAtTheSameMoment)
{
    Add({3});
    AddToOther(4);
    const auto first = Place.Start();
    const Outcome other = SynchroniseOther();
    ASSERT_TRUE(first->waitForFinished(-1));
    // One may have been refused by the other's file: it goes on from there.
    EXPECT_TRUE(first->exitCode() == 0 || other.ExitStatus == 0) << qPrintable(other.Errors);
    Synchronise();
    EXPECT_EQ(SynchroniseOther().ExitStatus, 0);
    EXPECT_EQ(CountOfOther(), 0);
    ExpectDelivered({1, 2, 2, 3, 4});
}

} // namespace
