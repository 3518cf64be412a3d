#pragma once

#include "entry/frmEntryList.h"

#include <QDate>
#include <QString>

/// What a user sees of the entry in the editor, of the list and of the status bar.
struct ShownEntry
{
    QString Company;
    QString Customer;
    QString Project;
    QString Activity;
    QDate Date;
    bool DateIsBeingTyped = false; ///< its text is not that date yet
    QString Status;
    QString Option;
    QString Multiplier;
    QString Factor;
    QString Hours;
    QString HoursCaption;
    QString Rate;
    QString Amount;
    QString Description;
    bool ShowsOption = false;
    bool ShowsMultiplier = false;
    bool ShowsRate = false;
    bool ShowsReimburse = false;
    bool ShowsApproved = false;
    bool ShowsOnHold = false;
    bool Reimburse = false;
    bool Approved = false;
    bool OnHold = false;

    bool Changed = false; ///< by the title's mark
    bool IsRecord = false; ///< panel 1 speaks of a record, not of the list
    QString Panels; ///< all four
    QString FirstPanel;
    QString Notice; ///< the line that covers them
    int MarkedRow = 0; ///< of the list; 0: none, -1: several
    int MarkedId = -1; ///< its hidden number
    int Rows = 0; ///< with an entry
    QString Focus; ///< the name of the control that has it

    /// Whether the boxes, lists and ticks show the same.
    bool SameEntry(const ShownEntry &other) const;
};

ShownEntry LookAt(frmEntryList &window);
