#include "platform/clsGrid.h"

#include "platform/DataLabel.h"
#include "platform/PlainToolTip.h"
#include "platform/Twips.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionHeaderV2>
#include <QtMath>
#include <QToolTip>

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

constexpr int PictureMarginPixels = 4;

/// What a cell's text leaves free at both sides, and the line beside the cell.
int CellMargins(const QWidget &grid)
{
    return 2 * (grid.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &grid) + 1) + 1;
}

/// Shows the text that a cell has too little room for; a cell that shows all of it has no tip.
void ShowWholeText(const QHelpEvent &help, bool isClipped, const QString &text, QWidget &viewport)
{
    if (isClipped)
        QToolTip::showText(help.globalPos(), PlainToolTip(text), &viewport);
    else
        QToolTip::hideText();
}

/// The widget's font, or a smaller one in which a date fits its column: the columns' widths are
/// fixed, for letters of eight points.
QFont GridFont(const QWidget &grid)
{
    constexpr int dateColumnTwips = 960 + 110; // the narrowest
    constexpr qreal leastPoints = 6;
    const int room = PixelsFromTwips(dateColumnTwips, grid) - CellMargins(grid);
    QFont font = grid.font();
    while (font.pointSizeF() > leastPoints
        && QFontMetrics(font).horizontalAdvance(u"00/00/0000"_s) > room)
        font.setPointSizeF(font.pointSizeF() - 0.5);
    return font;
}

} // namespace

/// Hands the record set's texts to the view, in the rows' current order.
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
            return m_arrows.value(section) == SortOrder::Ascending ? u"sorted, ascending"_s
                                                                   : u"sorted, descending"_s;
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

/// Row 0 of the grid: clicks are the grid's, and a cell can carry a picture at its right.
class clsGridHeader : public QHeaderView
{
public:
    explicit clsGridHeader(clsGrid *grid)
        : QHeaderView(Qt::Horizontal, grid)
        , m_grid(*grid)
    {
        setSectionsClickable(true);
        setHighlightSections(false);
        setTextElideMode(Qt::ElideRight);
        setMouseTracking(true);
        setSectionResizeMode(QHeaderView::Interactive);
    }

    void SetPicture(int section, const QPixmap &picture)
    {
        if (picture.isNull())
            m_pictures.remove(section);
        else
            m_pictures[section] = picture;
        viewport()->update();
    }
    void TakePictures() { m_pictures.clear(); }

protected:
    void paintSection(QPainter *painter, const QRect &rectangle, int section) const override
    {
        const QPixmap picture = m_pictures.value(section);
        if (picture.isNull()) {
            QHeaderView::paintSection(painter, rectangle, section);
            return;
        }
        const QSizeF size = picture.deviceIndependentSize();
        QStyleOptionHeaderV2 option;
        initStyleOption(&option);
        initStyleOptionForIndex(&option, section);
        option.rect = rectangle;
        painter->save();
        style()->drawControl(QStyle::CE_HeaderSection, &option, painter, this);
        // The text makes room for the picture, also in a column that is aligned to the right.
        const int room = PictureMarginPixels + qCeil(size.width());
        option.rect = style()
                          ->subElementRect(QStyle::SE_HeaderLabel, &option, this)
                          .adjusted(0, 0, -room, 0);
        option.text = fontMetrics().elidedText(option.text, Qt::ElideRight, option.rect.width());
        style()->drawControl(QStyle::CE_HeaderLabel, &option, painter, this);
        painter->restore();
        painter->drawPixmap(QPointF(rectangle.right() - PictureMarginPixels - size.width(),
                                rectangle.center().y() - size.height() / 2),
            picture);
    }
    bool viewportEvent(QEvent *event) override
    {
        if (event->type() == QEvent::ToolTip) {
            const auto &help = static_cast<QHelpEvent &>(*event);
            const int section = logicalIndexAt(help.pos());
            ShowWholeText(help, section >= 0 && IsClipped(section),
                model()->headerData(section, orientation(), Qt::EditRole).toString(), *viewport());
            return true;
        }
        if (event->type() == QEvent::MouseMove || event->type() == QEvent::MouseButtonPress) {
            const auto *mouse = static_cast<QMouseEvent *>(event);
            m_grid.MouseIsAt(0, logicalIndexAt(mouse->position().toPoint()));
        } else if (event->type() == QEvent::Leave) {
            m_grid.MouseIsAt(-1, -1);
        }
        return QHeaderView::viewportEvent(event);
    }

private:
    bool IsClipped(int section) const
    {
        const QString text = model()->headerData(section, orientation()).toString();
        const int margins = 2 * style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, this);
        const QPixmap picture = m_pictures.value(section);
        const int arrow = picture.isNull()
            ? 0
            : PictureMarginPixels + qCeil(picture.deviceIndependentSize().width());
        return fontMetrics().horizontalAdvance(text) > sectionSize(section) - margins - arrow;
    }

    clsGrid &m_grid;
    QHash<int, QPixmap> m_pictures;
};

clsGrid::clsGrid(QWidget *parent)
    : QTableView(parent)
    , m_model(new clsGridModel(this))
    , m_header(new clsGridHeader(this))
{
    setFont(GridFont(*this));
    setModel(m_model);
    setHorizontalHeader(m_header);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(0);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setMouseTracking(true);
    // Only a press that arrived here makes a click: the window may have refused it.
    connect(this, &QTableView::clicked, this, [this] {
        if (m_pressed)
            emit Click();
    });
    connect(m_header, &QHeaderView::sectionClicked, this, [this] { emit Click(); });
}

