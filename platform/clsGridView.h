#pragma once

#include "platform/clsRecordSet.h"

#include <QString>

#include <memory>
#include <optional>

enum class SortOrder
{
    Ascending = 1,
    Descending = 2
};

/// A grid as the modules see it, without the widget.
///
/// Shape: rows are counted with the header as row 0, data rows from 1; columns are the record
///        set's fields in order. There is a current row and column. Only the current row can be
///        marked, as a whole; column 0 as the current column means that it is not.
/// Units: column widths are twips, at the screen's logical resolution.
class clsGridView
{
public:
    virtual ~clsGridView() = default;

    /// Shows other records in their own order, without arrows. The current row keeps its number,
    /// cut to the last one.
    virtual void SetDataSource(std::shared_ptr<const clsRecordSet> records) = 0;

    virtual int Rows() const = 0; ///< the header included
    virtual int Cols() const = 0;
    virtual QString TextMatrix(int row, int column) const = 0; ///< row 0: the header's text

    virtual int Row() const = 0;
    virtual void SetRow(int row) = 0; ///< another one is not marked yet
    virtual int Col() const = 0;
    virtual void SetCol(int column) = 0;
    virtual void SelectWholeRow() = 0; ///< marks the current row
    virtual void SetTopRow(int row) = 0;

    virtual void SetColWidth(int column, int twips) = 0; ///< 0 hides the column
    virtual void SetColAlignment(int column, Qt::Alignment alignment) = 0;
    /// The arrow picture at the right of a header cell; nothing takes it away.
    virtual void SetHeaderArrow(int column, std::optional<SortOrder> arrow) = 0;
    /// Off: a marked row looks like any other.
    virtual void SetSelectionVisible(bool visible) = 0;

    /// Orders the rows by a column's texts in their generic order (see GenericRanks), equal ones as
    /// they stood in the record set.
    virtual void Sort(int column, SortOrder order) = 0;

    /// What lies under the mouse: row 0 for the header, -1 outside of all rows.
    virtual int MouseRow() const = 0;
    virtual int MouseCol() const = 0;
};
