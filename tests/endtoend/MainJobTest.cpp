// The main job, done by a user on the built program: synchronise, enter, find it again, hand it
// over. And what the user sees when something about it fails.

#include "tests/endtoend/driver/ProgramUnderTest.h"
#include "tests/endtoend/driver/System.h"
#include "tests/endtoend/driver/VirtualDisplay.h"
#include "tests/endtoend/driver/WorkPlace.h"

#include <QFile>
#include <QFileInfo>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using testing::IsEmpty;

namespace {

const QString SynchroniseFirst = u"Please perform a synchronization first."_s;

class MainJob : public testing::Test
{
protected:
    VirtualDisplay m_display;

    const QString Entries = u"ABCEntries-WkLg"_s;
};

} // namespace

TEST_F(MainJob, AnEntryTypedAfterAFirstSynchronisationIsHandedOverByTheNext)
{
    const WorkPlace place;
    {
        ProgramUnderTest program(place.ProgramFolder(), m_display);
        program.WaitForMessage(SynchroniseFirst);
        program.Answer(u"OK"_s);
        EXPECT_FALSE(program.IsEnabled(u"txtCustomer"_s));
        program.Click(u"cmdSync"_s);
        ProgramUnderTest::WaitUntil(u"the company's data"_s, [&] {
            return program.Text(u"cboCompany"_s) == u"ABC"_s && program.IsEnabled(u"txtCustomer"_s);
        });
        EXPECT_THAT(place.Journals(), IsEmpty());

        program.EnterTime(u"7.5"_s, u"Said what had to be said"_s);
        program.Click(u"cmdOK"_s);
        ProgramUnderTest::WaitUntil(u"the entry in the list"_s, [&] {
            const QList<QStringList> rows = program.Rows(u"msgEntryList"_s);
            return rows.size() == 1 && rows[0][7] == u"7.50"_s;
        });
        program.Key(u"Escape"_s);
        EXPECT_EQ(program.WaitForEnd(), 0);
    }
    EXPECT_EQ(place.Query(Entries,
                  u"SELECT Hours, Customer_Number, typeof(Customer_Number), "
                  u"Description FROM \"ABCEntries-WkLg\""_s),
        u"75000|0100|text|Said what had to be said"_s);

    ProgramUnderTest program(place.ProgramFolder(), m_display);
    program.WaitForWindow();
    program.WaitForRows(u"msgEntryList"_s, 1);
    EXPECT_EQ(program.Rows(u"msgEntryList"_s)[0][7], u"7.50"_s);
    EXPECT_THAT(place.UploadedRows(u"ABC"_s), IsEmpty());

    program.Click(u"cmdSync"_s);
    ProgramUnderTest::WaitUntil(u"an empty list"_s, [&] {
        const QList<QStringList> rows = program.Rows(u"msgEntryList"_s);
        return rows.size() == 1 && rows[0][0].isEmpty();
    });
    ASSERT_EQ(place.UploadedRows(u"ABC"_s).size(), 1);
    EXPECT_THAT(place.UploadedRows(u"ABC"_s)[0].toStdString(),
        testing::HasSubstr("Said what had to be said"));
    EXPECT_EQ(place.Query(Entries, u"SELECT count(*) FROM \"ABCEntries-WkLg\""_s), u"0"_s);
    EXPECT_EQ(place.Query(u"GlobalOptions-WkLg"_s,
                  u"SELECT Last_Company, Entries_Exist FROM \"GlobalOptions-WkLg\""_s),
        u"ABC|Y"_s);
}

TEST_F(MainJob, ASecondProgramIsRefusedWhileTheFirstRuns)
{
    const WorkPlace place;
    ProgramUnderTest first(place.ProgramFolder(), m_display);
    first.WaitForMessage(SynchroniseFirst);
    first.Answer(u"OK"_s);

    ProgramUnderTest second(place.ProgramFolder(), m_display);
    second.WaitForMessage(u"Error 70; Worklog Remote is already running."_s);
    EXPECT_FALSE(second.IsOpen(u"frmEntryList"_s));
    second.Answer(u"OK"_s);
    second.WaitForEnd();
    EXPECT_TRUE(first.IsOpen(u"frmEntryList"_s));
}

TEST_F(MainJob, OfTwoStartsAtOnceExactlyOneOpensItsWindow)
{
    const WorkPlace place;
    ProgramUnderTest one(place.ProgramFolder(), m_display);
    ProgramUnderTest other(place.ProgramFolder(), m_display);
    const QString refused = u"Error 70; Worklog Remote is already running."_s;
    ProgramUnderTest::WaitUntil(u"both to say something"_s,
        [&] { return !one.MessageText().isEmpty() && !other.MessageText().isEmpty(); });
    EXPECT_NE(one.MessageText() == refused, other.MessageText() == refused);
    EXPECT_NE(one.IsOpen(u"frmEntryList"_s), other.IsOpen(u"frmEntryList"_s));
}

