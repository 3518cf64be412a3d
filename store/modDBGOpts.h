#pragma once

#include "store/clsTable.h"
#include "store/Records.h"

/// Reads and writes the one record of the GlobalOptions table.
///
/// Shape: `Record` is the record in memory. It is read when the table is opened, so that saving
///        one member keeps the others.
class modDBGOpts : public clsTable<GlobalOptionsRecord>
{
public:
    using clsTable::clsTable;

    /// The table stands open under `handle`, its cursor on the record if there is one.
    void TakeHandle(RecordStore::Handle handle);

    bool ReadGlobalOptions(GlobalOptionsRecord &record) const { return Read(record); }
    void WriteGlobalOptions(const GlobalOptionsRecord &record) { Write(record); }
    void UpdateGlobalOptions(const GlobalOptionsRecord &record) { Update(record); }
    void AddGlobalOptions(const GlobalOptionsRecord &record) { Add(record); }

    QString TakeLastCompany() const { return Record.Last_Company; }

    /// Writes the company last worked in; adds the record when the table has none yet.
    void SaveLastCompany(const QString &code);
};
