#pragma once

#include "platform/Currency.h"

#include <QDateTime>
#include <QString>

#include <tuple>

/// Record structures, one a table, their members in schema order, and the schema texts.
///
/// Schema texts are passed to the store as they stand here, blanks and last comma included: the
/// accounting side compares them.
/// Units:  Currency is scaled by 10,000; a Date is a wall-clock date-time; flags are "Y" or "N".
/// Keys:   a member ..._Key is the code left-justified in blanks (PadKey), the code beside it is
///         unpadded.

#define WORKLOG_RECORD_FIELDS(...)                                                                 \
    auto Fields()                                                                                  \
    {                                                                                              \
        return std::tie(__VA_ARGS__);                                                              \
    }                                                                                              \
    auto Fields() const                                                                            \
    {                                                                                              \
        return std::tie(__VA_ARGS__);                                                              \
    }

struct CompanyRecord
{
    QString Company_Key;
    QString Company_Code;
    QString Company_Name;

    static constexpr QStringView SchemaText
        = u"Company_Key String, Company_Code String, Company_Name String,";
    WORKLOG_RECORD_FIELDS(Company_Key, Company_Code, Company_Name)
};

struct GlobalOptionsRecord
{
    QString Last_Company;
    QString Entries_Exist;
    QString Employee;

    static constexpr QStringView SchemaText
        = u"Last_Company String,Entries_Exist String, Employee String,";
    WORKLOG_RECORD_FIELDS(Last_Company, Entries_Exist, Employee)
};

struct OptionsRecord
{
    QString Customer_Term;
    QString Project_Term;
    QString Activity_Term;
    QString Employee_Term;
    QString Billing_Option_Setting; ///< "1" to "6"
    QString Mgmt_Approval_In_Use;
    QString Sec_Approval_In_Use;
    QString Lock_Approved;
    QString On_Hold_In_Use;
    QString Billing_Option_Switch;
    QString Expenses; ///< "N": no expense activity may be entered
    QString Project_Required;
    QString Accounting_Name;
    QString Sync_Option; ///< "0" to "3"

    static constexpr QStringView SchemaText
        = u"Customer_Term String, Project_Term String, Activity_Term String, Employee_Term String, "
          u"Billing_Option_Setting String, Mgmt_Approval_In_Use String, Sec_Approval_In_Use "
          u"String, "
          u"Lock_Approved String, On_Hold_In_Use String, Billing_Option_Switch String, "
          u"Expenses String, Project_Required String, Accounting_Name String, Sync_Option String,";
    WORKLOG_RECORD_FIELDS(Customer_Term, Project_Term, Activity_Term, Employee_Term,
        Billing_Option_Setting, Mgmt_Approval_In_Use, Sec_Approval_In_Use, Lock_Approved,
        On_Hold_In_Use, Billing_Option_Switch, Expenses, Project_Required, Accounting_Name,
        Sync_Option)
};

struct EmployeeRecord
{
    QString Employee_Number; ///< 3 characters
    QString Employee_Name;
    QString Mgmt_Approver;
    QString Sec_Approver;
    QString Approval;
    QString Rate_Permission; ///< "1" to "4"
    Currency Rate;

    static constexpr QStringView SchemaText
        = u"Employee_Number String, Employee_Name String, Mgmt_Approver String, "
          u"Sec_Approver String, Approval String, Rate_Permission String, Rate Currency,";
    WORKLOG_RECORD_FIELDS(Employee_Number, Employee_Name, Mgmt_Approver, Sec_Approver, Approval,
        Rate_Permission, Rate)
};

struct MultiplierRecord
{
    QString Multiplier_Key; ///< 2 characters
    QString Multiplier_Number;
    QString Description;
    Currency Factor;

    static constexpr QStringView SchemaText
        = u"Multiplier_Key String, Multiplier_Number String, Description String, Factor Currency,";
    WORKLOG_RECORD_FIELDS(Multiplier_Key, Multiplier_Number, Description, Factor)
};

struct DivisionRecord
{
    QString Division_Key; ///< 2 characters
    QString Division_Number;
    QString Division_Name;
    Currency Rate;

