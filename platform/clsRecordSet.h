#pragma once

#include <QString>
#include <QStringList>

#include <span>
#include <string>
#include <vector>

/// An in-memory set of records whose fields are all text; what a grid shows.
///
/// Shape: fields and records count from 0.
class clsRecordSet
{
public:
    explicit clsRecordSet(const QStringList &fieldNames)
        : m_names(fieldNames)
    {
    }
    virtual ~clsRecordSet() = default;

    int FieldCount() const { return static_cast<int>(m_names.size()); }
    const QString &FieldName(int field) const { return m_names.at(field); }

    virtual int RecordCount() const = 0;
    virtual QString Value(int record, int field) const = 0;

    /// The place of each record's value among all values of the field, see GenericRanks.
    virtual std::vector<quint32> Ranks(int field) const;

private:
    QStringList m_names;
};

/// Records that are handed over as texts.
///
/// Shape: all texts lie in one buffer, record after record, so that many records cost a handful of
///        allocations.
class clsTextRecordSet : public clsRecordSet
{
public:
    using clsRecordSet::clsRecordSet;

    /// Appends a record; `values` has one text a field.
    void AddRecord(std::span<const QStringView> values);

    int RecordCount() const override;
    QString Value(int record, int field) const override;

private:
    std::u16string m_text;
    std::vector<quint32> m_ends; // where each text ends in m_text
};
