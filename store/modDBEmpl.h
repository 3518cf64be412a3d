#pragma once

#include "store/clsTable.h"
#include "store/Records.h"

/// Reads the one record of a company's Employee table: who uses this computer.
class modDBEmpl : public clsTable<EmployeeRecord>
{
public:
    using clsTable::clsTable;

    bool ReadEmployee(EmployeeRecord &record) const { return Read(record); }

    void LoadEmployee()
    {
        Record = EmployeeRecord(); // a table without a record is no employee, not the former one
        ReadEmployee(Record);
        Working = Record;
    }

    EmployeeRecord Working; ///< what the windows show
};
