#include "lookup/frmLookup.h"

#include "lookup/ui_frmLookup.h"
#include "platform/clsRunTimeError.h"
#include "platform/DataLabel.h"
#include "platform/FieldWidth.h"
#include "platform/FormEvents.h"
#include "platform/PlainToolTip.h"
#include "platform/Twips.h"

#include <QAbstractItemView>
#include <QHeaderView>
#include <QMouseEvent>
#include <QSignalBlocker>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int GridMarginTwips = 240; // left and right of the grid together
constexpr double WindowToGridHeight = 1.35;
constexpr int WidestListTwips = 1600 + 3735 + 2425 + 3 * 110;
constexpr int FullPageRows = 11;

std::optional<LookupPaging> PagingOf(int key)
{
    switch (key) {
    case Qt::Key_Up:
        return LookupPaging::Up;
    case Qt::Key_Down:
        return LookupPaging::Down;
    case Qt::Key_PageUp:
        return LookupPaging::PageUp;
    case Qt::Key_PageDown:
        return LookupPaging::PageDown;
    default:
        return {};
    }
}

bool TypesALetter(const QKeyEvent &event)
{
    return !event.text().isEmpty() && event.text().at(0).isPrint() && event.key() != Qt::Key_Space
        && !event.modifiers().testFlag(Qt::ControlModifier);
}

} // namespace

frmLookup::frmLookup(modLookup &module, clsMessageBox &messages, clsSendKeys &keys, QWidget *parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::frmLookup>())
    , m_mod(module)
    , m_messages(messages)
    , m_keys(keys)
{
    ui->setupUi(this);
    ui->msgLookup->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    ui->msgLookup->horizontalHeader()->setSectionsClickable(false); // a click there does nothing
    ui->scrLookup->raise();
    SetSmallestSize();
    ConnectControls();
    m_mod.SetGrid(ui->msgLookup);
}

frmLookup::~frmLookup()
{
    m_mod.SetGrid(nullptr);
}

void frmLookup::SetSmallestSize()
{
    // A page and its header always fit, so that the scroll bar beside the grid is the only one.
    const clsGrid &grid = *ui->msgLookup;
    const int frame = 2 * grid.frameWidth();
    const int columns = PixelsFromTwips(WidestListTwips, *this) + frame;
    const int page = grid.horizontalHeader()->sizeHint().height()
        + FullPageRows * grid.verticalHeader()->defaultSectionSize() + frame;
    const int others = ui->layMain->sizeHint().height();
    const double forPage = page * WindowToGridHeight;
    const double forOthers = others / (1 - 1 / WindowToGridHeight);
    setMinimumSize(
        columns + ui->scrLookup->sizeHint().width() + PixelsFromTwips(GridMarginTwips, *this),
        static_cast<int>(std::ceil(std::max(forPage, forOthers))));
    resize(minimumSize());
}

void frmLookup::ConnectControls()
{
    for (QWidget *control : std::initializer_list<QWidget *>{ui->txtLookup, ui->cboLookupBy,
             ui->msgLookup, ui->msgLookup->viewport(), ui->cmdSelect, ui->cmdCancel, ui->cmdHelp})
        control->installEventFilter(this);
    connect(ui->txtLookup, &QLineEdit::textEdited, this, [this](const QString &text) {
        Handle([&] {
            m_mod.Screen.SearchText = text;
            m_mod.FindLookupText();
        });
    });
    connect(ui->cboLookupBy, &QComboBox::activated, this, &frmLookup::cboLookupBy_Click);
    connect(ui->scrLookup, &QScrollBar::valueChanged, this,
        [this](int value) { Handle([&] { m_mod.ScrollTo(value); }); });
    connect(ui->msgLookup->selectionModel(), &QItemSelectionModel::selectionChanged, this,
        &frmLookup::msgLookup_SelChange);
    connect(ui->cmdSelect, &QPushButton::clicked, this, &frmLookup::cmdSelect_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &frmLookup::reject);
    connect(ui->cmdHelp, &QPushButton::clicked, this, [this] { m_keys.SendKeys(u"{F1}"_s); });
}

void frmLookup::ShowModal()
{
    Form_Load();
    Form_Activate();
    if (!m_mod.Screen.Closed)
        exec();
}

void frmLookup::Form_Load()
{
    setWindowTitle(m_mod.Caption().left(MostCharactersShown));
}

