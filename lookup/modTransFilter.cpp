#include "lookup/modTransFilter.h"

#include "figures/CodeTexts.h"
#include "store/PadKey.h"

#include <QScopeGuard>

using namespace Qt::StringLiterals;

namespace {

const QString All = QStringLiteral("All");

QString FocusKeyOf(FilterField field)
{
    switch (field) {
    case FilterField::Customer:
        return u"Cust"_s;
    case FilterField::Project:
        return u"Proj"_s;
    case FilterField::Activity:
        break;
    }
    return u"Acti"_s;
}

} // namespace

modTransFilter::modTransFilter(Tables &tables, FilterState &filter, LookupState &lookup)
    : m_tables(tables)
    , m_filter(filter)
    , m_lookup(lookup)
{
}

modTransFilter::Field modTransFilter::Of(FilterField field)
{
    switch (field) {
    case FilterField::Customer:
        return {
            m_filter.FilterCustomer, m_customerText, FilterCustomerName, FilterPreviousCustomer};
    case FilterField::Project:
        return {m_filter.FilterProject, m_projectText, FilterProjectName, FilterPreviousProject};
    case FilterField::Activity:
        break;
    }
    return {m_filter.FilterActivity, m_activityText, FilterActivityName, FilterPreviousActivity};
}

QString modTransFilter::Caption(FilterField field) const
{
    const OptionsRecord &options = m_tables.Options.Working;
    switch (field) {
    case FilterField::Customer:
        return options.Customer_Term;
    case FilterField::Project:
        return options.Project_Term;
    case FilterField::Activity:
        break;
    }
    return options.Activity_Term;
}

QString &modTransFilter::Text(FilterField field)
{
    return Of(field).Text;
}

const QString &modTransFilter::Name(FilterField field) const
{
    switch (field) {
    case FilterField::Customer:
        return FilterCustomerName;
    case FilterField::Project:
        return FilterProjectName;
    case FilterField::Activity:
        break;
    }
    return FilterActivityName;
}

std::optional<QString> modTransFilter::CustomerName()
{
    modDBCust &customers = m_tables.Customers;
    if (!customers.Find(0, PadKey(m_filter.FilterCustomer, KeyWidth::Customer)))
        return {};
    CustomerRecord record;
    customers.ReadCustomer(record);
    return record.Customer_Name;
}

std::optional<QString> modTransFilter::ProjectName()
{
    modDBProj &projects = m_tables.Projects;
    if (!projects.Find(0, ProjectKey(m_filter.FilterCustomer, m_filter.FilterProject)))
        return {};
    ProjectRecord record;
    projects.ReadProject(record);
    return record.Project_Name;
}

std::optional<QString> modTransFilter::ActivityName()
{
    modDBActi &activities = m_tables.Activities;
    if (!activities.Find(0, PadKey(m_filter.FilterActivity, KeyWidth::Activity)))
        return {};
    ActivityRecord record;
    activities.ReadActivity(record);
    return record.Description;
}

std::optional<QString> modTransFilter::FoundName(FilterField field)
{
    switch (field) {
    case FilterField::Customer:
        return CustomerName();
    case FilterField::Project:
        return ProjectName();
    case FilterField::Activity:
        break;
    }
    return ActivityName();
}

QString modTransFilter::WhyPutBack(FilterField field)
{
    return field == FilterField::Project
        ? NoSuchProject(m_tables.Options.Working, m_filter.FilterProject, m_filter.FilterCustomer)
        : NoSuchCode(Caption(field), Of(field).Code);
}

void modTransFilter::ReadName(FilterField field)
{
    // An unknown customer has no name; an unknown project or activity reads "All".
    const QString unknown = field == FilterField::Customer ? QString() : All;
    Of(field).Name = Of(field).Code.isEmpty() ? unknown : FoundName(field).value_or(unknown);
}

void modTransFilter::OpenProject()
{
    m_projectIsOpen = true;
    if (m_filter.FilterProject.isEmpty())
        FilterProjectName = All;
}

void modTransFilter::CloseProject()
{
    m_projectIsOpen = false;
    m_filter.FilterProject.clear();
    m_projectText.clear();
    FilterProjectName = All;
}

