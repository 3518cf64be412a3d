#pragma once

#include "entry/clsM90Mask.h"
#include "entry/EntryDialogs.h"
#include "entry/EntryListState.h"
#include "entry/EntryScreen.h"
#include "entry/modEntryInfo.h"
#include "entry/modEntryList.h"
#include "platform/clsMessageBox.h"
#include "platform/clsSendKeys.h"

#include <QMainWindow>

#include <functional>
#include <memory>

class QComboBox;
class QFocusEvent;
class QKeyEvent;
class QLineEdit;

namespace Ui {
class frmEntryList;
}

/// The main window: the entry list, below it the editor of one entry. It hands what the user does
/// to modEntryList and modEntryInfo and draws what they decide.
class frmEntryList : public QMainWindow
{
    Q_OBJECT

public:
    /// All outlive it.
    frmEntryList(modEntryList &listModule, modEntryInfo &entryModule, EntryListState &list,
        const EntryDialogs &dialogs, EntryScreen &screen, clsMessageBox &messages,
        clsSendKeys &keys);
    ~frmEntryList() override;

    /// Reloads the list and draws the window.
    /// Errors: those of modEntryList.
    void LoadEntryList();

    /// Asks about unsaved changes as leaving the entry does, the box with the focus taken in
    /// first; false: the action is abandoned.
    bool MayLeaveEntry();

signals:
    void SyncRequested(); ///< the synchronise button; the window is still open
    void DeleteDatabasesRequested(); ///< likewise, the menu entry
    void Terminated(); ///< the window has been closed

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void ConnectCodes();
    void ConnectLists();
    void ConnectQuantities();
    void ConnectOthers();
    void ConnectCommands();
    void ConnectDialogs();
    void DrawArrows();
    void FitFields(); ///< each as wide as what may stand in it

    void Render(); ///< the one place that writes controls
    void NameLookUpButtons();
    void RenderTitle();
    void RenderNotice();
    void MoveFocus();

    /// Runs what an event asks for, reports its run-time error and draws the window.
    void Handle(const std::function<void()> &action);

    bool HandleKey(QWidget &control, QKeyEvent &event);
    bool HandleEnter(QWidget &control);
    bool HandleTab(QWidget &control);
    bool HandleListKey(QComboBox &list, const QKeyEvent &event);
    bool HandlePopupKey(const QWidget &control, const QKeyEvent &event);
    bool HandleOpenListKey(QComboBox &list, const QKeyEvent &event);
    void LeaveOpenList(QComboBox &list, const QKeyEvent &event);
    /// Runs what entering the control asks for, after the control's own handling; true: done.
    bool FocusArrives(QWidget &control, QFocusEvent &event);
    void GotFocus(QWidget &control, const QFocusEvent &event);
    /// Runs what leaving the control asks for, after the control's own handling; true: done.
    bool FocusLeaves(QWidget &control, QFocusEvent &event);
    void LostFocus(QWidget &control, const QFocusEvent &event);
    void PlaceCaret(QLineEdit &box, bool byMouse);
    void dtpDate_GotFocus(bool byMouse);
    void dtpDate_Change(QDate date);
    void txtDescription_Change();
    void dtpDate_Typed();
    void ShowDateNotice();
    bool TakeTypedDate();
    bool MousePressed(QWidget &control);
    /// The control that the user is in: the one with the focus, or the one that the menu bar has
    /// taken it from.
    const QWidget *EnteredControl() const;
    /// Checks the edited box that has the focus; false when its code was refused.
    bool TakeFocusedBox();
    bool TakeBox(const QWidget &control);
    bool CheckCode(const QWidget &control);
    bool IsCodeBox(const QWidget &control) const;
    bool IsField(const QWidget &control) const; ///< a text field that is edited, or the picker
    void TakeItem(const QComboBox &list);
    void ApplyList(const QComboBox &list);
    void ListPicked(const QComboBox &list);
    void LeaveList(const QComboBox &list); ///< applies what is shown and has not been applied
    /// Text that was dropped into a box without the focus, or dragged out of it, is edited there:
    /// the box takes the focus. False, and the edit undone, when the code in the box that has it is
    /// refused.
    bool TakeFocusForEdit(EntryControl control, QLineEdit &box);
    void TakeEdit(EntryControl control, const QString &text); ///< only another text is an edit
    void QuantityEdited(EntryControl control, QLineEdit &box);
    QWidget &WidgetOf(EntryControl control) const;
    EntryControl ControlOf(const QWidget &widget) const; ///< of one that the modules decide about
    const QWidget *LookupButtonOf(const QWidget *box) const; ///< null when it has none
    void FocusTo(EntryControl control);

    void LookUp(const QWidget &box, LookupStart start);
    void ShowWhileSuppressed(const std::function<void()> &dialog);
    void SelectBoxOfFilter(FilterField field);
    void cmdOK_Click();
    void cmdHrsSumm_Click();
    void cmdTransFilter_Click();
    void mnuConfigure_Click();
    void mnuSync_Click();
    void msgEntryList_Click(int row);
    void EscapePressed();

    std::unique_ptr<Ui::frmEntryList> ui;
    modEntryList &m_listModule;
    modEntryInfo &m_entryModule;
    EntryListState &m_list;
    EntryDialogs m_dialogs;
    EntryScreen &m_screen;
    clsMessageBox &m_messages;
    clsSendKeys &m_keys;

    std::array<QWidget *, EntryControls> m_widgets = {};
    clsM90Mask m_mask;
    const QWidget *m_entered = nullptr; // the control that was last entered
    bool m_fieldEdited = false; // the box with the focus holds an edit that no check has seen
    bool m_listTyped = false; // the last key into the list with the focus was none of its own
    struct FocusState
    {
        bool FocusByMouse = false; // a field was pressed, also the one that has the focus
        bool InFocusFix = false; // changes of the date picker are not taken over
    };
    FocusState m_focus;
    const QFocusEvent *m_ownFocusIn = nullptr; // that its control is handling
    const QFocusEvent *m_ownFocusOut = nullptr; // likewise
    bool m_pressGivesFocus = false; // the press that is being handled has just moved the focus
    bool m_pressRefused = false; // it would have left a box whose code was refused
};