void frmLookup::Form_Activate()
{
    m_mod.OpenLookup();
    ui->cboLookupBy->clear();
    ui->cboLookupBy->addItems(m_mod.Screen.LookupByItems);
    FitOpenedList(*ui->cboLookupBy);
    m_keyTyped = false;
    Render();
}

void frmLookup::Handle(const std::function<void()> &action)
{
    try {
        action();
    } catch (const clsRunTimeError &error) {
        Render();
        m_messages.Tell(error.Message());
    }
    Render();
}

void frmLookup::Render()
{
    const LookupScreen &screen = m_mod.Screen;
    if (ui->txtLookup->text() != screen.SearchText)
        ui->txtLookup->setText(screen.SearchText);
    ui->cboLookupBy->setCurrentIndex(screen.LookupByIndex);
    ui->cboLookupBy->setToolTip(PlainToolTip(ClippedItem(*ui->cboLookupBy)));
    {
        const QSignalBlocker blocked(ui->scrLookup);
        ui->scrLookup->setRange(0, screen.Scroll.Maximum);
        ui->scrLookup->setPageStep(screen.Scroll.LargeChange);
        ui->scrLookup->setValue(screen.ScrollValue);
        ui->scrLookup->setVisible(screen.Scroll.Visible);
    }
    ui->msgLookup->setEnabled(screen.GridEnabled);
    for (int panel = 1; panel <= LookupScreen::StatusPanels; ++panel)
        ui->StatusBar1->SetPanelText(panel, screen.Panels.at(static_cast<size_t>(panel) - 1));
    MoveFocus();
    if (screen.Closed && isVisible())
        done(0);
}

void frmLookup::MoveFocus()
{
    if (!m_mod.Screen.Focus)
        return;
    const bool isGrid = *m_mod.Screen.Focus == LookupScreen::Control::msgLookup;
    m_mod.Screen.Focus.reset();
    if (isGrid)
        ui->msgLookup->setFocus(Qt::OtherFocusReason);
    else
        ui->txtLookup->setFocus(Qt::OtherFocusReason);
}

void frmLookup::reject()
{
    Handle([this] { m_mod.CancelLookup(); });
}

void frmLookup::cmdSelect_Click()
{
    Handle([this] {
        m_mod.SelectLookup();
        m_mod.ClearLookupPending();
    });
}

void frmLookup::ApplyLookupBy()
{
    Handle([this] { m_mod.ChangeLookupBy(); });
}

void frmLookup::cboLookupBy_Click()
{
    m_mod.Screen.LookupByIndex = ui->cboLookupBy->currentIndex();
    const bool isDropped = ui->cboLookupBy->view()->isVisible();
    if (!isDropped && !m_keyTyped)
        ApplyLookupBy();
    m_keyTyped = false;
}

bool frmLookup::HandleListKey(const QKeyEvent &event)
{
    if (BelongsToTheWindow(event))
        return false;
    m_keyTyped = false;
    if (IsEnter(event)) {
        ApplyLookupBy();
        return true;
    }
    switch (event.key()) {
    case Qt::Key_Up:
        return false;
    case Qt::Key_Left: {
        // The list itself knows only Up.
        QKeyEvent up(QEvent::KeyPress, Qt::Key_Up, Qt::NoModifier);
        QCoreApplication::sendEvent(ui->cboLookupBy, &up);
        return true;
    }
    case Qt::Key_Right:
    case Qt::Key_Down:
        ui->cboLookupBy->showPopup();
        return true;
    default:
        m_keyTyped = true;
        return !TypesALetter(event); // a letter moves the choice, which Enter then applies
    }
}

bool frmLookup::HandleListEvent(QEvent &event)
{
    switch (event.type()) {
    case QEvent::KeyPress:
        return HandleListKey(static_cast<QKeyEvent &>(event));
    case QEvent::Wheel:
        return true; // a wheel that passes over the list must not change the order
    default:
        return false;
    }
}

bool frmLookup::HandleSearchEvent(QEvent &event)
{
    switch (event.type()) {
    case QEvent::KeyPress:
        if (!IsEnter(static_cast<QKeyEvent &>(event)))
            return false;
        m_keys.SendKeys(u"{TAB}"_s);
        return true;
    case QEvent::FocusIn:
        if (EntersField(static_cast<QFocusEvent &>(event)))
            ui->txtLookup->selectAll();
        return false;
    case QEvent::MouseButtonRelease:
        if (static_cast<QMouseEvent &>(event).button() == Qt::LeftButton)
            ui->txtLookup->selectAll();
        return false;
    default:
        return false;
    }
}

