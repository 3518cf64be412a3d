#pragma once

#include <QString>

/// The transaction filter. An empty code does not restrict. Owned once, by the program; emptied by
/// another company, a synchronisation and a deletion of the databases.
struct FilterState
{
    // In force; honoured by the entry list and the hours summary.
    QString AppliedFilterCustomer;
    QString AppliedFilterProject;
    QString AppliedFilterActivity;

    // Being edited in the filter's dialog; a lookup opened from there writes its choice here.
    QString FilterCustomer;
    QString FilterProject;
    QString FilterActivity;

    bool FilterCodeReverted = false; ///< the last check put a code back
    bool FilterCancelled = false; ///< the dialog was left by Cancel
    bool FilterCleared = false; ///< Clear was used in it

    /// Whether an entry of these codes passes. Comparisons are exact: case and blanks count.
    bool Passes(const QString &customer, const QString &project, const QString &activity) const
    {
        return (AppliedFilterCustomer.isEmpty() || AppliedFilterCustomer == customer)
            && (AppliedFilterProject.isEmpty() || AppliedFilterProject == project)
            && (AppliedFilterActivity.isEmpty() || AppliedFilterActivity == activity);
    }
};
