#pragma once

#include "platform/clsGridView.h"
#include "platform/DataLabel.h"

#include <QAbstractTableModel>
#include <QHash>

#include <algorithm>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

/// The record set's texts as the view reads them, in the rows' current order.
class clsGridModel : public QAbstractTableModel
{
public:
    using QAbstractTableModel::QAbstractTableModel;

    void SetRecords(std::shared_ptr<const clsRecordSet> records)
    {
        beginResetModel();
        m_records = std::move(records);
        m_arrows.clear();
        m_order.resize(m_records ? static_cast<size_t>(m_records->RecordCount()) : 0);
        std::iota(m_order.begin(), m_order.end(), 0);
        endResetModel();
    }

    /// What a heading says to those who do not see its arrow.
    void SetArrow(int column, std::optional<SortOrder> arrow)
    {
        if (arrow)
            m_arrows[column] = *arrow;
        else
            m_arrows.remove(column);
        if (column >= 0 && column < columnCount())
            emit headerDataChanged(Qt::Horizontal, column, column);
    }

    void SetAlignment(int column, Qt::Alignment alignment) { m_alignments[column] = alignment; }

    void Sort(int column, SortOrder order)
    {
        // Ranks are counted, not compared: equal values keep the order of the record set.
        std::vector<quint32> ranks = m_records->Ranks(column);
        if (ranks.empty())
            return;
        const quint32 last = *std::max_element(ranks.begin(), ranks.end());
        if (order == SortOrder::Descending)
            std::transform(ranks.begin(), ranks.end(), ranks.begin(),
                [&](quint32 rank) { return last - rank; });
        std::vector<size_t> begins(size_t(last) + 2); // by rank: the first of its rows
        for (const quint32 rank : ranks)
            ++begins[rank + 1];
        std::partial_sum(begins.begin(), begins.end(), begins.begin());
        for (size_t record = 0; record < ranks.size(); ++record)
            m_order[begins[ranks[record]]++] = static_cast<int>(record);
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    }

    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_order.size());
    }
    int columnCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() || !m_records ? 0 : m_records->FieldCount();
    }
    QVariant data(const QModelIndex &index, int role) const override
    {
        if (!index.isValid())
            return {};
        if (role == Qt::DisplayRole || role == Qt::EditRole)
            return For(
                role, m_records->Value(m_order[static_cast<size_t>(index.row())], index.column()));
        if (role == Qt::TextAlignmentRole)
            return QVariant::fromValue(AlignmentOf(index.column()));
        return {};
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        if (orientation != Qt::Horizontal || section >= columnCount())
            return {};
        if (role == Qt::DisplayRole || role == Qt::EditRole)
            return For(role, m_records->FieldName(section));
        if (role == Qt::TextAlignmentRole)
            return QVariant::fromValue(AlignmentOf(section));
        if (role == Qt::AccessibleDescriptionRole && m_arrows.contains(section))
            return m_arrows.value(section) == SortOrder::Ascending
                ? QStringLiteral("sorted, ascending")
                : QStringLiteral("sorted, descending");
        return {};
    }

private:
    /// What is painted is no longer than can be looked at; Qt::EditRole is the whole text.
    static QString For(int role, const QString &text)
    {
        return role == Qt::EditRole ? text : text.left(MostCharactersShown);
    }
    Qt::Alignment AlignmentOf(int column) const
    {
        return m_alignments.value(column, Qt::AlignLeft | Qt::AlignVCenter);
    }

    std::shared_ptr<const clsRecordSet> m_records;
    std::vector<int> m_order; // the record of each row
    QHash<int, Qt::Alignment> m_alignments;
    QHash<int, SortOrder> m_arrows;
};
