#pragma once

#include "entry/EntryListState.h"
#include "entry/EntryRecordset.h"
#include "entry/EntryScreen.h"
#include "entry/modEntryInfo.h"
#include "figures/EntryReferences.h"
#include "platform/clsClock.h"
#include "platform/clsGridView.h"
#include "platform/clsMessageBox.h"
#include "session/FilterState.h"
#include "session/SessionState.h"
#include "session/SortState.h"
#include "store/Tables.h"
#include "sync/modSync.h"

#include <functional>
#include <memory>

/// The entry list in the upper half of the main window: fills it from the Entries table, sorts
/// it, and loads a selected row into the editor.
///
/// Shape:  the columns of the list are those of EntryColumn, all text.
/// Errors: those of the record store.
class modEntryList
{
public:
    /// All outlive it.
    modEntryList(Tables &tables, modSync &sync, SessionState &session, FilterState &filter,
        SortState &sort, EntryListState &list, modEntryInfo &entry, EntryScreen &screen,
        clsMessageBox &messages, const clsClock &clock);

    /// The grid of the window that is open; null between two windows.
    void SetGrid(clsGridView *grid) { m_grid = grid; }

    /// Ends the program at once; connected by the program's owner.
    std::function<void()> EndProgram;

    void LoadEntryList();
    void SelectEntryRow(int row); ///< loads it, after the save question where that is due
    void SortEntryList();
    void CompanyChanged(); ///< to the company list's text
    void StartNewEntry();
    void SaveLastCompany();
    void LockEntryWindow();
    void ClearHeaderArrows(); ///< the sort state no longer speaks of this list
    QString SyncNotice() const; ///< see EraseNotice; of the option that is stored

private:
    bool FillEntryRecordset();
    bool CreateEmptyEntryRecordset();
    qint32 FillEntries(EntryRecordset &records); ///< returns their number
    EntryRecordset::Row RowOf(const EntryNumbers &entry);
    void BindRecordset();
    void SizeEntryColumns();
    void ShowRecordCount();
    void FillCompanyList();
    void ChangeCompany();
    void ReturnToCompany(const QString &code);
    void OpenCompany();
    [[noreturn]] void RaiseUnusable() const; ///< why the company's databases cannot be used
    void HideRateFields(); ///< as far as the employee is known
    void DropDeletedRow();
    void LoadRow(int row);
    int RowOfEntry(qint32 id) const; ///< 0: none
    /// SelectedRow alone decides which row is highlighted.
    void MarkSelectedRow();
    void ScrollToSelectedRow();
    QString NewDamage(); ///< the report of entries that are not as they were saved, else empty

    Tables &m_tables;
    modSync &m_sync;
    SessionState &m_session;
    FilterState &m_filter;
    SortState &m_sort;
    EntryListState &m_list;
    modEntryInfo &m_entry;
    EntryScreen &m_screen;
    clsMessageBox &m_messages;
    const clsClock &m_clock;
    clsGridView *m_grid = nullptr;

    EntryReferences m_references;
    std::shared_ptr<const clsRecordSet> m_recordset;
    bool m_showsRates = false; // time entries show rate and amount
    size_t m_damagedCount = 0; // of the company's entries, as last told
};
