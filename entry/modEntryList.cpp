#include "entry/modEntryList.h"

#include "entry/DamagedEntries.h"
#include "entry/EntryColumn.h"
#include "figures/EntryFilter.h"
#include "platform/clsRunTimeError.h"
#include "store/StoreErrors.h"
#include "sync/EraseNotice.h"
#include "sync/UnusableDatabases.h"

#include <QLocale>
#include <QScopeGuard>

#include <array>
#include <limits>
#include <new>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int ColumnExtraTwips = 110;
constexpr int LastRowOfFirstPage = 10;

/// Twips of the visible columns; the hidden ones have none.
constexpr std::array<int, EntryColumn::Count> ColumnTwips
    = {0, 0, 1000, 1652, 1652, 1652, 400, 980, 872, 1040};

QStringList FieldNames(const QString &customer, const QString &project, const QString &activity)
{
    return {u"UniqueID Hidden"_s, u"Date Hidden"_s, u"Date"_s, customer, project, activity,
        u"T/E"_s, u"Hours/Units"_s, u"Rate"_s, u"Amount"_s};
}

std::shared_ptr<const clsRecordSet> EmptyRecordset(const QStringList &fieldNames)
{
    return std::make_shared<clsTextRecordSet>(fieldNames);
}

SortOrder OrderOf(qint16 direction)
{
    return direction == 1 ? SortOrder::Ascending : SortOrder::Descending;
}

} // namespace

modEntryList::modEntryList(Tables &tables, modSync &sync, SessionState &session,
    FilterState &filter, SortState &sort, EntryListState &list, modEntryInfo &entry,
    EntryScreen &screen, clsMessageBox &messages, const clsClock &clock)
    : m_tables(tables)
    , m_sync(sync)
    , m_session(session)
    , m_filter(filter)
    , m_sort(sort)
    , m_list(list)
    , m_entry(entry)
    , m_screen(screen)
    , m_messages(messages)
    , m_clock(clock)
    , m_references(tables)
{
    m_entry.ReloadList = [this] { LoadEntryList(); };
}

void modEntryList::LoadEntryList()
{
    if (m_session.NotSynchronised) {
        if (CreateEmptyEntryRecordset()) {
            BindRecordset();
            m_grid->SetCol(0);
        }
        m_screen.Date = m_clock.Today();
        LockEntryWindow();
        HideRateFields();
        m_screen.LockedNotice = LockedNotice(m_tables);
        return;
    }
    m_list.ListLoading = true;
    const auto loaded = qScopeGuard([this] { m_list.ListLoading = false; });
    auto unread = qScopeGuard([this] { DropDeletedRow(); });
    if (!m_list.CompanyChangeInProgress)
        FillCompanyList();
    const bool isOtherCompany = m_session.CurrentCompanyCode != m_list.LastCompany;
    if (isOtherCompany)
        ChangeCompany();
    StartNewEntry(); // edits are dropped here and not before: what is above can fail
    ShowRecordCount(); // of the list before: it stays when the entries cannot be read
    const QString damage = NewDamage();
    if (isOtherCompany && !m_sync.ReadAllDatabases())
        RaiseUnusable();
    if (!FillEntryRecordset()) {
        m_messages.Tell(u"Application cannot create a recordset."_s);
        EndProgram();
        return;
    }
    unread.dismiss();
    BindRecordset();
    if (!m_list.DeletingEntry && m_list.EntryCount > 0)
        m_grid->SetTopRow(1);
    ShowRecordCount();
    if (m_list.DeletingEntry)
        SelectEntryRow(std::max(m_grid->Row(), 1));
    m_entry.HideRateFields(); // here also those of the expense that the deletion has shown
    if (!damage.isEmpty())
        m_messages.Tell(damage);
}

void modEntryList::HideRateFields()
{
    try {
        // Some of the databases may be there.
        if (m_tables.Employee.IsOpen())
            m_tables.Employee.LoadEmployee();
    } catch (const clsRunTimeError &) {
        // The synchronization that the window waits for writes this table again.
    }
    m_entry.HideRateFields();
}

