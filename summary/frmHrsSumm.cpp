#include "summary/frmHrsSumm.h"

#include "platform/ArrowPicture.h"
#include "platform/FormEvents.h"
#include "platform/Twips.h"
#include "summary/HoursColumn.h"
#include "summary/ui_frmHrsSumm.h"

#include <QScrollBar>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int GridMarginTwips = 240; // left and right of the grid together
constexpr double DialogToGridHeight = 1.32;
constexpr int RowsAtFirst = 12;
constexpr int TotalsGap = 4; // between two totals

/// The width in which the whole text is seen.
int WidthForText(const QLineEdit &box)
{
    constexpr int besideTheText = 5; // what the box keeps free at both sides, and the caret
    const QFontMetrics metrics = box.fontMetrics();
    const int frame = box.minimumSizeHint().width() - metrics.maxWidth();
    return metrics.horizontalAdvance(box.text()) + frame + besideTheText;
}

} // namespace

frmHrsSumm::frmHrsSumm(modHrsSumm &module, clsSendKeys &keys, QWidget *parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::frmHrsSumm>())
    , m_module(module)
    , m_keys(keys)
{
    ui->setupUi(this);
    DrawArrows();
    PrepareTotals();
    FitSize();
    m_module.SetGrid(ui->msgHrsSumm);
    ui->msgHrsSumm->installEventFilter(this);
    connect(ui->msgHrsSumm, &clsGrid::Click, this, [this](int row) {
        if (row > 0)
            MarkRow(row);
        m_module.GridClicked();
    });
    // A key in the grid is no click: it moves the marked row, and nothing else.
    connect(ui->msgHrsSumm, &clsGrid::KeyClick, this, &frmHrsSumm::MarkRow);
    const auto columnsMoved = [this] { PutTotalsUnderTheirColumns(); };
    connect(ui->msgHrsSumm->horizontalHeader(), &QHeaderView::sectionResized, this, columnsMoved);
    connect(ui->msgHrsSumm->horizontalScrollBar(), &QScrollBar::valueChanged, this, columnsMoved);
    connect(ui->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui->cmdHelp, &QPushButton::clicked, this, [this] { m_keys.SendKeys(u"{F1}"_s); });
}

frmHrsSumm::~frmHrsSumm()
{
    m_module.SetGrid(nullptr);
    m_module.Unload();
}

void frmHrsSumm::DrawArrows()
{
    ui->picUp->setPixmap(ArrowPicture(*this, SortOrder::Ascending));
    ui->picDown->setPixmap(ArrowPicture(*this, SortOrder::Descending));
    ui->msgHrsSumm->SetArrowPictures(ui->picUp->pixmap(), ui->picDown->pixmap());
}

std::array<QLineEdit *, 5> frmHrsSumm::TotalBoxes() const
{
    return {ui->txtBillable, ui->txtNoCharge, ui->txtDoNotBill, ui->txtTotHours, ui->txtAmount};
}

void frmHrsSumm::PrepareTotals()
{
    for (QLineEdit *box : TotalBoxes()) {
        box->setFont(ui->msgHrsSumm->font()); // the columns have fixed widths
        box->installEventFilter(this);
    }
    ui->wgtTotals->setFixedHeight(
        std::max(ui->txtBillable->sizeHint().height(), ui->lblTotals->sizeHint().height()));
}

int frmHrsSumm::PutTotalsUnderTheirColumns()
{
    const clsGrid &grid = *ui->msgHrsSumm;
    const int columns = grid.viewport()->mapTo(this, QPoint()).x() - ui->wgtBelow->x();
    const auto rightOf = [&](int column) {
        return columns + grid.columnViewportPosition(column) + grid.columnWidth(column);
    };
    const int height = ui->wgtTotals->height();
    int right = std::max(rightOf(HoursColumn::Date), ui->lblTotals->sizeHint().width());
    ui->lblTotals->setGeometry(0, 0, right, height);
    int column = HoursColumn::Billable;
    for (QLineEdit *box : TotalBoxes()) {
        // A total that is wider than its column is shown whole, and moves those after it.
        const int left = right + TotalsGap;
        right = std::max(rightOf(column++), left + WidthForText(*box));
        box->setGeometry(left, 0, right - left, height);
    }
    return right;
}

