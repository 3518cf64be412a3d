#include "exchange/Progress.h"
#include "exchange/frmProgress.h"
#include "platform/clsRunTimeError.h"
#include "tests/support/Windows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <future>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace {

constexpr int SeveralLooks = 200; // milliseconds; the window looks at the work every 50

struct Step
{
    qint64 Done;
    qint64 All;
    int Percent;
};

/// The window over work that lasts until the test has looked, and a user in front of it.
class ProgressWindow : public testing::Test
{
protected:
    QString Text(const char *label) { return Control<QLabel>(m_window, label).text(); }
    QPushButton &Button() { return Control<QPushButton>(m_window, "cmdCancel"); }
    std::string Report()
    {
        return Control<QPlainTextEdit>(m_window, "txtReport").toPlainText().toStdString();
    }

    /// Does something once, as soon as the condition holds.
    void When(const std::function<bool()> &condition, const std::function<void()> &action)
    {
        auto *timer = new QTimer(&m_window);
        QObject::connect(timer, &QTimer::timeout, timer, [=] {
            if (!condition())
                return;
            timer->stop();
            action();
        });
        timer->start(1);
    }
    void WhenItSays(const QString &step, const std::function<void()> &action)
    {
        When([this, step] { return Text("lblTable") == step; }, action);
    }

    Progress m_progress;
    frmProgress m_window{m_progress};
};

TEST_F(ProgressWindow, ShowsTheCompanyTheTableAndHowFarItIs)
{
    for (const Step &step : {Step{0, 4, 0}, Step{1, 4, 25}, Step{3, 4, 75}, Step{4, 4, 100},
             Step{1, 3, 33}, Step{0, 0, 100}}) {
        Progress progress;
        frmProgress window(progress);
        std::promise<void> seen;
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, &look, [&] {
            if (Control<QLabel>(window, "lblTable").text() != u"Customers"_s)
                return;
            look.stop();
            EXPECT_TRUE(window.isVisible());
            EXPECT_EQ(Control<QLabel>(window, "lblCompany").text(), u"ABC"_s);
            EXPECT_EQ(Control<QProgressBar>(window, "prgTable").value(), step.Percent);
            EXPECT_EQ(Control<QLabel>(window, "lblElapsed").text(), u"Elapsed time: 0:00"_s);
            seen.set_value();
        });
        look.start(1);
        const SyncOutcome outcome = window.Run([&] {
            progress.Report(u"ABC"_s, u"Customers"_s, step.Done, step.All);
            seen.get_future().wait();
            return SyncOutcome();
        });
        EXPECT_EQ(outcome.ExitStatus, 0);
        EXPECT_FALSE(window.isVisible()) << "a success closes by itself";
    }
}

TEST_F(ProgressWindow, ShowsWhatWasDoneAndClosesAtAKey)
{
    WhenItSays(u"Done"_s, [&] {
        EXPECT_EQ(Report(), "ABC: collected 12 entries\nXYZ: <U+001B>[1m");
        QTest::keyClick(&m_window, Qt::Key_A);
        EXPECT_FALSE(m_window.isVisible());
    });
    m_window.Run([&] {
        m_progress.AddLine(u"ABC: collected 12 entries"_s);
        m_progress.AddLine(u"XYZ: \x1B[1m"_s);
        return SyncOutcome();
    });
}

TEST_F(ProgressWindow, StaysWithTheReasonAfterAFailureUntilItIsClosed)
{
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape, Qt::Key_Space}) {
        Progress progress;
        frmProgress window(progress);
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, &look, [&] {
            if (Control<QLabel>(window, "lblTable").text() != u"Failed"_s)
                return;
            look.stop();
            EXPECT_THAT(Control<QPlainTextEdit>(window, "txtReport").toPlainText().toStdString(),
                HasSubstr("x.csv, line 3: bad\n\nThe log is here"));
            auto &button = Control<QPushButton>(window, "cmdCancel");
            EXPECT_EQ(button.text(), u"&Close"_s);
            QTest::keyClick(&button, Qt::Key_A);
            EXPECT_FALSE(QTest::qWaitFor([&] { return !window.isVisible(); }, SeveralLooks))
                << "the text may be copied";
            QTest::keyClick(&button, key);
            EXPECT_FALSE(window.isVisible());
        });
        look.start(1);
        const SyncOutcome outcome = window.Run([] {
            return SyncOutcome{1, u"x.csv, line 3: bad"_s, u"here"_s};
        });
        EXPECT_EQ(outcome.ExitStatus, 1);
    }
}

TEST_F(ProgressWindow, CancelRaisesInTheWorkAndClosesTheWindow)
{
    WhenItSays(u"Customers"_s, [&] { QTest::mouseClick(&Button(), Qt::LeftButton); });
    bool isRaised = false;
    const SyncOutcome outcome = m_window.Run([&] {
        try {
            for (;;)
                m_progress.Report(u"ABC"_s, u"Customers"_s, 1, 2);
        } catch (const clsRunTimeError &error) {
            isRaised = error.Description() == u"The synchronization was canceled"_s;
            return SyncOutcome{1, error.Description(), {}};
        }
    });
    EXPECT_TRUE(isRaised);
    EXPECT_EQ(outcome.ExitStatus, 1);
    EXPECT_FALSE(m_window.isVisible());
}

TEST_F(ProgressWindow, IsForADisplayThatAUserCanLookAt)
{
    const QString platform = QGuiApplication::platformName();
    EXPECT_EQ(frmProgress::HasDisplay(), platform != u"offscreen"_s) << platform.toStdString();
}

} // namespace
