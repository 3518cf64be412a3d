#include "lookup/modLookup.h"

#include <QScopeGuard>

#include <array>
#include <new>

using namespace Qt::StringLiterals;

namespace {

constexpr int ColumnExtraTwips = 110;
constexpr int FactorColumn = 3;

} // namespace

modLookup::modLookup(Tables &tables, const SessionState &session, EntryBeingEdited &entry,
    FilterState &filter, LookupState &lookup, clsMessageBox &messages)
    : m_tables(tables)
    , m_session(session)
    , m_entry(entry)
    , m_filter(filter)
    , m_lookup(lookup)
    , m_messages(messages)
    , m_lists(tables)
{
}

QString modLookup::Caption() const
{
    return m_lookup.LookupKind.trimmed() + u" Lookup"_s;
}

void modLookup::OpenLookup()
{
    Screen = LookupScreen();
    LookupActivating = true;
    const auto activated = qScopeGuard([this] { LookupActivating = false; });
    m_lists.ChooseList(m_lookup.LookupKind);
    FillLookupBy();
    LookupWindowStart = 0;
    m_lists.ForgetFirstProject();
    FindCustomer();
    // The count of a list that is unknown is that of the list before; this is kept.
    LookupCount = m_lists.Count().value_or(LookupCount);
    LookupPageRows = LookupPageRowsOf(LookupCount);
    if (!ShowFirstPage())
        return;
    LookupActivating = false;
    if (m_lookup.LookupStartPending)
        FindLookupText();
}

void modLookup::FillLookupBy()
{
    if (!m_lists.Kind())
        return;
    const size_t choice = m_lists.PlaceOfChoice(RememberedChoice());
    m_lists.Sort(choice, LookupLists::Occasion::Opening);
    Screen.LookupByItems = m_lists.Choices();
    Screen.LookupByIndex = static_cast<int>(choice);
}

QString &modLookup::RememberedChoice()
{
    return m_lookup.LookupByChoice.at(*m_lists.Kind());
}

void modLookup::FindCustomer()
{
    LookupCustomerFilter
        = m_lookup.LookupFromFilter ? m_filter.FilterCustomer : m_entry.CustomerCode;
    m_lists.SetCustomer(LookupCustomerFilter);
}

void modLookup::ChangeLookupBy()
{
    if (!m_lists.Kind())
        return;
    m_lists.Sort(static_cast<size_t>(Screen.LookupByIndex), LookupLists::Occasion::Change);
    RememberedChoice() = Screen.LookupByItems.at(Screen.LookupByIndex);
    m_lists.ForgetFirstProject();
    ShowFirstPage();
}

bool modLookup::ShowFirstPage()
{
    LookupWindowStart = 0;
    Screen.ScrollValue = 0;
    if (!BuildLookupPage())
        return false;
    Screen.Scroll = SetupLookupScroll(LookupCount, LookupPageRows);
    ShowLookupStatus();
    if (LookupCount != 0) {
        m_grid->SetTopRow(1);
        SelectRow(1);
        LookupRecordIndex = HiddenIndex(1);
    } else {
        m_grid->SetCol(0);
    }
    Screen.GridEnabled = LookupCount != 0;
    Screen.Focus
        = Screen.GridEnabled ? LookupScreen::Control::msgLookup : LookupScreen::Control::txtLookup;
    return true;
}

bool modLookup::BuildLookupPage()
{
    FindCustomer();
    std::shared_ptr<const clsRecordSet> page;
    try {
        page = m_lists.BuildPage(LookupWindowStart, LookupPageRows);
    } catch (const std::bad_alloc &) {
        m_messages.Tell(u"Application cannot create a recordset."_s);
        Screen.Closed = true;
        EndProgram();
        return false;
    }
    m_grid->SetDataSource(page);
    SizeLookupColumns();
    return true;
}

void modLookup::SizeLookupColumns()
{
    const std::optional<size_t> kind = m_lists.Kind();
    const bool isTwoColumns = kind == LookupKinds::Customers || kind == LookupKinds::Projects;
    const std::array<int, 4> twips = {0, 1600, isTwoColumns ? 6250 : 3735, 2425};
    for (int column = 1; column < m_grid->Cols(); ++column) {
        m_grid->SetColWidth(column, twips.at(static_cast<size_t>(column)) + ColumnExtraTwips);
        m_grid->SetColAlignment(column,
            (kind == LookupKinds::Multipliers && column == FactorColumn ? Qt::AlignRight
                                                                        : Qt::AlignLeft)
                | Qt::AlignVCenter);
    }
    m_grid->SetColWidth(0, 0);
}

