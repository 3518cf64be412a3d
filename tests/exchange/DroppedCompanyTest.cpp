// Companies that the accounting system no longer lists, or spells in another case: their entries
// are never out of the user's sight while they are on the computer.

#include "platform/Paths.h"
#include "tests/exchange/Installation.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

class DroppedCompany : public testing::Test
{
protected:
    DroppedCompany()
    {
        Place.AddCompany(u"OLD"_s);
        Synchronize();
        Place.PutEntries(u"OLD"_s, {EntryNumber(1), EntryNumber(2)});
    }

    void Synchronize() const
    {
        const Outcome outcome = Place.Synchronise();
        EXPECT_EQ(outcome.ExitStatus, 0) << qPrintable(outcome.Errors);
    }

    QString File(const QString &name) const { return JoinPath(Place.Program, name + u".db"_s); }

    /// "code: name" of every company that the program lists.
    QStringList List() const
    {
        const auto tables = Place.Open();
        modDBComp &table = tables->Company;
        table.Handle = tables->Main.OpenTable(tables->Main.GlobalName(DatabasePrefix::Company));
        QStringList list;
        CompanyRecord record;
        for (table.MoveFirst(); table.ReadCompany(record); table.MoveNext())
            list.append(record.Company_Code + u": "_s + record.Company_Name);
        return list;
    }

    QMap<QString, QByteArray> FilesOfOLD() const
    {
        QMap<QString, QByteArray> files = Place.LocalFiles();
        files.removeIf(
            [](auto file) { return !QFileInfo(file.key()).fileName().startsWith(u"OLD"_s); });
        return files;
    }

    const QString Dropped = u"OLD: Company OLD (no longer in accounting)"_s;
    Installation Place;
};

/// ABC, which the accounting system begins to spell in small letters.
class RenamedCompany : public DroppedCompany
{
protected:
    RenamedCompany()
    {
        Place.PutEntries(u"ABC"_s, {});
        Synchronize();
        Place.PutEntries(u"ABC"_s, {EntryNumber(7)});
    }

    void Rename()
    {
        Place.Replace(u"Company.csv"_s, "ABC,Company ABC", "abc,Company abc");
        ASSERT_TRUE(QDir(Place.Worklog).rename(u"ABC"_s, u"abc"_s));
    }
};

} // namespace

TEST_F(DroppedCompany, StaysInTheListWhileItsEntriesAreNotCollected)
{
    for (const QString &option : {u"2"_s, u"3"_s}) {
        Place.Choose(u"OLD"_s, option);
        const QMap<QString, QByteArray> before = FilesOfOLD();
        Place.DropCompany(u"OLD"_s);
        for (int run = 0; run < 2; ++run) {
            Synchronize();
            EXPECT_EQ(List(), (QStringList{u"ABC: Company ABC"_s, Dropped}));
            EXPECT_EQ(FilesOfOLD(), before);
            EXPECT_TRUE(Place.Uploads(u"OLD"_s).isEmpty());
        }
        EXPECT_TRUE(Place.Log().contains(u"OLD: no longer in accounting; its entries stay"_s));
    }
}

TEST_F(DroppedCompany, StaysInTheListAlsoWhenNothingIsRewritten)
{
    Place.Choose(u"ABC"_s, u"3"_s);
    Place.Choose(u"OLD"_s, u"3"_s);
    Place.DropCompany(u"OLD"_s);
    Synchronize();
    EXPECT_EQ(List(), (QStringList{u"ABC: Company ABC"_s, Dropped}));
    const QMap<QString, QByteArray> before = Place.LocalFiles();
    Synchronize();
    EXPECT_EQ(Place.LocalFiles(), before);
}

TEST_F(DroppedCompany, LeavesTheListWithTheRunThatCollectsItsEntries)
{
    Place.Choose(u"OLD"_s, u"3"_s);
    Place.DropCompany(u"OLD"_s);
    Synchronize();
    for (const QString &others : {u"0"_s, u"3"_s}) {
        Place.Choose(u"ABC"_s, others);
        Place.Choose(u"OLD"_s, u"0"_s);
        Place.PutEntries(u"OLD"_s, {EntryNumber(3)});
        const qsizetype uploads = Place.Uploads(u"OLD"_s).size();
        Synchronize();
        EXPECT_TRUE(Place.Entries(u"OLD"_s).empty());
        EXPECT_EQ(Place.Uploads(u"OLD"_s).size(), uploads + 1);
        EXPECT_EQ(List(), QStringList{u"ABC: Company ABC"_s});
    }
}

TEST_F(DroppedCompany, WithoutEntriesLeavesTheList)
{
    Place.Choose(u"OLD"_s, u"0"_s);
    Synchronize();
    ASSERT_TRUE(Place.Entries(u"OLD"_s).empty());
    Place.Choose(u"OLD"_s, u"3"_s);
    Place.Choose(u"ABC"_s, u"3"_s);
    Place.DropCompany(u"OLD"_s);
    Synchronize();
    EXPECT_EQ(List(), QStringList{u"ABC: Company ABC"_s});
}

