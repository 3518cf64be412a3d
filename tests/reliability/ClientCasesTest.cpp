// Clients of every kind, as real processes: whatever one does, the program goes on or says what is
// wrong, and no shell sees its command line.

#include "platform/clsProcess.h"
#include "platform/clsStatusBar.h"
#include "tests/reliability/ProgramOnDisk.h"
#include "tests/support/Deadline.h"
#include "tests/support/Soak.h"
#include "tests/support/Windows.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class ClientCases : public testing::Test
{
protected:
    ClientCases() { SetUpPlace(u"program"_s, u"accounting"_s); }

    void SetUpPlace(const QString &program, const QString &root)
    {
        m_program.reset();
        Folder = m_place.filePath(program);
        Root = m_place.filePath(root);
        QDir().mkpath(Folder);
        QDir().mkpath(Root + u"/soa"_s);
        QDir().mkpath(Root + u"/Home"_s);
        SampleCompany company;
        company.Entries = ProgramOnDisk::MadeEntries();
        company.Options.Sync_Option = u"3"_s;
        BuildSampleCompanies(Folder, {company});
        Write(Root + u"/soa/startup.m4p"_s, {});
        WriteLaunchFile("-ARG X");
    }

    static void Write(const QString &name, const QByteArray &contents)
    {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << name.toStdString();
        ASSERT_EQ(file.write(contents), contents.size());
    }
    void WriteLaunchFile(const QByteArray &arguments) const
    {
        Write(Folder + u"/mas90.ini"_s, Root.toUtf8() + '\n' + arguments + '\n');
    }
    QString Client() const { return Root + u"/Home/pvxwin32.exe"_s; }
    void WriteClient(const QByteArray &script) const
    {
        Write(Client(),
            "#!/bin/sh\ncd '" + QFile::encodeName(Folder).replace("'", "'\\''") + "'\n" + script
                + '\n');
        ASSERT_TRUE(QFile::setPermissions(
            Client(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }

    /// Starts the program, synchronises, and leaves it as it is afterwards.
    void Synchronise()
    {
        m_program.reset();
        m_program = std::make_unique<ProgramOnDisk>(Folder, &m_process);
        m_program->StartUp();
        ASSERT_NE(m_program->Window(), nullptr) << Told();
        m_program->Messages.Shown.clear();
        m_program->Click("cmdSync");
    }
    std::string Told() const { return m_program->Messages.Texts().join(u'|').toStdString(); }
    /// The line at the bottom of the window.
    std::string Notice() const
    {
        const auto &bar = Control<clsStatusBar>(*m_program->Window(), "StatusBar1");
        return bar.currentMessage().toStdString();
    }
    void ExpectRunning(const QStringList &messages = {})
    {
        ASSERT_NE(m_program->Window(), nullptr) << Told();
        EXPECT_EQ(m_program->Messages.Texts(), messages) << Told();
        EXPECT_EQ(StoredEntries(Folder), ProgramOnDisk::MadeEntries());
    }

    QTemporaryDir m_place;
    clsSystemProcess m_process;
    std::unique_ptr<ProgramOnDisk> m_program;
    QString Folder;
    QString Root;
};

} // namespace

TEST_F(ClientCases, ThatCannotBeStartedAreNamedWithTheirCommandLine)
{
    const auto expectNamed = [&](const char *what) {
        SCOPED_TRACE(what);
        Synchronise();
        ExpectRunning({u"Error #2001 (Unable to start program %1 -hd -ARG X \"%2\")."_s.arg(
            Client(), Folder)});
    };
    expectNamed("missing");
    WriteClient("exit 0");
    ASSERT_TRUE(QFile::setPermissions(Client(), QFile::ReadOwner | QFile::WriteOwner));
    expectNamed("not executable");
    // A program of ours for a machine that nobody has.
    QByteArray elf("\x7f"
                   "ELF\x02\x01\x01",
        7);
    elf.append(QByteArray(9, '\0')).append("\x02\x00\xff\x7f\x01\x00\x00\x00", 8);
    elf.append(QByteArray(100, '\0'));
    Write(Client(), elf);
    ASSERT_TRUE(QFile::setPermissions(Client(), QFile::ReadOwner | QFile::ExeOwner));
    expectNamed("of another machine");
    ASSERT_TRUE(QFile::remove(Client()));
    QDir().mkpath(Client());
    expectNamed("a folder");
}

TEST_F(ClientCases, ThatEndInAnyWayLeaveARunningProgram)
{
    for (const char *end : {"exit 0", "exit 1", "exit 3" /* what is left of 259 */, "exit 255",
             "kill -KILL $$", "kill -SEGV $$", "kill -TERM $$", "exec 0<&- 1>&- 2>&-; exit 0"}) {
        SCOPED_TRACE(end);
        WriteClient(end);
        Synchronise();
        ExpectRunning();
    }
}

TEST_F(ClientCases, ThatRunLongAreWaitedForWhileWindowsStayAlive)
{
    WriteClient("while [ ! -e go ]; do sleep 0.02; done; touch went");
    QElapsedTimer timer;
    timer.start();
    int ticks = 0;
    QTimer ticking;
    QObject::connect(&ticking, &QTimer::timeout, [&] {
        // It goes on only because of these: a window that is deaf would wait for ever.
        if (++ticks > 20 && timer.elapsed() > Rounds(0, 180'000))
            Write(Folder + u"/go"_s, {});
    });
    ticking.start(10);
    Synchronise();
    EXPECT_TRUE(QFile::exists(Folder + u"/went"_s));
    EXPECT_GT(ticks, 20);
    ExpectRunning();
}

TEST_F(ClientCases, ThatLeaveAHelperBehindAreNotWaitedForAnyLonger)
{
    WriteClient("(while [ ! -e go ]; do sleep 0.02; done; touch helped) &\nexit 0");
    Synchronise();
    EXPECT_FALSE(QFile::exists(Folder + u"/helped"_s));
    ExpectRunning();
    Write(Folder + u"/go"_s, {});
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return QFile::exists(Folder + u"/helped"_s); }, DeadlineMilliseconds));
}

TEST_F(ClientCases, ThatDeleteDatabasesAreFollowedByWhatIsMissing)
{
    WriteClient("rm ABC*.db");
    Synchronise();
    ASSERT_NE(m_program->Window(), nullptr);
    ASSERT_EQ(m_program->Messages.Shown.size(), 2) << Told();
    EXPECT_EQ(m_program->Messages.Shown[0].Text, u"Please perform a synchronization first."_s);
    EXPECT_TRUE(m_program->Messages.Shown[1].Text.startsWith(u"2 entries of the company ABC "_s));
    SetUpPlace(u"second"_s, u"accounting2"_s);
    WriteClient("rm *.db");
    Synchronise();
    EXPECT_EQ(m_program->Messages.Shown.size(), 2) << Told();
    SetUpPlace(u"third"_s, u"accounting3"_s);
    WriteClient("rm ABCEntries-WkLg.db");
    Synchronise();
    ASSERT_EQ(m_program->Messages.Shown.size(), 1) << Told();
    EXPECT_NE(m_program->Window(), nullptr);
}

TEST_F(ClientCases, ThatHalfWriteADatabaseAreFollowedByItsName)
{
    int place = 0;
    for (const char *name : {"ABCEntries-WkLg.db", "ABCOptions-WkLg.db", "Company-WkLg.db",
             "GlobalOptions-WkLg.db", "ABCCustomers-WkLg.db"}) {
        SCOPED_TRACE(name);
        SetUpPlace(u"half%1"_s.arg(place), u"accounting half %1"_s.arg(place));
        ++place;
        WriteClient(QByteArray("head -c 5000 ") + name + " > x; cat x > " + name);
        Synchronise();
        ASSERT_FALSE(m_program->Messages.Shown.isEmpty());
        ASSERT_NE(m_program->Window(), nullptr) << Told();
        EXPECT_THAT(Told(), HasSubstr("Please perform a synchronization first."));
        EXPECT_THAT(Notice(), HasSubstr(std::string(name) + " is damaged."));
        // Nothing of the entries is lost: where they were written over, their copy is named.
        if (QByteArray(name).contains("Entries")) {
            EXPECT_THAT(Notice(), HasSubstr("The newest sound copy is in backup/"));
        } else {
            EXPECT_EQ(StoredEntries(Folder), ProgramOnDisk::MadeEntries());
        }
    }
}

TEST_F(ClientCases, ThatLeaveAJournalLeaveNoHarm)
{
    // One of another database, one cut off, and one that is none at all.
    for (const char *make :
        {"head -c 512 /dev/zero > ABCEntries-WkLg.db-journal",
            "printf 'no journal' > ABCEntries-WkLg.db-journal",
            "head -c 3 /dev/zero > Company-WkLg.db-journal", ": > GlobalOptions-WkLg.db-journal"}) {
        SCOPED_TRACE(make);
        WriteClient(make);
        Synchronise();
        ExpectRunning();
    }
}

TEST_F(ClientCases, ThatLeaveALockAreFollowedByTheLockedFile)
{
    const QByteArray held
        = "\n(echo 'BEGIN EXCLUSIVE;'; echo '.shell touch locked'; while [ ! -e go "
          "]; do sleep 0.02; done) | sqlite3 ABCEntries-WkLg.db &\n"
          "while [ ! -e locked ]; do sleep 0.02; done";
    WriteClient(held);
    Synchronise();
    ASSERT_FALSE(m_program->Messages.Shown.isEmpty());
    ASSERT_NE(m_program->Window(), nullptr) << Told();
    EXPECT_THAT(Told(), HasSubstr("Please perform a synchronization first."));
    EXPECT_THAT(Notice(), HasSubstr("ABCEntries-WkLg.db is in use by another program."));
    Write(Folder + u"/go"_s, {});
    m_program.reset();
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            ProgramOnDisk again(Folder);
            again.StartUp();
            return again.Window() != nullptr && again.Failures().isEmpty();
        },
        DeadlineMilliseconds));
}

