// A program folder that a client works in, with the program killed, open or gone; and one whose
// name the program cannot write.

#include "tests/endtoend/driver/ProgramUnderTest.h"
#include "tests/endtoend/driver/System.h"
#include "tests/endtoend/driver/VirtualDisplay.h"
#include "tests/endtoend/driver/WorkPlace.h"
#include "tests/support/Deadline.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QScopeGuard>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace {

class KilledProgram : public testing::Test
{
protected:
    KilledProgram() { m_place.Synchronise(); }

    /// Puts a shell script in the client's place. It knows nothing of locks.
    void MakeClient(const QByteArray &commands) const
    {
        QFile client(m_place.Client());
        ASSERT_TRUE(client.remove());
        ASSERT_TRUE(client.open(QIODevice::WriteOnly));
        client.write("#!/bin/sh\n" + commands);
        ASSERT_TRUE(client.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }
    QString InHome(const QString &name) const { return m_place.InRoot(u"Home/"_s + name); }
    /// The process id that the client has written into a file of its folder.
    qint64 ProcessIn(const QString &name) const
    {
        qint64 process = 0;
        ProgramUnderTest::WaitUntil(u"the client to write "_s + name, [&] {
            QFile file(InHome(name));
            const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
            process = text.endsWith('\n') ? text.trimmed().toLongLong() : 0;
            return process != 0;
        });
        return process;
    }
    static void WaitForEndOf(qint64 process)
    {
        // A process that nobody has waited for keeps its number, but no files.
        const QString files = u"/proc/%1/fd"_s.arg(process);
        ProgramUnderTest::WaitUntil(u"the client to end"_s,
            [&] { return QDir(files).entryList(QDir::AllEntries | QDir::System).isEmpty(); });
    }
    void Synchronise(ProgramUnderTest &program) const
    {
        program.WaitForFocus(u"dtpDate"_s);
        program.Key(u"alt+s"_s);
    }
    QString StillRunning() const
    {
        return u"Error 2002; A synchronization is still running in the folder %1. Start Worklog "
               "Remote again when it has ended"_s.arg(m_place.ProgramFolder());
    }
    void ExpectRefused(const QString &message) const
    {
        ProgramUnderTest program(m_place.ProgramFolder(), m_display);
        program.WaitForMessage(message);
        EXPECT_FALSE(program.IsOpen(u"frmEntryList"_s));
        program.AnswerByKeys(u"Return"_s);
        EXPECT_EQ(program.WaitForEnd(), 1);
    }
    void ExpectStarts() const
    {
        ProgramUnderTest program(m_place.ProgramFolder(), m_display);
        program.WaitForFocus(u"dtpDate"_s);
        EXPECT_EQ(program.MessageText(), QString());
        program.Key(u"Escape"_s);
        EXPECT_EQ(program.WaitForEnd(), 0);
    }

    const WorkPlace m_place;
    const VirtualDisplay m_display;
};

} // namespace

TEST_F(KilledProgram, DoesNotOpenAgainNextToItsClient)
{
    MakeClient("echo $$ >client\nwhile [ -e client -a ! -e end ]; do sleep 0.05; done\n");
    ProgramUnderTest program(m_place.ProgramFolder(), m_display);
    Synchronise(program);
    const qint64 client = ProcessIn(u"client"_s);
    ExpectRefused(u"Error 70; Worklog Remote is already running."_s);

    program.Kill();
    ExpectRefused(StillRunning());
    ExpectRefused(StillRunning()); // a start that was refused takes no lock away

    QFile end(InHome(u"end"_s));
    ASSERT_TRUE(end.open(QIODevice::WriteOnly));
    WaitForEndOf(client);
    ExpectStarts();
}

TEST_F(KilledProgram, ReportsAtItsNextStartWhatBecameOfTheEntriesAndOnlyThen)
{
    QFile end(InHome(u"end"_s));
    qint64 client = 0;
    {
        ProgramUnderTest program(m_place.ProgramFolder(), m_display);
        program.WaitForFocus(u"dtpDate"_s);
        program.EnterTime(u"7.5"_s, u"Work"_s);
        program.Key(u"Tab"_s);
        program.WaitForFocus(u"cmdOK"_s);
        program.Key(u"Return"_s);
        program.WaitForText(u"txtDescription"_s, QString());
        program.ChooseByKeys(u"Options"_s, u"Sync"_s);
        program.WaitForFocus(u"optSyncOption0"_s);
        for (int option = 0; option < 3; ++option)
            program.Key(u"Down"_s);
        program.WaitForFocus(u"optSyncOption3"_s);
        program.Key(u"alt+a"_s);
        program.WaitUntilClosed(u"frmSyncOptions"_s);
        MakeClient("rm '" + m_place.InProgramFolder(u"ABCEntries-WkLg.db"_s).toUtf8()
            + "'\necho $$ >client\nwhile [ -e client -a ! -e end ]; do sleep 0.05; done\n");
        program.WaitUntilActive();
        program.Key(u"alt+s"_s);
        client = ProcessIn(u"client"_s);
        program.Kill();
    }
    ASSERT_TRUE(end.open(QIODevice::WriteOnly));
    WaitForEndOf(client);
    {
        ProgramUnderTest program(m_place.ProgramFolder(), m_display);
        ProgramUnderTest::WaitUntil(
            u"the report"_s, [&] { return !program.MessageText().isEmpty(); });
        EXPECT_THAT(program.MessageText().toStdString(),
            HasSubstr("An entry of the company ABC that was here before the synchronization is no "
                      "longer here."));
        EXPECT_THAT(program.MessageText().toStdString(),
            HasSubstr(m_place.InProgramFolder(u"backup/000001-"_s).toStdString()));
        program.AnswerByKeys(u"Return"_s);
        program.WaitForFocus(u"dtpDate"_s);
        program.Key(u"Escape"_s);
        EXPECT_EQ(program.WaitForEnd(), 0);
    }
    ExpectStarts();
}