TEST_F(DroppedCompany, ThatComesBackIsOneLikeTheOthers)
{
    Place.Choose(u"OLD"_s, u"3"_s);
    Place.DropCompany(u"OLD"_s);
    Synchronize();
    Place.AddCompany(u"OLD"_s);
    Synchronize();
    EXPECT_EQ(List(), (QStringList{u"ABC: Company ABC"_s, u"OLD: Company OLD"_s}));
    EXPECT_EQ(Place.Entries(u"OLD"_s).size(), 2U);
}

TEST_F(DroppedCompany, IsListedAgainAfterTheListWasLost)
{
    Place.Choose(u"OLD"_s, u"3"_s);
    Place.DropCompany(u"OLD"_s);
    ASSERT_TRUE(QFile::remove(File(u"Company-WkLg"_s)));
    Synchronize();
    EXPECT_EQ(
        List(), (QStringList{u"ABC: Company ABC"_s, u"OLD: OLD (no longer in accounting)"_s}));
    EXPECT_EQ(Place.Entries(u"OLD"_s).size(), 2U);
}

TEST_F(DroppedCompany, StaysInTheListWithEntriesThatCannotBeRead)
{
    Place.Choose(u"OLD"_s, u"3"_s);
    Place.DropCompany(u"OLD"_s);
    QFile entries(File(u"OLDEntries-WkLg"_s));
    ASSERT_TRUE(entries.resize(entries.size() / 2));
    Synchronize();
    EXPECT_EQ(List(), (QStringList{u"ABC: Company ABC"_s, Dropped}));
}

TEST_F(DroppedCompany, IsNoneOfWhichThereIsOnlyACopyUnderAnotherName)
{
    Place.Choose(u"OLD"_s, u"3"_s);
    ASSERT_TRUE(QFile::copy(File(u"OLDEntries-WkLg"_s), File(u"BAK-OLDEntries-WkLg"_s)));
    const QMap<QString, QByteArray> before = Place.LocalFiles();
    Synchronize();
    EXPECT_EQ(List(), (QStringList{u"ABC: Company ABC"_s, u"OLD: Company OLD"_s}));
    const QString copy = QDir::fromNativeSeparators(File(u"BAK-OLDEntries-WkLg"_s));
    ASSERT_TRUE(before.contains(copy));
    EXPECT_EQ(Place.LocalFiles().value(copy), before.value(copy));
}

TEST_F(RenamedCompany, IsTheSameCompany)
{
    Place.Choose(u"ABC"_s, u"3"_s);
    Rename();
    Synchronize();
    EXPECT_EQ(Place.Companies(), (QStringList{u"ABC"_s, u"OLD"_s}));
    EXPECT_EQ(Place.Entries(u"ABC"_s).size(), 1U);
    EXPECT_TRUE(
        QDir(Place.Program).entryList({u"abc*"_s}, QDir::Files | QDir::CaseSensitive).isEmpty());

    Place.Choose(u"ABC"_s, u"0"_s);
    Synchronize();
    EXPECT_TRUE(Place.Entries(u"ABC"_s).empty());
    EXPECT_EQ(Place.Uploads(u"abc"_s).size(), 1);
    EXPECT_EQ(List().first(), u"ABC: Company abc"_s);
    EXPECT_EQ(Place.Options(u"ABC"_s).Sync_Option, u"0"_s);
}

#ifdef Q_OS_UNIX // Windows has one folder for both spellings
TEST_F(RenamedCompany, IsReadAndCollectedUnderTheSpellingOfTheAccountingSystem)
{
    Rename();
    Place.Write(u"ABC/Customers.csv"_s, "left from before the code was spelled in another way");
    Synchronize();
    EXPECT_EQ(Place.Uploads(u"abc"_s).size(), 1);
    EXPECT_TRUE(Place.Uploads(u"ABC"_s).isEmpty());
    EXPECT_EQ(Place.CustomerNames(u"ABC"_s).size(), 2);
}

TEST_F(RenamedCompany, FindsWhatWasDeliveredUnderTheOtherSpelling)
{
    const QString file = File(u"ABCEntries-WkLg"_s);
    ASSERT_TRUE(QFile::copy(file, file + u".copy"_s));
    Synchronize();
    ASSERT_EQ(Place.Uploads(u"ABC"_s).size(), 1);
    ASSERT_TRUE(QFile::remove(file));
    ASSERT_TRUE(QFile::rename(file + u".copy"_s, file));
    const QByteArray upload = Place.Read(u"ABC/uploads/"_s + Place.Uploads(u"ABC"_s).front());
    const QString name = Place.Uploads(u"ABC"_s).front();
    Rename();
    ASSERT_TRUE(QDir(Place.Worklog + u"/abc/uploads"_s).removeRecursively());
    Place.Write(u"ABC/uploads/"_s + name, upload);
    Synchronize();
    EXPECT_TRUE(Place.Entries(u"ABC"_s).empty());
    EXPECT_TRUE(Place.Uploads(u"abc"_s).isEmpty());
}
#endif