TEST_F(ClientCases, NeverSeeTheirCommandLineThroughAShell)
{
    const QString odd = u"a b;touch hit &$(touch hit)`touch hit`%PATH%|x>hit 'q' \\n ~ ? [x] #"_s;
    SetUpPlace(u"p "_s + odd, u"r "_s + odd);
    WriteLaunchFile("$(touch hit) ; touch hit && \"quoted  two\" `touch hit` %1 %PATH% > hit | *");
    WriteClient("for a in \"$@\"; do printf '%s\\n' \"$a\"; done > called");
    Synchronise();
    ExpectRunning();
    QFile called(Folder + u"/called"_s);
    ASSERT_TRUE(called.open(QIODevice::ReadOnly));
    EXPECT_THAT(QString::fromUtf8(called.readAll()).split(u'\n', Qt::SkipEmptyParts),
        ElementsAre(u"-hd"_s, u"$(touch"_s, u"hit)"_s, u";"_s, u"touch"_s, u"hit"_s, u"&&"_s,
            u"quoted  two"_s, u"`touch"_s, u"hit`"_s, u"%1"_s, u"%PATH%"_s, u">"_s, u"hit"_s,
            u"|"_s, u"*"_s, QString(Folder).replace(u' ', u'*')));
    EXPECT_FALSE(QFile::exists(Folder + u"/hit"_s));
    EXPECT_FALSE(QFile::exists(Root + u"/Home/hit"_s));
    EXPECT_FALSE(QFile::exists(m_place.filePath(u"hit"_s)));
}
