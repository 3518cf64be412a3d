#pragma once

#include <QString>
#include <QStringList>

#include <span>
#include <string>
#include <vector>

/// An in-memory set of records whose fields are all text; what a grid shows.
///
/// Shape: all texts lie in one buffer, record after record, so that a hundred thousand records
///        cost a handful of allocations.
class clsRecordSet
{
public:
    explicit clsRecordSet(const QStringList &fieldNames);

    int FieldCount() const { return static_cast<int>(m_names.size()); }
    const QString &FieldName(int field) const { return m_names.at(field); }
    int RecordCount() const;

    /// Appends a record; `values` has one text a field.
    void AddRecord(std::span<const QStringView> values);

    /// Valid until the next AddRecord.
    QStringView Value(int record, int field) const;

    /// Characters of the field's longest text, its name included.
    int LongestText(int field) const;

private:
    QStringList m_names;
    std::u16string m_text;
    std::vector<quint32> m_ends; // where each text ends in m_text
    std::vector<int> m_longest; // by field
};
