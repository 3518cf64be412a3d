#pragma once

#include "store/clsTable.h"
#include "store/Records.h"

#include <array>
#include <memory>

/// Places of the Entries fields that are read by their number.
namespace EntryField {
constexpr qint32 Customer_Number = 0;
constexpr qint32 Project_Number = 1;
constexpr qint32 Activity_Number = 2;
constexpr qint32 Date = 3;
constexpr qint32 Billing_Status = 4;
constexpr qint32 Hours = 12;
constexpr qint32 Rate = 13;
constexpr qint32 Amount = 14;
} // namespace EntryField

/// What lists and sums need of an entry, without its texts: a hundred thousand entries are read
/// in a few milliseconds. See RecordStore::ReadNumbers.
struct EntryNumbers
{
    qint64 Customer = 0; ///< the number of the code's text, like the next two
    qint64 Project = 0;
    qint64 Activity = 0;
    qint64 Date = 0; ///< seconds, see FieldText.h
    qint64 BillingStatus = 0; ///< the number of its text
    Currency Hours;
    Currency Rate;
    Currency Amount;
};

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

    EntryNumbers ReadNumbers() const
    {
        static constexpr std::array fields = {EntryField::Customer_Number,
            EntryField::Project_Number, EntryField::Activity_Number, EntryField::Date,
            EntryField::Billing_Status, EntryField::Hours, EntryField::Rate, EntryField::Amount};
        std::array<qint64, fields.size()> values = {};
        m_store.ReadNumbers(Handle, fields, values);
        const auto [customer, project, activity, date, status, hours, rate, amount] = values;
        return {customer, project, activity, date, status, Currency::FromScaled(hours),
            Currency::FromScaled(rate), Currency::FromScaled(amount)};
    }
    std::shared_ptr<const TextNumbers> NumbersOf(qint32 field) const
    {
        return m_store.NumbersOf(Handle, field);
    }

    /// Positions of entries that are not as they were saved.
    std::vector<qint32> DamagedEntries() { return m_store.DamagedRecords(Handle); }
};
