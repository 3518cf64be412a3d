#pragma once

#include "store/clsTable.h"
#include "store/Records.h"

/// Reads and writes the Entries table of the current company.
///
/// Shape:  one EntryRecord a record.
/// Cursor: every call acts on the record under it.
/// Errors: when the store refuses a write the record under the cursor is as it was.
class modDBEntr : public clsTable<EntryRecord>
{
public:
    using clsTable::clsTable;

    bool ReadEntry(EntryRecord &record) const { return Read(record); } ///< false past the last one
    void WriteEntry(const EntryRecord &record) { Write(record); }
    void UpdateEntry(const EntryRecord &record) { Update(record); } ///< durable on return
    void AddEntry(const EntryRecord &record) { Add(record); } ///< appends, likewise
};
