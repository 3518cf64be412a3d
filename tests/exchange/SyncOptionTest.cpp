#include "tests/exchange/Installation.h"

#include <gtest/gtest.h>

#include <QFile>

using namespace Qt::StringLiterals;

namespace {

/// A company that was written once, with two entries, and a customer renamed since.
class SyncOptions : public testing::Test
{
protected:
    SyncOptions()
    {
        EXPECT_EQ(Place.Synchronise().ExitStatus, 0);
        Place.PutEntries(u"ABC"_s, {EntryNumber(1), EntryNumber(2)});
        Place.Replace(u"ABC/Customers.csv"_s, "Acme", "Renamed");
    }

    void SynchroniseWith(const QString &option)
    {
        Place.Choose(u"ABC"_s, option);
        const Outcome outcome = Place.Synchronise();
        EXPECT_EQ(outcome.ExitStatus, 0) << qPrintable(outcome.Errors);
        EXPECT_EQ(Place.Options(u"ABC"_s).Sync_Option, option);
        EXPECT_TRUE(QStringList(Place.LocalFiles().keys()).filter(u"-journal"_s).isEmpty());
    }

    bool IsRewritten() const { return Place.CustomerNames(u"ABC"_s).first() == u"Renamed"_s; }

    Installation Place;
};

TEST_F(SyncOptions, ZeroCollectsAndRewrites)
{
    SynchroniseWith(u"0"_s);
    EXPECT_TRUE(Place.Entries(u"ABC"_s).empty());
    EXPECT_EQ(Place.Uploads(u"ABC"_s).size(), 1);
    EXPECT_TRUE(IsRewritten());
}

TEST_F(SyncOptions, OneOnlyCollects)
{
    Place.Write(u"ABC/Projects.csv"_s, "not needed, not read");
    SynchroniseWith(u"1"_s);
    EXPECT_TRUE(Place.Entries(u"ABC"_s).empty());
    EXPECT_EQ(Place.Uploads(u"ABC"_s).size(), 1);
    EXPECT_FALSE(IsRewritten());
}

TEST_F(SyncOptions, TwoErasesAndRewrites)
{
    SynchroniseWith(u"2"_s);
    EXPECT_TRUE(Place.Entries(u"ABC"_s).empty());
    EXPECT_TRUE(Place.Uploads(u"ABC"_s).isEmpty());
    EXPECT_TRUE(IsRewritten());
    EXPECT_TRUE(Place.Log().contains(u"ABC: deleted 2 entries without collecting"_s));
}

TEST_F(SyncOptions, ThreeDoesNothing)
{
    Place.Choose(u"ABC"_s, u"3"_s);
    const QMap<QString, QByteArray> before = Place.LocalFiles();
    EXPECT_EQ(Place.Synchronise().ExitStatus, 0);
    EXPECT_EQ(Place.LocalFiles(), before);
    EXPECT_TRUE(Place.Uploads(u"ABC"_s).isEmpty());
}

TEST_F(SyncOptions, TheUsersChoiceSurvivesARewriteAndWinsOverTheFile)
{
    Place.Replace(u"ABC/Options.csv"_s, "Ledger,0", "New Ledger,3");
    SynchroniseWith(u"0"_s);
    EXPECT_EQ(Place.Options(u"ABC"_s).Accounting_Name, u"New Ledger"_s);
}

TEST_F(SyncOptions, AnyOtherValueIsNamed)
{
    for (const QString &option : {u"4"_s, u"7"_s, u"00"_s, u"/"_s}) {
        Place.Choose(u"ABC"_s, option);
        const QMap<QString, QByteArray> before = Place.LocalFiles();
        const Outcome outcome = Place.Synchronise();
        EXPECT_EQ(outcome.ExitStatus, 1);
        EXPECT_TRUE(outcome.Errors.contains(u"company ABC is \"%1\""_s.arg(option)))
            << qPrintable(outcome.Errors);
        EXPECT_EQ(Place.LocalFiles(), before);
    }
}

TEST_F(SyncOptions, EachCompanyHasItsOwn)
{
    Place.AddCompany(u"TWO"_s);
    ASSERT_EQ(Place.Synchronise().ExitStatus, 0);
    Place.PutEntries(u"ABC"_s, {EntryNumber(3)});
    Place.PutEntries(u"TWO"_s, {EntryNumber(4)});
    Place.Choose(u"TWO"_s, u"3"_s);
    SynchroniseWith(u"1"_s);
    EXPECT_TRUE(Place.Entries(u"ABC"_s).empty());
    EXPECT_EQ(Place.Entries(u"TWO"_s).size(), 1U);
}

/// Companies about which the user of this computer has chosen nothing yet.
class DefaultSyncOption : public testing::Test
{
protected:
    void ExpectCollected(qsizetype uploads) const
    {
        Place.PutEntries(u"ABC"_s, {EntryNumber(static_cast<int>(uploads))});
        const Outcome outcome = Place.Synchronise();
        EXPECT_EQ(outcome.ExitStatus, 0) << qPrintable(outcome.Errors);
        EXPECT_EQ(Place.Uploads(u"ABC"_s).size(), uploads);
        EXPECT_EQ(Place.Options(u"ABC"_s).Sync_Option, u"0"_s);
        EXPECT_FALSE(Place.Log().contains(u"without collecting"_s));
    }

    const Installation Place;
};

TEST_F(DefaultSyncOption, ErasesNothingInACompanyThatIsNew)
{
    Place.Replace(u"ABC/Options.csv"_s, "Ledger,0", "Ledger,2");
    ASSERT_EQ(Place.Synchronise().ExitStatus, 0);
    EXPECT_EQ(Place.Options(u"ABC"_s).Sync_Option, u"0"_s);
    ExpectCollected(1);
}

TEST_F(DefaultSyncOption, ErasesNothingInACompanyWhoseOptionsWereLost)
{
    ASSERT_EQ(Place.Synchronise().ExitStatus, 0);
    Place.Choose(u"ABC"_s, u"2"_s);
    Place.Replace(u"ABC/Options.csv"_s, "Ledger,0", "Ledger,2");
    ASSERT_TRUE(QFile::remove(Place.Program + u"/ABCOptions-WkLg.db"_s));
    ExpectCollected(1);
    ExpectCollected(2); // now with the options that the run before has written
}

TEST_F(SyncOptions, WhatTheUserHasChosenToEraseIsAnnouncedWithItsNumber)
{
    SynchroniseWith(u"2"_s);
    const QString log = Place.Log();
    const qsizetype announced
        = log.indexOf(u"ABC: 2 entries will be deleted without collecting them"_s);
    ASSERT_GE(announced, 0) << qPrintable(log);
    EXPECT_GT(log.indexOf(u"ABC: deleted 2 entries"_s), announced);
    SynchroniseWith(u"2"_s); // with none left there is nothing to announce
    EXPECT_EQ(Place.Log().count(u"will be deleted"_s), 1);
}

} // namespace
