#include "platform/clsInstanceLock.h"

#include "platform/clsRunTimeError.h"
#include "tests/support/Deadline.h"
#include "tests/support/Raised.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#ifdef Q_OS_UNIX
#include <array>
#include <atomic>
#include <filesystem>
#include <sys/stat.h>
#include <thread>
#endif

using namespace Qt::StringLiterals;

namespace {

class InstanceLock : public testing::Test
{
protected:
    QTemporaryDir m_folder;
    QString m_path = m_folder.filePath(u"WLRemote.txt"_s);
};

} // namespace

TEST_F(InstanceLock, ASecondHolderIsDeniedUntilTheFirstLetsGo)
{
    clsInstanceLock first;
    first.CreateAndHold(m_path);
    clsInstanceLock second;
    EXPECT_EQ(
        RaisedBy([&] { second.CreateAndHold(m_path); }).Number, RunTimeErrors::PermissionDenied);
    EXPECT_FALSE(second.IsHeld());
    first.Close();
    second.CreateAndHold(m_path);
    EXPECT_TRUE(second.IsHeld());
}

TEST_F(InstanceLock, AFileLeftBehindIsTakenAndEmptied)
{
    QFile file(m_path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("left behind");
    file.close();
    clsInstanceLock lock;
    lock.CreateAndHold(m_path);
    EXPECT_EQ(QFile(m_path).size(), 0);
}

TEST_F(InstanceLock, HoldingAgainInTheSameProcessNeedsNoPause)
{
    clsInstanceLock lock;
    for (int i = 0; i < 3; ++i) {
        lock.CreateAndHold(m_path);
        lock.Close();
        lock.Close();
    }
    EXPECT_FALSE(lock.IsHeld());
}

TEST_F(InstanceLock, AFolderThatIsNotThereIsAnotherErrorAndNamed)
{
    clsInstanceLock lock;
    const QString path = m_folder.filePath(u"nowhere/WLRemote.txt"_s);
    const Raised raised = RaisedBy([&] { lock.CreateAndHold(path); });
    EXPECT_EQ(raised.Number, RunTimeErrors::PathAccess);
    EXPECT_TRUE(raised.Names(path));
}

TEST_F(InstanceLock, IsRemovedWhenItIsNoLongerNeeded)
{
    clsInstanceLock lock;
    lock.CreateAndHold(m_path);
    lock.CloseAndRemove();
    EXPECT_FALSE(lock.IsHeld());
    EXPECT_FALSE(QFile::exists(m_path));
    lock.CloseAndRemove();
}

#ifdef Q_OS_UNIX // Windows removes no file that is held

TEST_F(InstanceLock, OfAnotherHolderIsNotRemoved)
{
    clsInstanceLock first;
    first.CreateAndHold(m_path);
    ASSERT_TRUE(QFile::remove(m_path)); // by a clean-up that knows nothing of locks
    clsInstanceLock second;
    second.CreateAndHold(m_path);
    first.CloseAndRemove();
    clsInstanceLock third;
    EXPECT_EQ(
        RaisedBy([&] { third.CreateAndHold(m_path); }).Number, RunTimeErrors::PermissionDenied);
}

TEST_F(InstanceLock, HasOneHolderAlsoWhileItsFileIsBeingRemoved)
{
    // A file that was opened before its holder removed it can be locked, but protects nothing.
    std::atomic<int> holders = 0;
    std::atomic<bool> heldTwice = false;
    const auto holdAndRemove = [&] {
        for (int round = 0; round < 5000; ++round) {
            clsInstanceLock lock;
            try {
                lock.CreateAndHold(m_path);
            } catch (const clsRunTimeError &error) {
                EXPECT_EQ(error.Number(), RunTimeErrors::PermissionDenied);
                continue;
            }
            if (++holders > 1)
                heldTwice = true;
            std::this_thread::yield();
            --holders;
            lock.CloseAndRemove();
        }
    };
    std::array<std::thread, 3> threads;
    for (std::thread &thread : threads)
        thread = std::thread(holdAndRemove);
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_FALSE(heldTwice);
}

TEST_F(InstanceLock, ALinkInItsPlaceIsRefusedAndItsTargetIsUnchanged)
{
    const QString target = m_folder.filePath(u"private"_s);
    QFile file(target);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write("mine"), 4);
    file.close();
    std::filesystem::create_symlink(target.toStdString(), m_path.toStdString());
    clsInstanceLock lock;
    const Raised raised = RaisedBy([&] { lock.CreateAndHold(m_path); });
    EXPECT_EQ(raised.Number, RunTimeErrors::PathAccess);
    EXPECT_TRUE(raised.Names(m_path));
    EXPECT_EQ(file.size(), 4);
}

