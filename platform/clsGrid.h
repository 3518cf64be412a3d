#pragma once

#include "platform/clsGridView.h"

#include <QHeaderView>
#include <QPixmap>
#include <QTableView>

class clsGridHeader;
class clsGridModel;

/// The grid on the screen. Written for 100,000 rows: there is no object per cell.
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
    /// The grid was clicked, or a heading by Control and its number, or Down, Up or Enter pressed
    /// in it (the row has then moved).
    void Click();

protected:
    bool event(QEvent *event) override; ///< the frame shows where the keys go
    bool viewportEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override; ///< dragging marks no other row
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;

private:
    friend class clsGridHeader;
    void MouseIsAt(int row, int column);
    bool IsClipped(const QModelIndex &index) const;
    bool ClickHeading(int number); ///< the visible columns count from 1; false without such a one

    clsGridModel *m_model;
    clsGridHeader *m_header;
    QPixmap m_up;
    QPixmap m_down;
    int m_row = 0;
    int m_column = 0;
    bool m_pressed = false; // the mouse went down in a row and has not come up again
    int m_mouseRow = -1;
    int m_mouseColumn = -1;
};
