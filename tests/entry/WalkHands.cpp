#include "tests/entry/WalkHands.h"

#include "tests/support/Windows.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeySequence>
#include <QPointer>
#include <QWheelEvent>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {

QString NameOf(Qt::MouseButton button)
{
    return button == Qt::LeftButton ? u"left"_s
        : button == Qt::RightButton ? u"right"_s
                                    : u"middle"_s;
}

QString Place(const QWidget &control, QPoint at)
{
    return u"%1 at %2,%3"_s.arg(NameOf(control)).arg(at.x()).arg(at.y());
}

/// The window that the window system would send the event to, and where in it that is.
QWindow *WindowOf(const QWidget &control)
{
    return control.window()->windowHandle();
}

QPoint InWindow(const QWidget &control, QPoint at)
{
    return control.mapTo(control.window(), at);
}

/// The window that the window system would send keys to. The toolkit's own answer follows a moment
/// later on a display without a window manager.
QWindow *WindowWithTheKeys()
{
    if (const QWidget *popUp = QApplication::activePopupWidget())
        return popUp->windowHandle();
    QWindow *modal = QGuiApplication::modalWindow();
    return modal != nullptr ? modal : QGuiApplication::focusWindow();
}

bool AButtonIsDown()
{
    for (const QWidget *window : QApplication::topLevelWidgets()) {
        for (const auto *button : window->findChildren<QAbstractButton *>()) {
            if (button->isDown() && button->isVisible())
                return true;
        }
    }
    return false;
}

} // namespace

QString NameOf(const QWidget &control)
{
    const QString &name = control.objectName();
    if (name == "qt_scrollarea_viewport"_L1 && control.parentWidget() != nullptr)
        return NameOf(*control.parentWidget());
    return name.isEmpty() ? QString::fromLatin1(control.metaObject()->className()) : name;
}

void WalkHands::LetEverythingHappen()
{
    LetEventsRun();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    LetEventsRun();
}

void WalkHands::Do(const QString &what, const std::function<void()> &action)
{
    Before(what);
    action();
    LetEverythingHappen();
    After();
}

void WalkHands::Key(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    Do(QKeySequence(QKeyCombination(modifiers, key)).toString(), [&] {
        if (QWindow *window = WindowWithTheKeys())
            QTest::keyClick(window, key, modifiers);
        // A button that a letter has pressed comes up a moment later.
        constexpr int longestAnimation = 200; // milliseconds
        if (modifiers.testFlag(Qt::AltModifier))
            static_cast<void>(QTest::qWaitFor([] { return !AButtonIsDown(); }, longestAnimation));
    });
}

void WalkHands::Type(const QString &text)
{
    for (const QChar c : text) {
        Do(u"'%1'"_s.arg(c), [&] {
            if (QWindow *window = WindowWithTheKeys())
                QTest::keyClick(window, c.toLatin1());
        });
    }
}

void WalkHands::Click(QWidget &control, QPoint at, Qt::MouseButton button)
{
    Do(u"%1 click on %2"_s.arg(NameOf(button), Place(control, at)), [&] {
        const QPointer<QWindow> window = WindowOf(control);
        const QPoint where = InWindow(control, at);
        QTest::mouseMove(window, where);
        QTest::mousePress(window, button, {}, where);
        LetEventsRun();
        if (window)
            QTest::mouseRelease(window, button, {}, where);
    });
}

void WalkHands::DoubleClick(QWidget &control, QPoint at)
{
    Do(u"double click on %1"_s.arg(Place(control, at)), [&] {
        constexpr int longEnough = 10; // milliseconds
        const int interval = QApplication::doubleClickInterval();
        QApplication::setDoubleClickInterval(longEnough);
        QTest::mouseDClick(WindowOf(control), Qt::LeftButton, {}, InWindow(control, at));
        QApplication::setDoubleClickInterval(interval);
        QTest::qWait(2 * longEnough); // until the next click is no third one
    });
}

void WalkHands::Drag(QWidget &from, QPoint start, QWidget &to, QPoint end, Qt::MouseButton button)
{
    Do(u"%1 drag from %2 to %3"_s.arg(NameOf(button), Place(from, start), Place(to, end)), [&] {
        const QPointer<QWindow> window = WindowOf(from);
        const QPoint first = InWindow(from, start);
        const QPoint last = InWindow(to, end);
        QTest::mouseMove(window, first);
        QTest::mousePress(window, button, {}, first);
        for (const QPoint at : {(first + last) / 2, last}) {
            LetEventsRun();
            if (window)
                QTest::mouseMove(window, at);
        }
        LetEventsRun();
        if (window)
            QTest::mouseRelease(window, button, {}, last);
    });
}

void WalkHands::Wheel(QWidget &control, QPoint at, int steps)
{
    Do(u"wheel by %1 on %2"_s.arg(steps).arg(Place(control, at)), [&] {
        constexpr int unitsOfAStep = 120;
        QWheelEvent wheel(at, control.mapToGlobal(at), {}, {0, steps * unitsOfAStep}, Qt::NoButton,
            Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&control, &wheel);
    });
}
