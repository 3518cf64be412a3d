#pragma once

#include "platform/clsGridView.h"

#include <QHeaderView>
#include <QPixmap>
#include <QTableView>

class clsGridHeader;
class clsGridModel;
class clsGridSelection;

/// The grid on the screen. Written for 100,000 rows: there is no object per cell.
///
/// Clicks and keys only report which row they lead to; the current row and the highlighted one are
/// moved by the program alone.
class clsGrid : public QTableView, public clsGridView
{
    Q_OBJECT

public:
    explicit clsGrid(QWidget *parent = nullptr);

    /// The pictures that SetHeaderArrow shows.
    void SetArrowPictures(const QPixmap &up, const QPixmap &down);

    void SetDataSource(std::shared_ptr<const clsRecordSet> records) override;
    int Rows() const override;
    int Cols() const override;
    QString TextMatrix(int row, int column) const override;
    int Row() const override { return m_row; }
    void SetRow(int row) override;
    int Col() const override { return m_column; }
    void SetCol(int column) override;
    void SelectWholeRow() override;
    void SetTopRow(int row) override;
    void SetColWidth(int column, int twips) override;
    void SetColAlignment(int column, Qt::Alignment alignment) override;
    void SetHeaderArrow(int column, std::optional<SortOrder> arrow) override;
    void SetSelectionVisible(bool visible) override;
    void Sort(int column, SortOrder order) override;
    int MouseRow() const override { return m_mouseRow; }
    int MouseCol() const override { return m_mouseColumn; }

signals:
    /// The left button was pressed and released in one row. Row 0: in a heading, or Control and
    /// its number were pressed; MouseCol is its column.
    void Click(int row);
    /// Up, Down, Page Up, Page Down, Home or End leads to that row, or Enter was pressed in it.
    void KeyClick(int row);

protected:
    bool event(QEvent *event) override; ///< the frame shows where the keys go
    bool viewportEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *) override { } ///< dragging marks no other row
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    friend class clsGridHeader;
    void MouseIsAt(int row, int column);
    bool IsClipped(const QModelIndex &index) const;
    bool ClickHeading(int number); ///< the visible columns count from 1; false without such a one
    int RowAt(const QMouseEvent &event) const; ///< 0: beside the cells
    std::optional<int> RowByKey(int key) const; ///< which need not be there
    void ScrollToRow(int row, ScrollHint hint); ///< up or down only

    clsGridModel *m_model;
    clsGridSelection *m_selection;
    clsGridHeader *m_header;
    QPixmap m_up;
    QPixmap m_down;
    int m_row = 0;
    int m_column = 0;
    int m_pressedRow = 0; // where the left button went down; 0: not in a row, or it is up
    int m_clickedRow = 0; // by the last press; 0: by none
    int m_mouseRow = -1;
    int m_mouseColumn = -1;
};
