#pragma once

#include <QString>

/// What the windows and the commands share about the running session. Owned once, by the program;
/// it lives on over a restart.
struct SessionState
{
    QString CurrentCompanyCode; ///< chosen in the main window; emptied before a restart
    QString CurrentCompanyName;

    bool NotSynchronised = false; ///< the database check failed: the window is unusable
    bool DatabasesReady = false; ///< every database of the company is open
    bool OpeningInProgress = false; ///< the reference databases stand open, Entries is being opened

    bool SynchronisationInProgress = false; ///< both make close-all close the global databases too
    bool DeletionInProgress = false;
};