void frmHrsSumm::FitSize()
{
    // What the grid leaves has to hold the totals and the buttons, however large the letters are.
    const double leftShare = 1 - 1 / DialogToGridHeight;
    const int columns = PixelsFromTwips(HoursColumn::DateTwips + HoursColumn::ExtraTwips, *this)
        + 5 * PixelsFromTwips(HoursColumn::NumberTwips + HoursColumn::ExtraTwips, *this);
    const int width = PixelsFromTwips(GridMarginTwips, *this) + columns
        + 2 * ui->msgHrsSumm->frameWidth()
        + ui->msgHrsSumm->verticalScrollBar()->sizeHint().width();
    const int below
        = PixelsFromTwips(GridMarginTwips / 2, *this) + ui->wgtBelow->minimumSizeHint().height();
    const int rows = (RowsAtFirst + 1) * ui->msgHrsSumm->verticalHeader()->defaultSectionSize();
    setMinimumSize(width, static_cast<int>(std::ceil(below / leftShare)));
    resize(width, std::max(minimumHeight(), static_cast<int>(rows * DialogToGridHeight)));
}

void frmHrsSumm::Load()
{
    m_module.BuildHoursSummary();
    Render();
}

void frmHrsSumm::Render()
{
    const HoursTotals &totals = m_module.Totals();
    ui->txtBillable->setText(HoursText(totals.Billable));
    ui->txtNoCharge->setText(HoursText(totals.NoCharge));
    ui->txtDoNotBill->setText(HoursText(totals.DoNotBill));
    ui->txtTotHours->setText(HoursText(totals.TotalHours));
    ui->txtAmount->setText(HoursText(totals.Amount));
    for (QLineEdit *box : TotalBoxes())
        DrawBackground(*box, true);
    const int margins = PixelsFromTwips(GridMarginTwips, *this);
    setMinimumWidth(std::max(minimumWidth(), PutTotalsUnderTheirColumns() + margins));
}

void frmHrsSumm::MarkRow(int row)
{
    ui->msgHrsSumm->SetRow(row);
    ui->msgHrsSumm->SelectWholeRow();
}

void frmHrsSumm::done(int result)
{
    m_module.Unload();
    QDialog::done(result);
}

bool frmHrsSumm::event(QEvent *event)
{
    if (event->type() == QEvent::WindowActivate)
        ui->cmdOK->setFocus(Qt::ActiveWindowFocusReason);
    else if (event->type() == QEvent::ApplicationPaletteChange)
        Render();
    return QDialog::event(event);
}

bool frmHrsSumm::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == ui->msgHrsSumm && event->type() == QEvent::FocusIn) {
        m_module.GridGotFocus();
        ui->msgHrsSumm->SelectWholeRow();
    }
    if (watched != ui->msgHrsSumm && event->type() == QEvent::KeyPress
        && IsEnter(static_cast<QKeyEvent &>(*event))) {
        m_keys.SendKeys(u"{TAB}"_s);
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void frmHrsSumm::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    if (height() == 0)
        return;
    const int margin = PixelsFromTwips(GridMarginTwips / 2, *this);
    const int gridWidth = width() - PixelsFromTwips(GridMarginTwips, *this);
    const int gridHeight = static_cast<int>(height() / DialogToGridHeight);
    ui->msgHrsSumm->setGeometry(margin, margin, gridWidth, gridHeight);
    const int below = margin + gridHeight;
    ui->wgtBelow->setGeometry(margin, below, gridWidth, height() - below);
    PutTotalsUnderTheirColumns();
}
