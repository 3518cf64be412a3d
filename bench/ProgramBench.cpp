#include "bench/ProgramBench.h"

#include "bench/Measure.h"

#include <QElapsedTimer>
#include <QLineEdit>
#include <QTimer>

#include <stdexcept>

namespace {

/// Counts how often a widget is painted.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget &widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *event) override
    {
        m_count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int Count() const { return m_count; }

private:
    int m_count = 0;
};

/// Calls back when a dialog is shown.
class ShowWatcher : public QObject
{
public:
    explicit ShowWatcher(const std::function<void()> &shown)
        : m_shown(shown)
    {
        qApp->installEventFilter(this);
    }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show && qobject_cast<QDialog *>(watched) != nullptr)
            m_shown();
        return false;
    }

private:
    std::function<void()> m_shown;
};

} // namespace

void RequireActive(QWidget &window)
{
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window))
        throw std::runtime_error("a window does not take the keys");
}

void WaitForPaint(QWidget &widget)
{
    const PaintCounter counter(widget);
    while (counter.Count() == 0)
        QCoreApplication::processEvents();
}

void DoAndPaint(QWidget &painted, const std::function<void()> &action)
{
    const PaintCounter counter(painted);
    action();
    while (counter.Count() == 0)
        QCoreApplication::processEvents();
    LetEventsRun();
}

ProgramBench::ProgramBench(const QString &folder)
    : m_program(std::make_unique<clsProgram>(
        folder, ProgramServices{m_messages, m_keys, m_process, m_clock, m_settings, m_browser}))
{
    m_program->StartUp();
    if (m_program->MainWindow() == nullptr || !ShowActive(Window()))
        throw std::runtime_error("the main window does not come up");
    LetEventsRun();
}

ProgramBench::Opening ProgramBench::OpenDialog(
    const std::function<void()> &action, const std::function<void(QWidget &)> &steps) const
{
    Opening opened;
    QElapsedTimer clock;
    const auto now = [&] { return static_cast<double>(clock.nsecsElapsed()) / 1e6; };
    const ShowWatcher watcher([&] { opened.Shown = now(); });
    QTimer::singleShot(0, &Window(), [&] {
        QWidget *dialog = QApplication::activeModalWidget();
        if (dialog == nullptr)
            throw std::runtime_error("no dialog has opened");
        WaitForPaint(*dialog);
        opened.Painted = now();
        RequireActive(*dialog);
        LetEventsRun();
        opened.Paint = Milliseconds([&] {
            DoAndPaint(*dialog, [&] {
                dialog->update();
                for (QWidget *part : dialog->findChildren<QWidget *>())
                    part->update();
            });
        });
        steps(*dialog);
        if (QApplication::activeModalWidget() == dialog)
            dialog->close();
    });
    clock.start();
    action();
    RequireActive(Window());
    LetEventsRun();
    return opened;
}

void ProgramBench::Click(const char *button) const
{
    QTest::mouseClick(&Control<QWidget>(Window(), button), Qt::LeftButton);
}

void ProgramBench::Type(const char *name, const QString &text) const
{
    auto &box = Control<QLineEdit>(Window(), name);
    box.setFocus(Qt::TabFocusReason);
    box.selectAll();
    QTest::keyClicks(&box, text);
    LetEventsRun();
}
