#include "lookup/LookupLists.h"

#include "store/FieldText.h"
#include "store/PadKey.h"

#include <QLocale>

using namespace Qt::StringLiterals;

namespace {

constexpr qint32 KeyField = 0;
constexpr qint32 ProjectCustomerField = 1;
constexpr qint32 BillingStatusField = 7;

const QString Name = QStringLiteral("Name");
const QString Description = QStringLiteral("Description");
const QString BillingStatus = QStringLiteral("Dflt Billing Status");
const QString MultiplierCode = QStringLiteral("Multiplier Code");
const QString MultiplierFactor = QStringLiteral("Multiplier Factor");

/// As the tables order them.
bool SortsBefore(const QString &a, const QString &b)
{
    return CompareTexts(a.toStdString(), b.toStdString()) < 0;
}

QString BillingStatusLabel(const QString &code)
{
    if (code == u"1")
        return u"Billable"_s;
    if (code == u"2")
        return u"No Charge"_s;
    if (code == u"3")
        return u"Do Not Bill"_s;
    return {};
}

QString BillingStatusKey(const QString &text)
{
    if (text.startsWith(u'B'))
        return u"1"_s;
    if (text.startsWith(u'N'))
        return u"2"_s;
    if (text.startsWith(u'D'))
        return u"3"_s;
    return text;
}

QChar DecimalSign()
{
    return QLocale().decimalPoint().at(0);
}

QString FactorText(Currency factor)
{
    return FormatCurrency(factor, 4, LeadingZero::Yes, DecimalSign());
}

/// As the list shows factors: where the system's decimal sign is a comma, so is the typed one.
Currency FactorOf(QString text)
{
    if (DecimalSign() == u',')
        text.replace(u',', u'.');
    return CurrencyFromText(text).value_or(Currency());
}

} // namespace

LookupLists::LookupLists(Tables &tables)
    : m_tables(tables)
    , m_store(tables.Store)
{
}

void LookupLists::ChooseList(const QString &kind)
{
    const OptionsRecord &options = m_tables.Options.Working;
    if (kind == options.Customer_Term)
        m_kind = LookupKinds::Customers;
    else if (kind == options.Project_Term)
        m_kind = LookupKinds::Projects;
    else if (kind == options.Activity_Term)
        m_kind = LookupKinds::Activities;
    else if (kind == LookupKinds::BillingRateMultiplier)
        m_kind = LookupKinds::Multipliers;
    else
        m_kind.reset();
}

std::vector<LookupLists::Choice> LookupLists::ChoicesOfKind() const
{
    if (!m_kind)
        return {};
    const OptionsRecord &options = m_tables.Options.Working;
    // The blanks in the orders carry no meaning and are kept as they are.
    switch (*m_kind) {
    case LookupKinds::Customers:
        return {{options.Customer_Term, "0, 1", "0, 1", KeyField}, {Name, "2, 0, 1", "2, 0, 1", 2}};
    case LookupKinds::Projects:
        return {{options.Project_Term, "0, 1", "0 ,1", 2}, {Name, "1, 3, 0", "1, 3, 0", 3}};
    case LookupKinds::Activities:
        return {{options.Activity_Term, "0, 1", "0, 1", KeyField},
            {Description, "2, 0, 1", "2, 0, 1", 2},
            {BillingStatus, "7, 0, 1", "7, 0 , 1", BillingStatusField}};
    default:
        return {{MultiplierCode, "0, 1", "0, 1", KeyField}, {Description, "2, 0, 1", "2, 0, 1", 2},
            {MultiplierFactor, "3, 0, 1", "3, 0, 1", 3}};
    }
}

LookupLists::Choice LookupLists::SortedBy() const
{
    return ChoicesOfKind().at(m_sortedBy);
}

QStringList LookupLists::Choices() const
{
    QStringList texts;
    for (const Choice &choice : ChoicesOfKind())
        texts.append(choice.Text);
    return texts;
}

size_t LookupLists::PlaceOfChoice(const QString &text) const
{
    const std::vector<Choice> choices = ChoicesOfKind();
    for (size_t i = 1; i < choices.size(); ++i) {
        if (choices[i].Text == text)
            return i;
    }
    return 0;
}

QStringList LookupLists::Columns() const
{
    QStringList names = {u"UniqueID Hidden"_s};
    if (m_kind == LookupKinds::Customers || m_kind == LookupKinds::Projects)
        names << ChoicesOfKind().front().Text << Name;
    else
        names << Choices();
    return names;
}

RecordStore::Handle LookupLists::Table() const
{
    switch (*m_kind) {
    case LookupKinds::Customers:
        return m_tables.Customers.Handle;
    case LookupKinds::Projects:
        return m_tables.Projects.Handle;
    case LookupKinds::Activities:
        return m_tables.Activities.Handle;
    default:
        return m_tables.Multiplier.Handle;
    }
}

void LookupLists::Sort(size_t choice, Occasion occasion)
{
    m_sortedBy = choice;
    const Choice by = SortedBy();
    m_store.SortTable(Table(),
        QString::fromLatin1(occasion == Occasion::Opening ? by.OrderOnOpening : by.OrderOnChange));
}

bool LookupLists::IsOtherCustomersProject()
{
    return m_store.ReadField(Table(), ProjectCustomerField) != m_customer;
}

