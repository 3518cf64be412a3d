#include "exchange/frmProgress.h"

#include "exchange/ExchangeErrors.h"
#include "exchange/ExchangeLog.h"
#include "exchange/PrintableText.h"
#include "ui_frmProgress.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QWindow>

#include <chrono>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

constexpr int MillisecondsBetweenLooks = 50;
/// A desktop that keeps a window from the screen does not keep the work waiting.
constexpr qint64 MaxMillisecondsToOpen = 1000;
constexpr qint64 MillisecondsOfSuccess = 700;
/// How long a canceled work may take to clean up after itself.
constexpr qint64 MaxMillisecondsToCancel = 2000;

QString TimeText(qint64 milliseconds)
{
    const qint64 seconds = milliseconds / 1000;
    return u"Elapsed time: %1:%2"_s.arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

QString FailureText(const SyncOutcome &outcome)
{
    const QString text = u"The synchronization failed.\n\n"_s + PrintableLine(outcome.Reason);
    return outcome.LogFile.isEmpty() ? text : text + u"\n\nThe log is "_s + outcome.LogFile;
}

} // namespace

frmProgress::frmProgress(Progress &progress, QWidget *parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::frmProgress>())
    , m_progress(progress)
{
    ui->setupUi(this);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &frmProgress::cmdCancel_Click);
    connect(&m_look, &QTimer::timeout, this, &frmProgress::Look);
}

frmProgress::~frmProgress() = default;

bool frmProgress::HasDisplay()
{
    const QString platform = QGuiApplication::platformName();
    return platform != "offscreen"_L1 && platform != "minimal"_L1;
}

SyncOutcome frmProgress::Run(const std::function<SyncOutcome()> &work)
{
    m_work = work;
    m_sinceStart.start();
    m_sincePhase.start();
    show();
    m_look.start(MillisecondsBetweenLooks);
    m_untilClosed.exec();
    m_look.stop();
    return m_outcome;
}

void frmProgress::Look()
{
    switch (m_phase) {
    case Phase::Opening:
        if (windowHandle()->isExposed() || m_sincePhase.elapsed() > MaxMillisecondsToOpen) {
            m_phase = Phase::Working;
            m_running = std::async(std::launch::async, m_work);
        }
        return;
    case Phase::Working:
    case Phase::Canceling:
        ShowState();
        if (m_running.wait_for(std::chrono::seconds(0)) == std::future_status::ready)
            ShowEnd();
        else if (m_phase == Phase::Canceling && m_sincePhase.elapsed() > MaxMillisecondsToCancel) {
            TellStandardError(CanceledText());
            std::_Exit(EXIT_FAILURE); // the thread waits for a file that does not answer
        }
        return;
    case Phase::Succeeded:
        if (m_sincePhase.elapsed() > MillisecondsOfSuccess)
            close();
        return;
    case Phase::Failed:
        return;
    }
}

void frmProgress::ShowState()
{
    const Progress::State state = m_progress.Look();
    ui->lblElapsed->setText(TimeText(m_sinceStart.elapsed()));
    ui->lblCompany->setText(state.Company);
    if (!state.Step.isEmpty())
        ui->lblTable->setText(state.Step);
    ui->prgTable->setValue(
        state.All > 0 ? static_cast<int>(state.Done * 100 / state.All) : ui->prgTable->maximum());
    for (const QString &line : state.NewLines)
        ui->txtReport->appendPlainText(PrintableLine(line));
}

void frmProgress::ShowEnd()
{
    m_outcome = m_running.get();
    ShowState(); // what was reported since the last look
    const bool isCanceled = m_phase == Phase::Canceling; // whatever the work has come to
    m_phase = m_outcome.ExitStatus == EXIT_SUCCESS ? Phase::Succeeded : Phase::Failed;
    m_sincePhase.start();
    if (isCanceled) {
        close();
        return;
    }
    ui->prgTable->setValue(ui->prgTable->maximum());
    if (m_phase == Phase::Failed) {
        ui->txtReport->setPlainText(FailureText(m_outcome));
        ui->prgTable->hide();
        ui->lblCompany->hide();
    }
    ui->lblTable->setText(m_phase == Phase::Failed ? u"Failed"_s : u"Done"_s);
    ui->cmdCancel->setText(u"&Close"_s);
    ui->cmdCancel->setFocus();
}

void frmProgress::cmdCancel_Click()
{
    close();
}

void frmProgress::CancelWork()
{
    m_progress.Cancel();
    if (m_phase == Phase::Canceling)
        return;
    m_phase = Phase::Canceling;
    m_sincePhase.start();
    ui->cmdCancel->setEnabled(false);
    ui->cmdCancel->setText(u"Canceling"_s);
}

void frmProgress::closeEvent(QCloseEvent *event)
{
    if (m_phase == Phase::Working || m_phase == Phase::Canceling) {
        CancelWork();
        event->ignore();
        return;
    }
    if (m_phase == Phase::Opening) {
        TellStandardError(CanceledText());
        m_outcome = {EXIT_FAILURE, CanceledText(), {}};
    }
    m_untilClosed.quit();
}

void frmProgress::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool closes = event->key() == Qt::Key_Escape || m_phase == Phase::Succeeded
        || (m_phase == Phase::Failed && isEnter);
    if (closes)
        close();
    else
        QWidget::keyPressEvent(event);
}
