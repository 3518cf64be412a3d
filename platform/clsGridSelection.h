#pragma once

#include <QItemSelectionModel>
#include <QScopedValueRollback>

/// What is highlighted in a grid: one row or none, chosen by the program alone. A view moves its
/// selection by itself on presses, drags, keys, the arrival of the focus and what assistive
/// technology asks for; none of that has an effect here, because the highlighted row says which
/// record the program works on.
class clsGridSelection : public QItemSelectionModel
{
public:
    using QItemSelectionModel::QItemSelectionModel;

    /// An invalid index: no row.
    void Highlight(const QModelIndex &cell)
    {
        const QScopedValueRollback<bool> moving(m_moving, true);
        if (!cell.isValid()) {
            clear();
            return;
        }
        setCurrentIndex(cell, NoUpdate);
        select(cell, ClearAndSelect | Rows);
    }

    using QItemSelectionModel::select;
    void select(const QItemSelection &selection, SelectionFlags command) override
    {
        if (m_moving)
            QItemSelectionModel::select(selection, command);
    }
    void setCurrentIndex(const QModelIndex &index, SelectionFlags command) override
    {
        if (m_moving)
            QItemSelectionModel::setCurrentIndex(index, command);
    }
    void reset() override // other records
    {
        const QScopedValueRollback<bool> moving(m_moving, true);
        QItemSelectionModel::reset();
    }

private:
    bool m_moving = false;
};
