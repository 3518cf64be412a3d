#include "bench/CompanyMaker.h"

#include "exchange/Csv.h"
#include "platform/Paths.h"
#include "store/FieldText.h"
#include "store/Tables.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <random>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

const std::vector<std::string> FirstWords
    = {"Aldgate", "Brook", "Cairn", "Dover", "Elm", "Fenwick", "Grove", "Harbour", "Inver",
        "Juniper", "Kestrel", "Lindisfarne", "Moor", "Northgate", "Orchard", "Pennine", "Quarry",
        "Ridge", "Saltmarsh", "Thistle", "Upland", "Vale", "Wharf", "Yarrow"};
const std::vector<std::string> SecondWords
    = {"Advisers", "Bridges", "Clinic", "Dairy", "Engineering", "Foundry", "Gardens", "Holdings",
        "Institute", "Joinery", "Logistics", "Materials", "Networks", "Partners", "Quays",
        "Research", "Shipping", "Trust", "Utilities", "Workshops"};
const std::vector<std::string> Labours = {"Analysis", "Commissioning", "Drafting", "Fitting",
    "Inspection", "Maintenance", "Planning", "Review", "Survey", "Training"};

/// Numbers that are the same on every machine for the same variant; the standard's distributions
/// are not.
class Chance
{
public:
    explicit Chance(unsigned variant)
        : m_engine(variant)
    {
    }
    int Below(int limit) { return static_cast<int>(m_engine() % static_cast<unsigned>(limit)); }
    const std::string &OneOf(const std::vector<std::string> &words)
    {
        return words[static_cast<size_t>(Below(static_cast<int>(words.size())))];
    }

private:
    std::mt19937 m_engine;
};

std::string Number(int number, int width)
{
    std::string text = std::to_string(number);
    return std::string(static_cast<size_t>(std::max(0, width - static_cast<int>(text.size()))), '0')
        + text;
}

std::string Code(char kind, int number, int width)
{
    return Number(number, width).insert(0, 1, kind);
}

std::string CustomerCode(int index)
{
    return Code('C', index, 7);
}

std::string ProjectCode(int index)
{
    return Code('P', index, 7);
}

std::string ActivityCode(int index)
{
    return Code('A', index, 4);
}

bool IsExpense(int activity)
{
    return activity % 5 == 4;
}

std::string Amount(int hundredths)
{
    return std::to_string(hundredths / 100) + '.' + Number(hundredths % 100, 2);
}

void WriteFile(const QString &fileName, const std::string &text)
{
    QFile file(fileName);
    const auto size = static_cast<qint64>(text.size());
    if (!file.open(QIODevice::WriteOnly) || file.write(text.data(), size) != size || !file.flush())
        throw std::runtime_error("cannot be written: " + fileName.toStdString());
}

void WriteCustomers(const QString &folder, const CompanySize &size, Chance &chance)
{
    std::string text
        = CsvLine({"Customer_Number", "Customer_Name", "Division_Number", "No_Charge", "Rate"});
    for (int i = 0; i < size.Customers; ++i)
        text += CsvLine({CustomerCode(i),
            chance.OneOf(FirstWords) + ' ' + chance.OneOf(SecondWords) + ' ' + std::to_string(i),
            chance.Below(3) == 0 ? "01" : "", chance.Below(20) == 0 ? "Y" : "N",
            Amount(chance.Below(20000))});
    WriteFile(JoinPath(folder, u"Customers.csv"_s), text);
}

void WriteProjects(const QString &folder, const CompanySize &size, Chance &chance)
{
    std::string text = CsvLine({"Customer_Number", "Project_Number", "Project_Name", "Rate"});
    for (int i = 0; i < size.Projects; ++i)
        text += CsvLine({CustomerCode(i % size.Customers), ProjectCode(i),
            chance.OneOf(Labours) + " at " + chance.OneOf(FirstWords) + ' ' + std::to_string(i),
            Amount(chance.Below(20000))});
    WriteFile(JoinPath(folder, u"Projects.csv"_s), text);
}

void WriteActivities(const QString &folder, const CompanySize &size, Chance &chance)
{
    std::string text = CsvLine({"Activity_Number", "Description", "Expense", "No_Charge", "Rate",
        "Unit_Cost", "Dflt_Billing_Status"});
    for (int i = 0; i < size.Activities; ++i)
        text += CsvLine({ActivityCode(i), chance.OneOf(Labours) + ' ' + std::to_string(i),
            IsExpense(i) ? "Y" : "N", "N", Amount(chance.Below(15000)), Amount(chance.Below(5000)),
            "1"});
    WriteFile(JoinPath(folder, u"Activities.csv"_s), text);
}

