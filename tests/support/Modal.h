#pragma once

#include "tests/support/Deadline.h"
#include "tests/support/Windows.h"

#include <QApplication>
#include <QDialog>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include <exception>

/// Runs `open`, which shows a modal dialog and comes back when it has closed, and inside it the
/// user's `steps`, which take the dialog and close it. Steps that end early, by a failed check or
/// an exception, have failed, and the dialog is closed for them: a run never hangs.
template <class Open, class Steps>
void WithModal(Open &&open, Steps &&steps)
{
    const QWidget *const outer = QApplication::activeModalWidget();
    bool ran = false;
    QTimer timer;
    timer.setInterval(0);
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        QWidget *const dialog = QApplication::activeModalWidget();
        if (dialog == nullptr || dialog == outer)
            return; // not open yet
        timer.stop();
        try {
            EXPECT_TRUE(WaitUntilActive(*dialog));
            steps(*dialog);
            ran = true;
        } catch (const std::exception &error) {
            ADD_FAILURE() << error.what();
        }
        // A button that is pressed by its letter lets go of it a moment later.
        const bool closed = ran && !testing::Test::HasFatalFailure()
            && QTest::qWaitFor(
                [&] { return QApplication::activeModalWidget() != dialog; }, DeadlineMilliseconds);
        if (!closed && QApplication::activeModalWidget() == dialog) {
            ADD_FAILURE() << "the steps have left the dialog open";
            dialog->close();
        }
        // The dialog's loop was told to end while others ran inside it. On Windows it sees that
        // only when one more event comes.
        QCoreApplication::postEvent(QCoreApplication::instance(), new QEvent(QEvent::User));
    });
    timer.start();
    open();
    EXPECT_TRUE(ran) << "the dialog did not open";
}

/// Likewise with a dialog that is there already: shows it.
template <class Steps>
void PlayModal(QDialog &dialog, Steps &&steps)
{
    WithModal([&] { dialog.exec(); }, [&](QWidget &) { steps(); });
}