void modEntryList::DropDeletedRow()
{
    if (!m_list.DeletingEntry)
        return;
    // The deletion has moved the records behind it, so the rows would lead to other entries.
    const OptionsRecord &options = m_tables.Options.Working;
    m_recordset = EmptyRecordset(
        FieldNames(options.Customer_Term, options.Project_Term, options.Activity_Term));
    m_list.EntryCount = 0;
    m_list.SelectedRow = 0;
    BindRecordset();
    ShowRecordCount();
}

QString modEntryList::NewDamage()
{
    modDBEntr &entries = m_tables.Entries;
    entries.MoveFirst(); // what another program has done meanwhile counts as well
    const std::vector<qint32> damaged = entries.DamagedEntries();
    const bool isNew = damaged.size() > m_damagedCount;
    m_damagedCount = damaged.size();
    return isNew ? DamagedEntriesText(entries, damaged) : QString();
}

void modEntryList::FillCompanyList()
{
    ControlState &list = m_screen[EntryControl::cboCompany];
    list.Items
        = m_tables.Company.FillCompanyList(m_session.CurrentCompanyCode, m_tables.GlobalOptions);
    SelectComboItem(list, m_session.CurrentCompanyCode);
}

void modEntryList::OpenCompany()
{
    m_session.CurrentCompanyName
        = m_tables.Company.LoadCurrentCompany(m_session.CurrentCompanyCode);
    m_tables.Main.ForgetFailures();
    m_sync.OpenAllDatabases();
    if (!m_session.DatabasesReady)
        RaiseUnusable();
    // The list is joined with these two, which can be large: they are read while the rest of the
    // window is filled.
    m_tables.Customers.Preload();
    m_tables.Projects.Preload();
    m_tables.Employee.LoadEmployee();
}

void modEntryList::RaiseUnusable() const
{
    const auto &failures = m_tables.Main.Failures();
    if (!failures.empty())
        throw clsRunTimeError(failures.front().Error);
    RaiseStoreError(StoreErrors::Incomplete,
        u"The databases of the company "_s + m_session.CurrentCompanyCode + u" are incomplete"_s);
}

void modEntryList::ChangeCompany()
{
    // Until the new company stands open none does: a failure on the way must not leave a name
    // whose databases are closed.
    if (!std::exchange(m_list.LastCompany, {}).isEmpty())
        m_sync.CloseAllDatabases();
    OpenCompany();
    m_screen[EntryControl::lblCompanyName].Text = m_session.CurrentCompanyName;
    m_entry.ShowFieldCaptions();
    m_screen[EntryControl::txtUser].Text = m_tables.Employee.Working.Employee_Number;
    m_screen[EntryControl::lblUserName].Text = m_tables.Employee.Working.Employee_Name;
    m_filter = FilterState();
    m_grid->SetRow(0); // the rows that come are others
    m_damagedCount = 0;
    m_list.LastCompany = m_session.CurrentCompanyCode;
}

void modEntryList::StartNewEntry()
{
    m_list.SelectedEntryId = 0;
    m_list.SelectedIndex = 0;
    m_list.SelectedRow = 0;
    m_grid->SetCol(0);
    m_entry.ClearEntry();
}

bool modEntryList::CreateEmptyEntryRecordset()
{
    m_recordset = EmptyRecordset(FieldNames(u"Customer"_s, u"Project"_s, u"Activity"_s));
    m_list.EntryCount = 0;
    return true;
}

bool modEntryList::FillEntryRecordset()
{
    const OptionsRecord &options = m_tables.Options.Working;
    try {
        m_tables.Entries.MoveFirst();
        m_references.BeginList();
        const auto records = std::make_shared<EntryRecordset>(
            FieldNames(options.Customer_Term, options.Project_Term, options.Activity_Term),
            m_references.Texts(), m_tables.Customers.Record.Customer_Name,
            QLocale().decimalPoint().at(0));
        const qint32 count = FillEntries(*records);
        m_references.EndList(records->LastCustomer());
        if (count == 0)
            records->AddEmptyRecord();
        m_recordset = records;
        m_list.EntryCount = count;
    } catch (const std::bad_alloc &) {
        return false;
    }
    m_grid->SetSelectionVisible(m_list.EntryCount > 0);
    return true;
}

