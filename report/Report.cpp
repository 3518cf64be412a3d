#include "report/Report.h"

#include "figures/BillingTexts.h"
#include "figures/EntryFilter.h"
#include "figures/EntryReferences.h"
#include "figures/HoursByDay.h"
#include "platform/clsRunTimeError.h"
#include "report/Snapshot.h"
#include "store/FieldText.h"
#include "store/StoreErrors.h"
#include "store/Tables.h"

#include <QFileInfo>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// The databases that a report needs, opened from copies of them.
class ReportTables
{
public:
    explicit ReportTables(const ReportRequest &request)
        : m_folder(request.Folder)
        , m_snapshot(request.Folder)
        , Tables(m_snapshot.Folder())
    {
        Tables.Main.StoreTheCodes({u"WkLg"_s, u"KVLM"_s, u"DATA"_s});
        if (!Open(Tables.Company, Tables.Main.GlobalName(DatabasePrefix::Company)))
            RaiseStoreError(StoreErrors::Incomplete,
                u"There is nothing to report: no synchronisation has brought any data into "_s
                    + m_folder);
        OpenCompany(request.Company);
    }

private:
    QString m_folder;
    Snapshot m_snapshot; // before the tables, which are closed before their files go

public:
    ::Tables Tables;

private:
    template <class Table>
    bool Open(Table &table, const QString &name)
    {
        if (m_snapshot.Take(name))
            table.Handle = Tables.Main.OpenTableOrRaise(name);
        return table.IsOpen();
    }
    template <class Table>
    void OpenNeeded(Table &table, const QString &company, QStringView prefix)
    {
        const QString name = Tables.Main.CompanyName(company, prefix);
        if (!Open(table, name))
            RaiseStoreError(StoreErrors::Incomplete,
                u"A database of the company %1 is missing: %2. Synchronise first."_s.arg(
                    company, RecordStore::FileName(m_folder + u'/' + name)));
    }

    QString ChooseCompany(const QString &wanted)
    {
        const QString global = Tables.Main.GlobalName(DatabasePrefix::GlobalOptions);
        if (m_snapshot.Take(global))
            Tables.GlobalOptions.TakeHandle(Tables.Main.OpenTableOrRaise(global));
        QString current = wanted;
        const QStringList codes = Tables.Company.FillCompanyList(current, Tables.GlobalOptions);
        if (codes.contains(current))
            return current;
        RaiseStoreError(StoreErrors::Incomplete,
            codes.isEmpty()
                ? u"There is no company yet"_s
                : u"There is no company \"%1\"; there are: %2"_s.arg(wanted, codes.join(u", "_s)));
    }

    void OpenCompany(const QString &wanted)
    {
        const QString company = ChooseCompany(wanted);
        Tables.Company.LoadCurrentCompany(company);
        OpenNeeded(Tables.Options, company, DatabasePrefix::Options);
        OpenNeeded(Tables.Employee, company, DatabasePrefix::Employee);
        OpenNeeded(Tables.Customers, company, DatabasePrefix::Customers);
        OpenNeeded(Tables.Projects, company, DatabasePrefix::Projects);
        OpenNeeded(Tables.Activities, company, DatabasePrefix::Activities);
        Tables.Options.LoadOptions();
        Tables.Employee.LoadEmployee();
        // Without a single entry there need be no database of them.
        Open(Tables.Entries, Tables.Main.CompanyName(company, DatabasePrefix::Entries));
    }
};

bool IsInRange(const QDate &date, const ReportRequest &request)
{
    return (!request.From.isValid() || date >= request.From)
        && (!request.To.isValid() || date <= request.To);
}

/// The entries as the entry list shows them.
class EntryReader
{
public:
    explicit EntryReader(Tables &tables)
        : m_entries(tables.Entries)
        , m_references(tables)
        , m_showsRates(tables.Options.Working.Billing_Option_Switch == "Y"_L1
              && tables.Employee.Working.Rate_Permission != "1"_L1)
    {
        m_references.BeginList();
    }

    void ReadAll(const ReportRequest &request, const EntryFilter &filter, Report &report)
    {
        for (m_entries.MoveFirst(); !m_entries.IsEndOfTable(); m_entries.MoveNext()) {
            const EntryNumbers numbers = m_entries.ReadNumbers();
            if (!filter.Passes(numbers))
                continue;
            // What an unknown code takes over from the entry before, it takes over whether or not
            // that one's day is reported.
            Report::Entry entry = Read(numbers);
            if (IsInRange(entry.Date, request))
                report.Entries.push_back(std::move(entry));
        }
        m_references.EndList(m_lastCustomer);
    }

private:
    /// Past the last customer none is read, and the name of the entry before stands.
    QString CustomerOf(const EntryNumbers &numbers)
    {
        EntryTexts &texts = *m_references.Texts();
        const quint32 place = texts.CustomerAt(numbers.Customer);
        if (place == EntryTexts::PastTheLast)
            return m_customerBefore;
        m_lastCustomer = numbers.Customer;
        return m_customerBefore = texts.Customers()[place];
    }

