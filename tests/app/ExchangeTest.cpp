// The program together with the real exchange client: what is restored, erased or left behind is
// never lost, never delivered twice, and never out of sight.

#include "platform/clsGrid.h"
#include "platform/Paths.h"
#include "sync/LaunchFile.h"
#include "tests/app/StartedProgram.h"
#include "tests/exchange/Installation.h"
#include "tests/support/Windows.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPushButton>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using testing::IsEmpty;

namespace {

class ProgramAndClient : public testing::Test
{
protected:
    ProgramAndClient()
    {
        EXPECT_TRUE(QDir(Place.Root).mkpath(u"soa"_s));
        QFile marker(JoinPath(Place.Root, u"soa/startup.m4p"_s));
        EXPECT_TRUE(marker.open(QIODevice::WriteOnly));
        WriteLaunchFile(
            JoinPath(Place.Program, u"mas90.ini"_s), {Place.Root, MAS90Arguments(Place.Root)});
        EXPECT_EQ(Place.Synchronise().ExitStatus, 0);
        Place.PutEntries(u"ABC"_s, {EntryNumber(1), EntryNumber(2), EntryNumber(2)});
    }

    /// One start of the program with one synchronization; its messages.
    QStringList Synchronize() const
    {
        StartedProgram program(Place.Program);
        program.PressSync();
        return program.Messages();
    }
    QString Copy(const QString &number) const
    {
        const QString backup = JoinPath(Place.Program, u"backup"_s);
        const QStringList names = QDir(backup).entryList({number + u"-*"_s}, QDir::Dirs);
        return JoinPath(backup, names.value(0));
    }
    void Restore(const QString &number) const
    {
        const QString entries = JoinPath(Place.Program, u"ABCEntries-WkLg.db"_s);
        ASSERT_TRUE(QFile::remove(entries));
        ASSERT_TRUE(QFile::copy(JoinPath(Copy(number), u"ABCEntries-WkLg.db"_s), entries));
    }

    Installation Place;
};

} // namespace

TEST_F(ProgramAndClient, ARestoredCopyIsNotDeliveredTwice)
{
    EXPECT_THAT(Synchronize(), IsEmpty());
    ASSERT_EQ(Place.Uploads(u"ABC"_s).size(), 1);
    Restore(u"000001"_s);
    ASSERT_EQ(Place.Entries(u"ABC"_s).size(), 3U);
    EXPECT_THAT(Synchronize(), IsEmpty());
    EXPECT_EQ(Place.Uploads(u"ABC"_s).size(), 1);
    EXPECT_TRUE(Place.Entries(u"ABC"_s).empty());
    Place.PutEntries(u"ABC"_s, {EntryNumber(4)});
    EXPECT_THAT(Synchronize(), IsEmpty());
    EXPECT_EQ(Place.Uploads(u"ABC"_s).size(), 2);
}

TEST_F(ProgramAndClient, CollectedWithoutAnOptionTheReportLeadsToTheUploadsAndNothingIsDoubled)
{
    ASSERT_TRUE(QFile::remove(JoinPath(Place.Program, u"ABCOptions-WkLg.db"_s)));
    const QStringList messages = Synchronize();
    ASSERT_EQ(Place.Uploads(u"ABC"_s).size(), 1);
    ASSERT_EQ(messages.size(), 1);
    const QString &report = messages[0];
    EXPECT_TRUE(report.startsWith(
        u"3 entries of the company ABC that were here before the synchronization are no longer "
        "here. Which synchronization option was in force is not known."_s))
        << report.toStdString();
    const qsizetype worklog = report.indexOf(Place.Worklog);
    ASSERT_GT(worklog, 0) << report.toStdString();
    EXPECT_GT(report.indexOf(Copy(u"000001"_s)), worklog);
    EXPECT_TRUE(report.endsWith(u"could be delivered twice."_s));

    Restore(u"000001"_s); // all the same
    EXPECT_THAT(Synchronize(), IsEmpty());
    EXPECT_EQ(Place.Uploads(u"ABC"_s).size(), 1);
    EXPECT_TRUE(Place.Entries(u"ABC"_s).empty());
}

TEST_F(ProgramAndClient, WhatWasErasedIsReportedAndComesBackFromTheCopy)
{
    Place.Choose(u"ABC"_s, u"2"_s);
    {
        StartedProgram program(Place.Program);
        const auto toolTip
            = [&] { return Control<QPushButton>(program.Window(), "cmdSync").toolTip(); };
        EXPECT_TRUE(toolTip().contains(u"will erase 3 entries of this company"_s))
            << toolTip().toStdString();
        program.PressSync();
        ASSERT_EQ(program.Messages().size(), 1);
        const QString report = program.Messages().front();
        EXPECT_TRUE(report.startsWith(u"3 entries of the company ABC "_s)) << report.toStdString();
        EXPECT_TRUE(report.contains(u"erases entries without uploading them"_s));
        EXPECT_TRUE(report.contains(Copy(u"000001"_s))) << report.toStdString();
        EXPECT_EQ(toolTip(), QString());
        program.PressSync();
        EXPECT_THAT(program.Messages(), IsEmpty()) << "nothing is left to erase";
    }
    EXPECT_TRUE(Place.Uploads(u"ABC"_s).isEmpty());

    Restore(u"000001"_s);
    Place.Choose(u"ABC"_s, u"0"_s);
    EXPECT_THAT(Synchronize(), IsEmpty());
    ASSERT_EQ(Place.Uploads(u"ABC"_s).size(), 1);
    EXPECT_EQ(UploadedLines(Place.UploadPath(u"ABC"_s, Place.Uploads(u"ABC"_s).front())),
        LinesOf({1, 2, 2}));
}

TEST_F(ProgramAndClient, ADroppedCompanyStaysChoosableUntilItsEntriesAreCollected)
{
    Place.AddCompany(u"OLD"_s);
    ASSERT_EQ(Place.Synchronise().ExitStatus, 0);
    Place.PutEntries(u"OLD"_s, {EntryNumber(5), EntryNumber(6)});
    Place.Choose(u"OLD"_s, u"3"_s);
    Place.DropCompany(u"OLD"_s);
    {
        StartedProgram program(Place.Program);
        program.PressSync();
        ASSERT_EQ(program.Messages().size(), 1);
        EXPECT_TRUE(program.Messages().front().startsWith(
            u"The accounting system no longer lists the company OLD."_s))
            << program.Messages().front().toStdString();

        QWidget &window = program.Window();
        ASSERT_TRUE(ShowActive(window));
        auto &company = Control<QComboBox>(window, "cboCompany");
        company.setFocus();
        QTest::keyClick(&company, Qt::Key_Down); // opens the list
        LetEventsRun();
        QTest::keyClick(company.view(), Qt::Key_Down);
        QTest::keyClick(company.view(), Qt::Key_Return);
        LetEventsRun();
        ASSERT_EQ(company.currentText(), u"OLD"_s);
        EXPECT_EQ(Control<QLabel>(window, "lblCompanyName").text(),
            u"Company OLD (no longer in accounting)"_s);
        EXPECT_EQ(Control<clsGrid>(window, "msgEntryList").Rows(), 3);
    }
    Place.Choose(u"OLD"_s, u"0"_s);
    EXPECT_THAT(Synchronize(), IsEmpty());
    EXPECT_EQ(Place.Uploads(u"OLD"_s).size(), 1);
    EXPECT_EQ(Place.Companies(), QStringList{u"ABC"_s});
}
