#pragma once

#include "exchange/CellRules.h"
#include "exchange/Csv.h"
#include "store/Records.h"

#include <QLatin1StringView>
#include <QString>

#include <variant>
#include <vector>

/// A column of a reference table's CSV file: its name, where its value goes, what it may hold.
template <class Record>
struct Column
{
    QLatin1StringView Name;
    std::variant<QString Record::*, Currency Record::*> Member;
    CellRule Rule;
};

/// A reference table: the name of its CSV file without extension, which is also what users call
/// it, the beginning of its database's name, and its columns. Key fields have no column.
template <class Record>
struct TableDefinition
{
    QString Name;
    QStringView Prefix; ///< of DatabasePrefix
    std::vector<Column<Record>> Columns;
};

namespace ReferenceTables {
const TableDefinition<CompanyRecord> &Company();
const TableDefinition<OptionsRecord> &Options();
const TableDefinition<EmployeeRecord> &Employee();
const TableDefinition<MultiplierRecord> &Multiplier();
const TableDefinition<DivisionRecord> &Divisions();
const TableDefinition<CustomerRecord> &Customers();
const TableDefinition<ProjectRecord> &Projects();
const TableDefinition<ActivityRecord> &Activities();
} // namespace ReferenceTables
