#pragma once

#include "lookup/LookupLists.h"
#include "lookup/LookupScreen.h"
#include "platform/clsGridView.h"
#include "platform/clsMessageBox.h"
#include "session/EntryBeingEdited.h"
#include "session/FilterState.h"
#include "session/LookupState.h"
#include "session/SessionState.h"
#include "store/Tables.h"

#include <functional>

/// The lookup: one list of codes, a page at a time, searched by a column. Lives as long as the
/// program and serves one window after the other; it decides on `Screen` and on the grid.
///
/// Errors: those of the record store; what was decided before one stays.
class modLookup
{
public:
    /// All outlive it.
    modLookup(Tables &tables, const SessionState &session, EntryBeingEdited &entry,
        FilterState &filter, LookupState &lookup, clsMessageBox &messages);

    /// The grid of the window that is open; null between two windows.
    void SetGrid(clsGridView *grid) { m_grid = grid; }

    /// Ends the program at once; connected by whoever owns the program.
    std::function<void()> EndProgram;

    QString Caption() const;

    void OpenLookup(); ///< starts anew, from the first page of the list asked for
    void FindLookupText(); ///< makes the first record current that matches the text
    void ChangeLookupBy(); ///< orders and searches by the chosen column
    void ScrollTo(qint32 value); ///< the scroll bar has moved there
    void PageKey(LookupPaging key);
    void RowPressed(qint32 row) { SelectRow(row); } ///< the click that may follow takes its record
    void RowClicked();
    void RowDoubleClicked(qint32 row);
    void KeepOneRowSelected();
    void SelectLookup(); ///< takes the record of the selected row and closes
    void CancelLookup();
    void ClearLookupPending() { m_lookup.LookupPending = false; }

    LookupScreen Screen;
    QString LookupCustomerFilter; ///< whose projects are shown
    qint32 LookupRecordIndex = 0; ///< of the chosen record; scrolling alone keeps it
    qint32 LookupCount = 0;
    qint32 LookupPageRows = 0;
    qint32 LookupWindowStart = 0; ///< position of the first record in the grid
    bool LookupActivating = false; ///< the window is being filled

private:
    void FillLookupBy();
    void FindCustomer();
    QString &RememberedChoice();
    bool ShowFirstPage();
    bool BuildLookupPage();
    void ScrollLookup();
    void SizeLookupColumns();
    void ShowLookupStatus();
    void SelectRow(qint32 row);
    qint32 HiddenIndex(qint32 row) const;
    void TakeLookupRecord();

    Tables &m_tables;
    const SessionState &m_session;
    EntryBeingEdited &m_entry;
    FilterState &m_filter;
    LookupState &m_lookup;
    clsMessageBox &m_messages;
    LookupLists m_lists;
    clsGridView *m_grid = nullptr;
    bool m_paging = false; // a key moves the page and leaves the row to itself
};
