#pragma once

#include "store/clsTable.h"
#include "store/Records.h"

/// Reads the Multiplier table of the current company.
class modDBMult : public clsTable<MultiplierRecord>
{
public:
    using clsTable::clsTable;

    /// The record under the cursor; false past the last one, and the structure is as it was.
    bool ReadMultiplier(MultiplierRecord &record) const { return Read(record); }
};
