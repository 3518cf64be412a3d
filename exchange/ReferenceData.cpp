#include "exchange/ReferenceData.h"

#include "exchange/ExchangeErrors.h"
#include "exchange/PrintableText.h"
#include "platform/Paths.h"
#include "store/PadKey.h"

#include <QHash>

#include <algorithm>
#include <future>
#include <span>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 RecordsBetweenReports = 512;

QString FileIn(const QString &folder, const QString &relative)
{
    const QString found = FindIgnoringCase(folder, relative);
    if (found.isEmpty())
        RaiseExchangeError(
            ExchangeErrors::BadFile, JoinPath(folder, relative) + u": the file is missing"_s);
    return found;
}

QString TableFile(const QString &worklog, const QString &folder, const QString &table)
{
    return FileIn(worklog, folder + u'/' + table + u".csv"_s);
}

QString DefaultSyncOption(const QString &fromFile)
{
    return fromFile == "2"_L1 ? u"0"_s : fromFile;
}

/// Users tell the things apart by their terms, and so does the lookup.
void CheckTerms(const OptionsRecord &record, const CsvReader &csv)
{
    QStringList seen;
    for (const QString &term :
        {record.Customer_Term, record.Project_Term, record.Activity_Term, record.Employee_Term}) {
        if (seen.contains(term.trimmed(), Qt::CaseInsensitive))
            csv.Fail(
                u"two of the terms are "_s + QuotedCell(term) + u"; give each a name of its own"_s);
        seen.append(term.trimmed());
    }
}

/// Rows on their way to a table. They are filled again and again, because making each anew takes
/// longer than reading it; and there are so few that they stay in the processor's cache.
class Rows
{
public:
    bool IsFull() const { return m_count == m_rows.size(); }
    StoredRow &Next() { return m_rows[m_count++]; }
    std::span<const StoredRow> Filled() const { return {m_rows.data(), m_count}; }
    void Clear() { m_count = 0; }

private:
    std::vector<StoredRow> m_rows = std::vector<StoredRow>(1024);
    size_t m_count = 0;
};

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
                + u"\" is there already, on line "_s + QString::number(lines[folded]));
        lines.insert(folded, reader.Csv().Line());
        record.Company_Key = record.Company_Code;
        companies.push_back(record);
    }
    if (companies.empty())
        reader.Csv().Fail(u"the file names no company"_s);
    return companies;
}

QString ReadSyncOption(const QString &worklog, const QString &folder)
{
    TableReader<OptionsRecord> reader(
        TableFile(worklog, folder, u"Options"_s), ReferenceTables::Options());
    OptionsRecord record;
    reader.Read(record); // what is wrong with the file is told when it is read as a whole
    return DefaultSyncOption(record.Sync_Option);
}

qint64 BuildCompanyTable(
    const std::vector<CompanyRecord> &companies, const QString &name, StagedDatabases &staged)
{
    StagedDatabases::Table<CompanyRecord> table(staged, name);
    StoredRow row;
    for (const CompanyRecord &company : companies) {
        RecordStore::PutRow(row, company);
        table.Add(row);
    }
    table.Finish();
    return std::ssize(companies);
}

ReferenceData::ReferenceData(const QString &worklog, const QString &folder, const QString &company,
    const modDBMain &names, StagedDatabases &staged, const ProgressReport &progress)
    : m_worklog(worklog)
    , m_folder(folder)
    , m_company(company)
    , m_names(names)
    , m_staged(staged)
    , m_progress(progress)
{
}

QString ReferenceData::Build(const QString &keptSyncOption)
{
    BuildOneRecord<OptionsRecord>(
        ReferenceTables::Options(), [&](OptionsRecord &record, const CsvReader &csv) {
            CheckTerms(record, csv);
            record.Sync_Option
                = keptSyncOption.isEmpty() ? DefaultSyncOption(record.Sync_Option) : keptSyncOption;
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
    TableReader<Record> reader(TableFile(m_worklog, m_folder, definition.Name), definition);
    StagedDatabases::Table<Record> table(
        m_staged, m_names.CompanyName(m_company, definition.Prefix));
    qint64 count = 0;
    const auto report = [&] {
        m_progress(m_company, definition.Name, reader.Csv().BytesRead(), reader.Csv().BytesInAll());
    };
    // While the next rows are read and checked, those before are written.
    Rows read;
    Rows written;
    // The last to be declared: on an error it is waited for before the table goes.
    std::future<void> writing;
    const auto write = [&] {
        if (writing.valid())
            writing.get();
        std::swap(written, read);
        read.Clear();
        writing = std::async(std::launch::async, [&table, &written] {
            for (const StoredRow &row : written.Filled())
                table.Add(row);
        });
    };
    Record record;
    report();
    while (reader.Read(record)) {
        check(record, reader.Csv());
        RecordStore::PutRow(read.Next(), record);
        if (++count % RecordsBetweenReports == 0)
            report();
        if (read.IsFull())
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
        RaiseFileError(TableFile(m_worklog, m_folder, definition.Name), 2,
            u"the table has no record behind its header"_s);
}

void ReferenceData::TakeNewCode(CodeSet &codes, const QString &code, const CsvReader &csv)
{
    const qint64 line = codes.Insert(code, csv.Line());
    if (line == 0)
        return;
    const QString other
        = codes.Contains(code) ? QString() : u", with letters that differ only in their case"_s;
    csv.Fail(u"the code is there already, on line "_s + QString::number(line) + other);
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
                csv.Fail(u"the division "_s + QuotedCell(record.Division_Number)
                    + u" is not among the divisions"_s);
            record.Customer_Key = PadKey(record.Customer_Number, KeyWidth::Customer);
        });
}

void ReferenceData::BuildProjects()
{
    // There may be a million: putting each into a set would wait for memory every time, and take
    // as long as all the rest. Two equal hashes are found by sorting, and are rare enough to read
    // the file again.
    std::vector<size_t> hashes;
    BuildTable<ProjectRecord>(
        ReferenceTables::Projects(), [&](ProjectRecord &record, const CsvReader &csv) {
            if (!m_customers.Contains(record.Customer_Number))
                csv.Fail(u"the customer "_s + QuotedCell(record.Customer_Number)
                    + u" is not among the customers"_s);
            record.Project_Key = ProjectKey(record.Customer_Number, record.Project_Number);
            hashes.push_back(qHash(record.Project_Key.toCaseFolded()));
        });
    std::sort(hashes.begin(), hashes.end());
    if (std::adjacent_find(hashes.begin(), hashes.end()) != hashes.end())
        RefuseRepeatedProjects();
}

void ReferenceData::RefuseRepeatedProjects()
{
    const TableDefinition<ProjectRecord> &definition = ReferenceTables::Projects();
    TableReader<ProjectRecord> reader(TableFile(m_worklog, m_folder, definition.Name), definition);
    CodeSet codes;
    ProjectRecord record;
    while (reader.Read(record))
        TakeNewCode(codes, ProjectKey(record.Customer_Number, record.Project_Number), reader.Csv());
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
