#pragma once

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <utility>

/// The moment in which the program waits with a busy pointer. It is used once: the user acts, the
/// window is painted again, and the wait ends.
class BusyMoment : public QObject
{
public:
    /// `act`: what the user does; `end`: lets the program's wait end. The window outlives it.
    BusyMoment(QWidget &window, std::function<void()> act, std::function<void()> end)
        : m_window(window)
        , m_act(std::move(act))
        , m_end(std::move(end))
    {
        connect(&m_look, &QTimer::timeout, this, &BusyMoment::Look);
        m_window.installEventFilter(this);
        m_look.start(LookMilliseconds);
    }

    bool HasBeen() const { return m_hasActed; }
    bool WasPainted() const { return m_wasPainted; }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && m_hasActed && IsBusy())
            m_wasPainted = true;
        return false;
    }

private:
    static constexpr int LookMilliseconds = 5;

    static bool IsBusy()
    {
        const QCursor *pointer = QApplication::overrideCursor();
        return pointer != nullptr && pointer->shape() == Qt::WaitCursor;
    }
    void Look()
    {
        if (m_wasPainted) {
            m_look.stop();
            m_end();
        } else if (IsBusy() && !std::exchange(m_hasActed, true)) {
            m_act();
            m_window.update();
        }
    }

    QWidget &m_window;
    std::function<void()> m_act;
    std::function<void()> m_end;
    QTimer m_look;
    bool m_hasActed = false;
    bool m_wasPainted = false;
};
