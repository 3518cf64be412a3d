// Times the pieces that the windows are built of, each by itself, with Google Benchmark.
//
// Called as `pieces`, with the options of Google Benchmark.

#include "entry/clsM90Mask.h"
#include "exchange/Csv.h"
#include "platform/Currency.h"
#include "store/FieldText.h"
#include "store/PadKey.h"
#include "store/Tables.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QTemporaryDir>

#include <random>

using namespace Qt::StringLiterals;

namespace {

/// A folder with a Customers database of so many records, opened.
class CustomerTable
{
public:
    explicit CustomerTable(qint64 records)
        : m_tables(m_folder.path())
        , Customers(m_tables.Customers)
    {
        m_tables.Main.StoreTheCodes({u"WkLg"_s, u"KVLM"_s, u"DATA"_s});
        RecordStore &store = m_tables.Store;
        const RecordStore::Handle made
            = store.CreateDatabase(m_folder.filePath(Name), CodeNumber(u"DATA"_s), Creator);
        store.CreateTable(made, Name, CustomerRecord::SchemaText.toString());
        {
            RecordStore::Batch batch(store, made);
            StoredRow row;
            for (qint64 i = 0; i < records; ++i) {
                CustomerRecord customer;
                customer.Customer_Number = CodeOf(i);
                customer.Customer_Key = PadKey(customer.Customer_Number, KeyWidth::Customer);
                customer.Customer_Name = NameOf(i, records);
                RecordStore::PutRow(row, customer);
                store.AppendRow(made, row);
            }
            batch.Commit();
        }
        store.CloseDatabase(made);
        Open();
    }

    void Open() { Customers.Handle = m_tables.Main.OpenTable(Name); }
    void Close() { Customers.Handle = m_tables.Main.CloseTable(Customers.Handle); }
    RecordStore &Store() { return m_tables.Store; }

    /// Codes in an order that has nothing to do with that of the table.
    static std::vector<QString> Wanted(qint64 records)
    {
        std::mt19937 engine(7);
        std::vector<QString> keys;
        for (int i = 0; i < 4096; ++i)
            keys.push_back(
                PadKey(CodeOf(static_cast<qint64>(engine()) % records), KeyWidth::Customer));
        return keys;
    }

private:
    /// Many begin alike, and their order has nothing to do with that of the codes.
    static QString NameOf(qint64 number, qint64 records)
    {
        static const QStringList words = {u"Alder"_s, u"Brook"_s, u"Elm"_s, u"Fenwick"_s,
            u"Juniper"_s, u"Kestrel"_s, u"Thistle"_s};
        return words[number * 5 % words.size()] + u" Partners "_s + CodeOf(number * 7919 % records);
    }
    static QString CodeOf(qint64 number) { return u"C%1"_s.arg(number, 7, 10, QChar(u'0')); }

    const quint32 Creator = CodeNumber(u"WkLg"_s);
    const QString Name = u"Pieces"_s;
    QTemporaryDir m_folder;
    Tables m_tables;

public:
    modDBCust &Customers;
};

void OpenTable(benchmark::State &state)
{
    CustomerTable table(10);
    for (auto step : state) {
        table.Close();
        table.Open();
    }
}
BENCHMARK(OpenTable)->Unit(benchmark::kMicrosecond);

void LoadTable(benchmark::State &state)
{
    CustomerTable table(state.range(0));
    for (auto step : state) {
        table.Close();
        table.Open();
        table.Customers.MoveFirst();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(LoadTable)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void FindRecord(benchmark::State &state)
{
    CustomerTable table(state.range(0));
    const std::vector<QString> wanted = CustomerTable::Wanted(state.range(0));
    table.Customers.Find(0, wanted.front());
    size_t next = 0;
    for (auto step : state)
        benchmark::DoNotOptimize(table.Customers.Find(0, wanted[next++ % wanted.size()]));
}
BENCHMARK(FindRecord)->Arg(10000)->Arg(100000)->Arg(1000000);

void ReorderTable(benchmark::State &state)
{
    CustomerTable table(state.range(0));
    table.Customers.MoveFirst();
    for (auto step : state) {
        table.Store().SortTable(table.Customers.Handle, u"2"_s);
        table.Store().SortTable(table.Customers.Handle, u"0"_s);
    }
}
BENCHMARK(ReorderTable)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void FirstSortByName(benchmark::State &state)
{
    CustomerTable table(state.range(0));
    for (auto step : state) {
        state.PauseTiming();
        table.Close();
        table.Open();
        table.Customers.MoveFirst();
        state.ResumeTiming();
        table.Store().SortTable(table.Customers.Handle, u"2"_s);
    }
}
BENCHMARK(FirstSortByName)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

void ReadRecord(benchmark::State &state)
{
    CustomerTable table(1000);
    table.Customers.MoveFirst();
    for (auto step : state) {
        table.Customers.MoveNext();
        if (table.Customers.IsEndOfTable())
            table.Customers.MoveFirst();
        benchmark::DoNotOptimize(table.Customers.ReadCustomer(table.Customers.Record));
    }
}
BENCHMARK(ReadRecord);

void ReadCsv(benchmark::State &state)
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(u"many.csv"_s);
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly))
        state.SkipWithError("no file");
    for (int i = 0; i < 10000; ++i)
        file.write("C0000001,\"Planning, and \"\"more\"\"\",P0000001,125.75\r\n");
    file.close();
    for (auto step : state) {
        CsvReader csv(name);
        while (csv.ReadRecord())
            benchmark::DoNotOptimize(csv.CellCount());
    }
    state.SetBytesProcessed(state.iterations() * file.size());
}
BENCHMARK(ReadCsv)->Unit(benchmark::kMillisecond);

void FormatAmount(benchmark::State &state)
{
    const Currency amount = Currency::FromScaled(12345675);
    for (auto step : state)
        benchmark::DoNotOptimize(FormatCurrency(amount, 2, LeadingZero::Yes));
}
BENCHMARK(FormatAmount);

void TypedNumber(benchmark::State &state)
{
    clsM90Mask mask;
    mask.SetMask(6, 2);
    for (auto step : state)
        benchmark::DoNotOptimize(mask.gVerify_Change(u"1234.5"_s, 6));
}
BENCHMARK(TypedNumber);

void CompareNames(benchmark::State &state)
{
    for (auto step : state)
        benchmark::DoNotOptimize(
            CompareTexts("The customer with the number 1", "THE CUSTOMER with the number 2"));
}
BENCHMARK(CompareNames);

} // namespace

BENCHMARK_MAIN();
