#include "figures/EntryTexts.h"

#include "store/PadKey.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qint32 CustomerName = 2;
constexpr qint32 ProjectName = 3;
constexpr qint32 ActivityDescription = 2;
constexpr qint32 ActivityExpense = 3;

constexpr quint32 NotAsked = 0xffffffff;
constexpr quint32 NoCustomer = 0; // an empty text
constexpr quint32 InvalidText = 0; // in the texts of projects and activities
constexpr quint32 NoText = 1; // likewise

const QString Invalid = QStringLiteral("*** invalid ***");

quint32 Append(std::vector<QString> &texts, const QString &text)
{
    texts.push_back(text);
    return static_cast<quint32>(texts.size() - 1);
}

/// The element of that number; the vector grows to hold it.
template <class Value>
Value &At(std::vector<Value> &values, qint64 number, const Value &unknown)
{
    const auto index = static_cast<size_t>(number);
    if (index >= values.size())
        values.resize(index + 1, unknown);
    return values[index];
}

} // namespace

EntryTexts::Basis::Basis(const Tables &tables)
    : CustomerCodes(tables.Entries.NumbersOf(EntryField::Customer_Number))
    , ProjectCodes(tables.Entries.NumbersOf(EntryField::Project_Number))
    , ActivityCodes(tables.Entries.NumbersOf(EntryField::Activity_Number))
    , CustomersVersion(tables.Customers.Version())
    , ProjectsVersion(tables.Projects.Version())
    , ActivitiesVersion(tables.Activities.Version())
{
}

EntryTexts::EntryTexts(Tables &tables)
    : m_tables(tables)
    , m_basis(tables)
    , m_customerTexts{QString()}
    , m_projectTexts{Invalid, {}}
    , m_activityTexts{Invalid, {}}
{
}

quint32 EntryTexts::FindCustomer(qint64 customer)
{
    // Whether the customer is found is not asked: the name of the record that the search ends on
    // is shown. Unlike for projects and activities; this is kept.
    const RecordStore::Sighting seen = m_tables.Customers.Sight(
        0, PadKey(CustomerCode(customer), KeyWidth::Customer), CustomerName);
    return seen.IsRecord ? Append(m_customerTexts, seen.Value) : PastTheLast;
}

quint32 EntryTexts::CustomerAt(qint64 customer)
{
    quint32 &place = At(m_customers, customer, NotAsked);
    if (place == NotAsked) {
        if (!m_tables.Customers.IsOpen())
            return NoCustomer;
        place = FindCustomer(customer);
    }
    return place;
}

quint32 EntryTexts::FindProject(qint64 customer, qint64 project)
{
    const QString code = m_basis.ProjectCodes->Text(project);
    if (code.isEmpty() || !m_tables.Projects.IsOpen())
        return NoText;
    const RecordStore::Sighting seen
        = m_tables.Projects.Sight(0, ProjectKey(CustomerCode(customer), code), ProjectName);
    return seen.Exact ? Append(m_projectTexts, seen.Value) : InvalidText;
}

quint32 EntryTexts::ProjectAt(qint64 customer, qint64 project)
{
    Project &known = At(m_projects, project, Project());
    if (known.Customer == customer)
        return known.Text;
    if (!m_tables.Projects.IsOpen())
        return NoText;
    if (known.Customer < 0) {
        known = {customer, FindProject(customer, project)};
        return known.Text;
    }
    // Two customers have projects of the same code.
    const quint64 both = static_cast<quint64>(customer) << 32 | static_cast<quint64>(project);
    const auto other = m_otherProjects.find(both);
    return other != m_otherProjects.end()
        ? other->second
        : m_otherProjects.emplace(both, FindProject(customer, project)).first->second;
}

EntryTexts::Activity &EntryTexts::Found(qint64 activity)
{
    Activity &known = At(m_activities, activity, Activity());
    if (known.Text == NotAsked) {
        const QString key = PadKey(ActivityCode(activity), KeyWidth::Activity);
        const RecordStore::Sighting seen = m_tables.Activities.Sight(0, key, ActivityDescription);
        known.Text = seen.Exact ? Append(m_activityTexts, seen.Value) : InvalidText;
        known.IsExpense
            = seen.Exact && m_tables.Activities.Sight(0, key, ActivityExpense).Value == "Y"_L1;
    }
    return known;
}

quint32 EntryTexts::ActivityAt(qint64 activity)
{
    return Found(activity).Text;
}

bool EntryTexts::IsKnown(qint64 activity)
{
    return Found(activity).Text != InvalidText;
}

bool EntryTexts::IsExpense(qint64 activity)
{
    return Found(activity).IsExpense;
}
