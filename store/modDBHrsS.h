#pragma once

#include "store/clsTable.h"
#include "store/Records.h"

/// Reads and writes the scratch table of the hours summary, one record a day.
class modDBHrsS : public clsTable<HoursSummaryRecord>
{
public:
    using clsTable::clsTable;

    bool ReadHoursSummary(HoursSummaryRecord &record) const { return Read(record); }
    void WriteHoursSummary(const HoursSummaryRecord &record) { Write(record); }
    void UpdateHoursSummary(const HoursSummaryRecord &record) { Update(record); }
    void AddHoursSummary(const HoursSummaryRecord &record) { Add(record); }
};
