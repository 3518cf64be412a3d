#include "tests/support/SampleCompany.h"

#include "store/DatabaseNames.h"
#include "store/FieldText.h"
#include "store/PadKey.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

void FillKey(QString &key, const QString &derived)
{
    if (key.isEmpty())
        key = derived;
}

QString NameOf(const SampleCompany &company, QStringView prefix)
{
    return CompanyDatabaseName(company.Code, prefix, SampleCodes().Creator);
}

void BuildCompany(const QString &folder, SampleCompany company)
{
    for (MultiplierRecord &record : company.Multipliers)
        FillKey(record.Multiplier_Key, PadKey(record.Multiplier_Number, KeyWidth::Multiplier));
    for (DivisionRecord &record : company.Divisions)
        FillKey(record.Division_Key, PadKey(record.Division_Number, KeyWidth::Division));
    for (CustomerRecord &record : company.Customers)
        FillKey(record.Customer_Key, PadKey(record.Customer_Number, KeyWidth::Customer));
    for (ProjectRecord &record : company.Projects)
        FillKey(record.Project_Key, ProjectKey(record.Customer_Number, record.Project_Number));
    for (ActivityRecord &record : company.Activities)
        FillKey(record.Activity_Key, PadKey(record.Activity_Number, KeyWidth::Activity));

    BuildDatabase<OptionsRecord>(
        folder, NameOf(company, DatabasePrefix::Options), {company.Options});
    BuildDatabase<EmployeeRecord>(
        folder, NameOf(company, DatabasePrefix::Employee), {company.Employee});
    BuildDatabase(folder, NameOf(company, DatabasePrefix::Multiplier), company.Multipliers);
    BuildDatabase(folder, NameOf(company, DatabasePrefix::Divisions), company.Divisions);
    BuildDatabase(folder, NameOf(company, DatabasePrefix::Customers), company.Customers);
    BuildDatabase(folder, NameOf(company, DatabasePrefix::Projects), company.Projects);
    BuildDatabase(folder, NameOf(company, DatabasePrefix::Activities), company.Activities);
    if (company.Entries)
        BuildDatabase(folder, NameOf(company, DatabasePrefix::Entries), *company.Entries);
}

OptionsRecord DefaultOptions()
{
    OptionsRecord options;
    options.Customer_Term = u"Customer"_s;
    options.Project_Term = u"Project"_s;
    options.Activity_Term = u"Activity"_s;
    options.Employee_Term = u"Employee"_s;
    options.Billing_Option_Setting = u"1"_s;
    options.Mgmt_Approval_In_Use = u"Y"_s;
    options.Sec_Approval_In_Use = u"Y"_s;
    options.Lock_Approved = u"N"_s;
    options.On_Hold_In_Use = u"Y"_s;
    options.Billing_Option_Switch = u"Y"_s;
    options.Expenses = u"Y"_s;
    options.Project_Required = u"N"_s;
    options.Accounting_Name = u"Ledger"_s;
    options.Sync_Option = u"0"_s;
    return options;
}

EmployeeRecord DefaultEmployee()
{
    EmployeeRecord employee;
    employee.Employee_Number = u"JRD"_s;
    employee.Employee_Name = u"Jo Reardon"_s;
    employee.Mgmt_Approver = u"N"_s;
    employee.Sec_Approver = u"N"_s;
    employee.Approval = u"N"_s;
    employee.Rate_Permission = u"1"_s;
    employee.Rate = Currency::FromWhole(80);
    return employee;
}

} // namespace

StoreCodes SampleCodes()
{
    return {u"WkLg"_s, u"KVLM"_s, u"DATA"_s};
}

CompanyRecord SampleCompanyRecord(const QString &code, const QString &name)
{
    CompanyRecord record;
    record.Company_Key = code;
    record.Company_Code = code;
    record.Company_Name = name;
    return record;
}

MultiplierRecord SampleMultiplier(
    const QString &number, const QString &description, Currency factor)
{
    MultiplierRecord record;
    record.Multiplier_Number = number;
    record.Description = description;
    record.Factor = factor;
    return record;
}

DivisionRecord SampleDivision(const QString &number, const QString &name, Currency rate)
{
    DivisionRecord record;
    record.Division_Number = number;
    record.Division_Name = name;
    record.Rate = rate;
    return record;
}

CustomerRecord SampleCustomer(const QString &number, const QString &name, const QString &division,
    Currency rate, const QString &noCharge)
{
    CustomerRecord record;
    record.Customer_Number = number;
    record.Customer_Name = name;
    record.Division_Number = division;
    record.No_Charge = noCharge;
    record.Rate = rate;
    return record;
}

ProjectRecord SampleProject(
    const QString &customer, const QString &number, const QString &name, Currency rate)
{
    ProjectRecord record;
    record.Customer_Number = customer;
    record.Project_Number = number;
    record.Project_Name = name;
    record.Rate = rate;
    return record;
}

ActivityRecord SampleActivity(
    const QString &number, const QString &description, Currency rate, const QString &billingStatus)
{
    ActivityRecord record;
    record.Activity_Number = number;
    record.Description = description;
    record.Expense = u"N"_s;
    record.No_Charge = u"N"_s;
    record.Rate = rate;
    record.Dflt_Billing_Status = billingStatus;
    return record;
}

ActivityRecord SampleExpense(const QString &number, const QString &description, Currency unitCost,
    const QString &billingStatus)
{
    ActivityRecord record = SampleActivity(number, description, {}, billingStatus);
    record.Expense = u"Y"_s;
    record.Unit_Cost = unitCost;
    return record;
}

