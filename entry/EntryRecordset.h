#pragma once

#include "figures/EntryTexts.h"
#include "platform/clsRecordSet.h"
#include "platform/Currency.h"

#include <memory>
#include <optional>
#include <vector>

/// The records of the entry list, with the fields of EntryColumn.
///
/// Shape: an entry is kept as numbers; its texts are found and made when somebody looks at them,
///        which for a long list are the few on the screen.
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
        quint32 Customer = 0; ///< number of the code's text, like the next two
        quint32 Project = 0;
        quint32 Activity = 0;
        bool IsExpense = false;
        bool ShowsRate = false; ///< rate and amount are empty otherwise
    };

    /// `customerBefore` is the name of the customer that was read last, `decimalSign` the system's.
    EntryRecordset(const QStringList &fieldNames, std::shared_ptr<EntryTexts> texts,
        const QString &customerBefore, QChar decimalSign);

    void AddRecord(const Row &row) { m_rows.push_back(row); }
    void AddEmptyRecord() { m_emptyRecords = 1; } ///< after all others; its texts are empty

    /// The number of the last customer for whom a record is read; nothing when there is none.
    std::optional<qint64> LastCustomer() const;

    int RecordCount() const override;
    QString Value(int record, int field) const override;
    std::vector<quint32> Ranks(int field) const override;

private:
    /// The row whose customer's name is shown for a row: past the last customer none is read, and
    /// the name of the entry before stands. Nothing when no entry has one.
    std::optional<size_t> CustomerRow(size_t row) const;
    QString CustomerText(size_t row) const;
    QString Text(size_t row, int field) const;
    QString Number(Currency value, int decimals) const;

    std::vector<quint32> RanksOfCustomers() const;
    std::vector<quint32> RanksOfTypes() const;

    std::shared_ptr<EntryTexts> m_texts;
    QString m_customerBefore;
    QChar m_decimalSign;
    std::vector<Row> m_rows;
    int m_emptyRecords = 0;
};
