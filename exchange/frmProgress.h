#pragma once

#include "exchange/Progress.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <future>
#include <memory>

namespace Ui {
class frmProgress;
}

/// How a synchronization has ended.
struct SyncOutcome
{
    int ExitStatus = 0; ///< the client's, 0 or 1
    QString Reason; ///< why it failed
    QString LogFile; ///< empty when there is none
};

/// The window in front of a synchronization: the present step and the time it has taken, what has
/// been done, and a button that ends it.
///
/// The work runs in a thread of its own, so that the window answers also while a file does not.
/// Success closes the window after a moment, a failure leaves it open with the reason until the
/// user closes it. Canceling, by the button, Escape or closing the window, raises in the work;
/// where that waits for a file that does not answer, the process ends, which is as safe as being
/// killed.
class frmProgress : public QWidget
{
    Q_OBJECT

public:
    /// `progress` is what the work reports to; it outlives the window.
    explicit frmProgress(Progress &progress, QWidget *parent = nullptr);
    ~frmProgress() override;

    /// Whether a window would be seen. Where it would not, the work needs none.
    static bool HasDisplay();

    /// Shows the window, runs the work once that is on the screen, and returns when the window is
    /// closed. `work` raises nothing; what it does last is to write the log.
    SyncOutcome Run(const std::function<SyncOutcome()> &work);

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    enum class Phase
    {
        Opening, ///< the window is not on the screen yet
        Working,
        Canceling,
        Succeeded,
        Failed
    };

    void Look();
    void ShowState();
    void ShowEnd();
    void cmdCancel_Click();
    void CancelWork();

    std::unique_ptr<Ui::frmProgress> ui;
    Progress &m_progress;
    Phase m_phase = Phase::Opening;
    std::function<SyncOutcome()> m_work;
    std::future<SyncOutcome> m_running;
    SyncOutcome m_outcome;
    QElapsedTimer m_sinceStart;
    QElapsedTimer m_sincePhase; // began
    QTimer m_look;
    QEventLoop m_untilClosed;
};
