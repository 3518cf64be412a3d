#pragma once

#include "store/clsTable.h"
#include "store/Records.h"

/// Reads the Projects table of the current company.
class modDBProj : public clsTable<ProjectRecord>
{
public:
    using clsTable::clsTable;

    /// The record under the cursor; false past the last one, and the structure is as it was.
    bool ReadProject(ProjectRecord &record) const { return Read(record); }
};
