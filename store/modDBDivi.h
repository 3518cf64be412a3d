#pragma once

#include "store/clsTable.h"
#include "store/Records.h"

/// Reads the Divisions table of the current company.
class modDBDivi : public clsTable<DivisionRecord>
{
public:
    using clsTable::clsTable;

    /// The record under the cursor; false past the last one, and the structure is as it was.
    bool ReadDivision(DivisionRecord &record) const { return Read(record); }
};