TEST_F(MainJob, TheLockOfAKilledProgramBlocksNobody)
{
    const WorkPlace place;
    {
        ProgramUnderTest killed(place.ProgramFolder(), m_display);
        killed.WaitForMessage(SynchroniseFirst);
        killed.Kill();
    }
    ASSERT_TRUE(QFile::exists(place.ProgramFolder() + u"/WLRemote.txt"_s));
    ProgramUnderTest program(place.ProgramFolder(), m_display);
    program.WaitForMessage(SynchroniseFirst);
}

TEST_F(MainJob, AFolderWithBlanksQuotesAndForeignLettersWorksLikeAnyOther)
{
    const WorkPlace place(OddFolderName());
    ProgramUnderTest program(place.ProgramFolder(), m_display);
    program.WaitForMessage(SynchroniseFirst);
    program.Answer(u"OK"_s);
    program.Click(u"cmdSync"_s);
    ProgramUnderTest::WaitUntil(
        u"the company's data"_s, [&] { return program.Text(u"cboCompany"_s) == u"ABC"_s; });
    EXPECT_TRUE(QFileInfo::exists(place.ProgramFolder() + u"/ABCCustomers-WkLg.db"_s));
}

class FailingClient : public MainJob
{
protected:
    /// Synchronises without success; the program is afterwards where it was before.
    void SynchroniseInVain(const WorkPlace &place, const QString &message)
    {
        ProgramUnderTest program(place.ProgramFolder(), m_display);
        program.WaitForMessage(SynchroniseFirst);
        program.Answer(u"OK"_s);
        program.Click(u"cmdSync"_s);
        if (!message.isEmpty()) {
            program.WaitForMessage(message);
            EXPECT_FALSE(program.IsOpen(u"frmEntryList"_s));
            program.Answer(u"OK"_s);
        } else {
            CloseClient(place);
        }
        program.WaitForMessage(SynchroniseFirst);
        program.Answer(u"OK"_s);
        EXPECT_TRUE(program.IsOpen(u"frmEntryList"_s));
        EXPECT_TRUE(program.IsEnabled(u"cmdSync"_s));
    }

    /// The client's window stays until the user has read why it has failed. It is the only one
    /// then.
    void CloseClient(const WorkPlace &place)
    {
        ProgramUnderTest::WaitUntil(u"the reason in the log"_s, [&] {
            QFile log(place.InRoot(u"worklog/exchange.log"_s));
            return log.open(QIODevice::ReadOnly) && log.readAll().contains("Error: ")
                && m_display.WindowWithKeyboard() != 0;
        });
        m_display.Key(u"Escape"_s);
    }

    static QString UnableToStart(const WorkPlace &place)
    {
        return u"Error #2001 (Unable to start program %1 -hd %2 \"%3\")."_s.arg(
            place.Client(), place.LaunchArguments(), place.ProgramFolder());
    }
};

TEST_F(FailingClient, ThatIsMissingIsNamedWithItsCommandLine)
{
    const WorkPlace place;
    ASSERT_TRUE(QFile::remove(place.Client()));
    SynchroniseInVain(place, UnableToStart(place));
}

TEST_F(FailingClient, ThatIsNoProgramIsNamedWithItsCommandLine)
{
    const WorkPlace place;
    MakeNoProgram(place.Client());
    SynchroniseInVain(place, UnableToStart(place));
}

TEST_F(FailingClient, ThatEndsWithAnErrorLeavesTheProgramUsable)
{
    const WorkPlace place;
    ASSERT_TRUE(QFile::remove(place.Root() + u"/worklog/Company.csv"_s));
    SynchroniseInVain(place, {});
    EXPECT_TRUE(QFile::exists(place.Root() + u"/worklog/exchange.log"_s));
}

TEST_F(FailingClient, WithoutItsInstallationIsNotLaunched)
{
    const WorkPlace place;
    ASSERT_TRUE(QFile::remove(place.Root() + u"/soa/startup.m4p"_s));
    SynchroniseInVain(place, u"Unable to launch MAS 90 or MAS 200."_s);
}

TEST_F(FailingClient, WithoutALaunchFileIsAnErrorThatNamesIt)
{
    const WorkPlace place;
    place.RemoveLaunchFile();
    SynchroniseInVain(
        place, u"Error #53 (File not found: %1)."_s.arg(place.InProgramFolder(u"mas90.ini"_s)));
}
