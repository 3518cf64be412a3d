#pragma once

#include "entry/clsM90Mask.h"
#include "entry/EntryListState.h"
#include "entry/EntryScreen.h"
#include "entry/FieldReasons.h"
#include "lookup/modTransFilter.h"
#include "platform/clsClock.h"
#include "platform/clsMessageBox.h"
#include "session/EntryBeingEdited.h"
#include "session/LookupState.h"
#include "session/SessionState.h"
#include "store/Tables.h"

#include <functional>
#include <optional>

/// What a code check did with the code in its box.
enum class CodeCheck
{
    Accepted,
    Refused ///< the box shows the code from before, and asks for the focus
};

/// The entry in the editor and the rules of its fields. It decides on the screen structure and
/// never sees a widget.
///
/// Shape:  one entry, stored (EntryLoaded) or new; what the user types stands in the screen before
///         a routine is called, and the form draws the screen after it.
/// Errors: those of the record store; an entry that could not be written keeps its edits and is
///         still Changed. Faults of the user are one message and an answer, never an error.
class modEntryInfo
{
public:
    /// All outlive it.
    modEntryInfo(Tables &tables, const SessionState &session, EntryBeingEdited &entry,
        LookupState &lookup, EntryListState &list, EntryScreen &screen, clsMessageBox &messages,
        const clsClock &clock);

    /// Reloads the entry list; connected by the list's owner.
    std::function<void()> ReloadList;

    /// Shows the lookup that the shared state asks for and returns when it has closed. Connected
    /// by the window.
    std::function<void()> ShowLookup = [] {};

    /// Draws what has been put on the screen so far, before a message covers it. Connected by the
    /// window.
    std::function<void()> DrawScreen = [] {};

    /// Takes in the box that has the focus as if it were left; false when its code was refused.
    /// Connected by the window.
    std::function<bool()> TakeFocusedBox = [] { return true; };

    // The record and the screen.
    void ClearEntry(); ///< a new, empty entry
    /// Shows the stored entry at that place of the Entries table. When it cannot be read the one
    /// in the editor stays.
    void LoadEntry(qint32 position);
    bool Holds(qint32 position) const { return EntryLoaded && m_position == position; }
    void ShowEntry(); ///< reads a stored entry again and puts everything on the screen
    void LockEntryFields();
    void HideRateFields(); ///< from an employee with the rate permission level "1"
    void ShowRecordStatus();
    /// Shows and enables the fields for the company's options and the employee.
    void ShowFieldCaptions();
    /// The picker shows a date that the entry has not taken yet.
    bool DateIsHeldBack() const;
    /// A quiet line about the date that is shown; empty when it needs none.
    QString DateNotice() const;
    /// Puts beside each field why it is closed, and beside the rate where it has come from.
    void ExplainFields();

    // Edits; each but the last marks the entry changed.
    void FieldEdited();
    void TakeDate();
    void TakeDescription();
    void ReimburseClicked();
    void ApprovedClicked();
    void OnHoldClicked();
    void RememberFocusTexts(); ///< what the code boxes and lists hold as one gets the focus

    /// Checks the code in its box. When the store fails, the entry is as before the check, the box
    /// shows the previous code, and its check is due again.
    CodeCheck CheckCode(EntryControl box);
    bool ValidateEntry(); ///< false after one message; FailedField names the field

    /// Opens the lookup of a code (one of LookupKinds) and takes the choice into the entry; false
    /// when none was made. Does nothing for a project without a customer.
    bool LookUp(size_t kind, LookupStart start);
    /// Replaces what a lookup for the filter left in the entry by what the field shows.
    void TakeProjectFromBox();
    EntryControl AfterActivity() const; ///< the field that follows the activity

    // Billing, hours, rate and amount.
    QuantityMask MaskOf(EntryControl box) const; ///< of the hours, rate or amount, as they are now
    void ApplyBillingStatus();
    void ApplyBillingOption();
    void ApplyHoursText();
    void ApplyRateText();
    void ApplyAmountText();
    void RecalcAmount();

    // Saving.
    void SaveEntry(); ///< SaveSucceeded says whether the caller may go on
    void UndoEntry();
    void DeleteEntry();

    /// Asks about unsaved changes, where there are any; false: the action is abandoned.
    bool MayLeaveEntry();
    /// What Yes to that question does; false when the save was refused.
    bool SaveBeforeLeaving();