    Report::Entry Read(const EntryNumbers &numbers)
    {
        EntryTexts &texts = *m_references.Texts();
        m_entries.ReadEntry(m_entries.Record);
        const EntryRecord &record = m_entries.Record;
        Report::Entry entry;
        entry.Date = record.Date.date();
        entry.CustomerCode = record.Customer_Number;
        entry.Customer = CustomerOf(numbers);
        entry.ProjectCode = record.Project_Number;
        entry.Project = texts.Projects()[texts.ProjectAt(numbers.Customer, numbers.Project)];
        entry.ActivityCode = record.Activity_Number;
        entry.Activity = texts.Activities()[texts.ActivityAt(numbers.Activity)];
        entry.IsExpense = m_references.IsExpense(numbers);
        entry.BillingStatus = BillingStatusText(record.Billing_Status);
        entry.Hours = record.Hours;
        entry.ShowsRate = entry.IsExpense || m_showsRates;
        if (entry.ShowsRate) {
            entry.Rate = record.Rate;
            entry.Amount = record.Amount;
        }
        entry.Description = record.Description;
        return entry;
    }

    modDBEntr &m_entries;
    EntryReferences m_references;
    bool m_showsRates;
    QString m_customerBefore;
    std::optional<qint64> m_lastCustomer;
};

void AddUpEntries(Report &report)
{
    Report::EntryTotals &total = report.EntriesTotal;
    for (const Report::Entry &entry : report.Entries) {
        if (!entry.IsExpense)
            total.Hours += entry.Hours;
        (entry.IsExpense ? total.ExpenseAmount : total.TimeAmount) += entry.Amount;
        total.Amount += entry.Amount;
    }
}

void ReadDays(
    const ReportRequest &request, Tables &tables, const FilterState &filter, Report &report)
{
    HoursByDay hours(tables, filter);
    hours.Accumulate();
    for (const HoursSummaryRecord &day : hours.Days()) {
        const QDate date = day.Date.date();
        if (IsInRange(date, request))
            report.Days.push_back({date, day.Billable, day.NoCharge, day.DoNotBill,
                day.Billable + day.NoCharge + day.DoNotBill, day.Amount});
    }
    Report::Day &total = report.DaysTotal;
    for (const Report::Day &day : report.Days) {
        total.Billable += day.Billable;
        total.NoCharge += day.NoCharge;
        total.DoNotBill += day.DoNotBill;
        total.Total += day.Total;
        total.Amount += day.Amount;
    }
}

template <class Line>
void SortByDate(std::vector<Line> &lines)
{
    std::stable_sort(
        lines.begin(), lines.end(), [](const Line &a, const Line &b) { return a.Date < b.Date; });
}

std::vector<QString> Restrictions(const ReportRequest &request, const OptionsRecord &options)
{
    std::vector<QString> texts;
    const QString format = u"MM/dd/yyyy"_s;
    if (request.From.isValid())
        texts.push_back(u"from "_s + request.From.toString(format));
    if (request.To.isValid())
        texts.push_back(u"to "_s + request.To.toString(format));
    const auto restrict = [&](const QString &term, const QString &code) {
        if (!code.isEmpty())
            texts.push_back(term.trimmed() + u' ' + code);
    };
    restrict(options.Customer_Term, request.Customer);
    restrict(options.Project_Term, request.Project);
    restrict(options.Activity_Term, request.Activity);
    return texts;
}

} // namespace

Report ReadReport(const ReportRequest &request)
{
    if (!QFileInfo(request.Folder).isDir())
        throw clsRunTimeError(RunTimeErrors::PathNotFound, u"Report"_s,
            u"There is no such folder: "_s + request.Folder);
    ReportTables opened(request);
    Tables &tables = opened.Tables;
    Report report;
    report.Content = request.Content;
    report.Company = tables.Company.Record;
    report.Employee = tables.Employee.Working;
    report.Options = tables.Options.Working;
    report.Restrictions = Restrictions(request, report.Options);
    if (!tables.Entries.IsOpen())
        return report;

    FilterState filter;
    filter.AppliedFilterCustomer = request.Customer;
    filter.AppliedFilterProject = request.Project;
    filter.AppliedFilterActivity = request.Activity;
    tables.Entries.MoveFirst();
    EntryReader(tables).ReadAll(request, EntryFilter(filter, tables.Entries), report);
    AddUpEntries(report);
    SortByDate(report.Entries);
    // After the list, as in the program: an activity past the last one is the one read before.
    ReadDays(request, tables, filter, report);
    SortByDate(report.Days);
    return report;
}
