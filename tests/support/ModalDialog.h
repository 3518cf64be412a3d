#pragma once

#include "tests/support/Windows.h"

#include <QApplication>
#include <QDialog>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>

/// Shows the dialog modally with a user in front of it: the steps run as soon as it waits for
/// one. A dialog that they leave open, because a check in them ended them or because nothing
/// closed it, is closed, so that a run never hangs.
///
/// True when the steps ran to their end and the dialog was closed by one of them.
inline bool PlayModal(QDialog &dialog, const std::function<void()> &steps)
{
    bool played = false;
    QTimer::singleShot(0, &dialog, [&] {
        try {
            if (!QTest::qWaitForWindowActive(&dialog))
                throw std::runtime_error("the dialog does not take the keys");
            steps();
            // A button that is pressed by its letter lets go of it a moment later.
            played = !testing::Test::HasFatalFailure()
                && QTest::qWaitFor([&] { return !dialog.isVisible(); });
        } catch (const std::exception &error) {
            ADD_FAILURE() << error.what();
        }
        dialog.close();
    });
    dialog.exec();
    return played;
}
