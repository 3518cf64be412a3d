#pragma once

#include "store/clsTable.h"
#include "store/Records.h"

/// Reads and writes the one record of a company's Options table.
class modDBOpts : public clsTable<OptionsRecord>
{
public:
    using clsTable::clsTable;

    bool ReadOptions(OptionsRecord &record) const { return Read(record); }
    void WriteOptions(const OptionsRecord &record) { Write(record); }
    void UpdateOptions(const OptionsRecord &record) { Update(record); }

    /// Reads the record and copies it into `Working`, the accounting name without blanks around.
    void LoadOptions()
    {
        Record = OptionsRecord(); // a table without a record has no options, not the former ones
        ReadOptions(Record);
        Working = Record;
        Working.Accounting_Name = Working.Accounting_Name.trimmed();
    }

    OptionsRecord Working; ///< what the windows show and edit
};
