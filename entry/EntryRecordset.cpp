#include "entry/EntryRecordset.h"

#include "entry/EntryColumn.h"
#include "platform/GenericOrder.h"
#include "store/FieldText.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 NoNumber = std::numeric_limits<qint64>::max(); // an empty text: after all numbers

/// GenericRanks for values that are known as numbers.
template <class ValueOf>
std::vector<quint32> RanksOfNumbers(
    const std::vector<EntryRecordset::Row> &rows, const ValueOf &valueOf)
{
    struct Keyed
    {
        qint64 Value;
        quint32 Record;
    };
    std::vector<Keyed> keys;
    keys.reserve(rows.size());
    for (const EntryRecordset::Row &row : rows)
        keys.push_back({valueOf(row), static_cast<quint32>(keys.size())});
    std::sort(
        keys.begin(), keys.end(), [](const Keyed &a, const Keyed &b) { return a.Value < b.Value; });
    std::vector<quint32> ranks(rows.size());
    quint32 rank = 0;
    for (size_t i = 0; i < keys.size(); ++i) {
        if (i > 0 && keys[i - 1].Value != keys[i].Value)
            ++rank;
        ranks[keys[i].Record] = rank;
    }
    return ranks;
}

/// GenericRanks for values out of a few texts that many rows share. Finding a place may find a new
/// text, so all places are found first.
template <class PlaceOf>
std::vector<quint32> RanksOfTexts(const std::vector<EntryRecordset::Row> &rows,
    const std::vector<QString> &texts, const PlaceOf &placeOf)
{
    std::vector<quint32> ranks;
    ranks.reserve(rows.size());
    for (const EntryRecordset::Row &row : rows)
        ranks.push_back(placeOf(row));
    const std::vector<quint32> textRanks = GenericRanks(texts);
    for (quint32 &rank : ranks)
        rank = textRanks[rank];
    return ranks;
}

} // namespace

EntryRecordset::EntryRecordset(const QStringList &fieldNames, std::shared_ptr<EntryTexts> texts,
    const QString &customerBefore, QChar decimalSign)
    : clsRecordSet(fieldNames)
    , m_texts(std::move(texts))
    , m_customerBefore(customerBefore)
    , m_decimalSign(decimalSign)
{
}

int EntryRecordset::RecordCount() const
{
    return static_cast<int>(m_rows.size()) + m_emptyRecords;
}

QString EntryRecordset::Number(Currency value, int decimals) const
{
    return FormatCurrency(value, decimals, LeadingZero::No, m_decimalSign);
}

std::optional<size_t> EntryRecordset::CustomerRow(size_t row) const
{
    for (size_t i = row + 1; i-- > 0;) {
        if (m_texts->CustomerAt(m_rows[i].Customer) != EntryTexts::PastTheLast)
            return i;
    }
    return {};
}

std::optional<qint64> EntryRecordset::LastCustomer() const
{
    const std::optional<size_t> row
        = m_rows.empty() ? std::optional<size_t>() : CustomerRow(m_rows.size() - 1);
    return row ? std::optional<qint64>(m_rows[*row].Customer) : std::nullopt;
}

QString EntryRecordset::CustomerText(size_t row) const
{
    const std::optional<size_t> shown = CustomerRow(row);
    return shown ? m_texts->Customers()[m_texts->CustomerAt(m_rows[*shown].Customer)]
                 : m_customerBefore;
}

QString EntryRecordset::Text(size_t index, int field) const
{
    const Row &row = m_rows[index];
    switch (field) {
    case EntryColumn::UniqueId:
        return QString::number(row.Position);
    case EntryColumn::DateHidden:
        return DateFromSeconds(row.Date).toString(u"yyyyMMdd"_s);
    case EntryColumn::Date:
        return DateFromSeconds(row.Date).toString(u"MM/dd/yyyy"_s);
    case EntryColumn::Customer:
        return CustomerText(index);
    case EntryColumn::Project:
        return m_texts->Projects()[m_texts->ProjectAt(row.Customer, row.Project)];
    case EntryColumn::Activity:
        return m_texts->Activities()[m_texts->ActivityAt(row.Activity)];
    case EntryColumn::TimeOrExpense:
        return row.IsExpense ? u"E"_s : u"T"_s;
    case EntryColumn::Hours:
        return Number(row.Hours, 2);
    case EntryColumn::Rate:
        return row.ShowsRate ? Number(row.Rate, 3) : QString();
    default:
        return row.ShowsRate ? Number(row.Amount, 2) : QString();
    }
}

QString EntryRecordset::Value(int record, int field) const
{
    const auto index = static_cast<size_t>(record);
    return index < m_rows.size() ? Text(index, field) : QString();
}

std::vector<quint32> EntryRecordset::RanksOfCustomers() const
{
    const auto isPastTheLast = [&](const Row &row) {
        return m_texts->CustomerAt(row.Customer) == EntryTexts::PastTheLast;
    };
    // A row that shows the name of another entry's customer has no place of its own by name.
    if (std::any_of(m_rows.begin(), m_rows.end(), isPastTheLast))
        return clsRecordSet::Ranks(EntryColumn::Customer);
    return RanksOfTexts(m_rows, m_texts->Customers(),
        [&](const Row &row) { return m_texts->CustomerAt(row.Customer); });
}

std::vector<quint32> EntryRecordset::RanksOfTypes() const
{
    std::vector<quint32> ranks(m_rows.size());
    std::transform(m_rows.begin(), m_rows.end(), ranks.begin(),
        [](const Row &row) { return row.IsExpense ? 0U : 1U; });
    return ranks;
}

std::vector<quint32> EntryRecordset::Ranks(int field) const
{
    if (m_emptyRecords > 0)
        return clsRecordSet::Ranks(field);
    switch (field) {
    case EntryColumn::UniqueId:
        return RanksOfNumbers(m_rows, [](const Row &row) { return row.Position; });
    case EntryColumn::DateHidden:
        return RanksOfNumbers(
            m_rows, [](const Row &row) { return row.Date == NoDate ? NoNumber : DayOf(row.Date); });
    case EntryColumn::Customer:
        return RanksOfCustomers();
    case EntryColumn::Project:
        return RanksOfTexts(m_rows, m_texts->Projects(),
            [&](const Row &row) { return m_texts->ProjectAt(row.Customer, row.Project); });
    case EntryColumn::Activity:
        return RanksOfTexts(m_rows, m_texts->Activities(),
            [&](const Row &row) { return m_texts->ActivityAt(row.Activity); });
    case EntryColumn::TimeOrExpense:
        return RanksOfTypes();
    case EntryColumn::Hours:
        return RanksOfNumbers(m_rows, [](const Row &row) { return RoundedTo(row.Hours, 2); });
    case EntryColumn::Rate:
        return RanksOfNumbers(m_rows,
            [](const Row &row) { return row.ShowsRate ? RoundedTo(row.Rate, 3) : NoNumber; });
    case EntryColumn::Amount:
        return RanksOfNumbers(m_rows,
            [](const Row &row) { return row.ShowsRate ? RoundedTo(row.Amount, 2) : NoNumber; });
    default:
        return clsRecordSet::Ranks(field);
    }
}
