#pragma once

#include "platform/Currency.h"
#include "report/ReportRequest.h"
#include "store/Records.h"

#include <QDate>
#include <QString>

#include <vector>

/// A report, ready to be written in any format.
///
/// Units:  every value is exact, the totals too. They are rounded once, where they are written:
///         hours and amounts to two decimals, rates to three.
struct Report
{
    struct Entry
    {
        QDate Date;
        QString CustomerCode;
        QString Customer;
        QString ProjectCode;
        QString Project;
        QString ActivityCode;
        QString Activity;
        bool IsExpense = false;
        bool ShowsRate = false; ///< else rate and amount are nobody's business here, and 0
        QString BillingStatus;
        Currency Hours; ///< or units
        Currency Rate;
        Currency Amount;
        QString Description;
    };
    struct Day
    {
        QDate Date;
        Currency Billable;
        Currency NoCharge;
        Currency DoNotBill;
        Currency Total;
        Currency Amount;
    };
    struct EntryTotals
    {
        Currency Hours; ///< of time
        Currency TimeAmount;
        Currency ExpenseAmount;
        Currency Amount; ///< of both
    };

    ReportContent Content = ReportContent::Entries;
    CompanyRecord Company;
    EmployeeRecord Employee;
    OptionsRecord Options; ///< the company's terms
    std::vector<QString> Restrictions; ///< what was filtered, for people
    std::vector<Entry> Entries; ///< by date; of the same date in stored order
    EntryTotals EntriesTotal;
    std::vector<Day> Days; ///< by date
    Day DaysTotal; ///< its date is none
};

/// Reads the databases of the request's folder.
/// Errors: those of the record store, and of a company that is not there or not complete.
Report ReadReport(const ReportRequest &request);
