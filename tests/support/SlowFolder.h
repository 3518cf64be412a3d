#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <semaphore>

/// A folder on a network that takes its time to answer: while it is slow, each look at a path in it
/// waits for the test.
///
/// Shape: the C library's statx and access, with which the toolkit looks at files, always pass
///        through here; one object at a time.
class SlowFolder
{
public:
    explicit SlowFolder(const QString &folder);
    ~SlowFolder();
    SlowFolder(const SlowFolder &) = delete;
    SlowFolder &operator=(const SlowFolder &) = delete;

    void BeSlow() { m_isSlow = true; }
    void Answer(); ///< from now on at once
    bool GaveUp() const { return m_gaveUp; } ///< the test did not answer in time
    int Looks() const { return m_looks; } ///< since the object was made

    void Look(const char *path); ///< what the call itself needs

private:
    QByteArray m_folder;
    std::counting_semaphore<> m_answer{0};
    std::atomic<bool> m_isSlow = false;
    std::atomic<bool> m_gaveUp = false;
    std::atomic<int> m_looks = 0;
};