    EntryBeingEdited &Entry;
    bool Changed = false;
    bool NewEntry = true;
    bool EntryLoaded = false;
    bool SaveSucceeded = true;
    QString FailedField; ///< "Cust", "Proj", "Acti", "BSta", "Hrs", "Rate", "Amt" or empty

private:
    enum class Reading
    {
        Stored,
        AsEdited, ///< the edits stay, and so does the focus unless the activity is taken out
        AfterLookup ///< the edits stay, and the focus moves on from the looked up code
    };

    void Show(Reading reading);
    void ShowAgain() { Show(Reading::AsEdited); }
    void ReadStoredEntry(qint32 position);
    void ShowClosedState();
    void OpenBillingFields();
    void ShowCodes();
    void ShowBillingStatus();
    void RefuseExpense();
    bool ExpenseIsRefused() const;
    void ShowApproval();
    void ShowOnHold();
    void ShowCompanySelector();
    void RequestEntryFocus();
    bool LocksApproved() const;

    QString LookupKindText(size_t kind) const;
    void TakeLookedUpCode(size_t kind);
    void RequestFocusAfterLookup();
    /// `statusBefore` is the billing status that was shown before the code.
    void ApplyBillingRules(const QString &statusBefore);

    /// What a change goes back to when the store fails on the way.
    struct Before
    {
        EntryBeingEdited Entry;
        EntryScreen Screen;
        bool Changed;
    };
    Before Now() const { return {Entry, m_screen, Changed}; }
    void GoBackTo(const Before &before, EntryControl control);
    /// Runs the change that the user has made in the control; when it fails, nothing is changed.
    void AllOrNothing(EntryControl control, const std::function<void()> &change);
    QString &CodeOf(EntryControl box);

    CodeCheck CheckCustomer();
    CodeCheck CheckProject();
    CodeCheck CheckActivity();
    CodeCheck CheckMultiplier();
    void OpenProject(bool open);
    /// `why` is shown at the bottom of the window.
    CodeCheck Refuse(EntryControl box, QString &code, const QString &previous, const QString &why);
    FieldFacts Facts() const;
    void SelectFieldText(EntryControl box);
    QString CodeIn(EntryControl box); ///< without the spaces after it, which the box loses too
    void TakeActivity(bool found);
    void DropImpossibleHours();
    bool Fail(const QString &message, EntryControl control, const QString &key, bool selectText);

    void LayOutQuantities();
    void LayOutTime();
    void LayOutExpense();
    void FillBillingOptions();
    void TakeRate(Currency rate); ///< that a rule gives: it takes the place of a typed one
    void ClearBillingData();
    void EnableBillingFields(bool options, bool rate);
    void TakeBillingStatus(const QString &text);
    void TakeBillingOption(const QString &text);
    void ApplyBillingDefaults();
    QString ChooseBillingOption(); ///< the option that is proposed
    void LookupRate(const QString &option);
    // The records that the entry's codes stand for. One that is not there is as a new one: no
    // rate and no flag.
    CustomerRecord CustomerOfEntry();
    DivisionRecord DivisionOfEntry();
    ProjectRecord ProjectOfEntry();
    ActivityRecord ActivityOfEntry();
    bool CountsAsUnbilled(); ///< no charge, or not to be billed
    bool SettingIsUpToThree() const;
    bool IsBillable() const;
    bool IsNotBilled() const; ///< neither billable nor without a status
    QString RateLevel() const;

    EntryRecord StoredForm() const;
    bool StoredWithoutDate() const; ///< the entry shows today, and is saved so without an edit
    /// Puts the cursor on the stored entry that is shown; raises when it is not there as it was
    /// read, so that no other one is ever written or deleted instead.
    void MoveToShownEntry();
    void WriteEntry();

    Tables &m_tables;
    const SessionState &m_session;
    LookupState &m_lookup;
    EntryListState &m_list;
    EntryScreen &m_screen;
    clsMessageBox &m_messages;
    const clsClock &m_clock;

    std::optional<size_t> m_pendingLookup; // the kind of the lookup whose code is being taken
    bool m_loading = false; // what changes now is no edit
    bool m_activityFocusRequested = false;
    qint32 m_position = 0; // of the loaded entry in the Entries table
    EntryRecord m_stored; // what stood there

    // Texts from when a box got the focus.
    QString m_previousCustomer;
    QString m_previousProject;
    QString m_previousActivity;
    QString m_previousMultiplier;
    QString m_previousStatusText;
    QString m_previousOptionText;
};
