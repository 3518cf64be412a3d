#include "tests/exchange/Installation.h"

#include "exchange/Collection.h"

#include <gtest/gtest.h>

#include <QFile>

using namespace Qt::StringLiterals;

namespace {

TEST(Collection, EntriesOfTwoCompaniesLandInAFileEach)
{
    Installation place;
    place.AddCompany(u"X Y"_s);
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"ABC"_s, {EntryNumber(1), EntryNumber(2), EntryNumber(2)});
    place.PutEntries(u"X Y"_s, {EntryNumber(3)});

    const Outcome outcome = place.Synchronise();

    ASSERT_EQ(outcome.ExitStatus, 0) << qPrintable(outcome.Errors);
    ASSERT_EQ(place.Uploads(u"ABC"_s).size(), 1);
    ASSERT_EQ(place.Uploads(u"X Y"_s).size(), 1);
    EXPECT_EQ(place.Read(u"ABC/uploads/"_s + place.Uploads(u"ABC"_s).first()),
        "Customer_Number,Project_Number,Activity_Number,Date,Billing_Status,Mgmt_Approval,"
        "Sec_Approval,On_Hold,Billing_Option,Multiplier_Number,Rate_Overridden,Reimburse,Hours,"
        "Rate,Amount,Multiplier_Factor,Exp_Markup_Percent,Exp_Markup_Amount,Description\r\n"
        "0100,1000,CONSULT,2024-01-02 00:00:00,1,N,N,N,4,,N,N,7.5001,95.0000,712.5095,1.0000,"
        "0.0000,0.0000,Entry 1\r\n"
        "0100,1000,CONSULT,2024-01-03 00:00:00,1,N,N,N,4,,N,N,7.5002,95.0000,712.5190,1.0000,"
        "0.0000,0.0000,Entry 2\r\n"
        "0100,1000,CONSULT,2024-01-03 00:00:00,1,N,N,N,4,,N,N,7.5002,95.0000,712.5190,1.0000,"
        "0.0000,0.0000,Entry 2\r\n");
    EXPECT_EQ(place.Read(u"X Y/uploads/"_s + place.Uploads(u"X Y"_s).first()), UploadOf({3}));
    EXPECT_TRUE(place.Entries(u"ABC"_s).empty());
    EXPECT_TRUE(place.Entries(u"X Y"_s).empty());
    EXPECT_TRUE(IsSettled(place.Note(u"ABC"_s)));
    EXPECT_TRUE(place.Uploads(u"ABC"_s).first().contains(u"-007-"_s));
    EXPECT_TRUE(place.Log().contains(u"ABC: collected 3 entries into "_s));
}

TEST(Collection, TextsArriveAsTheyAre)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    const std::vector<std::pair<QString, QByteArray>> texts
        = {{u"a \"b\", c"_s, "\"a \"\"b\"\", c\""}, {u"two\nlines"_s, "\"two\nlines\""},
            {u"and\r\nthese"_s, "\"and\r\nthese\""}, {u"a\rreturn"_s, "\"a\rreturn\""},
            {u"at the end\r"_s, "\"at the end\r\""}, {u" blank "_s, "\" blank \""},
            {u"日本 Łąka"_s, "日本 Łąka"}, {u"a\ttab"_s, "a\ttab"}, {u"=1+1"_s, "=1+1"},
            {u"\uFEFF\uFEFFmark"_s, "\"\uFEFF\uFEFFmark\""}};
    std::vector<EntryRecord> entries;
    QByteArray expected = UploadOf({});
    for (const auto &[text, cell] : texts) {
        entries.push_back(EntryNumber(1));
        entries.back().Description = text;
        expected += UploadOf({1}).mid(UploadOf({}).size()).replace("Entry 1", cell);
    }
    place.PutEntries(u"ABC"_s, entries);

    ASSERT_EQ(place.Synchronise().ExitStatus, 0);

    EXPECT_EQ(place.Read(u"ABC/uploads/"_s + place.Uploads(u"ABC"_s).first()).toStdString(),
        expected.toStdString());
    EXPECT_TRUE(place.Entries(u"ABC"_s).empty());
}

TEST(Collection, WithoutEntriesThereIsNoFile)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"ABC"_s, {});
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    EXPECT_TRUE(place.Uploads(u"ABC"_s).isEmpty());
}

TEST(Collection, EachSynchronisationHasAFileOfItsOwn)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    for (int i = 1; i <= 3; ++i) {
        place.PutEntries(u"ABC"_s, {EntryNumber(i)});
        ASSERT_EQ(place.Synchronise().ExitStatus, 0);
        EXPECT_EQ(place.Uploads(u"ABC"_s).size(), i);
    }
}

TEST(Collection, ACompanyThatTheAccountingSideHasDroppedStillHandsOver)
{
    Installation place;
    place.AddCompany(u"OLD"_s);
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"OLD"_s, {EntryNumber(1)});
    const QMap<QString, QByteArray> before = place.LocalFiles();
    place.DropCompany(u"OLD"_s);

    ASSERT_EQ(place.Synchronise().ExitStatus, 0);

    EXPECT_EQ(place.Uploads(u"OLD"_s).size(), 1);
    EXPECT_TRUE(place.Entries(u"OLD"_s).empty());
    EXPECT_EQ(place.Companies(), QStringList{u"ABC"_s});
    const QMap<QString, QByteArray> after = place.LocalFiles();
    for (const QString &name : before.keys()) {
        if (name.contains(u"/OLD"_s) && !name.contains(u"Entries"_s)) {
            EXPECT_EQ(after.value(name), before.value(name)) << qPrintable(name);
        }
    }
}

