#include "platform/clsInstanceLock.h"

#include "platform/clsRunTimeError.h"
#include "tests/support/Raised.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// What another process does at the moment before the next lock is taken.
std::function<void()> BeforeLocking;

} // namespace

// The linker has the program's calls of flock arrive here.
extern "C" {
int __real_flock(int file, int operation);
int __wrap_flock(int file, int operation);

int __wrap_flock(int file, int operation)
{
    if (const auto action = std::exchange(BeforeLocking, {}))
        action();
    return __real_flock(file, operation);
}
}

namespace {

class RemovedLock : public testing::Test
{
protected:
    ~RemovedLock() override { BeforeLocking = {}; }

    QTemporaryDir m_folder;
    QString m_path = m_folder.filePath(u"WLRemote.txt"_s);
};

} // namespace

TEST_F(RemovedLock, AFileThatIsRemovedBeforeItIsLockedIsMadeAgain)
{
    clsInstanceLock lock;
    BeforeLocking = [&] { ASSERT_TRUE(QFile::remove(m_path)); };
    lock.CreateAndHold(m_path);
    EXPECT_TRUE(QFile::exists(m_path));
    // The lock is on the file that has the name: nobody else gets it.
    clsInstanceLock other;
    EXPECT_EQ(
        RaisedBy([&] { other.CreateAndHold(m_path); }).Number, RunTimeErrors::PermissionDenied);
}

TEST_F(RemovedLock, AFileThatIsReplacedByOneThatIsHeldIsDenied)
{
    clsInstanceLock other;
    clsInstanceLock lock;
    BeforeLocking = [&] {
        ASSERT_TRUE(QFile::remove(m_path));
        other.CreateAndHold(m_path);
    };
    EXPECT_EQ(
        RaisedBy([&] { lock.CreateAndHold(m_path); }).Number, RunTimeErrors::PermissionDenied);
    EXPECT_FALSE(lock.IsHeld());
    EXPECT_TRUE(other.IsHeld());
}
