#pragma once

#include <QString>
#include <QStringList>

#include <qt_windows.h>

/// A dialog of another process, as its user sees and answers it.
class SeenDialog
{
public:
    /// Waits for the dialog with this title in which this text is to be read. Throws
    /// std::runtime_error when it does not come.
    static SeenDialog WaitFor(const QString &title, const QString &text);

    /// What its visible controls say.
    QStringList Texts() const;

    /// Presses and releases a key (VK_...) once the dialog has the keyboard.
    void Key(WORD key) const;

private:
    explicit SeenDialog(HWND window)
        : m_window(window)
    {
    }

    HWND m_window;
};

/// Whether a process shows any window.
bool ShowsAWindow(qint64 processId);

/// Ends every process that shows a window of this title.
void EndProcessesWithWindow(const QString &title);

/// The processes in whose program's path this stands (with slashes), and their end.
bool IsRunning(const QString &partOfPath);
void EndProcessesOf(const QString &partOfPath);
