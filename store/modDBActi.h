#pragma once

#include "store/clsTable.h"
#include "store/Records.h"

/// Reads the Activities table of the current company.
class modDBActi : public clsTable<ActivityRecord>
{
public:
    using clsTable::clsTable;

    /// The record under the cursor; false past the last one, and the structure is as it was.
    bool ReadActivity(ActivityRecord &record) const { return Read(record); }
};
