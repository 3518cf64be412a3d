#include "exchange/SampleData.h"

#include "exchange/ReferenceTables.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

template <class Record>
SampleTable EmptyTable(const TableDefinition<Record> &definition)
{
    SampleTable table{definition.Name, {}, {}};
    for (const Column<Record> &column : definition.Columns)
        table.Header.append(column.Name);
    return table;
}

QString Number(int value, int digits)
{
    return QString::number(value).rightJustified(digits, u'0');
}

QString YesEvery(int nth, int index)
{
    return index % nth == nth - 1 ? u"Y"_s : u"N"_s;
}

/// A rate for every `nth`, nothing for the others, which take the next level's.
QString RateEvery(int nth, int index, int base)
{
    if (index % nth != 0)
        return u"0"_s;
    return QString::number(base + index % 40) + (index % 2 == 0 ? u".5"_s : u".125"_s);
}

QString CustomerName(int index)
{
    static const std::array<QString, 12> places = {u"Alderbrook"_s, u"Brünnhof"_s, u"Cormorant"_s,
        u"Dunmere"_s, u"Évrault"_s, u"Fenwater"_s, u"Göstling"_s, u"Hollowell"_s, u"Ironquay"_s,
        u"Jørnstad"_s, u"Kestrel Row"_s, u"Łąkowa"_s};
    static const std::array<QString, 10> trades = {u"Instruments"_s, u"Foundry"_s, u"Paper Mills"_s,
        u"Logistics"_s, u"Dairy"_s, u"Timber & Sons"_s, u"Clinic"_s, u"Glassworks, Ltd."_s,
        u"\"Old Bridge\" Inn"_s, u"Garden Supply"_s};
    const auto at = static_cast<size_t>(index);
    return places[at % places.size()] + u' ' + trades[(at + at / 12) % trades.size()];
}

QString ProjectName(int index)
{
    static const std::array<QString, 11> works = {u"Ledger migration"_s, u"Payroll review"_s,
        u"Warehouse scanners"_s, u"Year-end closing"_s, u"Network renewal"_s, u"Staff training"_s,
        u"Audit preparation"_s, u"Price list import"_s, u"Café till system"_s, u"Branch opening"_s,
        u"Support retainer"_s};
    const auto at = static_cast<size_t>(index);
    return works[at % works.size()] + u" "_s + QString::number(index / 11 + 1);
}

QString CustomerCode(int index)
{
    return Number(100 + index * 10, 4);
}

/// Customers and their projects: 0100 and 1000 are the first.
void AddCustomers(
    SampleTable &customers, SampleTable &projects, int count, const QStringList &divisions)
{
    int project = 0;
    for (int i = 0; i < count; ++i) {
        customers.Records.push_back({CustomerCode(i), CustomerName(i),
            divisions[i % divisions.size()], YesEvery(9, i), RateEvery(3, i + 1, 80)});
        const int projectCount = i == 0 ? 4 : i % 6;
        for (int j = 0; j < projectCount; ++j, ++project)
            projects.Records.push_back({CustomerCode(i), Number(1000 + j * 100, 4),
                ProjectName(project), RateEvery(4, project + 1, 95)});
    }
    // As long as codes can be.
    customers.Records.push_back(
        {u"ZZ-FIFTEEN-LONG"_s, u"Zwölfender \"Zirkel\" Association"_s, QString(), u"N"_s, u"0"_s});
    projects.Records.push_back(
        {u"ZZ-FIFTEEN-LONG"_s, u"PROJECT-15-LONG"_s, u"Everything, at once"_s, u"99999.9999"_s});
}

SampleTable Activities()
{
    SampleTable table = EmptyTable(ReferenceTables::Activities());
    // Number, description, expense, no charge, rate, unit cost, default billing status
    table.Records = {
        {u"CONSULT"_s, u"Consulting"_s, u"N"_s, u"N"_s, u"120"_s, u"0"_s, u"1"_s},
        {u"DESIGN"_s, u"Design"_s, u"N"_s, u"N"_s, u"110.5"_s, u"0"_s, u"1"_s},
        {u"PROGRAM"_s, u"Programming"_s, u"N"_s, u"N"_s, u"0"_s, u"0"_s, u"1"_s},
        {u"TEST"_s, u"Testing"_s, u"N"_s, u"N"_s, u"0"_s, u"0"_s, QString()},
        {u"TRAIN"_s, u"Training on site"_s, u"N"_s, u"N"_s, u"98.75"_s, u"0"_s, u"1"_s},
        {u"SUPPORT"_s, u"Support by telephone"_s, u"N"_s, u"N"_s, u"75.125"_s, u"0"_s, u"1"_s},
        {u"WARRANTY"_s, u"Work under warranty"_s, u"N"_s, u"Y"_s, u"0"_s, u"0"_s, u"2"_s},
        {u"GOODWILL"_s, u"Goodwill"_s, u"N"_s, u"Y"_s, u"60"_s, u"0"_s, u"2"_s},
        {u"INTERNAL"_s, u"Internal meeting"_s, u"N"_s, u"N"_s, u"0"_s, u"0"_s, u"3"_s},
        {u"HOLIDAY"_s, u"Holiday"_s, u"N"_s, u"N"_s, u"0"_s, u"0"_s, u"3"_s},
        {u"SICK"_s, u"Sick leave"_s, u"N"_s, u"N"_s, u"0"_s, u"0"_s, u"3"_s},
        {u"RÉUNION"_s, u"Réunion chez le client"_s, u"N"_s, u"N"_s, u"0"_s, u"0"_s, u"1"_s},
        {u"WEG"_s, u"Wegezeit"_s, u"N"_s, u"N"_s, u"45"_s, u"0"_s, u"1"_s},
        {u"MEALS"_s, u"Meals"_s, u"Y"_s, u"N"_s, u"0"_s, u"1"_s, u"1"_s},
        {u"MILEAGE"_s, u"Mileage, own car"_s, u"Y"_s, u"N"_s, u"0"_s, u"0.425"_s, u"1"_s},
        {u"HOTEL"_s, u"Hotel"_s, u"Y"_s, u"N"_s, u"0"_s, u"0"_s, QString()},
        {u"PARKING"_s, u"Parking"_s, u"Y"_s, u"Y"_s, u"0"_s, u"2.5"_s, u"2"_s},
        {u"SUPPLIES"_s, u"Supplies (3\" binders, pens)"_s, u"Y"_s, u"N"_s, u"0"_s, u"4.9999"_s,
            u"3"_s},
    };
    return table;
}