void clsGrid::SetDataSource(std::shared_ptr<const clsRecordSet> records)
{
    const int row = m_row;
    m_header->TakePictures();
    m_model->SetRecords(std::move(records));
    SetRow(std::clamp(row, 0, Rows() - 1));
}

int clsGrid::Rows() const
{
    return m_model->rowCount() + 1;
}

int clsGrid::Cols() const
{
    return m_model->columnCount();
}

QString clsGrid::TextMatrix(int row, int column) const
{
    if (row == 0)
        return m_model->headerData(column, Qt::Horizontal, Qt::EditRole).toString();
    return m_model->index(row - 1, column).data(Qt::EditRole).toString();
}

void clsGrid::SetRow(int row)
{
    m_row = row;
    if (row == 0)
        clearSelection();
    const QModelIndex index
        = row > 0 ? m_model->index(row - 1, std::max(columnAt(0), 0)) : QModelIndex();
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
}

void clsGrid::SetCol(int column)
{
    m_column = column;
    if (column == 0)
        clearSelection();
}

void clsGrid::SelectWholeRow()
{
    if (m_row > 0)
        selectRow(m_row - 1);
}

void clsGrid::SetTopRow(int row)
{
    if (row > 0)
        scrollTo(
            m_model->index(row - 1, std::max(columnAt(0), 0)), QAbstractItemView::PositionAtTop);
}

void clsGrid::SetColWidth(int column, int twips)
{
    setColumnHidden(column, twips == 0);
    if (twips > 0)
        setColumnWidth(column, PixelsFromTwips(twips, *this));
}

void clsGrid::SetColAlignment(int column, Qt::Alignment alignment)
{
    m_model->SetAlignment(column, alignment);
}

void clsGrid::SetArrowPictures(const QPixmap &up, const QPixmap &down)
{
    m_up = up;
    m_down = down;
}

void clsGrid::SetHeaderArrow(int column, std::optional<SortOrder> arrow)
{
    m_model->SetArrow(column, arrow);
    m_header->SetPicture(column,
        !arrow                               ? QPixmap()
            : *arrow == SortOrder::Ascending ? m_up
                                             : m_down);
}

void clsGrid::SetSelectionVisible(bool visible)
{
    QPalette colours;
    if (!visible) {
        colours.setColor(QPalette::Highlight, palette().color(QPalette::Base));
        colours.setColor(QPalette::HighlightedText, palette().color(QPalette::Text));
    }
    setPalette(colours);
}

void clsGrid::Sort(int column, SortOrder order)
{
    m_model->Sort(column, order);
}

void clsGrid::MouseIsAt(int row, int column)
{
    m_mouseRow = row;
    m_mouseColumn = column;
}

bool clsGrid::event(QEvent *event)
{
    const bool handled = QTableView::event(event);
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        update();
    } else if (event->type() == QEvent::Paint && hasFocus()) {
        QPainter painter(this);
        // Not the grid's own colour: without a selection that one is the background's.
        painter.setPen(window()->palette().color(QPalette::Highlight));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
    return handled;
}

bool clsGrid::IsClipped(const QModelIndex &index) const
{
    if (!index.isValid())
        return false;
    const int room = visualRect(index).intersected(viewport()->rect()).width();
    return fontMetrics().horizontalAdvance(index.data().toString()) > room - CellMargins(*this) + 1;
}

bool clsGrid::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto &help = static_cast<QHelpEvent &>(*event);
        const QModelIndex index = indexAt(help.pos());
        ShowWholeText(help, IsClipped(index), index.data(Qt::EditRole).toString(), *viewport());
        return true;
    }
    if (event->type() == QEvent::MouseMove || event->type() == QEvent::MouseButtonPress) {
        const QPoint at = static_cast<QMouseEvent *>(event)->position().toPoint();
        const int row = rowAt(at.y());
        MouseIsAt(row < 0 ? -1 : row + 1, columnAt(at.x()));
    } else if (event->type() == QEvent::Leave) {
        MouseIsAt(-1, -1);
    }
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick)
        m_pressed = true;
    const bool handled = QTableView::viewportEvent(event);
    if (event->type() == QEvent::MouseButtonRelease)
        m_pressed = false;
    return handled;
}

void clsGrid::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons() == Qt::NoButton)
        QTableView::mouseMoveEvent(event);
}

bool clsGrid::ClickHeading(int number)
{
    if (!m_header->sectionsClickable())
        return false;
    for (int column = 0; column < Cols(); ++column) {
        if (isColumnHidden(column) || --number > 0)
            continue;
        const int row = m_mouseRow;
        const int mouseColumn = m_mouseColumn;
        MouseIsAt(0, column);
        emit m_header->sectionClicked(column);
        MouseIsAt(row, mouseColumn);
        return true;
    }
    return false;
}

void clsGrid::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    // The mouse's click on a heading, for those who have none.
    const bool isDigit = key >= Qt::Key_1 && key <= Qt::Key_9;
    if (isDigit && event->modifiers() == Qt::ControlModifier && ClickHeading(key - Qt::Key_0))
        return;
    const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (key != Qt::Key_Up && key != Qt::Key_Down && !isEnter) {
        QTableView::keyPressEvent(event);
        return;
    }
    if (!isEnter && Rows() > 1) {
        SetRow(std::clamp(m_row + (key == Qt::Key_Down ? 1 : -1), 1, Rows() - 1));
        SelectWholeRow();
    }
    emit Click();
}

void clsGrid::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTableView::currentChanged(current, previous);
    if (current.isValid()) {
        m_row = current.row() + 1;
        m_column = current.column();
    }
}
