#pragma once

#include "entry/EntryTexts.h"
#include "platform/clsRecordSet.h"
#include "platform/Currency.h"

#include <memory>
#include <vector>

/// The records of the entry list, with the fields of EntryColumn.
///
/// Shape: an entry is kept as numbers; its texts are made when somebody looks at them, which for a
///        long list are the few on the screen.
class EntryRecordset : public clsRecordSet
{
public:
    struct Row
    {
        qint64 Date = 0; ///< seconds, see FieldText.h
        Currency Hours;
        Currency Rate;
        Currency Amount;
        quint32 Position = 0; ///< of the record in the Entries table
        quint32 Customer = 0; ///< place of its text, like the next two
        quint32 Project = 0;
        quint32 Activity = 0;
        bool IsExpense = false;
        bool ShowsRate = false; ///< rate and amount are empty otherwise
    };

    /// `texts` may still grow; `decimalSign` is the system's.
    EntryRecordset(
        const QStringList &fieldNames, std::shared_ptr<const EntryTexts> texts, QChar decimalSign);

    void AddRecord(const Row &row) { m_rows.push_back(row); }
    void AddEmptyRecord() { m_emptyRecords = 1; } ///< after all others; its texts are empty

    int RecordCount() const override;
    QString Value(int record, int field) const override;
    std::vector<quint32> Ranks(int field) const override;

private:
    QString Text(const Row &row, int field) const;
    QString Number(Currency value, int decimals) const;

    std::shared_ptr<const EntryTexts> m_texts;
    QChar m_decimalSign;
    std::vector<Row> m_rows;
    int m_emptyRecords = 0;
};
