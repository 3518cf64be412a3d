#pragma once

#include "store/CheckValue.h"
#include "store/DatabaseFile.h"

#include <string_view>
#include <vector>

/// The values of the current row, taken out of SQLite once.
class DatabaseFile::Source final : public RowSource
{
public:
    explicit Source(const DatabaseFile &file); // outlives it

    /// The row that the columns of ReadColumns() give.
    void Take(const Statement &row);
    quint64 Sum(); ///< see ContentDigest

    qint64 RowId() const override { return m_rowId; }
    std::string_view Text(int field) const override { return m_texts[static_cast<size_t>(field)]; }
    qint64 Number(int field) const override;
    bool IsAsSaved() const override { return m_isAsSaved; }

private:
    bool IsCheckValue(std::string_view stored);
    void AddFields();

    const DatabaseFile &m_file;
    qint64 m_rowId = 0;
    std::vector<std::string_view> m_texts;
    std::vector<qint64> m_numbers;
    CheckValue m_check;
    bool m_isAsSaved = true;
};