EntryRecord SampleEntry(const QString &customer, const QString &project, const QString &activity,
    QDate date, Currency hours, Currency rate, const QString &description)
{
    EntryRecord record;
    record.Customer_Number = customer;
    record.Project_Number = project;
    record.Activity_Number = activity;
    record.Date = WallClock(date);
    record.Billing_Status = u"1"_s;
    record.On_Hold = u"N"_s;
    record.Billing_Option = u"1"_s;
    record.Rate_Overridden = u"N"_s;
    record.Reimburse = u"N"_s;
    record.Hours = hours;
    record.Rate = rate;
    record.Amount = hours * rate;
    record.Multiplier_Factor = Currency::FromWhole(1);
    record.Description = description;
    return record;
}

SampleCompany::SampleCompany(const QString &code, const QString &name)
    : Code(code)
    , Name(name)
    , Options(DefaultOptions())
    , Employee(DefaultEmployee())
    , Multipliers({SampleMultiplier(u"1"_s, u"Standard"_s, Currency::FromWhole(1)),
          SampleMultiplier(u"2"_s, u"Overtime"_s, Currency::FromScaled(15000)),
          SampleMultiplier(u"3"_s, u"Sunday"_s, Currency::FromWhole(2))})
    , Divisions({SampleDivision(u"01"_s, u"East"_s, Currency::FromWhole(70)),
          SampleDivision(u"02"_s, u"West"_s, Currency::FromWhole(75))})
    , Customers({SampleCustomer(u"0100"_s, u"Acme"_s, u"01"_s, Currency::FromWhole(100)),
          SampleCustomer(u"0200"_s, u"Brightwater Ltd"_s, u"02"_s, Currency::FromWhole(110)),
          SampleCustomer(u"0300"_s, u"Caldera & Sons"_s, u"01"_s, {}, u"Y"_s)})
    , Projects({SampleProject(u"0100"_s, u"AUDIT"_s, u"Yearly audit"_s, Currency::FromWhole(120)),
          SampleProject(u"0100"_s, u"MOVE"_s, u"Office move"_s),
          SampleProject(u"0200"_s, u"AUDIT"_s, u"Audit of the mill"_s, Currency::FromWhole(95))})
    , Activities({SampleActivity(u"CONS"_s, u"Consulting"_s, Currency::FromWhole(90)),
          SampleActivity(u"TRAIN"_s, u"Training"_s, Currency::FromWhole(60), u"2"_s),
          SampleExpense(u"MILES"_s, u"Mileage"_s, Currency::FromScaled(4500)),
          SampleExpense(u"MEALS"_s, u"Meals"_s, {}, u"3"_s)})
{
}

void BuildSampleCompanies(const QString &folder, const std::vector<SampleCompany> &companies,
    const std::optional<GlobalOptionsRecord> &globalOptions)
{
    const QString creator = SampleCodes().Creator;
    std::vector<CompanyRecord> listed;
    for (const SampleCompany &company : companies) {
        listed.push_back(SampleCompanyRecord(company.Code, company.Name));
        BuildCompany(folder, company);
    }
    BuildDatabase(folder, GlobalDatabaseName(DatabasePrefix::Company, creator), listed);
    if (globalOptions)
        BuildDatabase<GlobalOptionsRecord>(
            folder, GlobalDatabaseName(DatabasePrefix::GlobalOptions, creator), {*globalOptions});
}

QString SampleFolderTemplate()
{
    const QString memory = u"/dev/shm"_s;
    const QString folder = QFileInfo(memory).isWritable() ? memory : QDir::tempPath();
    return folder + u"/worklog-sample-XXXXXX"_s;
}

SampleFolder::SampleFolder(const std::vector<SampleCompany> &companies,
    const std::optional<GlobalOptionsRecord> &globalOptions)
    : m_folder(SampleFolderTemplate())
    , Tables(m_folder.path())
{
    BuildSampleCompanies(m_folder.path(), companies, globalOptions);
    Tables.Main.StoreTheCodes(SampleCodes());
}

void SampleFolder::OpenAll(const QString &companyCode)
{
    const auto global
        = [&](QStringView prefix) { return Tables.Main.OpenTable(Tables.Main.GlobalName(prefix)); };
    const auto ofCompany = [&](QStringView prefix) {
        return Tables.Main.OpenTable(Tables.Main.CompanyName(companyCode, prefix));
    };
    CloseAll();
    Tables.Company.Handle = global(DatabasePrefix::Company);
    Tables.GlobalOptions.TakeHandle(global(DatabasePrefix::GlobalOptions));
    Tables.Options.Handle = ofCompany(DatabasePrefix::Options);
    Tables.Employee.Handle = ofCompany(DatabasePrefix::Employee);
    Tables.Multiplier.Handle = ofCompany(DatabasePrefix::Multiplier);
    Tables.Divisions.Handle = ofCompany(DatabasePrefix::Divisions);
    Tables.Customers.Handle = ofCompany(DatabasePrefix::Customers);
    Tables.Projects.Handle = ofCompany(DatabasePrefix::Projects);
    Tables.Activities.Handle = ofCompany(DatabasePrefix::Activities);
    Tables.Entries.Handle = ofCompany(DatabasePrefix::Entries);
}

void SampleFolder::CloseAll()
{
    for (RecordStore::Handle *handle : {&Tables.Company.Handle, &Tables.GlobalOptions.Handle,
             &Tables.Options.Handle, &Tables.Employee.Handle, &Tables.Multiplier.Handle,
             &Tables.Divisions.Handle, &Tables.Customers.Handle, &Tables.Projects.Handle,
             &Tables.Activities.Handle, &Tables.Entries.Handle})
        *handle = Tables.Main.CloseTable(*handle);
}
