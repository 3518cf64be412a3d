#include "platform/clsInstanceLock.h"

#include "platform/clsRunTimeError.h"
#include "tests/support/Deadline.h"
#include "tests/support/Raised.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

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
