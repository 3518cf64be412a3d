#pragma once

#include "exchange/PrintableText.h"
#include "exchange/ReferenceTables.h"

#include <QString>
#include <QStringList>

#include <vector>

/// The cell in which each of the columns stands.
///
/// Errors: naming file and line, for a file without a header, a missing, an unknown and a repeated
///         column. `csv` stands before its first record.
std::vector<size_t> CellsOfColumns(CsvReader &csv, const QStringList &columns);

/// Reads the CSV file of a reference table into records; key fields are left to the caller.
///
/// Errors: clsRunTimeError naming file, line and column: those of CsvReader and CellsOfColumns, a
///         record with another number of cells than the header, a value that its column may not
///         hold.
template <class Record>
class TableReader
{
public:
    TableReader(const QString &fileName, const TableDefinition<Record> &definition)
        : m_csv(fileName)
        , m_columns(definition.Columns)
        , m_cells(CellsOfColumns(m_csv, Names(definition.Columns)))
    {
    }

    /// False past the last record; the structure is then as it was.
    bool Read(Record &record)
    {
        if (!m_csv.ReadRecord())
            return false;
        if (m_csv.CellCount() != m_cells.size())
            m_csv.Fail(QStringLiteral("there are ") + QString::number(m_csv.CellCount())
                + QStringLiteral(" cells, but the header names ")
                + QString::number(m_cells.size()));
        for (size_t i = 0; i < m_columns.size(); ++i)
            Take(record, m_columns[i], m_csv.Cell(m_cells[i]));
        return true;
    }

    const CsvReader &Csv() const { return m_csv; }

private:
    static QStringList Names(const std::vector<Column<Record>> &columns)
    {
        QStringList names;
        for (const Column<Record> &column : columns)
            names.append(column.Name);
        return names;
    }

    void Take(Record &record, const Column<Record> &column, std::string_view cell) const
    {
        const QString text = QString::fromUtf8(cell.data(), static_cast<qsizetype>(cell.size()));
        if (const auto *amount = std::get_if<Currency Record::*>(&column.Member)) {
            const std::optional<Currency> value = AmountFromCell(text);
            if (!value)
                m_csv.Fail(column.Name + QStringLiteral(": ") + QuotedCell(text)
                    + QStringLiteral(" is no number from 0 to 999999999.9999 with \".\" and at "
                                     "most four decimals"));
            record.*(*amount) = *value;
            return;
        }
        const QString problem = column.Rule.Problem(text);
        if (!problem.isEmpty())
            m_csv.Fail(column.Name + QStringLiteral(": ") + problem);
        record.*std::get<QString Record::*>(column.Member) = text;
    }

    CsvReader m_csv;
    const std::vector<Column<Record>> &m_columns;
    std::vector<size_t> m_cells;
};
