#pragma once

#include "tests/support/Recorded.h"

#include <QWidget>

#include <memory>

class clsProgram;

/// The program over a folder, with the real exchange client: what it shows is written down.
class StartedProgram
{
public:
    explicit StartedProgram(const QString &folder);
    ~StartedProgram();

    QWidget &Window(); ///< the main window that is open now
    void PressSync(); ///< until the program has started up again
    QStringList Messages() const { return m_messages.Texts(); } ///< since the last PressSync

private:
    clsRecordedMessages m_messages;
    clsRecordedKeys m_keys;
    clsSystemProcess m_process;
    clsFixedClock m_clock;
    clsRecordedSettings m_settings;
    clsRecordedBrowser m_browser;
    std::unique_ptr<clsProgram> m_program;
};
