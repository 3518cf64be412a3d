// The exchange client's own window: what a user sees while it works and after it has failed, and
// how a run is ended.

#include "tests/endtoend/driver/ProgramUnderTest.h"
#include "tests/endtoend/driver/VirtualDisplay.h"
#include "tests/endtoend/driver/WorkPlace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class ClientWindow : public testing::Test
{
protected:
    ProgramUnderTest::Command Client() const
    {
        return {m_place.Client(), {}, {u"-hd"_s, u"by-hand"_s, m_place.ProgramFolder()}};
    }

    std::string Report(ProgramUnderTest &client)
    {
        return client.Text(u"txtReport"_s).toStdString();
    }

    void WaitForFailure(ProgramUnderTest &client)
    {
        client.WaitForText(u"lblTable"_s, u"Failed"_s);
        client.WaitUntilActive(u"frmProgress"_s);
    }

    QString Log() const
    {
        QFile log(m_place.InRoot(u"worklog/exchange.log"_s));
        return log.open(QIODevice::ReadOnly) ? QString::fromUtf8(log.readAll()) : QString();
    }

    /// So many customers that there is time to look and to cancel.
    void MakeTheWorkLong() const
    {
        QByteArray customers;
        for (int i = 0; i < 600'000; ++i)
            customers += "M" + QByteArray::number(i) + ",Customer,,N,0\n";
        m_place.Replace(
            u"ABC"_s, u"Customers"_s, "ZZ-FIFTEEN-LONG,", customers + "ZZ-FIFTEEN-LONG,");
    }

    void ExpectNothingLeft() const
    {
        EXPECT_THAT(m_place.Databases(), IsEmpty());
        EXPECT_THAT(m_place.Journals(), IsEmpty());
        EXPECT_FALSE(QFile::exists(m_place.InProgramFolder(u"exchange-staging"_s)));
        EXPECT_FALSE(QFile::exists(m_place.InProgramFolder(u"exchange.lock"_s)));
    }

    const WorkPlace m_place;
    const VirtualDisplay m_display;
};

} // namespace

TEST_F(ClientWindow, ClosesByItselfSoonAfterASuccess)
{
    ProgramUnderTest client(Client(), m_display);
    EXPECT_EQ(client.WaitForEnd(), 0);
    EXPECT_EQ(m_place.FinishedRuns(), 1);
}

TEST_F(ClientWindow, ShowsTheReasonAndTheLogUntilItIsClosed)
{
    m_place.Replace(u"ABC"_s, u"Divisions"_s, "88.5", "88,5");
    for (const QString &key : {u"Escape"_s, u"Return"_s, u"space"_s, u"alt+F4"_s}) {
        ProgramUnderTest client(Client(), m_display);
        WaitForFailure(client);
        EXPECT_THAT(Report(client), HasSubstr("Divisions.csv, line 3: "));
        EXPECT_THAT(Report(client),
            HasSubstr("The log is " + m_place.InRoot(u"worklog/exchange.log"_s).toStdString()));
        EXPECT_TRUE(Log().contains(u"Divisions.csv, line 3: "_s)) << "the log does not wait";
        EXPECT_TRUE(client.IsRunning());
        client.Key(key);
        EXPECT_EQ(client.WaitForEnd(), 1);
    }
    EXPECT_THAT(m_place.Databases(), IsEmpty());
}

TEST_F(ClientWindow, ShowsWhatIsAtWorkAndIsCanceled)
{
    MakeTheWorkLong();
    ProgramUnderTest client(Client(), m_display);
    ProgramUnderTest::WaitUntil(u"the customers to be at work"_s,
        [&] { return client.Text(u"lblTable"_s) == u"Customers"_s; });
    EXPECT_EQ(client.Text(u"lblCompany"_s), u"ABC"_s);
    EXPECT_THAT(client.Text(u"lblElapsed"_s).toStdString(), HasSubstr("Elapsed time: 0:"));
    client.Click(u"cmdCancel"_s);
    EXPECT_EQ(client.WaitForEnd(), 1);
    EXPECT_TRUE(Log().contains(u"Error: The synchronization was canceled"_s));
    ExpectNothingLeft();
}

TEST_F(ClientWindow, IsCanceledByEscapeAndByClosingIt)
{
    MakeTheWorkLong();
    for (const QString &key : {u"Escape"_s, u"alt+F4"_s}) {
        ProgramUnderTest client(Client(), m_display);
        ProgramUnderTest::WaitUntil(u"the customers to be at work"_s,
            [&] { return client.Text(u"lblTable"_s) == u"Customers"_s; });
        client.WaitUntilActive(u"frmProgress"_s);
        client.Key(key);
        EXPECT_EQ(client.WaitForEnd(), 1);
        ExpectNothingLeft();
    }
}

TEST_F(ClientWindow, ARunThatWasCanceledIsFollowedByACompleteOne)
{
    {
        MakeTheWorkLong();
        ProgramUnderTest client(Client(), m_display);
        client.WaitUntilActive(u"frmProgress"_s);
        client.Key(u"Escape"_s);
        EXPECT_EQ(client.WaitForEnd(), 1);
    }
    ProgramUnderTest client(Client(), m_display);
    EXPECT_EQ(client.WaitForEnd(), 0);
    EXPECT_EQ(m_place.Query(u"ABCCustomers-WkLg"_s, u"SELECT count(*) FROM [ABCCustomers-WkLg]"_s),
        u"600073"_s);
}

#ifdef Q_OS_UNIX

TEST_F(ClientWindow, IsThereAndCancelsWhileAFileDoesNotAnswer)
{
    for (const QString &file : {u"/Company.csv"_s, u"/ABC/Customers.csv"_s, u"/exchange.log"_s}) {
        ProgramUnderTest::Command command = Client();
        command.Environment = {
            {u"LD_PRELOAD"_s, QStringLiteral(WORKLOG_HANGING_FILE)}, {u"WORKLOG_HANGS_AT"_s, file}};
        ProgramUnderTest client(command, m_display);
        ProgramUnderTest::WaitUntil(u"the time to go on"_s,
            [&] { return client.Text(u"lblElapsed"_s) == u"Elapsed time: 0:02"_s; });
        EXPECT_TRUE(client.IsEnabled(u"cmdCancel"_s));
        client.Click(u"cmdCancel"_s);
        EXPECT_EQ(client.WaitForEnd(), 1);
        EXPECT_THAT(m_place.Databases(), IsEmpty());
    }
    ProgramUnderTest client(Client(), m_display);
    EXPECT_EQ(client.WaitForEnd(), 0);
}

#endif
