#include "exchange/ReferenceTables.h"

#include "store/DatabaseNames.h"
#include "store/PadKey.h"

using namespace Qt::StringLiterals;

// The names are those of the database fields; a name without its member is a compile error.
#define COLUMN(Record, Field, Rule)                                                                \
    {                                                                                              \
        QLatin1StringView(#Field), &Record::Field, Rule                                            \
    }

namespace ReferenceTables {

const TableDefinition<CompanyRecord> &Company()
{
    static const TableDefinition<CompanyRecord> definition = {u"Company"_s, DatabasePrefix::Company,
        {COLUMN(CompanyRecord, Company_Code, CellRules::CompanyCode),
            COLUMN(CompanyRecord, Company_Name, CellRules::Text)}};
    return definition;
}

const TableDefinition<OptionsRecord> &Options()
{
    static const TableDefinition<OptionsRecord> definition = {u"Options"_s, DatabasePrefix::Options,
        {COLUMN(OptionsRecord, Customer_Term, CellRules::Term),
            COLUMN(OptionsRecord, Project_Term, CellRules::Term),
            COLUMN(OptionsRecord, Activity_Term, CellRules::Term),
            COLUMN(OptionsRecord, Employee_Term, CellRules::Term),
            COLUMN(OptionsRecord, Billing_Option_Setting, CellRules::Digit(u'1', u'6')),
            COLUMN(OptionsRecord, Mgmt_Approval_In_Use, CellRules::Flag),
            COLUMN(OptionsRecord, Sec_Approval_In_Use, CellRules::Flag),
            COLUMN(OptionsRecord, Lock_Approved, CellRules::Flag),
            COLUMN(OptionsRecord, On_Hold_In_Use, CellRules::Flag),
            COLUMN(OptionsRecord, Billing_Option_Switch, CellRules::Flag),
            COLUMN(OptionsRecord, Expenses, CellRules::Flag),
            COLUMN(OptionsRecord, Project_Required, CellRules::Flag),
            COLUMN(OptionsRecord, Accounting_Name, CellRules::Text),
            COLUMN(OptionsRecord, Sync_Option, CellRules::Digit(u'0', u'3'))}};
    return definition;
}

const TableDefinition<EmployeeRecord> &Employee()
{
    static const TableDefinition<EmployeeRecord> definition
        = {u"Employee"_s, DatabasePrefix::Employee,
            {COLUMN(EmployeeRecord, Employee_Number, CellRules::Code(KeyWidth::Employee)),
                COLUMN(EmployeeRecord, Employee_Name, CellRules::Text),
                COLUMN(EmployeeRecord, Mgmt_Approver, CellRules::Flag),
                COLUMN(EmployeeRecord, Sec_Approver, CellRules::Flag),
                COLUMN(EmployeeRecord, Approval, CellRules::Flag),
                COLUMN(EmployeeRecord, Rate_Permission, CellRules::Digit(u'1', u'4')),
                COLUMN(EmployeeRecord, Rate, CellRules::Amount)}};
    return definition;
}

const TableDefinition<MultiplierRecord> &Multiplier()
{
    static const TableDefinition<MultiplierRecord> definition = {u"Multiplier"_s,
        DatabasePrefix::Multiplier,
        {COLUMN(MultiplierRecord, Multiplier_Number, CellRules::TypedCode(KeyWidth::Multiplier)),
            COLUMN(MultiplierRecord, Description, CellRules::Text),
            COLUMN(MultiplierRecord, Factor, CellRules::Amount)}};
    return definition;
}

const TableDefinition<DivisionRecord> &Divisions()
{
    static const TableDefinition<DivisionRecord> definition
        = {u"Divisions"_s, DatabasePrefix::Divisions,
            {COLUMN(DivisionRecord, Division_Number, CellRules::Code(KeyWidth::Division)),
                COLUMN(DivisionRecord, Division_Name, CellRules::Text),
                COLUMN(DivisionRecord, Rate, CellRules::Amount)}};
    return definition;
}

const TableDefinition<CustomerRecord> &Customers()
{
    static const TableDefinition<CustomerRecord> definition = {u"Customers"_s,
        DatabasePrefix::Customers,
        {COLUMN(CustomerRecord, Customer_Number, CellRules::TypedCode(KeyWidth::Customer)),
            COLUMN(CustomerRecord, Customer_Name, CellRules::Text),
            COLUMN(CustomerRecord, Division_Number, CellRules::OptionalCode(KeyWidth::Division)),
            COLUMN(CustomerRecord, No_Charge, CellRules::Flag),
            COLUMN(CustomerRecord, Rate, CellRules::Amount)}};
    return definition;
}

const TableDefinition<ProjectRecord> &Projects()
{
    static const TableDefinition<ProjectRecord> definition
        = {u"Projects"_s, DatabasePrefix::Projects,
            {COLUMN(ProjectRecord, Customer_Number, CellRules::TypedCode(KeyWidth::Customer)),
                COLUMN(ProjectRecord, Project_Number, CellRules::TypedCode(KeyWidth::Project)),
                COLUMN(ProjectRecord, Project_Name, CellRules::Text),
                COLUMN(ProjectRecord, Rate, CellRules::Amount)}};
    return definition;
}

const TableDefinition<ActivityRecord> &Activities()
{
    static const TableDefinition<ActivityRecord> definition
        = {u"Activities"_s, DatabasePrefix::Activities,
            {COLUMN(ActivityRecord, Activity_Number, CellRules::TypedCode(KeyWidth::Activity)),
                COLUMN(ActivityRecord, Description, CellRules::Text),
                COLUMN(ActivityRecord, Expense, CellRules::Flag),
                COLUMN(ActivityRecord, No_Charge, CellRules::Flag),
                COLUMN(ActivityRecord, Rate, CellRules::Amount),
                COLUMN(ActivityRecord, Unit_Cost, CellRules::Amount),
                COLUMN(ActivityRecord, Dflt_Billing_Status, CellRules::OptionalDigit(u'1', u'3'))}};
    return definition;
}

} // namespace ReferenceTables
