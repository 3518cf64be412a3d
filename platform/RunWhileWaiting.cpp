#include "platform/RunWhileWaiting.h"

#include <QApplication>
#include <QEvent>
#include <QEventLoop>
#include <QPointer>
#include <QScopeGuard>
#include <QThread>
#include <QWidget>

#include <chrono>
#include <future>
#include <memory>
#include <system_error>
#include <vector>

namespace {

/// A shorter wait is not noticed.
constexpr std::chrono::milliseconds Unnoticed{150};

bool IsOfWindows()
{
    return qobject_cast<QApplication *>(QCoreApplication::instance()) != nullptr
        && QThread::currentThread() == QCoreApplication::instance()->thread();
}

/// Like the window system: neither to what is gone or not shown any more, nor past a dialog.
void Deliver(QObject *receiver, QEvent &event)
{
    if (receiver == nullptr)
        return;
    if (const auto *widget = qobject_cast<QWidget *>(receiver)) {
        const QWidget *modal = QApplication::activeModalWidget();
        if (!widget->isVisible() || (modal != nullptr && modal != widget->window()))
            return;
    }
    QCoreApplication::sendEvent(receiver, &event);
}

/// Keeps the user's input that reaches a control past the event loop, which excludes only what
/// comes from the window system: keys that the program sends to itself, for example.
class KeptInput : public QObject
{
public:
    KeptInput() { qApp->installEventFilter(this); }
    ~KeptInput() override
    {
        qApp->removeEventFilter(this);
        for (const Input &input : m_kept) {
            QMetaObject::invokeMethod(
                qApp, [input] { Deliver(input.Receiver, *input.Event); }, Qt::QueuedConnection);
        }
    }
    KeptInput(const KeptInput &) = delete;
    KeptInput &operator=(const KeptInput &) = delete;

protected:
    bool eventFilter(QObject *receiver, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::Shortcut:
        case QEvent::InputMethod:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::ContextMenu:
            m_kept.push_back({receiver, std::shared_ptr<QEvent>(event->clone())});
            return true;
        case QEvent::Close:
        case QEvent::DragEnter:
        case QEvent::Drop:
            event->ignore();
            return true;
        default:
            return false;
        }
    }

private:
    struct Input
    {
        QPointer<QObject> Receiver;
        std::shared_ptr<QEvent> Event;
    };
    std::vector<Input> m_kept;
};

void RunWindowEventsUntil(QEventLoop &done)
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const auto restored = qScopeGuard([] { QApplication::restoreOverrideCursor(); });
    const KeptInput kept;
    done.exec(QEventLoop::ExcludeUserInputEvents);
}

} // namespace

void RunWhileWaiting(const std::function<void()> &work)
{
    if (!IsOfWindows()) {
        work();
        return;
    }
    QEventLoop done;
    std::future<void> result;
    try {
        result = std::async(std::launch::async, [&] {
            const auto ended = qScopeGuard(
                [&] { QMetaObject::invokeMethod(&done, &QEventLoop::quit, Qt::QueuedConnection); });
            work();
        });
    } catch (const std::system_error &) { // no thread is to be had
        work();
        return;
    }
    if (result.wait_for(Unnoticed) == std::future_status::timeout)
        RunWindowEventsUntil(done);
    result.get(); // waits for the work also when the loop was ended by a program that quits
}
