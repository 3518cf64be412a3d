#include "store/CurrentRow.h"

#include "store/FieldText.h"
#include "store/StoreErrors.h"

#include <optional>

using namespace Qt::StringLiterals;

DatabaseFile::Source::Source(const DatabaseFile &file)
    : m_file(file)
    , m_texts(file.m_schema.size())
    , m_numbers(file.m_schema.size())
{
}

void DatabaseFile::Source::Take(const Statement &row)
{
    m_rowId = row.Number(0);
    int column = 1;
    for (size_t i = 0; i < m_texts.size(); ++i, ++column) {
        if (m_file.m_schema[i].Type == FieldType::Currency)
            m_numbers[i] = row.Number(column);
        else
            m_texts[i] = row.Text(column);
    }
    if (m_file.HasCheckValues())
        m_isAsSaved = row.HasValue(column) && IsCheckValue(row.Text(column));
}

quint64 DatabaseFile::Source::Sum()
{
    m_check.Clear();
    m_check.Add(m_rowId);
    AddFields();
    return m_check.Value();
}

qint64 DatabaseFile::Source::Number(int field) const
{
    const auto index = static_cast<size_t>(field);
    const SchemaField &definition = m_file.m_schema[index];
    if (definition.Type == FieldType::Currency)
        return m_numbers[index];
    const std::string_view text = m_texts[index];
    const std::optional<qint64> seconds = SecondsFromText(text);
    if (!seconds)
        RaiseStoreError(StoreErrors::BadRecord,
            u"The field %1 of record %2 holds no date (\"%3\"): %4"_s.arg(definition.Name,
                QString::number(m_rowId), QString::fromUtf8(text.data(), std::ssize(text)).left(40),
                m_file.m_fileName));
    return *seconds;
}

/// A record that another program wrote has none.
bool DatabaseFile::Source::IsCheckValue(std::string_view stored)
{
    m_check.Clear();
    AddFields();
    const CheckValue::Digits digits = m_check.Hexadecimal();
    return stored.empty() || stored == std::string_view(digits.data(), digits.size());
}

void DatabaseFile::Source::AddFields()
{
    for (size_t i = 0; i < m_texts.size(); ++i) {
        if (m_file.m_schema[i].Type == FieldType::Currency)
            m_check.Add(m_numbers[i]);
        else
            m_check.Add(m_texts[i]);
    }
}
