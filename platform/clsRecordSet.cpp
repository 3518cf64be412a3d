#include "platform/clsRecordSet.h"

#include "platform/clsRunTimeError.h"
#include "platform/GenericOrder.h"

#include <limits>

using namespace Qt::StringLiterals;

std::vector<quint32> clsRecordSet::Ranks(int field) const
{
    std::vector<QString> values;
    values.reserve(static_cast<size_t>(RecordCount()));
    for (int record = 0; record < RecordCount(); ++record)
        values.push_back(Value(record, field));
    return GenericRanks(values);
}

int clsTextRecordSet::RecordCount() const
{
    return static_cast<int>(m_ends.size() / static_cast<size_t>(FieldCount()));
}

void clsTextRecordSet::AddRecord(std::span<const QStringView> values)
{
    for (const QStringView value : values) {
        const size_t end = m_text.size() + static_cast<size_t>(value.size());
        if (end > std::numeric_limits<quint32>::max())
            throw clsRunTimeError(RunTimeErrors::Overflow, u"RecordSet"_s, u"Overflow"_s);
        m_text.append(value.utf16(), static_cast<size_t>(value.size()));
        m_ends.push_back(static_cast<quint32>(end));
    }
}

QString clsTextRecordSet::Value(int record, int field) const
{
    const auto cell = static_cast<size_t>(record) * static_cast<size_t>(FieldCount())
        + static_cast<size_t>(field);
    const size_t begin = cell == 0 ? 0 : m_ends[cell - 1];
    return QStringView(m_text.data() + begin, static_cast<qsizetype>(m_ends[cell] - begin))
        .toString();
}
