#pragma once

#include "store/clsTable.h"
#include "store/Records.h"

/// Reads the Customers table of the current company.
class modDBCust : public clsTable<CustomerRecord>
{
public:
    using clsTable::clsTable;

    /// The record under the cursor; false past the last one, and the structure is as it was.
    bool ReadCustomer(CustomerRecord &record) const { return Read(record); }
};
