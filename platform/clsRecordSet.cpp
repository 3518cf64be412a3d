#include "platform/clsRecordSet.h"

#include "platform/clsRunTimeError.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

clsRecordSet::clsRecordSet(const QStringList &fieldNames)
    : m_names(fieldNames)
{
    for (const QString &name : fieldNames)
        m_longest.push_back(static_cast<int>(name.size()));
}

int clsRecordSet::RecordCount() const
{
    return static_cast<int>(m_ends.size() / m_longest.size());
}

void clsRecordSet::AddRecord(std::span<const QStringView> values)
{
    for (size_t field = 0; field < m_longest.size(); ++field) {
        const QStringView value = values[field];
        const size_t end = m_text.size() + static_cast<size_t>(value.size());
        if (end > std::numeric_limits<quint32>::max())
            throw clsRunTimeError(RunTimeErrors::Overflow, u"RecordSet"_s, u"Overflow"_s);
        m_text.append(value.utf16(), static_cast<size_t>(value.size()));
        m_ends.push_back(static_cast<quint32>(end));
        m_longest[field] = std::max(m_longest[field], static_cast<int>(value.size()));
    }
}

QStringView clsRecordSet::Value(int record, int field) const
{
    const size_t cell = static_cast<size_t>(record) * m_longest.size() + static_cast<size_t>(field);
    const size_t begin = cell == 0 ? 0 : m_ends[cell - 1];
    return QStringView(m_text.data() + begin, static_cast<qsizetype>(m_ends[cell] - begin));
}

int clsRecordSet::LongestText(int field) const
{
    return m_longest[static_cast<size_t>(field)];
}
