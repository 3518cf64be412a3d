#include "exchange/ExchangeRun.h"

#include "exchange/CellRules.h"
#include "exchange/ReferenceData.h"
#include "store/DroppedCompany.h"

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

bool IsSameCode(const QString &one, const QString &other)
{
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

/// The code as it is spelled among these; empty when it is none of them.
QString SpellingAmong(const QStringList &codes, const QString &code)
{
    if (codes.contains(code))
        return code;
    const auto found = std::find_if(
        codes.begin(), codes.end(), [&](const QString &other) { return IsSameCode(other, code); });
    return found == codes.end() ? QString() : *found;
}

QStringList CodesOf(const std::vector<CompanyRecord> &companies)
{
    QStringList codes;
    for (const CompanyRecord &company : companies)
        codes.append(company.Company_Code);
    return codes;
}

/// The code as this computer spells it. Entries come first: they must not get out of sight.
QString LocalSpelling(const KnownCompanies &known, const QString &code)
{
    for (const QStringList &codes : {known.WithEntries, CodesOf(known.Listed)}) {
        if (const QString spelling = SpellingAmong(codes, code); !spelling.isEmpty())
            return spelling;
    }
    return code;
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
    const KnownCompanies known = m_local.Companies();
    m_isListStale = !known.HasList;
    PlanListed(companies, known);
    PlanDropped(known);
    AnnounceErasures();

    StagedDatabases staged(m_local);
    BuildDatabases(staged);
    PrepareCollections();
    DeliverCollections();
    EraseEntries();
    for (const QString &file : staged.MoveIn())
        m_log.Write(u"A damaged database was set aside as "_s + file);
    for (const QString &message : m_written)
        m_log.Write(message);
}

void ExchangeRun::PlanListed(
    const std::vector<CompanyRecord> &companies, const KnownCompanies &known)
{
    for (CompanyRecord company : companies) {
        const QString folder = company.Company_Code;
        company.Company_Code = LocalSpelling(known, folder);
        company.Company_Key = company.Company_Code;
        m_tasks.push_back(PlanOne(company.Company_Code, folder));
        m_list.push_back(company);
    }
}

ExchangeRun::Task ExchangeRun::PlanOne(const QString &company, const QString &folder)
{
    m_progress(company, u"Checking the databases"_s, 0, 1);
    const LocalCompany local = m_local.Examine(company);
    Task task;
    task.Company = company;
    task.Folder = folder;
    task.KeptSyncOption = local.Sync_Option;
    task.Employee_Number = local.Employee_Number;
    task.Option = OptionOf(local, task);
    // Pages are read only where they would stay.
    task.Rewrite = Rewrites(task.Option) || !local.Complete || !m_local.ArePagesSound(company);
    return task;
}

SyncOption ExchangeRun::OptionOf(const LocalCompany &local, const Task &task) const
{
    // The option that loses nothing, when what the user has chosen cannot be known any more.
    if (local.IsChoiceLost)
        return SyncOption::CollectAndRewrite;
    const bool hasChosen = !local.Sync_Option.isEmpty();
    return SyncOptionFromText(
        hasChosen ? local.Sync_Option : ReadSyncOption(m_worklog, task.Folder), task.Company);
}

void ExchangeRun::PlanDropped(const KnownCompanies &known)
{
    const QStringList listed = CodesOf(m_list);
    // Where file names have a case, two spellings can have entries of their own.
    const auto isListed = [&](const QString &code) {
        const QString spelling = SpellingAmong(listed, code);
        const bool isAnother = spelling != code && known.WithEntries.contains(spelling)
            && known.WithEntries.contains(code);
        return !spelling.isEmpty() && !isAnother;
    };
    for (const CompanyRecord &company : known.Listed) {
        if (!isListed(company.Company_Code) && IsUsableCompanyCode(company.Company_Code))
            PlanDropped(company, true);
    }
    const QStringList inList = CodesOf(known.Listed);
    for (const QString &code : known.WithEntries) {
        if (!isListed(code) && IsUsableCompanyCode(code) && SpellingAmong(inList, code) != code)
            PlanDropped({code, code, code}, false);
    }
}

void ExchangeRun::PlanDropped(const CompanyRecord &company, bool isInList)
{
    const LocalCompany local = m_local.Examine(company.Company_Code);
    bool stays = false;
    if (!local.Sync_Option.isEmpty() || local.IsChoiceLost) {
        Task task;
        task.Company = company.Company_Code;
        task.Folder = company.Company_Code;
        task.Employee_Number = local.Employee_Number;
        task.Option = OptionOf(local, task);
        if (Collects(task.Option))
            m_tasks.push_back(task);
        else
            stays = m_local.CountEntries(company.Company_Code) != 0;
    }
    if (!stays) {
        m_isListStale = m_isListStale || isInList;
        return;
    }
    m_list.push_back(company);
    m_list.back().Company_Name = DroppedCompanyName(company.Company_Name);
    m_isListStale
        = m_isListStale || !isInList || m_list.back().Company_Name != company.Company_Name;
    m_written.append(company.Company_Code
        + u": no longer in accounting; its entries stay on the computer, as its option says"_s);
}

void ExchangeRun::AnnounceErasures()
{
    for (const Task &task : m_tasks) {
        if (task.Option != SyncOption::EraseAndRewrite)
            continue;
        const qint64 count = m_local.CountEntries(task.Company).value_or(0);
        if (count > 0)
            m_log.Write(task.Company + u": "_s + EntryCount(count)
                + u" will be deleted without collecting "_s + (count == 1 ? u"it"_s : u"them"_s));
    }
}

void ExchangeRun::BuildDatabases(StagedDatabases &staged)
{
    const bool anyRewrite = std::any_of(
        m_tasks.begin(), m_tasks.end(), [](const Task &task) { return task.Rewrite; });
    if (anyRewrite || m_isListStale) {
        // First, so that it is moved in first: a new company whose databases came without its name
        // in the list would be complete, and so never again a reason to write the list.
        const QString name = m_local.Main().GlobalName(DatabasePrefix::Company);
        m_written.append(
            u"Written: Company "_s + QString::number(BuildCompanyTable(m_list, name, staged)));
    }
    for (const Task &task : m_tasks) {
        if (!task.Rewrite)
            continue;
        ReferenceData data(
            m_worklog, task.Folder, task.Company, m_local.Main(), staged, m_progress);
        m_written.append(task.Company + u": written: "_s + data.Build(task.KeptSyncOption));
    }
}

void ExchangeRun::PrepareCollections()
{
    for (const Task &task : m_tasks) {
        if (!Collects(task.Option))
            continue;
        m_progress(task.Company, EntriesName, 0, 1);
        Collection collection(m_local, m_worklog, task.Company, task.Employee_Number, task.Folder);
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
        Collection collection(m_local, m_worklog, task.Company, task.Employee_Number, task.Folder);
        m_log.Write(task.Company + u": deleted "_s + EntryCount(collection.Erase())
            + u" without collecting"_s);
    }
}