SampleTable Multipliers()
{
    SampleTable table = EmptyTable(ReferenceTables::Multiplier());
    table.Records = {{u"01"_s, u"Regular time"_s, u"1"_s}, {u"02"_s, u"Overtime"_s, u"1.5"_s},
        {u"03"_s, u"Sunday and holiday"_s, u"2"_s}, {u"04"_s, u"Half rate"_s, u"0.5"_s},
        {u"FR"_s, u"Free of charge"_s, u"0"_s}, {u"X"_s, u"Express"_s, u"1.3333"_s}};
    return table;
}

SampleTable OneRecord(SampleTable table, const QStringList &record)
{
    table.Records = {record};
    return table;
}

} // namespace

SampleTable SampleCompanies()
{
    SampleTable table = EmptyTable(ReferenceTables::Company());
    table.Records = {{u"ABC"_s, u"Abernook Business Consulting"_s},
        {u"XYZ"_s, u"Xylander & Yðr Zürich, Surveyors"_s}};
    return table;
}

std::vector<SampleTable> SampleTablesOfABC()
{
    SampleTable divisions = EmptyTable(ReferenceTables::Divisions());
    divisions.Records = {{u"00"_s, u"Head office"_s, u"0"_s}, {u"01"_s, u"North"_s, u"88.5"_s},
        {u"02"_s, u"Süd"_s, u"92.25"_s}, {u"3"_s, u"Overseas"_s, u"140"_s}};
    SampleTable customers = EmptyTable(ReferenceTables::Customers());
    SampleTable projects = EmptyTable(ReferenceTables::Projects());
    AddCustomers(customers, projects, 72, {u"01"_s, u"02"_s, QString(), u"00"_s, u"3"_s});
    return {OneRecord(EmptyTable(ReferenceTables::Options()),
                {u"Customer"_s, u"Project"_s, u"Activity"_s, u"Employee"_s, u"1"_s, u"Y"_s, u"N"_s,
                    u"N"_s, u"Y"_s, u"Y"_s, u"Y"_s, u"N"_s, u"Sample Ledger"_s, u"0"_s}),
        OneRecord(EmptyTable(ReferenceTables::Employee()),
            {u"007"_s, u"Ada Brennwald"_s, u"Y"_s, u"N"_s, u"Y"_s, u"4"_s, u"84.5"_s}),
        Multipliers(), divisions, customers, projects, Activities()};
}

std::vector<SampleTable> SampleTablesOfXYZ()
{
    SampleTable divisions = EmptyTable(ReferenceTables::Divisions());
    divisions.Records
        = {{u"A1"_s, u"Städte und Gemeinden"_s, u"0"_s}, {u"B2"_s, u"Farmland"_s, u"65"_s}};
    SampleTable customers = EmptyTable(ReferenceTables::Customers());
    SampleTable projects = EmptyTable(ReferenceTables::Projects());
    AddCustomers(customers, projects, 30, {u"A1"_s, QString(), u"B2"_s});
    return {OneRecord(EmptyTable(ReferenceTables::Options()),
                {u"Client"_s, u"Job"_s, u"Task"_s, u"Surveyor"_s, u"2"_s, u"N"_s, u"Y"_s, u"Y"_s,
                    u"N"_s, u"N"_s, u"N"_s, u"Y"_s, u"Sample Ledger"_s, u"0"_s}),
        OneRecord(EmptyTable(ReferenceTables::Employee()),
            {u"Z9"_s, u"Iðunn Vögtli"_s, u"N"_s, u"Y"_s, u"N"_s, u"1"_s, u"0"_s}),
        Multipliers(), divisions, customers, projects, Activities()};
}