bool frmLookup::HandleGridKey(const QKeyEvent &event)
{
    if (BelongsToTheWindow(event))
        return false;
    if (IsEnter(event)) {
        cmdSelect_Click();
        return true;
    }
    if (const std::optional<LookupPaging> paging = PagingOf(event.key())) {
        Handle([&] { m_mod.PageKey(*paging); });
        return true;
    }
    return false;
}

bool frmLookup::HandleGridMouse(QEvent &event)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress: {
        const auto &mouse = static_cast<QMouseEvent &>(event);
        if (mouse.button() != Qt::LeftButton)
            return true;
        const QModelIndex pressed = ui->msgLookup->indexAt(mouse.position().toPoint());
        m_rowPressed = pressed.isValid();
        if (m_rowPressed)
            m_mod.RowPressed(pressed.row() + 1);
        ui->msgLookup->setUpdatesEnabled(false);
        return false;
    }
    case QEvent::MouseButtonDblClick: {
        // The row under the second press counts, which need not be that of the first.
        const auto &mouse = static_cast<QMouseEvent &>(event);
        const int row = ui->msgLookup->indexAt(mouse.position().toPoint()).row() + 1;
        if (mouse.button() == Qt::LeftButton && row > 0)
            Handle([&] { m_mod.RowDoubleClicked(row); });
        return true;
    }
    case QEvent::MouseMove:
        // Dragging takes no further row along.
        return static_cast<QMouseEvent &>(event).buttons() != Qt::NoButton;
    case QEvent::MouseButtonRelease:
        if (static_cast<QMouseEvent &>(event).button() != Qt::LeftButton)
            return true;
        ui->msgLookup->setUpdatesEnabled(true);
        if (m_rowPressed)
            Handle([this] { m_mod.RowClicked(); });
        m_rowPressed = false;
        return false;
    case QEvent::Wheel:
        if (!ui->scrLookup->isVisible())
            return false;
        QCoreApplication::sendEvent(ui->scrLookup, &event);
        return true;
    default:
        return false;
    }
}

void frmLookup::msgLookup_SelChange()
{
    const QItemSelectionModel &selection = *ui->msgLookup->selectionModel();
    const QModelIndexList rows = selection.selectedRows();
    const bool isCurrentAlone = rows.size() == 1 && rows.front().row() == ui->msgLookup->Row() - 1;
    if (!isCurrentAlone)
        m_mod.KeepOneRowSelected();
}

bool frmLookup::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == ui->txtLookup)
        return HandleSearchEvent(*event);
    if (watched == ui->cboLookupBy)
        return HandleListEvent(*event);
    if (watched == ui->msgLookup->viewport())
        return HandleGridMouse(*event);
    if (event->type() != QEvent::KeyPress)
        return false;
    auto &key = static_cast<QKeyEvent &>(*event);
    if (watched == ui->msgLookup)
        return HandleGridKey(key);
    auto *button = qobject_cast<QPushButton *>(watched);
    if (button == nullptr || !IsEnter(key))
        return false;
    button->click();
    return true;
}

void frmLookup::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    if (height() == 0)
        return;
    // Nothing but the grid follows the window. The scroll bar stays at the end of a page as the
    // smallest window shows it, beside the columns, which have fixed widths as well.
    const int margin = PixelsFromTwips(GridMarginTwips, *this);
    const QPoint corner(margin / 2, ui->layHead->geometry().bottom() + 1 + ui->layMain->spacing());
    const auto gridIn = [&](const QSize &window) {
        return QRect(corner,
            QSize(window.width() - margin, static_cast<int>(window.height() / WindowToGridHeight)));
    };
    ui->msgLookup->setGeometry(gridIn(size()));
    const int frame = ui->msgLookup->frameWidth();
    QRect bar = gridIn(minimumSize()).adjusted(0, frame, -frame, -frame);
    bar.setLeft(bar.right() + 1 - ui->scrLookup->sizeHint().width());
    ui->scrLookup->setGeometry(bar);
}
