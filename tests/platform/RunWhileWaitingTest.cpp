// Slow work: what the windows do meanwhile, and where the user's input goes.

#include "platform/RunWhileWaiting.h"

#include "platform/clsRunTimeError.h"
#include "tests/support/BusyMoment.h"
#include "tests/support/Raised.h"

#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QThread>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <chrono>
#include <semaphore>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

/// Lasts until the test ends it.
class SlowWork
{
public:
    void operator()() { m_wasEnded = m_end.try_acquire_for(std::chrono::seconds(10)); }
    void End() { m_end.release(); }
    bool WasEnded() const { return m_wasEnded; }

private:
    std::binary_semaphore m_end{0};
    bool m_wasEnded = false;
};

class Waiting : public testing::Test
{
protected:
    Waiting()
    {
        auto *layout = new QVBoxLayout(&m_window);
        layout->addWidget(&m_text);
        layout->addWidget(&m_button);
        QObject::connect(&m_button, &QPushButton::clicked, [this] { m_log += "click;"; });
        QObject::connect(&m_text, &QLineEdit::textEdited,
            [this] { m_log += m_text.text().toStdString() + ';'; });
        m_window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_window));
    }
    ~Waiting() override
    {
        m_text.setParent(nullptr);
        m_button.setParent(nullptr);
    }

    QWidget m_window;
    QLineEdit m_text;
    QPushButton m_button;
    std::string m_log; ///< what the controls have received, in its order
    SlowWork m_work;
};

} // namespace

TEST_F(Waiting, PaintsTheWindowAndKeepsTheInputInItsOrder)
{
    std::string during = "nothing was done";
    const BusyMoment busy(
        m_window,
        [&] {
            QTest::keyClick(&m_text, Qt::Key_A);
            QTest::mouseClick(&m_button, Qt::LeftButton);
            QTest::keyClick(&m_text, Qt::Key_B);
            during = m_log;
        },
        [&] { m_work.End(); });
    RunWhileWaiting([&] { m_work(); });
    EXPECT_TRUE(m_work.WasEnded());
    EXPECT_TRUE(busy.WasPainted());
    EXPECT_EQ(during, "");
    EXPECT_EQ(m_log, "");
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    QCoreApplication::processEvents();
    EXPECT_EQ(m_log, "a;click;ab;");
}

TEST_F(Waiting, ClosesNoWindow)
{
    const BusyMoment busy(
        m_window, [&] { m_window.close(); }, [&] { m_work.End(); });
    RunWhileWaiting([&] { m_work(); });
    EXPECT_TRUE(busy.HasBeen());
    EXPECT_TRUE(m_window.isVisible());
}

TEST_F(Waiting, DropsTheInputOfAControlThatIsGone)
{
    auto *gone = new QPushButton(&m_window);
    QObject::connect(gone, &QPushButton::clicked, [this] { m_log += "gone;"; });
    const BusyMoment busy(
        m_window,
        [&] {
            QTest::mouseClick(gone, Qt::LeftButton);
            delete gone;
        },
        [&] { m_work.End(); });
    RunWhileWaiting([&] { m_work(); });
    QCoreApplication::processEvents();
    EXPECT_TRUE(busy.HasBeen());
    EXPECT_EQ(m_log, "");
}

TEST_F(Waiting, DropsTheInputOfAWindowThatClosesAfterwards)
{
    const BusyMoment busy(
        m_window, [&] { QTest::mouseClick(&m_button, Qt::LeftButton); }, [&] { m_work.End(); });
    RunWhileWaiting([&] { m_work(); });
    m_window.close();
    QCoreApplication::processEvents();
    EXPECT_TRUE(busy.HasBeen());
    EXPECT_EQ(m_log, "");
}

TEST_F(Waiting, DropsTheInputThatADialogWouldBlock)
{
    const BusyMoment busy(
        m_window, [&] { QTest::mouseClick(&m_button, Qt::LeftButton); }, [&] { m_work.End(); });
    RunWhileWaiting([&] { m_work(); });
    QDialog dialog(&m_window);
    QTimer::singleShot(0, &dialog, &QDialog::reject); // after what was kept
    dialog.exec();
    EXPECT_TRUE(busy.HasBeen());
    EXPECT_EQ(m_log, "");
}

TEST_F(Waiting, RunsNoEventForWorkThatIsDoneAtOnce)
{
    QTimer::singleShot(0, &m_window, [this] { m_log += "event;"; });
    bool done = false;
    RunWhileWaiting([&] { done = true; });
    EXPECT_TRUE(done);
    EXPECT_EQ(m_log, "");
}

TEST_F(Waiting, RaisesWhatTheWorkRaises)
{
    for (const bool isSlow : {false, true}) {
        SlowWork work;
        const BusyMoment busy(
            m_window, [] {}, [&] { work.End(); });
        const Raised raised = RaisedBy([&] {
            RunWhileWaiting([&] {
                if (isSlow)
                    work();
                throw clsRunTimeError(75, u"Files"_s, u"the reason"_s);
            });
        });
        EXPECT_EQ(raised.Number, 75);
        EXPECT_EQ(busy.HasBeen(), isSlow);
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    }
}

TEST_F(Waiting, StaysOnAThreadThatHasNoWindows)
{
    QThread *ranOn = nullptr;
    QThread *calledOn = nullptr;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        calledOn = QThread::currentThread();
        RunWhileWaiting([&] { ranOn = QThread::currentThread(); });
    }));
    thread->start();
    thread->wait();
    EXPECT_NE(calledOn, nullptr);
    EXPECT_EQ(ranOn, calledOn);
}
