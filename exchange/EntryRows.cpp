#include "exchange/EntryRows.h"

#include "exchange/Csv.h"
#include "store/FieldText.h"
#include "store/Schema.h"

#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// The file is the client's own, and a description has the length that the user gave it.
constexpr size_t MaxEntryCellBytes = 64 * 1024 * 1024;

std::string CellText(const QString &value)
{
    return Utf8(value);
}

std::string CellText(const QDateTime &value)
{
    return DateText(SecondsFromDate(value));
}

std::string CellText(Currency value)
{
    return FormatCurrency(value, 4, LeadingZero::Yes).toStdString();
}

std::vector<std::string> FieldNames()
{
    std::vector<std::string> names;
    for (const SchemaField &field : ParseSchema(EntryRecord::SchemaText))
        names.push_back(field.Name.toStdString());
    return names;
}

std::string LineOf(const CsvReader &csv)
{
    std::vector<std::string> cells;
    for (size_t i = 0; i < csv.CellCount(); ++i)
        cells.emplace_back(csv.Cell(i));
    return CsvLine(cells);
}

} // namespace

std::string EntryHeader()
{
    return CsvLine(FieldNames());
}

std::string EntryLine(const EntryRecord &entry)
{
    std::vector<std::string> cells;
    std::apply(
        [&](const auto &...field) { (cells.push_back(CellText(field)), ...); }, entry.Fields());
    return CsvLine(cells);
}

EntryLines ReadEntryLines(const QString &fileName)
{
    const std::string header = EntryHeader();
    CsvReader csv(fileName, MaxEntryCellBytes);
    if (!csv.ReadRecord() || LineOf(csv) != header)
        csv.Fail(u"the file does not begin with the names of the nineteen entry fields"_s);
    const size_t fields = csv.CellCount();
    EntryLines lines;
    while (csv.ReadRecord()) {
        if (csv.CellCount() != fields)
            csv.Fail(u"there are "_s + QString::number(csv.CellCount()) + u" cells, not "_s
                + QString::number(fields));
        ++lines[LineOf(csv)];
    }
    return lines;
}
