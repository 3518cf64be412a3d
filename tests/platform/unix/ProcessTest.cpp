#include "platform/clsProcess.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class Process : public testing::Test
{
protected:
    QString Script(const QByteArray &body)
    {
        const QString path = m_folder.filePath(u"script"_s);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + body);
        file.close();
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }

    QByteArray Content(const QString &name)
    {
        QFile file(m_folder.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir m_folder;
    clsSystemProcess m_process;
};

} // namespace

TEST_F(Process, RunsInTheFolderWithItsArguments)
{
    const QString script = Script("printf '%s|' \"$@\" > out; pwd >> out");
    EXPECT_TRUE(m_process.RunAndWait(script, u"-hd \"My*Folder\""_s, m_folder.path()));
    EXPECT_EQ(Content(u"out"_s),
        QByteArray("-hd|My*Folder|" + QDir(m_folder.path()).canonicalPath().toUtf8() + '\n'));
}

TEST_F(Process, WaitsWhateverTheExitCodeOrSignal)
{
    for (const QByteArray &end : {QByteArray("exit 0"), QByteArray("exit 1"), QByteArray("exit 3"),
             QByteArray("kill -KILL $$")}) {
        QFile::remove(m_folder.filePath(u"out"_s));
        EXPECT_TRUE(
            m_process.RunAndWait(Script("echo done > out\n" + end), QString(), m_folder.path()));
        EXPECT_EQ(Content(u"out"_s), "done\n") << end.toStdString();
    }
}

TEST_F(Process, LetsWindowEventsRunMeanwhileAndTakesNoProcessorTime)
{
    // The process ends when an event of ours lets it: without events the test would never end.
    const QString script = Script("while [ ! -e go ]; do sleep 0.05; done");
    QTimer::singleShot(500, [&] {
        QFile go(m_folder.filePath(u"go"_s));
        EXPECT_TRUE(go.open(QIODevice::WriteOnly));
    });
    int awakenings = 0;
    const auto counting = QObject::connect(QAbstractEventDispatcher::instance(),
        &QAbstractEventDispatcher::awake, [&] { ++awakenings; });
    EXPECT_TRUE(m_process.RunAndWait(script, QString(), m_folder.path()));
    QObject::disconnect(counting);
    EXPECT_LT(awakenings, 100) << "a wait that spins wakes up all the time";
}

TEST_F(Process, IsWaitedForAlsoWhenTheApplicationIsToldToQuit)
{
    const QString script = Script("while [ ! -e go ]; do sleep 0.05; done; echo done > out");
    bool ran = false;
    QTimer::singleShot(0, [&] {
        QTimer::singleShot(0, [&] {
            QFile go(m_folder.filePath(u"go"_s));
            QCoreApplication::quit();
            EXPECT_TRUE(go.open(QIODevice::WriteOnly));
        });
        ran = m_process.RunAndWait(script, QString(), m_folder.path());
    });
    QCoreApplication::exec(); // only a running application can be told to quit
    EXPECT_TRUE(ran);
    EXPECT_EQ(Content(u"out"_s), "done\n");
}

TEST_F(Process, DoesNotWaitForAHelperThatItsProgramLeftBehind)
{
    const QString script = Script("(while [ -e \"$0\" ]; do sleep 0.05; done) &\nexit 0");
    EXPECT_TRUE(m_process.RunAndWait(script, QString(), m_folder.path()));
    EXPECT_TRUE(QFile::remove(script)); // ends the helper
}

TEST_F(Process, SaysWhenThereIsNoSuchProgram)
{
    EXPECT_FALSE(m_process.RunAndWait(m_folder.filePath(u"missing"_s), QString(), m_folder.path()));
}

TEST_F(Process, SaysWhenTheFileIsNoProgram)
{
    const QString script = Script("exit 0");
    QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner);
    EXPECT_FALSE(m_process.RunAndWait(script, QString(), m_folder.path()));
}
