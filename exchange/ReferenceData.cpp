#include "exchange/ReferenceData.h"

#include "exchange/ExchangeErrors.h"
#include "platform/Paths.h"
#include "store/PadKey.h"

#include <QHash>

#include <future>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 RecordsBetweenReports = 512;
constexpr size_t RecordsBetweenWrites = 4096;

QString FileIn(const QString &folder, const QString &relative)
{
    const QString found = FindIgnoringCase(folder, relative);
    if (found.isEmpty())
        RaiseExchangeError(
            ExchangeErrors::BadFile, JoinPath(folder, relative) + u": the file is missing"_s);
    return found;
}

QString TableFile(const QString &worklog, const QString &company, const QString &table)
{
    return FileIn(worklog, company + u'/' + table + u".csv"_s);
}

} // namespace

std::vector<CompanyRecord> ReadCompanies(const QString &worklog)
{
    const QString fileName = FileIn(worklog, u"Company.csv"_s);
    TableReader<CompanyRecord> reader(fileName, ReferenceTables::Company());
    std::vector<CompanyRecord> companies;
    QHash<QString, qint64> lines;
    CompanyRecord record;
    while (reader.Read(record)) {
        const QString folded = record.Company_Code.toCaseFolded();
        if (lines.contains(folded))
            reader.Csv().Fail(u"the code \""_s + record.Company_Code
                + u"\" stands there already, on line "_s + QString::number(lines[folded]));
        lines.insert(folded, reader.Csv().Line());
        record.Company_Key = record.Company_Code;
        companies.push_back(record);
    }
    if (companies.empty())
        reader.Csv().Fail(u"the file names no company"_s);
    return companies;
}

QString ReadSyncOption(const QString &worklog, const QString &company)
{
    TableReader<OptionsRecord> reader(
        TableFile(worklog, company, u"Options"_s), ReferenceTables::Options());
    OptionsRecord record;
    reader.Read(record); // what is wrong with the file is told when it is read as a whole
    return record.Sync_Option;
}

qint64 BuildCompanyTable(
    const std::vector<CompanyRecord> &companies, const QString &name, StagedDatabases &staged)
{
    StagedDatabases::Table<CompanyRecord> table(staged, name);
    for (const CompanyRecord &company : companies)
        table.Add(company);
    table.Finish();
    return std::ssize(companies);
}

ReferenceData::ReferenceData(const QString &worklog, const QString &company, const modDBMain &names,
    StagedDatabases &staged, const ProgressReport &progress)
    : m_worklog(worklog)
    , m_company(company)
    , m_names(names)
    , m_staged(staged)
    , m_progress(progress)
{
}

QString ReferenceData::Build(const QString &keptSyncOption)
{
    BuildOneRecord<OptionsRecord>(
        ReferenceTables::Options(), [&](OptionsRecord &record, const CsvReader &) {
            if (!keptSyncOption.isEmpty())
                record.Sync_Option = keptSyncOption;
        });
    BuildOneRecord<EmployeeRecord>(
        ReferenceTables::Employee(), [](EmployeeRecord &, const CsvReader &) {});
    BuildMultiplier();
    BuildDivisions();
    BuildCustomers();
    BuildProjects();
    BuildActivities();
    return m_counts.join(u", "_s);
}

template <class Record>
qint64 ReferenceData::BuildTable(
    const TableDefinition<Record> &definition, const Check<Record> &check)
{
    TableReader<Record> reader(TableFile(m_worklog, m_company, definition.Name), definition);
    StagedDatabases::Table<Record> table(
        m_staged, m_names.CompanyName(m_company, definition.Prefix));
    qint64 count = 0;
    const auto report = [&] {
        m_progress(m_company, definition.Name, reader.Csv().BytesRead(), reader.Csv().BytesInAll());
    };
    std::vector<Record> records;
    // While the next records are read and checked, those before are written. The future is the
    // last to be declared: on an error it is waited for before the table goes.
    std::future<void> writing;
    const auto write = [&] {
        if (writing.valid())
            writing.get();
        writing = std::async(std::launch::async, [&table, written = std::exchange(records, {})] {
            for (const Record &record : written)
                table.Add(record);
        });
    };
    Record record;
    report();
    while (reader.Read(record)) {
        check(record, reader.Csv());
        records.push_back(record);
        if (++count % RecordsBetweenReports == 0)
            report();
        if (records.size() == RecordsBetweenWrites)
            write();
    }
    write();
    writing.get();
    table.Finish();
    m_counts.append(definition.Name + u' ' + QString::number(count));
    return count;
}

template <class Record>
void ReferenceData::BuildOneRecord(
    const TableDefinition<Record> &definition, const Check<Record> &check)
{
    qint64 seen = 0;
    BuildTable<Record>(definition, [&](Record &record, const CsvReader &csv) {
        if (++seen > 1)
            csv.Fail(u"the table has more than the one record that it must have"_s);
        check(record, csv);
    });
    if (seen == 0)
        RaiseFileError(TableFile(m_worklog, m_company, definition.Name), 2,
            u"the table has no record behind its header"_s);
}

void ReferenceData::TakeNewCode(CodeSet &codes, const QString &code, const CsvReader &csv)
{
    const qint64 line = codes.Insert(code, csv.Line());
    if (line != 0)
        csv.Fail(u"the code stands there already, on line "_s + QString::number(line));
}

void ReferenceData::BuildMultiplier()
{
    CodeSet codes;
    BuildTable<MultiplierRecord>(
        ReferenceTables::Multiplier(), [&](MultiplierRecord &record, const CsvReader &csv) {
            TakeNewCode(codes, record.Multiplier_Number, csv);
            record.Multiplier_Key = PadKey(record.Multiplier_Number, KeyWidth::Multiplier);
        });
}

void ReferenceData::BuildDivisions()
{
    BuildTable<DivisionRecord>(
        ReferenceTables::Divisions(), [&](DivisionRecord &record, const CsvReader &csv) {
            TakeNewCode(m_divisions, record.Division_Number, csv);
            record.Division_Key = PadKey(record.Division_Number, KeyWidth::Division);
        });
}

void ReferenceData::BuildCustomers()
{
    BuildTable<CustomerRecord>(
        ReferenceTables::Customers(), [&](CustomerRecord &record, const CsvReader &csv) {
            TakeNewCode(m_customers, record.Customer_Number, csv);
            if (!record.Division_Number.isEmpty() && !m_divisions.Contains(record.Division_Number))
                csv.Fail(u"the division \""_s + record.Division_Number
                    + u"\" is not among the divisions"_s);
            record.Customer_Key = PadKey(record.Customer_Number, KeyWidth::Customer);
        });
}

void ReferenceData::BuildProjects()
{
    CodeSet codes;
    BuildTable<ProjectRecord>(
        ReferenceTables::Projects(), [&](ProjectRecord &record, const CsvReader &csv) {
            if (!m_customers.Contains(record.Customer_Number))
                csv.Fail(u"the customer \""_s + record.Customer_Number
                    + u"\" is not among the customers"_s);
            record.Project_Key = ProjectKey(record.Customer_Number, record.Project_Number);
            TakeNewCode(codes, record.Project_Key, csv);
        });
}

void ReferenceData::BuildActivities()
{
    CodeSet codes;
    BuildTable<ActivityRecord>(
        ReferenceTables::Activities(), [&](ActivityRecord &record, const CsvReader &csv) {
            TakeNewCode(codes, record.Activity_Number, csv);
            record.Activity_Key = PadKey(record.Activity_Number, KeyWidth::Activity);
        });
}