TEST(Collection, ADroppedCompanyThatShallDoNothingKeepsItsEntries)
{
    Installation place;
    place.AddCompany(u"OLD"_s);
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"OLD"_s, {EntryNumber(1)});
    place.Choose(u"OLD"_s, u"2"_s);
    place.DropCompany(u"OLD"_s);
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    EXPECT_TRUE(place.Uploads(u"OLD"_s).isEmpty());
    EXPECT_EQ(place.Entries(u"OLD"_s).size(), 1U);
}

TEST(Collection, AnEntryThatIsNotAsItWasSavedIsNotHandedOver)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"ABC"_s, {EntryNumber(1), EntryNumber(2)});
    const QString name = place.Program + u"/ABCEntries-WkLg.db"_s;
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    QByteArray bytes = file.readAll();
    const qsizetype at = bytes.indexOf(EntryNumber(2).Description.toUtf8());
    ASSERT_GT(at, 0);
    bytes[at] = static_cast<char>(bytes[at] ^ 1);
    file.seek(0);
    file.write(bytes);
    file.close();
    const QMap<QString, QByteArray> before = place.LocalFiles();

    const Outcome outcome = place.Synchronise();

    EXPECT_EQ(outcome.ExitStatus, 1);
    EXPECT_TRUE(outcome.Errors.contains(u"Record 2 of the database ABCEntries-WkLg"_s))
        << qPrintable(outcome.Errors);
    EXPECT_EQ(place.LocalFiles(), before);
    EXPECT_TRUE(place.Uploads(u"ABC"_s).isEmpty());
    place.Choose(u"ABC"_s, u"2"_s); // erasing asks nobody
    EXPECT_EQ(place.Synchronise().ExitStatus, 0);
    EXPECT_TRUE(place.Entries(u"ABC"_s).empty());
}

TEST(Collection, WhatTheUserWritesWhileTheFileIsHandedOverComesWithTheNextOne)
{
    Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"ABC"_s, {EntryNumber(1), EntryNumber(2), EntryNumber(3)});
    LocalDatabases local(place.Program);
    Collection collection(local, place.Worklog, u"ABC"_s, u"007"_s);
    ASSERT_TRUE(collection.Prepare());
    place.PutEntries(u"ABC"_s, {EntryNumber(4)});

    collection.Deliver();

    EXPECT_EQ(UploadedLines(collection.File()), LinesOf({1, 2, 3}));
    EXPECT_EQ(TextsOf(place.Entries(u"ABC"_s)), QStringList{TextOf(EntryNumber(4))});
    EXPECT_TRUE(IsSettled(place.Note(u"ABC"_s)));
}

TEST(Collection, AnEntryChangedWhileAnotherComputersFileIsDeliveredStays)
{
    Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"ABC"_s, {EntryNumber(1), EntryNumber(2), EntryNumber(3)});
    LocalDatabases local(place.Program);
    Collection collection(local, place.Worklog, u"ABC"_s, u"007"_s);
    ASSERT_TRUE(collection.Prepare());
    // A computer with a copy of the program folder writes its file under the same hidden name.
    const QStringList hidden = place.HiddenUploads(u"ABC"_s);
    ASSERT_EQ(hidden.size(), 1);
    place.Write(u"ABC/uploads/"_s + hidden.first(), UploadOf({1, 2, 3, 4}));
    EntryRecord changed = EntryNumber(2);
    changed.Hours = Currency::FromScaled(1);
    {
        const auto tables = place.Open();
        tables->Entries.Handle = tables->Main.OpenTable(u"ABCEntries-WkLg"_s);
        tables->Entries.MoveToPosition(1);
        tables->Entries.UpdateEntry(changed);
    }

    collection.Deliver();

    EXPECT_EQ(UploadedLines(collection.File()), LinesOf({1, 2, 3, 4}));
    EXPECT_EQ(TextsOf(place.Entries(u"ABC"_s)), QStringList{TextOf(changed)});
    EXPECT_TRUE(IsSettled(place.Note(u"ABC"_s)));
}

TEST(Collection, NothingIsErasedBeforeEveryCompanyHasDelivered)
{
    Installation place;
    place.AddCompany(u"X Y"_s);
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"ABC"_s, {EntryNumber(1)});
    place.Choose(u"ABC"_s, u"2"_s);
    place.PutEntries(u"X Y"_s, {EntryNumber(2)});
    place.Write(u"X Y/uploads"_s, "a file where the folder should be");

    EXPECT_EQ(place.Synchronise().ExitStatus, 1);

    EXPECT_EQ(place.Entries(u"ABC"_s).size(), 1U);
    EXPECT_EQ(place.Entries(u"X Y"_s).size(), 1U);
}

TEST(Collection, UploadsThatCannotBeWrittenLeaveTheEntries)
{
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"ABC"_s, {EntryNumber(1)});
    place.Write(u"ABC/uploads"_s, "a file where the folder should be");
    const QMap<QString, QByteArray> before = place.LocalFiles();

    const Outcome outcome = place.Synchronise();

    EXPECT_EQ(outcome.ExitStatus, 1);
    EXPECT_TRUE(outcome.Errors.contains(u"uploads"_s)) << qPrintable(outcome.Errors);
    EXPECT_EQ(place.LocalFiles(), before);
    ASSERT_TRUE(QFile::remove(place.Worklog + u"/ABC/uploads"_s));
    EXPECT_EQ(place.Synchronise().ExitStatus, 0);
    EXPECT_EQ(place.Uploads(u"ABC"_s).size(), 1);
}

} // namespace
