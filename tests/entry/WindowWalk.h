#pragma once

#include "app/clsProgram.h"
#include "platform/clsWindowMessageBox.h"
#include "tests/entry/FailingFiles.h"
#include "tests/entry/WalkHands.h"
#include "tests/entry/WalkOracle.h"
#include "tests/support/Recorded.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QMenu>
#include <QObject>
#include <QPointer>
#include <QTemporaryDir>

#include <deque>
#include <memory>

class clsGrid;

/// A user who does anything at all in the main window and in what it opens, a step at a time. What
/// a step does depends on its number and on what is on the screen, on nothing else.
class WindowWalk : public QObject, private clsMessageBox
{
public:
    /// `kind` chooses the companies' options and the employee's permissions.
    explicit WindowWalk(int kind);
    ~WindowWalk() override;

    static constexpr int Kinds = 8;

    void Step(unsigned number);

    WalkOracle &Oracle() { return *m_oracle; }
    QString LastSteps() const; ///< in words
    int StoreFailures = 0; ///< steps in which the store has failed

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    MessageAnswer Ask(const QString &text, MessageIcon icon, MessageButtons buttons,
        MessageAnswer preset) override;

    void StartProgram();
    frmEntryList *Window() const { return m_program ? m_program->MainWindow() : nullptr; }
    QWidget &Any(const QString &name) const;
    clsGrid &Grid() const;
    const SampleCompany &Company() const;
    void Write(const QString &line);
    void EventComes(const QString &what);
    void EventIsOver();
    static bool MenuHasTheKeys(); ///< or another pop-up
    bool IsOpen() const { return Window() != nullptr && Window()->isVisible() && !m_ended; }

    // Steps.
    void Do();
    void PopUpStep(QWidget &popUp);
    void TypeAnything();
    void PressAnyKey();
    void ClickAnything();
    void UseGrid();
    void EnterField();
    void EnterEntry();
    void PickFromList();
    void PickDate();
    void PressCommand();
    void OpenDialog();
    void UseMenu();
    void PasteOrDrop();
    void ChangeWindow();
    void LeaveOrClose();

    // Parts of them.
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void ClickControl(const QString &name);
    void ClickRow(int row);
    void LeaveField();
    void EnterInto(const QString &box, const QString &text);
    QString WordFor(const QString &box);
    QPoint AnyPointIn(const QWidget &control);
    QString VisibleControl();

    // Dialogs, which are open while the event that has opened them still runs: no exception may
    // pass through that.
    void Safely(const std::function<void()> &use);
    void UseDialog(const QPointer<QDialog> &dialog);
    void UseContextMenu(const QPointer<QMenu> &menu);
    void FollowFilter(QDialog &dialog); ///< what it leaves in force
    void FollowLookup(QDialog &dialog); ///< what it leaves in the entry
    void DialogStep(QDialog &dialog);
    void AnswerBox(QDialog &box);
    void CloseDialog(QDialog &dialog);

    QTemporaryDir m_folder;
    std::vector<SampleCompany> m_companies;
    FailingFiles m_files;
    std::unique_ptr<WalkOracle> m_oracle;
    WalkHands m_hands;
    WalkChance m_chance{0};
    int m_depth = 0; // of events inside events
    bool m_ended = false;
    bool m_storeFails = false;
    std::deque<QString> m_lines;
    QString m_focus; // before the event
    QString m_clickedCode; // in the lookup
    bool m_fieldPressed = false; // the field with the focus: the next one keeps its caret
    QWidget m_otherWindow;
    QPointer<frmEntryList> m_lastWindow; // a synchronization brings another

    clsWindowMessageBox m_boxes;
    clsProgramKeys m_keys;
    clsRecordedProcess m_process;
    clsFixedClock m_clock;
    clsRecordedSettings m_settings;
    clsRecordedBrowser m_browser;
    std::unique_ptr<clsProgram> m_program;
};

/// The companies of a walk: one with the options of its kind, and one other.
std::vector<SampleCompany> WalkCompanies(int kind);
