#pragma once

#include "tests/endtoend/driver/Probe.h"
#include "tests/endtoend/driver/VirtualDisplay.h"

#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <functional>

/// The built program, running as its own process out of a folder of its own, and a user in front
/// of it. Every wait is for a condition; one that does not come true within the deadline throws
/// std::runtime_error and says what was waited for.
class ProgramUnderTest
{
public:
    /// What is started, and what its environment has besides this process's.
    struct Command
    {
        QString Path;
        QMap<QString, QString> Environment;
        QStringList Arguments = {};
    };

    /// Starts the folder's program on the display; both outlive the object. The user's settings are
    /// the WorkPlace's.
    ProgramUnderTest(const QString &folder, const VirtualDisplay &display,
        const QMap<QString, QString> &environment = {});
    /// Starts the program by a command that becomes it.
    ProgramUnderTest(const Command &command, const VirtualDisplay &display);
    ~ProgramUnderTest(); ///< kills the process if it still runs

    // What the windows show. A control that is not there has an empty text.
    QString Text(const QString &control);
    bool IsEnabled(const QString &control);
    bool HasFocus(const QString &control);
    bool IsChecked(const QString &button);
    bool IsOpen(const QString &window);
    QString Title(const QString &window); ///< empty when it is not open
    QString MessageText(); ///< of the message box on top, else empty
    bool HasPicture(const QString &button); ///< of the message box on top
    QList<QStringList> Rows(const QString &grid); ///< the texts of its data rows

    // What the user does.
    void Click(const QString &control);
    void ClickRow(const QString &grid, int row); ///< data rows count from 0
    void Answer(const QString &button); ///< of the message box on top; waits until it is gone
    void AnswerByKeys(const QString &keys); ///< likewise, without the mouse
    void Enter(const QString &control, const QString &text); ///< into the control with the focus
    /// Opens the menu and chooses the entry, each named by what it says, with keys alone.
    void ChooseByKeys(const QString &menu, const QString &entry);
    /// Presses the key until the control has the focus, which moves on each time.
    void MoveFocusTo(const QString &control, const QString &key);
    /// Makes the window active that stands beside the active one.
    void ComeBackTo(const QString &window);
    /// In the folder browser that opens with the prompt.
    void ChooseFolder(const QString &folder, const QString &prompt);
    /// Types a time entry into the editor, from the date on; its description has the focus then.
    void EnterTime(const QString &hours, const QString &description);
    void Type(const QString &text) { m_display.Type(text); }
    void Key(const QString &keys) { m_display.Key(keys); }

    // What the user waits for.
    void WaitForWindow(const QString &window = QStringLiteral("frmEntryList"));
    /// The window takes the keys, which it does not before the window manager has said so.
    void WaitUntilActive(const QString &window = QStringLiteral("frmEntryList"));
    void WaitUntilClosed(const QString &window);
    void WaitForMessage(const QString &text);
    void WaitForText(const QString &control, const QString &text);
    void WaitForTitle(const QString &window, const QString &title);
    void WaitForFocus(const QString &control);
    void WaitForRows(const QString &grid, int count);
    int WaitForEnd(); ///< the exit status
    bool IsRunning() const { return m_process.state() == QProcess::Running; }
    qint64 ProcessId() const { return m_process.processId(); }
    void Kill();

    /// A picture of the open window with its frame; without a name, of the message box on top.
    void Photograph(const QString &fileName, const QString &window = {});

    static void WaitUntil(const QString &what, const std::function<bool()> &condition);

private:
    bool TakesKeys(const QJsonObject &control) const;
    void MoveTo(const QString &text, const QString &control, const QString &key);
    QJsonObject Ask(const QString &verb, const QString &name = {});

    const VirtualDisplay &m_display;
    QProcess m_process;
    Probe m_probe;
};
