#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>

/// The controls of the main window that the modules decide about, by their names.
enum class EntryControl
{
    cboCompany,
    lblCompanyName,
    txtUser,
    lblUserName,
    dtpDate,
    lblCustomer,
    txtCustomer,
    cmdCustomer,
    lblProject,
    txtProject,
    cmdProject,
    lblActivity,
    txtActivity,
    cmdActivity,
    cboBStatus,
    lblBOption,
    cboBOption,
    lblMultiplierCode,
    txtMultiplierCode,
    cmdMultiplier,
    lblMultiplierFactor,
    txtMultiplierFactor,
    lblHours,
    txtHours,
    lblRate,
    txtRate,
    lblAmount,
    txtAmount,
    chkReimburse,
    chkApproved,
    chkOnHold,
    txtDescription,
    msgEntryList,
    cmdOK,
    cmdUndo,
    cmdDel,
    cmdHrsSumm,
    cmdTransFilter
};
constexpr size_t EntryControls = static_cast<size_t>(EntryControl::cmdTransFilter) + 1;

/// How one control is to look.
struct ControlState
{
    QString Text; ///< null leaves the form's own caption
    QStringList Items; ///< of a drop-down list
    int Index = -1; ///< its selected item
    bool Visible = true;
    bool Enabled = true;
    bool ButtonFace = false; ///< the background of what cannot be edited
    bool Locked = false; ///< shown and reachable, but not editable
    bool InTabOrder = true;
    bool Checked = false;
    QString ToolTip; ///< why it is closed, or where its value comes from

    QString ItemText() const { return Items.value(Index); }
    void Open() { Enable(true); }
    void Close() { Enable(false); }
    void Enable(bool enabled)
    {
        Enabled = enabled;
        ButtonFace = !enabled;
    }
};

/// The main window as the modules see it: they decide here, the form draws it, and what the user
/// types stands here before a module is asked.
struct EntryScreen
{
    static constexpr int StatusPanels = 4;

    struct FocusRequest
    {
        EntryControl Control;
        bool SelectText = false;
        bool CheckDue = false; ///< its code has not been checked, although it is not typed
    };

    ControlState &operator[](EntryControl control)
    {
        return m_controls.at(static_cast<size_t>(control));
    }
    const ControlState &operator[](EntryControl control) const
    {
        return m_controls.at(static_cast<size_t>(control));
    }

    QDate Date; ///< of the date picker
    std::array<QString, StatusPanels> Panels;
    /// A quiet line at the bottom: why the previous text was restored.
    struct Notice
    {
        EntryControl About;
        QString Text;
    };
    std::optional<Notice> PutBack; ///< until something else is typed or another field entered
    QString LockedNotice; ///< the same line, of the locked window: which file cannot be used
    std::optional<FocusRequest> Focus; ///< taken away by the form when it has moved the focus

private:
    std::array<ControlState, EntryControls> m_controls;
};

/// Selects the first item with that text; without one the selection is unchanged. An empty text
/// matches past the last item and selects nothing, unless an item is empty.
void SelectComboItem(ControlState &list, const QString &text);
