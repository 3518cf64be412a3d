#pragma once

#include <QString>
#include <QStringList>

#include <vector>

/// The invented companies of the sample installation, the same at every call.
///
/// Between them they have every flag in both its values, every default billing status, codes of
/// full length, names with letters, quotes and commas that try a reader, and rates at every level
/// that are zero and that are not. ABC lets its employee do everything, XYZ next to nothing.

/// A CSV file: its name without extension, its header, its records.
struct SampleTable
{
    QString Name;
    QStringList Header;
    std::vector<QStringList> Records;
};

SampleTable SampleCompanies();
std::vector<SampleTable> SampleTablesOfABC();
std::vector<SampleTable> SampleTablesOfXYZ();
