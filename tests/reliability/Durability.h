#pragma once

#include "tests/support/FaultyDisk.h"
#include "tests/support/Raised.h"
#include "tests/support/SampleCompany.h"
#include "tests/support/Soak.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>

inline void WriteFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    ASSERT_EQ(file.write(content), content.size());
}

/// "(none)" when there is no such file.
inline QByteArray ContentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

/// Runs the action on a disk that loses its power at the n-th call, for every n up to the one that
/// never comes; `look` gets whether the action was reported as done.
inline void LosePowerAtEachCall(const QString &folder, const std::function<void()> &prepare,
    const std::function<void()> &action, const std::function<void(bool done)> &look, int stride = 1)
{
    int runs = 0;
    bool failed = true;
    for (int call = 1; failed && !testing::Test::HasFailure(); call += stride, ++runs) {
        prepare();
        FaultyDisk disk(folder);
        disk.FailAt(call, DiskFault::PowerLoss);
        const bool done = RaisedBy(action).Number == 0;
        failed = disk.HasFailed();
        const QByteArray where = disk.FailedCall();
        disk.LosePower(nullptr);
        SCOPED_TRACE("call " + std::to_string(call) + ": " + where.toStdString());
        EXPECT_TRUE(done || failed);
        look(done);
    }
    EXPECT_GT(runs, 1) << "nothing was put on the disk";
    TellCount("power lost", runs);
}

class Durability : public testing::Test
{
protected:
    QString Path(const QString &name) const { return m_place.filePath(name); }

    QTemporaryDir m_place{SampleFolderTemplate()};
};
