#include "exchange/Csv.h"
#include "platform/clsRunTimeError.h"
#include "tests/fuzz/Fuzz.h"

#include <vector>

using namespace Qt::StringLiterals;

namespace {

using Records = std::vector<std::vector<std::string>>;

Records AllRecords(const QString &path)
{
    Records records;
    CsvReader csv(path);
    while (csv.ReadRecord()) {
        records.emplace_back();
        for (size_t i = 0; i < csv.CellCount(); ++i)
            records.back().emplace_back(csv.Cell(i));
    }
    return records;
}

} // namespace

/// A CSV file: what is read and written again reads the same, what is refused is named.
int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString path = FuzzFile(u"Customers.csv"_s, BytesOf(data, size));
    Records records;
    try {
        records = AllRecords(path);
    } catch (const clsRunTimeError &error) {
        FUZZ_EXPECT(error.Description().contains(path));
        return 0;
    }
    std::string written;
    for (const std::vector<std::string> &cells : records)
        written += CsvLine(cells);
    FUZZ_EXPECT(
        AllRecords(FuzzFile(u"Again.csv"_s, QByteArray::fromStdString(written))) == records);
    return 0;
}