void modTransFilter::InitTransFilter()
{
    m_filter.FilterCustomer = m_filter.AppliedFilterCustomer;
    m_filter.FilterProject = m_filter.AppliedFilterProject;
    m_filter.FilterActivity = m_filter.AppliedFilterActivity;
    m_projectIsOpen = !m_filter.FilterCustomer.isEmpty();
    for (const FilterField name : FilterFields) {
        const Field field = Of(name);
        field.Text = field.Code;
        ReadName(name);
    }
    if (!m_projectIsOpen)
        FilterCustomerName = All;
    // A project that was kept for another customer is found nowhere; it keeps its name, too.
    if (!m_filter.FilterProject.isEmpty() && FilterProjectName == All)
        FilterProjectName = m_appliedProjectName;
}

void modTransFilter::BoxGotFocus(FilterField field)
{
    Of(field).Previous = Of(field).Text;
    if (PassesOn(field))
        FilterProjectName.clear();
}

bool modTransFilter::PassesOn(FilterField field) const
{
    return field == FilterField::Project && m_filter.FilterCustomer.isEmpty();
}

bool modTransFilter::IsUnchecked(FilterField name)
{
    const Field field = Of(name);
    return field.Text != field.Code;
}

void modTransFilter::CheckBox(FilterField name)
{
    const Field field = Of(name);
    m_filter.FilterCodeReverted = false;
    m_putBackText.clear();
    field.Code = field.Text = WithoutTrailingSpaces(field.Text);
    if (field.Code.isEmpty()) {
        field.Name = All;
        if (name == FilterField::Customer)
            CloseProject();
        return;
    }
    if (field.Code != field.Previous)
        CheckNewCode(name);
    if (name != FilterField::Customer)
        return;
    if (field.Code.isEmpty())
        CloseProject();
    else
        OpenProject();
}

void modTransFilter::CheckNewCode(FilterField name)
{
    const Field field = Of(name);
    // What the store cannot check does not count.
    auto unchecked = qScopeGuard([&] { field.Code = field.Text = field.Previous; });
    if (!FoundName(name)) {
        m_putBackText = WhyPutBack(name);
        field.Code = field.Previous;
        m_filter.FilterCodeReverted = true;
    }
    ReadName(name);
    field.Text = field.Code;
    unchecked.dismiss();
}

bool modTransFilter::LookUp(
    FilterField name, LookupStart start, const std::function<void()> &showLookup)
{
    const Field field = Of(name);
    m_lookup.LookupStartPending = start == LookupStart::AtTheText;
    m_lookup.LookupKind = Caption(name);
    m_lookup.LookupPending = true;
    m_lookup.LookupFromFilter = true;
    if (m_lookup.LookupStartPending) {
        field.Code = field.Text;
        m_lookup.LookupStartText = field.Code;
    }
    {
        const auto closed = qScopeGuard([this] {
            m_lookup.LookupFromFilter = false;
            m_lookup.LookupStartPending = false;
            m_lookup.LookupSelected = false;
        });
        showLookup();
    }
    const bool picked = !m_lookup.LookupCancelled || field.Code != field.Text;
    field.Text = field.Code;
    CheckBox(name);
    if (picked && !field.Code.isEmpty())
        ReadName(name);
    if (!m_lookup.LookupCancelled)
        return true;
    m_lookup.LookupCancelled = false;
    m_lookup.LookupKind.clear();
    FilterFocusKey = FocusKeyOf(name);
    SelectEntryBox(name); // the entry window's own box, not the filter's; this is kept
    return false;
}

std::optional<FilterField> modTransFilter::FocusWanted() const
{
    if (!m_lookup.LookupKind.isEmpty())
        return {};
    for (const FilterField field : FilterFields) {
        if (FilterFocusKey == FocusKeyOf(field))
            return field;
    }
    return {};
}

void modTransFilter::OK()
{
    m_filter.AppliedFilterCustomer = m_filter.FilterCustomer;
    m_filter.AppliedFilterProject = m_filter.FilterProject;
    m_filter.AppliedFilterActivity = m_filter.FilterActivity;
    m_appliedProjectName = FilterProjectName;
}

void modTransFilter::Cancel()
{
    m_filter.FilterCancelled = true;
}

void modTransFilter::Clear()
{
    m_filter.FilterCleared = true;
    m_filter.AppliedFilterCustomer.clear();
    m_filter.AppliedFilterProject.clear();
    m_filter.AppliedFilterActivity.clear();
    InitTransFilter();
}
