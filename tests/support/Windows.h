#pragma once

#include "tests/support/Deadline.h"

#include <QApplication>
#include <QEvent>
#include <QTest>
#include <QWidget>

#include <stdexcept>

/// How the tests reach into a window: by the controls' names and with a user's events.

/// The control of that name; a missing one, or one of another kind, ends the test and is named.
template <class Widget>
Widget &Control(const QWidget &window, const char *name)
{
    auto *widget = window.findChild<Widget *>(QString::fromLatin1(name));
    if (widget == nullptr)
        throw std::runtime_error(std::string("no such control: ") + name);
    return *widget;
}

/// Waits until the window is the active one and a control in it has the keys, which on Windows
/// comes a moment later.
inline bool WaitUntilActive(QWidget &window)
{
    const auto takesKeys = [&] {
        const QWidget *control = window.focusWidget();
        return control == nullptr || !control->isEnabled() || control->hasFocus();
    };
    return QTest::qWaitForWindowActive(&window, DeadlineMilliseconds)
        && QTest::qWaitFor(takesKeys, DeadlineMilliseconds);
}

/// Shows the window and waits until it takes the keys.
inline bool ShowActive(QWidget &window)
{
    window.show();
    window.activateWindow();
    return WaitUntilActive(window);
}

/// Lets what is waiting in the event queue happen, sent keys and deferred commands among them.
inline void LetEventsRun()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
    QCoreApplication::processEvents();
}
