#include "entry/EntryReferences.h"

#include "store/PadKey.h"

using namespace Qt::StringLiterals;

namespace {

constexpr quint32 NotAsked = 0xffffffff;
constexpr quint32 PastTheLast = 0xfffffffe;
constexpr quint32 InvalidText = 0; // in the projects' and activities' texts
constexpr quint32 NoText = 1; // in the projects' texts

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

EntryReferences::EntryReferences(Tables &tables)
    : m_tables(tables)
{
    Forget();
}

void EntryReferences::Forget()
{
    // A list that is shown keeps the texts that it was given.
    m_texts = std::make_shared<EntryTexts>();
    m_texts->Projects = {Invalid, {}};
    m_texts->Activities = {Invalid};
    m_customers.clear();
    m_projects.clear();
    m_otherProjects.clear();
    m_activities.clear();
}

void EntryReferences::BeginList()
{
    const Versions now{m_tables.Entries.Version().Loaded, m_tables.Customers.Version(),
        m_tables.Projects.Version(), m_tables.Activities.Version()};
    if (now != m_versions)
        Forget();
    m_versions = now;
    m_lastCustomer = m_lastActivity = -1;
    m_customerText = NotAsked;
}

QString EntryReferences::CodeOf(qint32 field, qint64 number) const
{
    return m_tables.Entries.TextOfNumber(field, number);
}

bool EntryReferences::ReadCustomer(qint64 number)
{
    // Whether the customer is found is not asked: the name of the record that the search ends on
    // is shown. Unlike for projects and activities; this is kept.
    modDBCust &customers = m_tables.Customers;
    customers.Find(0, PadKey(CodeOf(EntryField::Customer_Number, number), KeyWidth::Customer));
    return customers.ReadCustomer(customers.Record);
}

quint32 EntryReferences::CustomerOf(const EntryNumbers &entry)
{
    const QString &read = m_tables.Customers.Record.Customer_Name;
    quint32 &text = At(m_customers, entry.Customer, NotAsked);
    if (text == NotAsked)
        text = ReadCustomer(entry.Customer) ? Append(m_texts->Customers, read) : PastTheLast;
    if (text != PastTheLast) {
        m_customerText = text;
        m_lastCustomer = entry.Customer;
    } else if (m_customerText == NotAsked) {
        // Past the last record none is read, and the one read before stands.
        m_customerText = Append(m_texts->Customers, read);
    }
    return m_customerText;
}

quint32 EntryReferences::FindProject(const EntryNumbers &entry)
{
    const QString project = CodeOf(EntryField::Project_Number, entry.Project);
    if (project.isEmpty())
        return NoText;
    modDBProj &projects = m_tables.Projects;
    if (!projects.Find(0, ProjectKey(CodeOf(EntryField::Customer_Number, entry.Customer), project)))
        return InvalidText;
    projects.ReadProject(projects.Record);
    return Append(m_texts->Projects, projects.Record.Project_Name);
}

quint32 EntryReferences::ProjectOf(const EntryNumbers &entry)
{
    Project &known = At(m_projects, entry.Project, Project());
    if (known.Customer == entry.Customer)
        return known.Text;
    if (known.Customer < 0) {
        known = {entry.Customer, FindProject(entry)};
        return known.Text;
    }
    // Two customers have projects of the same code.
    const quint64 both
        = static_cast<quint64>(entry.Customer) << 32 | static_cast<quint64>(entry.Project);
    const auto other = m_otherProjects.find(both);
    return other != m_otherProjects.end()
        ? other->second
        : m_otherProjects.emplace(both, FindProject(entry)).first->second;
}

bool EntryReferences::ReadActivity(qint64 number)
{
    modDBActi &activities = m_tables.Activities;
    return activities.Find(
               0, PadKey(CodeOf(EntryField::Activity_Number, number), KeyWidth::Activity))
        && activities.ReadActivity(activities.Record);
}

quint32 EntryReferences::ActivityOf(const EntryNumbers &entry)
{
    Activity &activity = At(m_activities, entry.Activity, {NotAsked, false});
    if (activity.Text == NotAsked) {
        const ActivityRecord &read = m_tables.Activities.Record;
        activity = ReadActivity(entry.Activity)
            ? Activity{Append(m_texts->Activities, read.Description), read.Expense == "Y"_L1}
            : Activity{InvalidText, false};
    }
    if (activity.Text != InvalidText) {
        m_isExpense = activity.IsExpense;
        m_lastActivity = entry.Activity;
    }
    return activity.Text;
}

void EntryReferences::EndList()
{
    if (m_lastCustomer >= 0)
        ReadCustomer(m_lastCustomer);
    if (m_lastActivity >= 0)
        ReadActivity(m_lastActivity);
}
