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

/// GenericRanks for values out of a few texts that many rows share.
std::vector<quint32> RanksOfTexts(const std::vector<EntryRecordset::Row> &rows,
    const std::vector<QString> &texts, quint32 EntryRecordset::Row::*text)
{
    const std::vector<quint32> textRanks = GenericRanks(texts);
    std::vector<quint32> ranks;
    ranks.reserve(rows.size());
    for (const EntryRecordset::Row &row : rows)
        ranks.push_back(textRanks[row.*text]);
    return ranks;
}

} // namespace

EntryRecordset::EntryRecordset(
    const QStringList &fieldNames, std::shared_ptr<const EntryTexts> texts, QChar decimalSign)
    : clsRecordSet(fieldNames)
    , m_texts(std::move(texts))
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

QString EntryRecordset::Text(const Row &row, int field) const
{
    switch (field) {
    case EntryColumn::UniqueId:
        return QString::number(row.Position);
    case EntryColumn::DateHidden:
        return DateFromSeconds(row.Date).toString(u"yyyyMMdd"_s);
    case EntryColumn::Date:
        return DateFromSeconds(row.Date).toString(u"MM/dd/yyyy"_s);
    case EntryColumn::Customer:
        return m_texts->Customers[row.Customer];
    case EntryColumn::Project:
        return m_texts->Projects[row.Project];
    case EntryColumn::Activity:
        return m_texts->Activities[row.Activity];
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
    return index < m_rows.size() ? Text(m_rows[index], field) : QString();
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
        return RanksOfTexts(m_rows, m_texts->Customers, &Row::Customer);
    case EntryColumn::Project:
        return RanksOfTexts(m_rows, m_texts->Projects, &Row::Project);
    case EntryColumn::Activity:
        return RanksOfTexts(m_rows, m_texts->Activities, &Row::Activity);
    case EntryColumn::TimeOrExpense:
        return RanksOfNumbers(m_rows, [](const Row &row) { return row.IsExpense ? 0 : 1; });
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