TEST_F(InstanceLock, APipeInItsPlaceIsRefusedWithoutWaiting)
{
    ASSERT_EQ(mkfifo(QFile::encodeName(m_path).constData(), 0600), 0);
    clsInstanceLock lock;
    EXPECT_EQ(RaisedBy([&] { lock.CreateAndHold(m_path); }).Number, RunTimeErrors::PathAccess);
}

#endif

TEST_F(InstanceLock, AProgramThatWasStartedMeanwhileDoesNotKeepTheLock)
{
    clsInstanceLock lock;
    lock.CreateAndHold(m_path);
    QProcess child;
    child.start(QStringLiteral(WAITING_PROGRAM), QStringList());
    ASSERT_TRUE(child.waitForStarted(DeadlineMilliseconds));
    lock.Close();
    clsInstanceLock next;
    EXPECT_EQ(RaisedBy([&] { next.CreateAndHold(m_path); }).Number, 0);
    child.closeWriteChannel();
    EXPECT_TRUE(child.waitForFinished(DeadlineMilliseconds));
}

TEST_F(InstanceLock, AProgramThatWasGivenTheLockKeepsItWithoutTheGiver)
{
    clsInstanceLock lock;
    lock.CreateAndHold(m_path);
    lock.LetChildrenHold();
    QProcess child;
    child.start(QStringLiteral(WAITING_PROGRAM), QStringList());
    ASSERT_TRUE(child.waitForStarted(DeadlineMilliseconds));
    lock.Close();
    clsInstanceLock next;
    EXPECT_EQ(
        RaisedBy([&] { next.CreateAndHold(m_path); }).Number, RunTimeErrors::PermissionDenied);
    child.closeWriteChannel();
    EXPECT_TRUE(child.waitForFinished(DeadlineMilliseconds));
    EXPECT_EQ(RaisedBy([&] { next.CreateAndHold(m_path); }).Number, 0);
}

#ifdef Q_OS_UNIX // on Windows nobody can release what another process has inherited

TEST_F(InstanceLock, IsReleasedForProgramsThatWereLeftRunning)
{
    clsInstanceLock lock;
    lock.CreateAndHold(m_path);
    lock.LetChildrenHold();
    QProcess child;
    child.start(QStringLiteral(WAITING_PROGRAM), QStringList());
    ASSERT_TRUE(child.waitForStarted(DeadlineMilliseconds));
    QFile kept(m_path + u".kept"_s);
    std::filesystem::create_hard_link(m_path.toStdString(), kept.fileName().toStdString());
    lock.ReleaseForAll();
    EXPECT_FALSE(lock.IsHeld());
    EXPECT_FALSE(QFile::exists(m_path));
    clsInstanceLock next;
    EXPECT_EQ(RaisedBy([&] { next.CreateAndHold(m_path); }).Number, 0);
    next.CloseAndRemove();
    EXPECT_EQ(RaisedBy([&] { next.CreateAndHold(kept.fileName()); }).Number, 0)
        << "the file itself is no longer locked";
    lock.ReleaseForAll(); // harmless
    child.closeWriteChannel();
    EXPECT_TRUE(child.waitForFinished(DeadlineMilliseconds));
}

#endif