qint32 LookupLists::CountProjects()
{
    qint32 count = 0;
    m_store.FindRecord(Table(), ProjectCustomerField, m_customer);
    for (; !m_store.IsEndOfTable(Table()) && !IsOtherCustomersProject(); m_store.MoveNext(Table()))
        ++count;
    return count;
}

std::optional<qint32> LookupLists::Count()
{
    if (!m_kind)
        return {};
    return m_kind == LookupKinds::Projects ? CountProjects() : m_store.GetRecordCount(Table());
}

void LookupLists::GoTo(qint32 position)
{
    if (m_kind != LookupKinds::Projects) {
        m_store.FindFromPosition(Table(), position);
    } else if (m_firstProject) {
        m_store.FindFromPosition(Table(), *m_firstProject + position);
    } else {
        m_store.FindRecord(Table(), ProjectCustomerField, m_customer);
        m_firstProject = m_store.GetCurrentIndex(Table());
    }
}

QStringList LookupLists::ReadRow()
{
    switch (*m_kind) {
    case LookupKinds::Customers: {
        CustomerRecord record;
        m_tables.Customers.ReadCustomer(record);
        return {record.Customer_Number, record.Customer_Name};
    }
    case LookupKinds::Projects: {
        ProjectRecord record;
        m_tables.Projects.ReadProject(record);
        return {record.Project_Number, record.Project_Name};
    }
    case LookupKinds::Activities: {
        ActivityRecord record;
        m_tables.Activities.ReadActivity(record);
        return {record.Activity_Number, record.Description,
            BillingStatusLabel(record.Dflt_Billing_Status)};
    }
    default: {
        MultiplierRecord record;
        m_tables.Multiplier.ReadMultiplier(record);
        return {record.Multiplier_Number, record.Description, FactorText(record.Factor)};
    }
    }
}

std::shared_ptr<const clsRecordSet> LookupLists::BuildPage(qint32 position, qint32 pageRows)
{
    auto page = std::make_shared<clsTextRecordSet>(Columns());
    if (!m_kind)
        return page;
    GoTo(position);
    // The row after the page's last one lets the grid show what follows.
    for (qint32 row = 0; row <= pageRows && !m_store.IsEndOfTable(Table()); ++row) {
        if (m_kind == LookupKinds::Projects && IsOtherCustomersProject())
            break;
        const QStringList texts
            = QStringList(QString::number(m_store.GetCurrentIndex(Table()))) + ReadRow();
        const std::vector<QStringView> values(texts.begin(), texts.end());
        page->AddRecord(values);
        m_store.MoveNext(Table());
    }
    return page;
}

QString LookupLists::UpperField(qint32 field)
{
    return m_store.ReadField(Table(), field).toUpper();
}

qint32 LookupLists::SearchText(qint32 field, const QString &key)
{
    m_store.FindRecord(Table(), field, key);
    if (m_store.GetLastStatus(Table()) == RecordStore::NoExactMatch
        && !m_store.IsEndOfTable(Table()) && SortsBefore(UpperField(field), key))
        m_store.MoveNext(Table());
    // The store orders texts of one upper-cased text by the text itself, and a few small letters
    // lie before their capitals: those records stand before the one that it found.
    qint32 index = m_store.GetCurrentIndex(Table());
    while (index > 0) {
        m_store.MoveToPosition(Table(), index - 1);
        if (SortsBefore(UpperField(field), key))
            break;
        --index;
    }
    return index;
}

qint32 LookupLists::SearchFactor(qint32 field, const QString &text)
{
    m_store.FindRecord(Table(), field, FactorOf(text));
    return m_store.GetCurrentIndex(Table());
}

qint32 LookupLists::SearchProjects(qint32 field, const QString &text)
{
    m_store.FindRecord(Table(), ProjectCustomerField, m_customer);
    if (m_store.GetLastStatus(Table()) == RecordStore::NoExactMatch)
        return 0;
    const qint32 first = m_store.GetCurrentIndex(Table());
    qint32 index = first;
    for (; !m_store.IsEndOfTable(Table()) && !IsOtherCustomersProject();
         m_store.MoveNext(Table())) {
        index = m_store.GetCurrentIndex(Table());
        if (!SortsBefore(UpperField(field), text))
            break;
    }
    return index - first;
}

qint32 LookupLists::Search(const QString &text)
{
    if (!m_kind)
        return 0;
    const qint32 field = SortedBy().Field;
    if (m_kind == LookupKinds::Projects)
        return SearchProjects(field, text);
    if (m_kind == LookupKinds::Activities && field == BillingStatusField)
        return SearchText(field, BillingStatusKey(text));
    if (m_kind == LookupKinds::Multipliers && field == 3)
        return SearchFactor(field, text);
    if (field != KeyField)
        return SearchText(field, text);
    return SearchText(field,
        PadKey(text,
            m_kind == LookupKinds::Multipliers     ? KeyWidth::Multiplier
                : m_kind == LookupKinds::Customers ? KeyWidth::Customer
                                                   : KeyWidth::Activity));
}

QString LookupLists::CodeAt(qint32 index)
{
    if (!m_kind)
        return {};
    m_store.MoveToPosition(Table(), index);
    return ReadRow().front();
}