TEST_F(KilledProgram, AtWorkOnItsDatabasesKeepsNobodyOut)
{
    {
        ProgramUnderTest program(m_place.ProgramFolder(), m_display);
        program.WaitForFocus(u"dtpDate"_s);
        program.Kill();
    }
    const int runs = m_place.FinishedRuns();
    m_place.Synchronise();
    EXPECT_EQ(m_place.FinishedRuns(), runs + 1);
    ExpectStarts();
}

TEST_F(KilledProgram, WhatItsClientLeavesRunningKeepsNobodyOut)
{
    MakeClient("sleep 600 >/dev/null 2>&1 &\necho $! >left\n");
    qint64 left = 0;
    {
        ProgramUnderTest program(m_place.ProgramFolder(), m_display);
        for (int time = 0; time < 2; ++time) {
            Synchronise(program);
            left = ProcessIn(u"left"_s);
            EXPECT_TRUE(QFile::remove(InHome(u"left"_s)));
        }
        program.WaitForFocus(u"dtpDate"_s);
        program.Kill();
    }
    EXPECT_EQ(::kill(static_cast<pid_t>(left), 0), 0) << "it still runs";
    ExpectStarts();
    ::kill(static_cast<pid_t>(left), SIGKILL);
}

TEST_F(KilledProgram, ThatIsOpenInsteadRefusesAClientStartedByHand)
{
    ProgramUnderTest program(m_place.ProgramFolder(), m_display);
    program.WaitForFocus(u"dtpDate"_s);
    const int runs = m_place.FinishedRuns();
    QProcess client;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    client.setProcessEnvironment(environment);
    client.start(m_place.Client(), {u"-hd"_s, m_place.ProgramFolder()});
    ASSERT_TRUE(client.waitForFinished(DeadlineMilliseconds));
    EXPECT_EQ(client.exitCode(), 1);
    QFile log(m_place.InRoot(u"worklog/exchange.log"_s));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_THAT(log.readAll().toStdString(),
        HasSubstr(("Worklog Remote is open in the folder " + m_place.ProgramFolder().toUtf8())
                      .toStdString()));
    EXPECT_EQ(m_place.FinishedRuns(), runs);
    Synchronise(program); // which starts a client of its own
    ProgramUnderTest::WaitUntil(
        u"the synchronization"_s, [&] { return m_place.FinishedRuns() == runs + 1; });
    program.WaitForFocus(u"dtpDate"_s);
}

TEST(ProgramFolderName, ThatIsNotUtf8IsRefusedByName)
{
    const WorkPlace place;
    const std::filesystem::path odd
        = QFile::encodeName(place.ProgramFolder()).toStdString() + "-B\xFCro";
    std::filesystem::create_directory(odd);
    const auto removed = qScopeGuard([&] { std::filesystem::remove_all(odd); });
    for (const char *name : {"WorklogRemote", "WL.HLP"})
        std::filesystem::copy(
            QFile::encodeName(place.InProgramFolder(QString::fromLatin1(name))).toStdString(),
            odd / name);
    const VirtualDisplay display;
    ProgramUnderTest program(
        {u"/bin/sh"_s, UserOf(place.ProgramFolder()),
            {u"-c"_s, u"exec \"$(printf '%s-B\\374ro' \"$1\")/WorklogRemote\""_s, u"sh"_s,
                place.ProgramFolder()}},
        display);
    program.WaitForMessage(
        u"Error 75; The name of the program's folder is not UTF-8: %1-B\\xFCro. Rename the folder"_s
            .arg(place.ProgramFolder()));
    program.AnswerByKeys(u"Return"_s);
    EXPECT_EQ(program.WaitForEnd(), 1);
    EXPECT_FALSE(std::filesystem::exists(odd / "WLRemote.txt"));
}
