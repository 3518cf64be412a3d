#pragma once

#include "entry/EntryScreen.h"
#include "session/EntryBeingEdited.h"
#include "store/Records.h"

#include <QString>

/// What tool tips explain: why a field is disabled, and where its rate comes from.
/// Texts to show as they are; nothing here decides anything.

/// What the answers depend on.
struct FieldFacts
{
    bool NotSynchronised = false;
    bool ApprovedAndLocked = false;
    bool HasCustomer = true;
    bool IsExpense = false;
    bool AmountOnly = false;
    bool MayBeBilled = true; ///< billable, or without a status yet
    bool BillingSwitchOn = true;
    QString RatePermission = QStringLiteral("4");
    bool Changed = false;
    bool EntryLoaded = false;
    bool OnHold = false;
    bool Approved = false;
    QString CustomerTerm = QStringLiteral("Customer");
};

/// Why the control cannot be used as the facts are; empty for one that then is open.
QString WhyClosed(EntryControl control, const FieldFacts &facts);

enum class RateSource
{
    None, ///< no rate has come from anywhere yet, or none is due
    Typed,
    UnitCost, ///< of the expense's activity
    Activity,
    Project,
    Customer,
    Division,
    Employee,
    Unknown ///< an option that takes no rate in this company: the previous rate stays
};

/// Where the rules take the entry's rate from, with that billing option setting of the company.
RateSource RateSourceOf(const EntryBeingEdited &entry, const QString &billingOptionSetting);

/// Says so with the company's words, and that the box shows it multiplied where it does.
QString RateSourceText(
    RateSource source, const EntryBeingEdited &entry, const OptionsRecord &options);

/// What a box of numbers takes.
QString DigitsTaken(int integerDigits, int decimalDigits);