qint32 modEntryList::FillEntries(EntryRecordset &records)
{
    qint32 count = 0;
    m_showsRates = m_tables.Options.Working.Billing_Option_Switch == "Y"_L1
        && m_tables.Employee.Working.Rate_Permission != "1"_L1;
    modDBEntr &entries = m_tables.Entries;
    const EntryFilter filter(m_filter, entries);
    for (; !entries.IsEndOfTable(); entries.MoveNext()) {
        const EntryNumbers entry = entries.ReadNumbers();
        if (!filter.Passes(entry))
            continue;
        if (count == std::numeric_limits<qint32>::max())
            throw clsRunTimeError(RunTimeErrors::Overflow, u"EntryList"_s, u"Overflow"_s);
        ++count;
        records.AddRecord(RowOf(entry));
    }
    return count;
}

EntryRecordset::Row modEntryList::RowOf(const EntryNumbers &entry)
{
    EntryRecordset::Row row;
    row.Position = static_cast<quint32>(m_tables.Entries.GetRecordPosition());
    row.Date = entry.Date;
    row.Customer = static_cast<quint32>(entry.Customer);
    row.Project = static_cast<quint32>(entry.Project);
    row.Activity = static_cast<quint32>(entry.Activity);
    row.IsExpense = m_references.IsExpense(entry);
    row.Hours = entry.Hours;
    row.Rate = entry.Rate;
    row.Amount = entry.Amount;
    row.ShowsRate = row.IsExpense || m_showsRates;
    return row;
}

void modEntryList::BindRecordset()
{
    m_grid->SetDataSource(m_recordset);
    SizeEntryColumns();
    for (const int column : {EntryColumn::Hours, EntryColumn::Rate, EntryColumn::Amount})
        m_grid->SetColAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
}

void modEntryList::SizeEntryColumns()
{
    for (int column = 0; column < m_grid->Cols(); ++column) {
        const int twips = ColumnTwips.at(static_cast<size_t>(column));
        m_grid->SetColWidth(column, twips > 0 ? twips + ColumnExtraTwips : 0);
    }
}

void modEntryList::ShowRecordCount()
{
    const int row = std::max(m_grid->Row(), 1);
    const bool any = !m_grid->TextMatrix(row, EntryColumn::UniqueId).isEmpty();
    const int count = any && m_recordset ? m_recordset->RecordCount() : 0;
    m_screen.Panels
        = {u"Found "_s + QString::number(count) + (count == 1 ? u" record"_s : u" records"_s),
            m_tables.Employee.Working.Employee_Number, m_session.CurrentCompanyCode,
            m_clock.Today().toString(u"MM/dd/yyyy"_s)};
}

void modEntryList::MarkSelectedRow()
{
    if (m_list.SelectedRow == 0) {
        m_grid->SetCol(0);
        return;
    }
    m_grid->SetRow(m_list.SelectedRow);
    m_grid->SelectWholeRow();
}

void modEntryList::ScrollToSelectedRow()
{
    m_grid->SetTopRow(m_list.SelectedRow <= LastRowOfFirstPage ? 1 : m_list.SelectedRow);
}

void modEntryList::SelectEntryRow(int row)
{
    if (m_list.SuppressRowSelect) {
        m_list.SuppressRowSelect = false;
        return;
    }
    if (m_list.EntryCount == 0 || (m_grid->MouseRow() == 0 && !m_list.DeletingEntry))
        return;
    if (!m_entry.Changed) {
        LoadRow(row);
        return;
    }
    switch (m_messages.AskSaveChanges()) {
    case MessageAnswer::Yes:
        // The save may have taken the entry, and even the last one, out of the filtered list.
        if (m_entry.SaveBeforeLeaving() && m_list.EntryCount > 0) {
            LoadRow(std::min(row, m_list.EntryCount));
            ScrollToSelectedRow();
        }
        break;
    case MessageAnswer::Cancel:
        // RowLoaded also stays set when a new entry has followed; that one has no row.
        if (m_list.RowLoaded && m_list.SelectedRow > 0)
            ScrollToSelectedRow();
        break;
    default:
        LoadRow(row);
        break;
    }
}