void modLookup::ShowLookupStatus()
{
    Screen.Panels = {u"Found "_s + QString::number(LookupCount)
            + (LookupCount == 1 ? u" record"_s : u" records"_s),
        m_tables.Employee.Working.Employee_Number, m_session.CurrentCompanyCode,
        m_entry.Date.toString(u"MM/dd/yyyy"_s)};
}

qint32 modLookup::HiddenIndex(qint32 row) const
{
    return m_grid->TextMatrix(row, 0).toInt();
}

void modLookup::SelectRow(qint32 row)
{
    m_grid->SetRow(row);
    m_grid->SelectWholeRow();
}

void modLookup::FindLookupText()
{
    if (LookupActivating || LookupCount == 0)
        return;
    // The text that the opener brought is searched as it stands, unlike what is typed.
    QString text = Screen.SearchText.toUpper();
    if (m_lookup.LookupStartPending)
        text = m_lookup.LookupStartText;
    m_lookup.LookupStartPending = false;
    const qint32 position = m_lists.Kind() ? m_lists.Search(text) : 0;
    const LookupPlace place
        = PlaceOfMatch(position, LookupCount, LookupPageRows, Screen.Scroll.Maximum);
    ScrollTo(place.ScrollValue);
    m_grid->SetTopRow(place.TopRow);
    SelectRow(place.Row);
    LookupRecordIndex = HiddenIndex(place.Row);
}

void modLookup::ScrollTo(qint32 value)
{
    if (value == Screen.ScrollValue)
        return;
    Screen.ScrollValue = value;
    ScrollLookup();
}

void modLookup::ScrollLookup()
{
    if (LookupActivating)
        return;
    LookupWindowStart = Screen.ScrollValue;
    if (!BuildLookupPage() || m_paging)
        return;
    // The chosen record is shown selected when it is on the page, else the page's last row is.
    qint32 row = 1;
    while (row < LookupPageRows && HiddenIndex(row) != LookupRecordIndex)
        ++row;
    SelectRow(row);
}

void modLookup::PageKey(LookupPaging key)
{
    if (LookupCount == 0)
        return;
    const LookupCursor to
        = PageBy(key, {Screen.ScrollValue, m_grid->Row()}, LookupPageRows, Screen.Scroll.Maximum);
    {
        m_paging = true;
        const auto paged = qScopeGuard([this] { m_paging = false; });
        ScrollTo(to.ScrollValue);
    }
    SelectRow(to.Row);
    LookupRecordIndex = HiddenIndex(to.Row);
}

void modLookup::RowClicked()
{
    if (m_grid->MouseRow() == 0 || LookupCount == 0)
        return;
    LookupRecordIndex = HiddenIndex(m_grid->Row());
    TakeLookupRecord();
}

void modLookup::RowDoubleClicked(qint32 row)
{
    SelectRow(row);
    SelectLookup();
}

void modLookup::KeepOneRowSelected()
{
    if (LookupCount != 0)
        m_grid->SelectWholeRow();
}

void modLookup::TakeLookupRecord()
{
    m_grid->SelectWholeRow();
    const QString code = m_lists.CodeAt(LookupRecordIndex);
    m_lookup.LookupRecordTaken = true;
    const std::optional<size_t> kind = m_lists.Kind();
    // Projects and multipliers go straight into the entry, also before a cancel; this is kept.
    if (kind == LookupKinds::Customers) {
        m_lookup.LookupCustomerCode = code;
        if (m_lookup.LookupFromFilter)
            m_filter.FilterCustomer = code;
    } else if (kind == LookupKinds::Projects) {
        m_entry.ProjectCode = code;
        if (m_lookup.LookupFromFilter)
            m_filter.FilterProject = code;
    } else if (kind == LookupKinds::Activities) {
        m_lookup.LookupActivityCode = code;
        if (m_lookup.LookupFromFilter)
            m_filter.FilterActivity = code;
    } else if (kind == LookupKinds::Multipliers) {
        m_entry.MultiplierCode = code;
    }
}

void modLookup::SelectLookup()
{
    if (LookupCount != 0) {
        // What is highlighted counts, also when scrolling has left the chosen record behind.
        LookupRecordIndex = HiddenIndex(m_grid->Row());
        TakeLookupRecord();
    }
    m_lookup.LookupSelected = true;
    m_filter.FilterCodeReverted = false;
    Screen.Closed = true;
}

void modLookup::CancelLookup()
{
    m_lookup.LookupCustomerCode
        = m_lookup.LookupFromFilter ? m_filter.FilterCustomer : m_entry.CustomerCode;
    m_lookup.LookupActivityCode = m_entry.ActivityCode;
    m_lookup.LookupCancelled = true;
    Screen.Closed = true;
}