void WriteCompanyFiles(const QString &worklog, const CompanySize &size, Chance &chance)
{
    const QString folder = JoinPath(worklog, MadeCompanyCode);
    QDir().mkpath(folder);
    WriteFile(JoinPath(worklog, u"Company.csv"_s),
        CsvLine({"Company_Code", "Company_Name"})
            + CsvLine({MadeCompanyCode.toStdString(), "Big Company"}));
    WriteFile(JoinPath(folder, u"Options.csv"_s),
        CsvLine({"Customer_Term", "Project_Term", "Activity_Term", "Employee_Term",
            "Billing_Option_Setting", "Mgmt_Approval_In_Use", "Sec_Approval_In_Use",
            "Lock_Approved", "On_Hold_In_Use", "Billing_Option_Switch", "Expenses",
            "Project_Required", "Accounting_Name", "Sync_Option"})
            + CsvLine({"Customer", "Project", "Activity", "Employee", "4", "Y", "Y", "Y", "Y", "Y",
                "Y", "N", "MAS 90", "0"}));
    WriteFile(JoinPath(folder, u"Employee.csv"_s),
        CsvLine({"Employee_Number", "Employee_Name", "Mgmt_Approver", "Sec_Approver", "Approval",
            "Rate_Permission", "Rate"})
            + CsvLine({"001", "Robin Reed", "Y", "N", "Y", "4", "95"}));
    WriteFile(JoinPath(folder, u"Multiplier.csv"_s),
        CsvLine({"Multiplier_Number", "Description", "Factor"})
            + CsvLine({"01", "Regular time", "1"}) + CsvLine({"02", "Overtime", "1.5"}));
    WriteFile(JoinPath(folder, u"Divisions.csv"_s),
        CsvLine({"Division_Number", "Division_Name", "Rate"}) + CsvLine({"01", "North", "88.5"}));
    WriteCustomers(folder, size, chance);
    WriteProjects(folder, size, chance);
    WriteActivities(folder, size, chance);
}

void MakeInstallation(
    const QString &root, const QString &client, const CompanySize &size, Chance &chance)
{
    for (const QString &name : {u"soa"_s, u"Home"_s, u"launcher"_s, u"worklog"_s})
        QDir().mkpath(JoinPath(root, name));
    WriteFile(JoinPath(JoinPath(root, u"soa"_s), u"startup.m4p"_s), "");
    WriteFile(JoinPath(JoinPath(root, u"launcher"_s), u"sota.ini"_s), "");
    if (!QFile::copy(client, JoinPath(JoinPath(root, u"Home"_s), u"pvxwin32.exe"_s)))
        throw std::runtime_error("the client cannot be copied");
    WriteCompanyFiles(JoinPath(root, u"worklog"_s), size, chance);
}

EntryRecord SomeEntry(const CompanySize &size, Chance &chance)
{
    const int project = chance.Below(size.Projects);
    const int activity = chance.Below(size.Activities);
    EntryRecord entry;
    entry.Customer_Number = QString::fromStdString(CustomerCode(project % size.Customers));
    entry.Project_Number = QString::fromStdString(ProjectCode(project));
    entry.Activity_Number = QString::fromStdString(ActivityCode(activity));
    entry.Date = WallClock(QDate(2026, 11, 20).addDays(-chance.Below(size.Days)));
    entry.Billing_Status = QString::number(1 + chance.Below(3));
    entry.On_Hold = u"N"_s;
    entry.Billing_Option = u"0"_s;
    entry.Rate_Overridden = u"N"_s;
    entry.Reimburse = u"N"_s;
    entry.Hours = Currency::FromScaled(qint64(25 + 25 * chance.Below(38)) * 100);
    entry.Rate = Currency::FromScaled(qint64(5000 + chance.Below(15000)) * 100);
    entry.Amount = entry.Hours * entry.Rate;
    entry.Multiplier_Factor = Currency::FromWhole(1);
    entry.Description = QString::fromStdString(chance.OneOf(Labours) + " for "
        + chance.OneOf(FirstWords) + ' ' + chance.OneOf(SecondWords));
    return entry;
}

void WriteEntries(const QString &program, const CompanySize &size, Chance &chance)
{
    Tables tables(program);
    const StoreCodes codes{u"WkLg"_s, u"KVLM"_s, u"DATA"_s};
    tables.Main.StoreTheCodes(codes);
    const QString name = tables.Main.CompanyName(MadeCompanyCode, DatabasePrefix::Entries);
    tables.Entries.Handle = tables.Main.OpenTable(name);
    if (!tables.Entries.IsOpen()) {
        tables.Main.CreateEntries(name);
        tables.Entries.Handle = tables.Main.OpenTable(name);
    }
    RecordStore::Batch batch(tables.Store, tables.Entries.Handle);
    for (int i = 0; i < size.Entries; ++i)
        tables.Entries.AddEntry(SomeEntry(size, chance));
    batch.Commit();
}

} // namespace

void Synchronise(const QString &root, const QString &program)
{
    QString argument = program;
    argument.replace(u' ', u'*');
    QProcess client;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    client.setProcessEnvironment(environment);
    client.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    client.start(
        JoinPath(JoinPath(root, u"Home"_s), u"pvxwin32.exe"_s), {u"-hd"_s, u"WLWXBA"_s, argument});
    if (!client.waitForFinished(-1) || client.exitCode() != 0)
        throw std::runtime_error("the exchange client failed");
}

void MakeCompany(const QString &folder, const CompanySize &size, const QString &client)
{
    if (QFile::exists(folder))
        throw std::runtime_error("the folder exists already: " + folder.toStdString());
    const QString root = JoinPath(folder, u"accounting"_s);
    const QString program = JoinPath(folder, u"program"_s);
    QDir().mkpath(program);
    Chance chance(size.Variant);
    MakeInstallation(root, client, size, chance);
    const QString arguments
        = u"\"%1/launcher/sota.ini\" \"%1/kv/kv_startup.m4p\" -ARG RUN_DIRECT UION * WLWXBA"_s;
    WriteFile(JoinPath(program, u"mas90.ini"_s),
        (root + u'\n' + arguments.arg(root) + u'\n').toStdString());
    Synchronise(root, program);
    WriteEntries(program, size, chance);
}
