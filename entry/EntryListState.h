#pragma once

#include <QString>

/// State of the entry list that the list and the editor share. Owned once, by the program.
struct EntryListState
{
    qint32 EntryCount = 0; ///< entries that the last refresh put into the list
    qint32 SelectedEntryId = 0; ///< record position of the entry loaded from the list
    qint32 SelectedIndex = 0; ///< its grid row less 1
    qint32 SelectedRow = 0; ///< its grid row
    bool RowLoaded = false; ///< a row was loaded; stays set when a new entry follows
    bool ListLoading = false; ///< a refresh is running
    bool SuppressRowSelect = false; ///< a modal dialog of the window is open
    bool DeletingEntry = false; ///< the refresh follows a deletion
    bool CompanyChangeInProgress = false;
    QString LastCompany; ///< company whose databases are open; emptied before a restart
};
