#include "platform/clsGrid.h"

#include "platform/clsGridModel.h"
#include "platform/clsGridSelection.h"
#include "platform/PlainToolTip.h"
#include "platform/Twips.h"

#include <QHash>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionHeaderV2>
#include <QtMath>
#include <QToolTip>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int PictureMarginPixels = 4;

/// What a cell's text leaves free at both sides, and the line beside the cell.
int CellMargins(const QWidget &grid)
{
    return 2 * (grid.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &grid) + 1) + 1;
}

/// The second press of two quick ones arrives as a double click.
bool TellsWhereTheMouseIs(const QEvent &event)
{
    return event.type() == QEvent::MouseMove || event.type() == QEvent::MouseButtonPress
        || event.type() == QEvent::MouseButtonDblClick;
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
    void mouseDoubleClickEvent(QMouseEvent *event) override
    {
        // Two quick clicks on a heading are two clicks: up and then down.
        QHeaderView::mouseDoubleClickEvent(event);
        mousePressEvent(event);
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
        if (TellsWhereTheMouseIs(*event)) {
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
    , m_selection(new clsGridSelection(m_model, this))
    , m_header(new clsGridHeader(this))
{
    setFont(GridFont(*this));
    setModel(m_model);
    delete selectionModel(); // the one that setModel made
    setHorizontalHeader(m_header);
    setSelectionModel(m_selection);
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
    setAutoScroll(false);
    setMouseTracking(true);
    connect(m_header, &QHeaderView::sectionClicked, this, [this] { emit Click(0); });
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
    if (row != m_row || row == 0)
        m_selection->Highlight({});
    m_row = row;
}

void clsGrid::SetCol(int column)
{
    m_column = column;
    if (column == 0)
        m_selection->Highlight({});
}

void clsGrid::SelectWholeRow()
{
    if (m_row == 0)
        return;
    const int column = isColumnHidden(m_column) ? std::max(columnAt(0), 0) : m_column;
    m_selection->Highlight(m_model->index(m_row - 1, column));
    ScrollToRow(m_row, QAbstractItemView::EnsureVisible);
}

void clsGrid::SetTopRow(int row)
{
    if (row > 0)
        ScrollToRow(row, QAbstractItemView::PositionAtTop);
}

void clsGrid::ScrollToRow(int row, ScrollHint hint)
{
    const int left = horizontalScrollBar()->value();
    scrollTo(m_model->index(row - 1, std::max(columnAt(0), 0)), hint);
    horizontalScrollBar()->setValue(left);
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
    if (TellsWhereTheMouseIs(*event)) {
        const QPoint at = static_cast<QMouseEvent *>(event)->position().toPoint();
        const int row = rowAt(at.y());
        MouseIsAt(row < 0 ? -1 : row + 1, columnAt(at.x()));
    } else if (event->type() == QEvent::Leave) {
        MouseIsAt(-1, -1);
    }
    return QTableView::viewportEvent(event);
}

int clsGrid::RowAt(const QMouseEvent &event) const
{
    return indexAt(event.position().toPoint()).row() + 1;
}

void clsGrid::mousePressEvent(QMouseEvent *event)
{
    m_clickedRow = 0;
    m_pressedRow = event->button() == Qt::LeftButton ? RowAt(*event) : 0;
}

void clsGrid::mouseDoubleClickEvent(QMouseEvent *event)
{
    // The second press on a row belongs to the click that has been reported. On another row it is
    // a press like any other one: two rows clicked quickly arrive in the same way.
    if (m_clickedRow == 0 || RowAt(*event) != m_clickedRow)
        mousePressEvent(event);
}

void clsGrid::mouseReleaseEvent(QMouseEvent *event)
{
    const int pressed = std::exchange(m_pressedRow, 0);
    if (event->button() != Qt::LeftButton || pressed == 0 || RowAt(*event) != pressed)
        return;
    m_clickedRow = pressed;
    m_column = columnAt(event->position().toPoint().x());
    emit Click(pressed);
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

std::optional<int> clsGrid::RowByKey(int key) const
{
    const int page = std::max(viewport()->height() / verticalHeader()->defaultSectionSize(), 1);
    switch (key) {
    case Qt::Key_Up:
        return m_row - 1;
    case Qt::Key_Down:
        return m_row + 1;
    case Qt::Key_PageUp:
        return m_row - page;
    case Qt::Key_PageDown:
        return m_row + page;
    case Qt::Key_Home:
        return 1;
    case Qt::Key_End:
        return Rows() - 1;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return m_row;
    default:
        return {};
    }
}

void clsGrid::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    // The mouse's click on a heading, for those who have none.
    const bool isDigit = key >= Qt::Key_1 && key <= Qt::Key_9;
    if (isDigit && event->modifiers() == Qt::ControlModifier && ClickHeading(key - Qt::Key_0))
        return;
    if (const std::optional<int> row = RowByKey(key)) {
        if (Rows() > 1)
            emit KeyClick(std::clamp(*row, 1, Rows() - 1));
    } else if (key == Qt::Key_Left) {
        horizontalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepSub);
    } else if (key == Qt::Key_Right) {
        horizontalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    } else if (event->matches(QKeySequence::Copy)) {
        QTableView::keyPressEvent(event);
    } else {
        event->ignore();
    }
}
