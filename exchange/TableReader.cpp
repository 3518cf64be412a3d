#include "exchange/TableReader.h"

#include "exchange/PrintableText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

std::vector<size_t> CellsOfColumns(CsvReader &csv, const QStringList &columns)
{
    if (!csv.ReadRecord())
        csv.Fail(u"the file has no header"_s);
    std::vector<size_t> cells(static_cast<size_t>(columns.size()), csv.CellCount());
    for (size_t cell = 0; cell < csv.CellCount(); ++cell) {
        const std::string_view text = csv.Cell(cell);
        const QString name = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
        const qsizetype column = columns.indexOf(name);
        if (column < 0)
            csv.Fail(u"the column "_s + QuotedCell(name) + u" is unknown"_s);
        size_t &place = cells[static_cast<size_t>(column)];
        if (place != csv.CellCount())
            csv.Fail(u"the column "_s + QuotedCell(name) + u" is there twice"_s);
        place = cell;
    }
    const auto missing = std::find(cells.begin(), cells.end(), csv.CellCount());
    if (missing != cells.end())
        csv.Fail(u"the column \""_s + columns[missing - cells.begin()] + u"\" is missing"_s);
    return cells;
}
