#pragma once

#include <QString>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// The texts of a field as numbers: equal texts have equal numbers, counted from 0 in the order in
/// which they came in. A number that was given out stays what it is; the texts only grow.
class TextNumbers
{
public:
    qint64 NumberFor(std::string_view text) ///< a text that is new gets the next number
    {
        const auto known = m_numbers.find(text);
        if (known != m_numbers.end())
            return known->second;
        const auto number = static_cast<qint64>(m_texts.size());
        m_texts.push_back(&m_numbers.emplace(text, number).first->first);
        return number;
    }
    /// Nothing when no record has ever had that text.
    std::optional<qint64> Find(const QString &text) const
    {
        const auto known = m_numbers.find(text.toStdString());
        if (known == m_numbers.end())
            return {};
        return known->second;
    }
    QString Text(qint64 number) const
    {
        return QString::fromStdString(*m_texts[static_cast<size_t>(number)]);
    }

private:
    struct Hash
    {
        using is_transparent = void;
        size_t operator()(std::string_view text) const
        {
            return std::hash<std::string_view>()(text);
        }
    };

    std::unordered_map<std::string, qint64, Hash, std::equal_to<>> m_numbers;
    std::vector<const std::string *> m_texts; // by number; they stand in m_numbers
};
