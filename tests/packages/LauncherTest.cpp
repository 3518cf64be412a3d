// The script that starts the installed program, with other programs in place of the real ones: what
// a user's folder looks like after unusual starts, and what the user learns of a failure.

#include "tests/packages/PackageFixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <gmock/gmock.h>

#include <memory>
#include <vector>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace {

struct Ended
{
    int Status = -1;
    std::string Errors;
};

class Launcher : public PackageFixture
{
protected:
    Launcher()
    {
        WriteProgram(u"usr/bin/worklog-remote"_s,
            Read(QStringLiteral(WORKLOG_BUILT_IN "/packaging/worklog-remote")));
        // A megabyte, so that copying it takes a moment.
        WriteProgram(u"usr/lib/worklog-remote/WorklogRemote"_s,
            "#!/bin/sh\necho started >> \"$HOME/started\"\nexit 0\n" + QByteArray(1000000, '#'));
        WriteProgram(u"usr/lib/worklog-remote/show-message"_s,
            "#!/bin/sh\nprintf '%s\\n' \"$1\" >> \"$HOME/shown\"\n");
        Write(Place(u"usr/lib/worklog-remote/WL.HLP"_s), "the help");
        QDir().mkpath(Place(u"home"_s));
    }

    void WriteProgram(const QString &name, const QByteArray &text) const
    {
        Write(Place(name), text);
        QFile::setPermissions(Place(name), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    /// Takes the place of a system's program for the launcher.
    void Replace(const QString &command, const QByteArray &script) const
    {
        WriteProgram(u"commands/"_s + command, "#!/bin/sh\n" + script);
    }

    QString ProgramFolder() const { return Place(u"home/.local/share/worklog-remote"_s); }
    QStringList Files() const
    {
        return QDir(ProgramFolder())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }
    /// The lines of a file in the user's home.
    QStringList Lines(const QString &name) const
    {
        const QString path = Place(u"home/"_s + name);
        if (!QFile::exists(path))
            return {};
        return QString::fromUtf8(Read(path)).split(u'\n', Qt::SkipEmptyParts);
    }

    std::unique_ptr<QProcess> Begin(const QString &display = {}) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const QString &name : {u"XDG_DATA_HOME"_s, u"WAYLAND_DISPLAY"_s, u"DISPLAY"_s})
            environment.remove(name);
        if (!display.isEmpty())
            environment.insert(u"DISPLAY"_s, display);
        environment.insert(u"LC_ALL"_s, u"C"_s);
        environment.insert(u"HOME"_s, Place(u"home"_s));
        environment.insert(u"PATH"_s, Place(u"commands"_s) + u':' + environment.value(u"PATH"_s));
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(environment);
        process->start(Place(u"usr/bin/worklog-remote"_s), QStringList());
        return process;
    }
    static Ended End(QProcess &process)
    {
        EXPECT_TRUE(process.waitForFinished(60000));
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            process.readAllStandardError().toStdString()};
    }
    Ended Start(const QString &display = {}) const { return End(*Begin(display)); }

    const QStringList m_complete{u"WL.HLP"_s, u"WorklogRemote"_s};
};

} // namespace

TEST_F(Launcher, StartsInAFolderThatAnotherStartCreatesAtTheSameMoment)
{
    // The other start always wins.
    Replace(u"mkdir"_s, "/bin/mkdir \"$@\" 2>/dev/null; exec /bin/mkdir \"$@\"\n");
    const Ended ended = Start();
    EXPECT_EQ(ended.Status, 0) << ended.Errors;
    EXPECT_EQ(ended.Errors, "");
    EXPECT_EQ(Files(), m_complete);
}

TEST_F(Launcher, ManyFirstStartsAtOnceAllSucceed)
{
    constexpr int starts = 12;
    std::vector<std::unique_ptr<QProcess>> processes;
    for (int i = 0; i < starts; ++i)
        processes.push_back(Begin());
    for (const auto &process : processes) {
        const Ended ended = End(*process);
        EXPECT_EQ(ended.Status, 0);
        EXPECT_EQ(ended.Errors, "");
    }
    EXPECT_EQ(Lines(u"started"_s).size(), starts);
    EXPECT_EQ(Files(), m_complete);
    EXPECT_EQ(Read(ProgramFolder() + u"/WorklogRemote"_s),
        Read(Place(u"usr/lib/worklog-remote/WorklogRemote"_s)));
}

