#pragma once

#include <QString>

/// The transaction filter in force, honoured by the entry list and the hours summary. An empty
/// code does not restrict.
struct FilterState
{
    QString AppliedFilterCustomer;
    QString AppliedFilterProject;
    QString AppliedFilterActivity;

    /// Whether an entry of these codes passes. Comparisons are exact: case and blanks count.
    bool Passes(const QString &customer, const QString &project, const QString &activity) const
    {
        return (AppliedFilterCustomer.isEmpty() || AppliedFilterCustomer == customer)
            && (AppliedFilterProject.isEmpty() || AppliedFilterProject == project)
            && (AppliedFilterActivity.isEmpty() || AppliedFilterActivity == activity);
    }
};