void modEntryList::LoadRow(int row)
{
    const EntryListState before = m_list;
    const int rowBefore = m_grid->Row();
    m_list.RowLoaded = true;
    m_list.SelectedEntryId = m_grid->TextMatrix(row, EntryColumn::UniqueId).toInt();
    m_list.SelectedIndex = row - 1;
    m_list.SelectedRow = row;
    // Before the entry is shown: a message about it comes up beside its own row.
    MarkSelectedRow();
    try {
        m_entry.LoadEntry(m_list.SelectedEntryId);
    } catch (const clsRunTimeError &) {
        if (!m_entry.Holds(m_list.SelectedEntryId)) {
            m_list = before;
            m_grid->SetRow(rowBefore);
            MarkSelectedRow();
        }
        throw;
    }
}

void modEntryList::SortEntryList()
{
    if (m_list.EntryCount == 0)
        return;
    const bool wasLoaded = m_entry.EntryLoaded;
    const int clicked = m_grid->MouseCol();
    if (clicked < 0)
        return;
    if (clicked != m_sort.SortColumn) {
        m_grid->SetHeaderArrow(m_sort.SortColumn, {});
        m_sort.SortDirection = 1;
    } else {
        m_sort.SortDirection = m_sort.SortDirection == 1 ? 2 : 1;
    }
    const int sorted = clicked == EntryColumn::Date ? EntryColumn::DateHidden : clicked;
    m_grid->Sort(sorted, OrderOf(m_sort.SortDirection));
    m_grid->SetRow(0); // the header, until the entry is found again
    m_grid->SetHeaderArrow(clicked, OrderOf(m_sort.SortDirection));
    m_sort.SortColumn = static_cast<qint16>(clicked);

    m_list.SelectedRow = wasLoaded ? RowOfEntry(m_list.SelectedEntryId) : 0;
    MarkSelectedRow();
    m_grid->SetCol(1);
}

int modEntryList::RowOfEntry(qint32 id) const
{
    for (int row = 1; row <= m_list.EntryCount; ++row) {
        if (m_grid->TextMatrix(row, EntryColumn::UniqueId).toInt() == id)
            return row;
    }
    return 0;
}

void modEntryList::ClearHeaderArrows()
{
    for (int column = 0; column < m_grid->Cols(); ++column)
        m_grid->SetHeaderArrow(column, {});
}

void modEntryList::CompanyChanged()
{
    m_list.CompanyChangeInProgress = true;
    const auto changed = qScopeGuard([this] { m_list.CompanyChangeInProgress = false; });
    const QString previous = m_session.CurrentCompanyCode;
    m_session.CurrentCompanyCode = m_screen[EntryControl::cboCompany].ItemText();
    if (m_list.ListLoading)
        return;
    try {
        LoadEntryList();
    } catch (const clsRunTimeError &) {
        ReturnToCompany(previous);
        throw;
    }
}

void modEntryList::ReturnToCompany(const QString &code)
{
    m_session.CurrentCompanyCode = code;
    m_list.LastCompany.clear(); // whatever was opened of the other one is closed again
    m_sync.CloseAllDatabases();
    SelectComboItem(m_screen[EntryControl::cboCompany], code);
    try {
        LoadEntryList();
    } catch (const clsRunTimeError &error) {
        m_messages.Tell(error.Message());
    }
}

void modEntryList::LockEntryWindow()
{
    m_entry.LockEntryFields();
    for (const EntryControl control : {EntryControl::cboCompany, EntryControl::txtUser,
             EntryControl::txtMultiplierFactor, EntryControl::chkApproved, EntryControl::chkOnHold,
             EntryControl::msgEntryList, EntryControl::cmdOK, EntryControl::cmdUndo,
             EntryControl::cmdDel, EntryControl::cmdHrsSumm, EntryControl::cmdTransFilter})
        m_screen[control].Close();
}

void modEntryList::SaveLastCompany()
{
    if (m_tables.GlobalOptions.IsOpen())
        m_tables.GlobalOptions.SaveLastCompany(m_session.CurrentCompanyCode);
}

QString modEntryList::SyncNotice() const
{
    return m_tables.Options.IsOpen()
        ? EraseNotice(m_tables, m_session, m_tables.Options.Record.Sync_Option)
        : QString();
}