TEST_F(Launcher, RemovesWhatAStartThatWasKilledHasLeft)
{
    Write(ProgramFolder() + u"/WorklogRemote.new.4711"_s, "half a program");
    Write(ProgramFolder() + u"/WL.HLP.new.4711"_s, "half a help");
    Write(ProgramFolder() + u"/mas90.ini.new.4711"_s, "half a launch file");
    Write(ProgramFolder() + u"/ABCEntries-WkLg.db.new"_s, "not the launcher's");
    EXPECT_EQ(Start().Status, 0);
    EXPECT_EQ(Files(), QStringList{u"ABCEntries-WkLg.db.new"_s} + m_complete);
}

TEST_F(Launcher, CopiesTheAdministratorsLaunchFileOnlyOnce)
{
    Write(Place(u"etc/worklog-remote/mas90.ini"_s), "the administrator's");
    EXPECT_EQ(Start().Status, 0);
    EXPECT_EQ(Read(ProgramFolder() + u"/mas90.ini"_s), "the administrator's");
    Write(ProgramFolder() + u"/mas90.ini"_s, "the user's own");
    EXPECT_EQ(Start().Status, 0);
    EXPECT_EQ(Read(ProgramFolder() + u"/mas90.ini"_s), "the user's own");
}

TEST_F(Launcher, StartsWithoutALaunchFileThatCannotBeReadAndSaysSo)
{
    const QString preset = Place(u"etc/worklog-remote/mas90.ini"_s);
    QDir().mkpath(preset);
    const Ended ended = Start(u":99"_s);
    EXPECT_EQ(ended.Status, 0);
    EXPECT_EQ(Lines(u"started"_s).size(), 1);
    EXPECT_THAT(ended.Errors, HasSubstr((preset + u" cannot be read. "_s).toStdString()));
    ASSERT_EQ(Lines(u"shown"_s).size(), 1);
    EXPECT_THAT(Lines(u"shown"_s)[0].toStdString(), HasSubstr("Configure in the menu Options"));
    EXPECT_EQ(Files(), m_complete);
}

TEST_F(Launcher, ShowsWhyTheFolderCannotBeCreated)
{
    Write(Place(u"home/.local/share"_s), "a file");
    const Ended ended = Start(u":99"_s);
    EXPECT_EQ(ended.Status, 1);
    ASSERT_EQ(Lines(u"shown"_s).size(), 1);
    EXPECT_THAT(Lines(u"shown"_s)[0].toStdString(),
        HasSubstr("The program folder cannot be created: mkdir: "));
    EXPECT_EQ(ended.Errors, "worklog-remote: " + Lines(u"shown"_s)[0].toStdString() + '\n');
}

TEST_F(Launcher, WritesToStandardErrorAloneWithoutADisplay)
{
    Write(Place(u"home/.local/share"_s), "a file");
    const Ended ended = Start();
    EXPECT_EQ(ended.Status, 1);
    EXPECT_THAT(ended.Errors, HasSubstr("The program folder cannot be created: mkdir: "));
    EXPECT_EQ(Lines(u"shown"_s), QStringList());
}

TEST_F(Launcher, ShowsThatTheDiskIsFullAtTheFirstStart)
{
    Replace(u"cp"_s, "echo half > \"$2\"; echo 'cp: No space left on device' >&2; exit 1\n");
    const Ended ended = Start(u":99"_s);
    EXPECT_EQ(ended.Status, 1);
    EXPECT_EQ(Lines(u"shown"_s),
        QStringList{
            ProgramFolder() + u"/WorklogRemote cannot be written: cp: No space left on device"_s});
    EXPECT_EQ(Files(), QStringList());
}

TEST_F(Launcher, StartsThePreviousProgramWhenTheUpdateDoesNotFit)
{
    ASSERT_EQ(Start().Status, 0);
    WriteProgram(u"usr/lib/worklog-remote/WorklogRemote"_s, "#!/bin/sh\nexit 7\n");
    Replace(u"cp"_s, "echo half > \"$2\"; exit 1\n");
    EXPECT_EQ(Start().Status, 0);
    EXPECT_EQ(Lines(u"started"_s).size(), 2);
    EXPECT_EQ(Files(), m_complete);
}
