#pragma once

#include "platform/Currency.h"

#include <QDateTime>
#include <QString>

/// The time or expense entry in the editor. The member initializers are a new entry's values,
/// its date aside.
struct EntryBeingEdited
{
    QString CustomerCode;
    QString ProjectCode;
    QString ActivityCode;
    QDateTime Date;
    QString BillingStatus; ///< "1" to "3"
    QString BillingStatusText;
    QString MgmtApproval;
    QString SecApproval;
    QString OnHold = QStringLiteral("N");
    QString BillingOption; ///< "1" to "6"; "0" for a time entry that is not billable
    QString BillingOptionText = QStringLiteral("0");
    QString MultiplierCode;
    QString RateOverridden = QStringLiteral("N");
    QString Reimburse = QStringLiteral("N");
    Currency Hours; ///< units for an expense
    Currency Rate;
    Currency Amount;
    Currency MultiplierFactor = Currency::FromWhole(1);
    Currency ExpMarkupPercent;
    Currency ExpMarkupAmount;
    QString Description;
    QString ExpenseActivity = QStringLiteral("N");
    QString AmountOnly = QStringLiteral("N"); ///< no routine sets it to "Y"

    bool IsExpense() const { return ExpenseActivity == QLatin1String("Y"); }
};
