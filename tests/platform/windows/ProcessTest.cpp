#include "platform/clsProcess.h"

#include "tests/support/PrintQt.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <windows.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

class Process : public testing::Test
{
protected:
    QString At(const QString &name) const
    {
        return QDir::toNativeSeparators(m_folder.filePath(name));
    }

    void Write(const QString &name, const QByteArray &content) const
    {
        QFile file(At(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QByteArray Content(const QString &name) const
    {
        QFile file(At(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray("(none)");
    }

    bool RunBatch(const QByteArray &commands)
    {
        Write(u"commands.bat"_s, "@echo off\r\n" + commands);
        return m_process.RunAndWait(qEnvironmentVariable("ComSpec"), u"/c commands.bat"_s, At({}));
    }

    QTemporaryDir m_folder;
    clsSystemProcess m_process;
};

} // namespace

TEST_F(Process, IsCalledByTheTextAsItStandsInAWindowThatIsShown)
{
    const QString home = At(u"My Root\\Home"_s);
    ASSERT_TRUE(QDir().mkpath(home));
    const QString program = home + u"\\called.exe"_s;
    ASSERT_TRUE(QFile::copy(QStringLiteral(CALLED_PROGRAM), program));
    const QString arguments = u"-hd  \"C:\\My Root\\x\" * -ARG=\"a b\" \"\" \"C:\\My*Folder\\\""_s;
    ASSERT_TRUE(m_process.RunAndWait(program, arguments, home));

    EXPECT_THAT(QString::fromUtf8(Content(u"My Root\\Home\\called"_s)).split(u'\n'),
        ElementsAre(program + u' ' + arguments, home, u"shown"_s, u"-hd"_s, u"C:\\My Root\\x"_s,
            u"*"_s, u"-ARG=a b"_s, QString(u""_s), u"C:\\My*Folder\\"_s));
}

TEST_F(Process, IsWaitedForWhateverItsExitCode)
{
    // 259 is what the system answers for a process that has not ended yet.
    for (const QByteArray &code : {QByteArray("0"), QByteArray("1"), QByteArray("259")}) {
        QFile::remove(At(u"out"_s));
        EXPECT_TRUE(RunBatch("echo done> out\r\nexit " + code + "\r\n"));
        EXPECT_EQ(Content(u"out"_s), "done") << code.toStdString();
    }
}

TEST_F(Process, LetsWindowEventsRunMeanwhileAndTakesNoProcessorTime)
{
    // The process ends when an event of ours lets it: without events the test would never end.
    QTimer::singleShot(500, [&] { Write(u"go"_s, {}); });
    const auto ownTime = [] {
        FILETIME created, ended, kernel, user;
        ::GetProcessTimes(::GetCurrentProcess(), &created, &ended, &kernel, &user);
        return (kernel.dwLowDateTime + user.dwLowDateTime) / 10'000; // ms
    };
    const DWORD before = ownTime();
    EXPECT_TRUE(RunBatch(":again\r\nif not exist go goto again\r\n"));
    EXPECT_LT(ownTime() - before, 100) << "a wait that spins takes all of the half second";
}

TEST_F(Process, IsWaitedForAlsoWhenTheApplicationIsToldToQuit)
{
    QTimer::singleShot(0, [&] {
        QCoreApplication::quit();
        Write(u"go"_s, {});
    });
    EXPECT_TRUE(RunBatch(":again\r\nif not exist go goto again\r\necho done> out\r\n"));
    EXPECT_EQ(Content(u"out"_s), "done");
}

TEST_F(Process, SaysWhenThereIsNoSuchProgram)
{
    EXPECT_FALSE(m_process.RunAndWait(At(u"missing.exe"_s), QString(), At({})));
}

TEST_F(Process, SaysWhenTheFileIsNoProgram)
{
    Write(u"text.exe"_s, "no program");
    EXPECT_FALSE(m_process.RunAndWait(At(u"text.exe"_s), QString(), At({})));
}