    static constexpr QStringView SchemaText
        = u"Division_Key String, Division_Number String, Division_Name String, Rate Currency,";
    WORKLOG_RECORD_FIELDS(Division_Key, Division_Number, Division_Name, Rate)
};

struct CustomerRecord
{
    QString Customer_Key; ///< 15 characters
    QString Customer_Number;
    QString Customer_Name;
    QString Division_Number;
    QString No_Charge;
    Currency Rate;

    static constexpr QStringView SchemaText
        = u"Customer_Key String, Customer_Number String, Customer_Name String, "
          u"Division_Number String, No_Charge String, Rate Currency,";
    WORKLOG_RECORD_FIELDS(
        Customer_Key, Customer_Number, Customer_Name, Division_Number, No_Charge, Rate)
};

struct ProjectRecord
{
    QString Project_Key; ///< 15 + 15 characters: customer, then project
    QString Customer_Number;
    QString Project_Number;
    QString Project_Name;
    Currency Rate;

    static constexpr QStringView SchemaText
        = u"Project_Key String, Customer_Number String, Project_Number String, "
          u"Project_Name String, Rate Currency,";
    WORKLOG_RECORD_FIELDS(Project_Key, Customer_Number, Project_Number, Project_Name, Rate)
};

struct ActivityRecord
{
    QString Activity_Key; ///< 15 characters
    QString Activity_Number;
    QString Description;
    QString Expense;
    QString No_Charge;
    Currency Rate;
    Currency Unit_Cost;
    QString Dflt_Billing_Status; ///< "1" to "3"

    static constexpr QStringView SchemaText
        = u"Activity_Key String, Activity_Number String, Description String, Expense String, "
          u"No_Charge String, Rate Currency, Unit_Cost Currency, Dflt_Billing_Status String,";
    WORKLOG_RECORD_FIELDS(Activity_Key, Activity_Number, Description, Expense, No_Charge, Rate,
        Unit_Cost, Dflt_Billing_Status)
};

struct EntryRecord
{
    QString Customer_Number;
    QString Project_Number;
    QString Activity_Number;
    QDateTime Date;
    QString Billing_Status; ///< "1" to "3"
    QString Mgmt_Approval;
    QString Sec_Approval;
    QString On_Hold;
    QString Billing_Option; ///< "0" to "6"
    QString Multiplier_Number;
    QString Rate_Overridden;
    QString Reimburse;
    Currency Hours;
    Currency Rate;
    Currency Amount;
    Currency Multiplier_Factor;
    Currency Exp_Markup_Percent;
    Currency Exp_Markup_Amount;
    QString Description;

    static constexpr QStringView SchemaText
        = u"Customer_Number String, Project_Number String, Activity_Number String, Date Date, "
          u"Billing_Status String, Mgmt_Approval String, Sec_Approval String, On_Hold String, "
          u"Billing_Option String, Multiplier_Number String, Rate_Overridden String, "
          u"Reimburse String, Hours Currency, Rate Currency, Amount Currency, "
          u"Multiplier_Factor Currency, Exp_Markup_Percent Currency, Exp_Markup_Amount Currency, "
          u"Description String,";
    WORKLOG_RECORD_FIELDS(Customer_Number, Project_Number, Activity_Number, Date, Billing_Status,
        Mgmt_Approval, Sec_Approval, On_Hold, Billing_Option, Multiplier_Number, Rate_Overridden,
        Reimburse, Hours, Rate, Amount, Multiplier_Factor, Exp_Markup_Percent, Exp_Markup_Amount,
        Description)
};

struct HoursSummaryRecord
{
    QDateTime Date;
    Currency Billable;
    Currency NoCharge;
    Currency DoNotBill;
    Currency Amount;

    static constexpr QStringView SchemaText
        = u"Date Date, Billable Currency, NoCharge Currency, DoNotBill Currency, Amount Currency,";
    WORKLOG_RECORD_FIELDS(Date, Billable, NoCharge, DoNotBill, Amount)
};

#undef WORKLOG_RECORD_FIELDS
