#pragma once

#include "store/Records.h"
#include "store/Tables.h"
#include "tests/support/PrintQt.h"

#include <QString>
#include <QTemporaryDir>

#include <optional>
#include <type_traits>
#include <vector>

/// Real databases for tests, as the accounting side would leave them in a program folder.

/// The codes that every sample database is created with and opened by.
StoreCodes SampleCodes();

/// Short records; every member that is not named has a plain value: no charges "N", rates zero.
/// Key members are left to the building, which derives each that is empty from its code.
CompanyRecord SampleCompanyRecord(const QString &code, const QString &name);
MultiplierRecord SampleMultiplier(
    const QString &number, const QString &description, Currency factor);
DivisionRecord SampleDivision(const QString &number, const QString &name, Currency rate = {});
CustomerRecord SampleCustomer(const QString &number, const QString &name,
    const QString &division = {}, Currency rate = {},
    const QString &noCharge = QStringLiteral("N"));
ProjectRecord SampleProject(
    const QString &customer, const QString &number, const QString &name, Currency rate = {});
/// An activity that is no expense.
ActivityRecord SampleActivity(const QString &number, const QString &description, Currency rate = {},
    const QString &billingStatus = QStringLiteral("1"));
/// An activity that is an expense.
ActivityRecord SampleExpense(const QString &number, const QString &description,
    Currency unitCost = {}, const QString &billingStatus = QStringLiteral("1"));
/// A time entry: billable, not approved, not on hold, its amount hours x rate.
EntryRecord SampleEntry(const QString &customer, const QString &project, const QString &activity,
    QDate date, Currency hours, Currency rate = {}, const QString &description = {});

/// One company's databases as plain records, a believable few of each to begin with.
///
/// Change what a test is about and leave the rest: `SampleCompany company; company.Customers =
/// {SampleCustomer(u"0100"_s, u"Acme"_s)};`
struct SampleCompany
{
    explicit SampleCompany(const QString &code = QStringLiteral("ABC"),
        const QString &name = QStringLiteral("Abacus Advisers"));

    QString Code;
    QString Name;
    OptionsRecord Options;
    EmployeeRecord Employee;
    std::vector<MultiplierRecord> Multipliers;
    std::vector<DivisionRecord> Divisions;
    std::vector<CustomerRecord> Customers;
    std::vector<ProjectRecord> Projects;
    std::vector<ActivityRecord> Activities;
    /// Without a value there is no Entries database at all, as before the first start.
    std::optional<std::vector<EntryRecord>> Entries = std::vector<EntryRecord>();
};

/// Writes the Company database, every company's databases and, if given, GlobalOptions with that
/// one record into the folder. None of them may be there yet.
void BuildSampleCompanies(const QString &folder, const std::vector<SampleCompany> &companies,
    const std::optional<GlobalOptionsRecord> &globalOptions = {});

/// Writes one database with these records.
template <class Record>
void BuildDatabase(const QString &folder, const QString &name, const std::vector<Record> &records)
{
    RecordStore store;
    const quint32 creator = CodeNumber(SampleCodes().Creator);
    store.SetCreator(creator);
    const RecordStore::Handle handle
        = store.CreateDatabase(folder + u'/' + name, CodeNumber(SampleCodes().Type), creator);
    if constexpr (std::is_same_v<Record, EntryRecord>)
        store.KeepCheckValues(handle);
    store.CreateTable(handle, name, Record::SchemaText.toString());
    RecordStore::Batch batch(store, handle);
    for (const Record &record : records) {
        store.AddRecord(handle);
        store.WriteRecord(handle, record);
        store.UpdateRecord(handle);
    }
    batch.Commit();
}

/// The name to make a QTemporaryDir from, in memory where the computer offers that: what is not
/// about the disk need not wait for it.
QString SampleFolderTemplate();

/// A program folder of its own with sample databases, and the access modules over it. It vanishes
/// with the object.
class SampleFolder
{
public:
    explicit SampleFolder(const std::vector<SampleCompany> &companies = {SampleCompany()},
        const std::optional<GlobalOptionsRecord> &globalOptions = {});

    QString Path() const { return m_folder.path(); }

    /// Opens Company, GlobalOptions if it is there, and the databases of one company.
    void OpenAll(const QString &companyCode = QStringLiteral("ABC"));
    void CloseAll();

private:
    QTemporaryDir m_folder; // before the tables: files are closed before they are removed

public:
    ::Tables Tables;
};
