#include "exchange/ExchangeRun.h"

#include "exchange/CellRules.h"
#include "exchange/ReferenceData.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString EntriesName = u"Entries"_s;

bool Collects(SyncOption option)
{
    return option == SyncOption::CollectAndRewrite || option == SyncOption::CollectOnly;
}

bool Rewrites(SyncOption option)
{
    return option == SyncOption::CollectAndRewrite || option == SyncOption::EraseAndRewrite;
}

QString EntryCount(qint64 count)
{
    return QString::number(count) + (count == 1 ? u" entry"_s : u" entries"_s);
}

bool IsListed(const std::vector<CompanyRecord> &companies, const QString &code)
{
    return std::any_of(companies.begin(), companies.end(),
        [&](const CompanyRecord &company) { return company.Company_Code == code; });
}

} // namespace

ExchangeRun::ExchangeRun(const QString &worklog, const QString &programFolder, ExchangeLog &log,
    const ProgressReport &progress)
    : m_worklog(worklog)
    , m_local(programFolder)
    , m_log(log)
    , m_progress(progress)
{
}

void ExchangeRun::Run()
{
    m_progress({}, u"Reading the list of companies"_s, 0, 1);
    const std::vector<CompanyRecord> companies = ReadCompanies(m_worklog);
    const std::optional<QStringList> known = m_local.CompanyCodes();
    PlanListed(companies);
    PlanDropped(companies, known.value_or(QStringList()));

    StagedDatabases staged(m_local);
    BuildDatabases(companies, known.has_value(), staged);
    PrepareCollections();
    DeliverCollections();
    EraseEntries();
    for (const QString &file : staged.MoveIn())
        m_log.Write(u"A damaged database was set aside as "_s + file);
    for (const QString &message : m_written)
        m_log.Write(message);
}

void ExchangeRun::PlanListed(const std::vector<CompanyRecord> &companies)
{
    for (const CompanyRecord &company : companies)
        m_tasks.push_back(PlanOne(company.Company_Code));
}

ExchangeRun::Task ExchangeRun::PlanOne(const QString &company)
{
    m_progress(company, u"Checking the databases"_s, 0, 1);
    const LocalCompany local = m_local.Examine(company);
    Task task;
    task.Company = company;
    task.KeptSyncOption = local.Sync_Option;
    task.Employee_Number = local.Employee_Number;
    task.Option = OptionOf(local, company);
    // Pages are read only where they would stay.
    task.Rewrite = Rewrites(task.Option) || !local.Complete || !m_local.ArePagesSound(company);
    return task;
}

SyncOption ExchangeRun::OptionOf(const LocalCompany &local, const QString &company) const
{
    // The option that loses nothing, when what the user has chosen cannot be known any more.
    if (local.IsChoiceLost)
        return SyncOption::CollectAndRewrite;
    const bool hasChosen = !local.Sync_Option.isEmpty();
    return SyncOptionFromText(
        hasChosen ? local.Sync_Option : ReadSyncOption(m_worklog, company), company);
}

void ExchangeRun::PlanDropped(const std::vector<CompanyRecord> &companies, const QStringList &known)
{
    // The accounting side has dropped the company, but the user's work for it must arrive.
    for (const QString &company : known) {
        if (IsListed(companies, company) || !IsUsableCompanyCode(company))
            continue;
        const LocalCompany local = m_local.Examine(company);
        if (local.Sync_Option.isEmpty() && !local.IsChoiceLost)
            continue;
        Task task;
        task.Company = company;
        task.Employee_Number = local.Employee_Number;
        task.Option = OptionOf(local, company);
        if (Collects(task.Option))
            m_tasks.push_back(task);
    }
}

void ExchangeRun::BuildDatabases(
    const std::vector<CompanyRecord> &companies, bool hasCompanyList, StagedDatabases &staged)
{
    const bool anyRewrite = std::any_of(
        m_tasks.begin(), m_tasks.end(), [](const Task &task) { return task.Rewrite; });
    if (anyRewrite || !hasCompanyList) {
        // First, so that it is moved in first: a new company whose databases came without its name
        // in the list would be complete, and so never again a reason to write the list.
        const QString name = m_local.Main().GlobalName(DatabasePrefix::Company);
        m_written.append(
            u"Written: Company "_s + QString::number(BuildCompanyTable(companies, name, staged)));
    }
    for (const Task &task : m_tasks) {
        if (!task.Rewrite)
            continue;
        ReferenceData data(m_worklog, task.Company, m_local.Main(), staged, m_progress);
        m_written.append(task.Company + u": written: "_s + data.Build(task.KeptSyncOption));
    }
}

void ExchangeRun::PrepareCollections()
{
    for (const Task &task : m_tasks) {
        if (!Collects(task.Option))
            continue;
        m_progress(task.Company, EntriesName, 0, 1);
        Collection collection(m_local, m_worklog, task.Company, task.Employee_Number);
        const bool hasEntries = collection.Prepare();
        if (collection.FinishedCount() > 0)
            m_log.Write(task.Company + u": finished an interrupted run: "_s
                + EntryCount(collection.FinishedCount()) + u" had been handed over"_s);
        if (hasEntries)
            m_prepared.push_back(std::move(collection));
    }
}

void ExchangeRun::DeliverCollections()
{
    for (Collection &collection : m_prepared) {
        m_progress(collection.Company(), EntriesName, 1, 1);
        collection.Deliver();
        m_log.Write(collection.Company() + u": collected "_s + EntryCount(collection.Count())
            + u" into "_s + collection.File());
    }
}

void ExchangeRun::EraseEntries()
{
    for (const Task &task : m_tasks) {
        if (task.Option != SyncOption::EraseAndRewrite)
            continue;
        Collection collection(m_local, m_worklog, task.Company, task.Employee_Number);
        m_log.Write(task.Company + u": deleted "_s + EntryCount(collection.Erase())
            + u" without collecting"_s);
    }
}
