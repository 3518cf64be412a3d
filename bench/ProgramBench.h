#pragma once

#include "app/clsProgram.h"
#include "platform/clsGrid.h"
#include "platform/clsSendKeys.h"
#include "tests/support/Recorded.h"
#include "tests/support/Windows.h"

#include <QDialog>

#include <functional>
#include <memory>

void WaitForPaint(QWidget &widget);
/// Does it, and returns when the widget has been painted after it and nothing is left to do.
void DoAndPaint(QWidget &painted, const std::function<void()> &action);
void RequireActive(QWidget &window);

/// The whole program over a program folder, in this process, with a stopwatch beside it.
class ProgramBench
{
public:
    explicit ProgramBench(const QString &folder);

    frmEntryList &Window() const { return *m_program->MainWindow(); }
    clsGrid &Grid() const { return Control<clsGrid>(Window(), "msgEntryList"); }

    /// Milliseconds until a dialog is handed to the window system with all that it shows, until it
    /// is painted, and what painting it once more takes.
    struct Opening
    {
        double Shown = 0;
        double Painted = 0;
        double Paint = 0;
    };
    /// Opens a modal dialog by the action, runs the steps in it and closes it.
    Opening OpenDialog(
        const std::function<void()> &action,
        const std::function<void(QWidget &)> &steps = [](QWidget &) {}) const;

    void Click(const char *button) const;
    void Type(const char *box, const QString &text) const; ///< instead of what the box holds

private:
    clsRecordedMessages m_messages;
    clsProgramKeys m_keys;
    clsRecordedProcess m_process;
    clsSystemClock m_clock;
    clsRecordedSettings m_settings;
    clsRecordedBrowser m_browser;
    std::unique_ptr<clsProgram> m_program;
};
