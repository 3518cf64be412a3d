#pragma once

#include "lookup/modLookup.h"
#include "lookup/modTransFilter.h"
#include "session/FilterState.h"
#include "summary/modHrsSumm.h"
#include "sync/modConfigure.h"
#include "sync/modSyncOptions.h"

/// The modules behind the dialogs that the main window opens. All outlive the window.
struct EntryDialogs
{
    modLookup &Lookup;
    modTransFilter &Filter;
    modHrsSumm &Summary;
    modConfigure &Configure;
    modSyncOptions &SyncOptions;
    FilterState &Filtered; ///< how the filter was left
};
