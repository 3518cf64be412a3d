#include "entry/frmEntryList.h"

#include "entry/ui_frmEntryList.h"
#include "lookup/frmLookup.h"
#include "lookup/frmTransFilter.h"
#include "platform/ArrowPicture.h"
#include "platform/clsDecimalSign.h"
#include "platform/clsRunTimeError.h"
#include "platform/clsUpperCase.h"
#include "platform/DataLabel.h"
#include "platform/FieldWidth.h"
#include "platform/FormEvents.h"
#include "platform/HelpPage.h"
#include "platform/OneLine.h"
#include "platform/PlainToolTip.h"
#include "platform/Twips.h"
#include "summary/frmHrsSumm.h"
#include "sync/frmConfigure.h"
#include "sync/frmSyncOptions.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScopeGuard>
#include <QSizeGrip>
#include <QStatusBar>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int GridMarginTwips = 540; // left and right of the grid together
constexpr double WindowToGridHeight = 2.85;
constexpr int LongestCode = 15;

constexpr std::array<const char *, EntryControls> ControlNames = {"cboCompany", "lblCompanyName",
    "txtUser", "lblUserName", "dtpDate", "lblCustomer", "txtCustomer", "cmdCustomer", "lblProject",
    "txtProject", "cmdProject", "lblActivity", "txtActivity", "cmdActivity", "cboBStatus",
    "lblBOption", "cboBOption", "lblMultiplierCode", "txtMultiplierCode", "cmdMultiplier",
    "lblMultiplierFactor", "txtMultiplierFactor", "lblHours", "txtHours", "lblRate", "txtRate",
    "lblAmount", "txtAmount", "chkReimburse", "chkApproved", "chkOnHold", "txtDescription",
    "msgEntryList", "cmdOK", "cmdUndo", "cmdDel", "cmdHrsSumm", "cmdTransFilter"};

void SendKey(QWidget &receiver, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QKeyEvent press(QEvent::KeyPress, key, modifiers);
    QCoreApplication::sendEvent(&receiver, &press);
}

/// What a click leaves the focus alone on.
bool IsBackground(const QWidget &control)
{
    return control.isWindow() || qobject_cast<const QMenuBar *>(&control) != nullptr
        || qobject_cast<const QLabel *>(&control) != nullptr
        || qobject_cast<const QStatusBar *>(&control) != nullptr
        || qobject_cast<const QSizeGrip *>(&control) != nullptr
        || control.objectName() == "wgtCentral"_L1;
}

/// A check may have hidden or disabled what was pressed.
bool CanBeUsed(const QWidget &control)
{
    return control.isVisible() && control.isEnabled();
}

void DrawText(QLineEdit &box, const ControlState &state)
{
    ShowCode(box, state.Text);
    box.setReadOnly(state.Locked);
    box.setFocusPolicy(state.InTabOrder ? Qt::StrongFocus : Qt::ClickFocus);
    DrawBackground(box, state.ButtonFace);
}

void DrawList(QComboBox &list, const ControlState &state)
{
    QStringList items;
    for (int i = 0; i < list.count(); ++i)
        items.append(list.itemText(i));
    if (items != state.Items) {
        list.clear();
        list.addItems(state.Items);
        FitOpenedList(list);
    }
    list.setCurrentIndex(state.Index);
    DrawBackground(list, state.ButtonFace);
}

void DrawLabel(QLabel &label, const ControlState &state)
{
    if (state.Text.isNull())
        return;
    ShowData(label, label.buddy() != nullptr ? CaptionText(state.Text) : state.Text);
}

void DrawControl(QWidget &widget, const ControlState &state)
{
    const QSignalBlocker blocked(widget);
    if (auto *box = qobject_cast<QLineEdit *>(&widget))
        DrawText(*box, state);
    else if (auto *list = qobject_cast<QComboBox *>(&widget))
        DrawList(*list, state);
    else if (auto *label = qobject_cast<QLabel *>(&widget))
        DrawLabel(*label, state);
    else if (auto *check = qobject_cast<QCheckBox *>(&widget))
        check->setChecked(state.Checked);
    if (qobject_cast<QLabel *>(&widget) == nullptr) {
        const auto *list = qobject_cast<QComboBox *>(&widget);
        const bool isAnswer = list == nullptr || !state.ToolTip.isEmpty();
        widget.setToolTip(PlainToolTip(isAnswer ? state.ToolTip : ClippedItem(*list)));
        widget.setAccessibleDescription(state.ToolTip);
    }
    widget.setVisible(state.Visible);
    widget.setEnabled(state.Enabled);
}

} // namespace

frmEntryList::frmEntryList(modEntryList &listModule, modEntryInfo &entryModule,
    EntryListState &list, const EntryDialogs &dialogs, EntryScreen &screen, clsMessageBox &messages,
    clsSendKeys &keys)
    : ui(std::make_unique<Ui::frmEntryList>())
    , m_listModule(listModule)
    , m_entryModule(entryModule)
    , m_list(list)
    , m_dialogs(dialogs)
    , m_screen(screen)
    , m_messages(messages)
    , m_keys(keys)
{
    ui->setupUi(this);
    for (size_t i = 0; i < EntryControls; ++i) {
        m_widgets.at(i) = findChild<QWidget *>(QString::fromLatin1(ControlNames.at(i)));
        // Between a time and an expense entry fields come and go; the others stay where they are.
        QSizePolicy policy = m_widgets.at(i)->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        m_widgets.at(i)->setSizePolicy(policy);
    }
    m_screen[EntryControl::txtUser].Locked = true;
    m_screen[EntryControl::txtUser].InTabOrder = false;
    m_screen[EntryControl::txtUser].ButtonFace = true;
    m_screen[EntryControl::txtMultiplierFactor].Locked = true;
    m_screen[EntryControl::txtMultiplierFactor].InTabOrder = false;
    DrawArrows();
    FitFields();
    ConnectCodes();
    ConnectLists();
    ConnectQuantities();
    ConnectOthers();
    ConnectCommands();
    ConnectDialogs();
    m_listModule.SetGrid(ui->msgEntryList);
    m_entryModule.TakeFocusedBox = [this] { return TakeFocusedBox(); };
    m_entryModule.DrawScreen = [this] { Render(); };
    qApp->installEventFilter(this);
}

frmEntryList::~frmEntryList()
{
    m_listModule.SetGrid(nullptr);
    m_entryModule.TakeFocusedBox = [] { return true; };
    m_entryModule.DrawScreen = [] {};
    m_entryModule.ShowLookup = [] {};
    m_dialogs.Filter.SelectEntryBox = [](FilterField) {};
}

void frmEntryList::FitFields()
{
    const QString code(LongestCode, u'N'); // as wide as capital letters and digits are
    for (QLineEdit *box : {ui->txtCustomer, ui->txtProject, ui->txtActivity})
        FitToText(*box, code);
    FitToText(*ui->txtUser, u"WWW"_s);
    FitToText(*ui->txtMultiplierCode, u"WW"_s);
    FitToText(*ui->txtMultiplierFactor, u"00000.0000"_s);
    for (QLineEdit *box : {ui->txtHours, ui->txtRate})
        FitToText(*box, u"00000000.00"_s);
    FitToText(*ui->txtAmount, u"-0000000000.00"_s); // the product of the longest units and rate
}

void frmEntryList::DrawArrows()
{
    ui->picUp->setPixmap(ArrowPicture(*this, SortOrder::Ascending));
    ui->picDown->setPixmap(ArrowPicture(*this, SortOrder::Descending));
    ui->msgEntryList->SetArrowPictures(ui->picUp->pixmap(), ui->picDown->pixmap());
}

QWidget &frmEntryList::WidgetOf(EntryControl control) const
{
    return *m_widgets.at(static_cast<size_t>(control));
}

const QWidget *frmEntryList::LookupButtonOf(const QWidget *box) const
{
    return box == ui->txtCustomer      ? ui->cmdCustomer
        : box == ui->txtProject        ? ui->cmdProject
        : box == ui->txtActivity       ? ui->cmdActivity
        : box == ui->txtMultiplierCode ? ui->cmdMultiplier
                                       : nullptr;
}

EntryControl frmEntryList::ControlOf(const QWidget &widget) const
{
    const auto place = std::find(m_widgets.begin(), m_widgets.end(), &widget);
    return static_cast<EntryControl>(place - m_widgets.begin());
}

void frmEntryList::ConnectCodes()
{
    for (const EntryControl control : {EntryControl::txtCustomer, EntryControl::txtProject,
             EntryControl::txtActivity, EntryControl::txtMultiplierCode}) {
        auto &box = static_cast<QLineEdit &>(WidgetOf(control));
        box.setValidator(new clsUpperCase(&box));
        connect(&box, &QLineEdit::textEdited, this, [this, control, &box] {
            if (!TakeFocusForEdit(control, box))
                return;
            TakeEdit(control, box.text());
            Render();
        });
    }
}

void frmEntryList::ConnectLists()
{
    const auto connectList = [this](EntryControl control) {
        auto &list = static_cast<QComboBox &>(WidgetOf(control));
        connect(&list, &QComboBox::activated, this, [this, &list] { ListPicked(list); });
    };
    connectList(EntryControl::cboCompany);
    connectList(EntryControl::cboBStatus);
    connectList(EntryControl::cboBOption);
}

void frmEntryList::ConnectQuantities()
{
    for (const EntryControl control :
        {EntryControl::txtHours, EntryControl::txtRate, EntryControl::txtAmount}) {
        auto &box = static_cast<QLineEdit &>(WidgetOf(control));
        box.setValidator(new clsDecimalSign(&box));
        connect(&box, &QLineEdit::textEdited, this,
            [this, control, &box] { QuantityEdited(control, box); });
    }
}

void frmEntryList::ConnectOthers()
{
    connect(ui->txtDescription, &QLineEdit::textEdited, this, &frmEntryList::txtDescription_Change);
    connect(ui->dtpDate, &clsDatePicker::Change, this, &frmEntryList::dtpDate_Change);
    connect(ui->dtpDate, &clsDatePicker::Click, this, [this] {
        m_entryModule.FieldEdited();
        Render();
    });
    connect(ui->dtpDate, &clsDatePicker::Typed, this, &frmEntryList::dtpDate_Typed);
    connect(ui->dtpDate, &clsDatePicker::NoticeChanged, this, &frmEntryList::ShowDateNotice);
    const auto connectBox = [this](EntryControl control, void (modEntryInfo::*clicked)()) {
        connect(static_cast<QCheckBox *>(&WidgetOf(control)), &QCheckBox::clicked, this,
            [this, control, clicked](bool checked) {
                Handle([&] {
                    m_screen[control].Checked = checked;
                    (m_entryModule.*clicked)();
                });
            });
    };
    connectBox(EntryControl::chkReimburse, &modEntryInfo::ReimburseClicked);
    connectBox(EntryControl::chkApproved, &modEntryInfo::ApprovedClicked);
    connectBox(EntryControl::chkOnHold, &modEntryInfo::OnHoldClicked);
    connect(ui->msgEntryList, &clsGrid::Click, this, &frmEntryList::msgEntryList_Click);
    connect(ui->msgEntryList, &clsGrid::KeyClick, this, &frmEntryList::msgEntryList_Click);
}

void frmEntryList::ConnectCommands()
{
    connect(ui->cmdOK, &QPushButton::clicked, this, &frmEntryList::cmdOK_Click);
    connect(ui->cmdUndo, &QPushButton::clicked, this,
        [this] { Handle([this] { m_entryModule.UndoEntry(); }); });
    connect(ui->cmdDel, &QPushButton::clicked, this,
        [this] { Handle([this] { m_entryModule.DeleteEntry(); }); });
    connect(ui->cmdSync, &QPushButton::clicked, this, &frmEntryList::SyncRequested);
    connect(
        ui->mnuDeleteDatabases, &QAction::triggered, this, &frmEntryList::DeleteDatabasesRequested);
    connect(ui->cmdHelp, &QPushButton::clicked, this, [this] { m_keys.SendKeys(u"{F1}"_s); });
}

void frmEntryList::ConnectDialogs()
{
    const auto connectLookup = [this](EntryControl button, EntryControl box) {
        connect(static_cast<QPushButton *>(&WidgetOf(button)), &QPushButton::clicked, this,
            [this, box] { LookUp(WidgetOf(box), LookupStart::AtTheTop); });
    };
    connectLookup(EntryControl::cmdCustomer, EntryControl::txtCustomer);
    connectLookup(EntryControl::cmdProject, EntryControl::txtProject);
    connectLookup(EntryControl::cmdActivity, EntryControl::txtActivity);
    connectLookup(EntryControl::cmdMultiplier, EntryControl::txtMultiplierCode);
    m_entryModule.ShowLookup
        = [this] { frmLookup(m_dialogs.Lookup, m_messages, m_keys, this).ShowModal(); };
    m_dialogs.Filter.SelectEntryBox = [this](FilterField field) { SelectBoxOfFilter(field); };
    connect(ui->cmdHrsSumm, &QPushButton::clicked, this, &frmEntryList::cmdHrsSumm_Click);
    connect(ui->cmdTransFilter, &QPushButton::clicked, this, &frmEntryList::cmdTransFilter_Click);
    connect(ui->mnuConfigure, &QAction::triggered, this, &frmEntryList::mnuConfigure_Click);
    connect(ui->mnuSync, &QAction::triggered, this, &frmEntryList::mnuSync_Click);
}

void frmEntryList::LookUp(const QWidget &box, LookupStart start)
{
    const size_t kind = &box == ui->txtCustomer ? LookupKinds::Customers
        : &box == ui->txtProject                ? LookupKinds::Projects
        : &box == ui->txtActivity               ? LookupKinds::Activities
                                                : LookupKinds::Multipliers;
    Handle([&] {
        if (m_entryModule.LookUp(kind, start))
            m_fieldEdited = false; // the code has been checked
    });
}

void frmEntryList::ShowWhileSuppressed(const std::function<void()> &dialog)
{
    m_list.SuppressRowSelect = true;
    const auto shown = qScopeGuard([this] { m_list.SuppressRowSelect = false; });
    dialog();
}

void frmEntryList::SelectBoxOfFilter(FilterField field)
{
    // This window's own field is meant, not the filter's. Intentional.
    switch (field) {
    case FilterField::Customer:
        ui->txtCustomer->selectAll();
        break;
    case FilterField::Project:
        ui->txtProject->selectAll();
        break;
    case FilterField::Activity:
        ui->txtActivity->selectAll();
        break;
    }
}

void frmEntryList::cmdHrsSumm_Click()
{
    if (!MayLeaveEntry())
        return;
    Handle([this] {
        LoadEntryList();
        frmHrsSumm dialog(m_dialogs.Summary, m_keys, this);
        dialog.Load();
        ShowWhileSuppressed([&] { dialog.exec(); });
        // The sort state was reset with the summary's, so no header here carries the arrow.
        m_listModule.ClearHeaderArrows();
    });
}

void frmEntryList::cmdTransFilter_Click()
{
    if (!MayLeaveEntry())
        return;
    Handle([this] {
        LoadEntryList();
        ShowWhileSuppressed([this] {
            frmTransFilter(m_dialogs.Filter, m_dialogs.Lookup, m_messages, m_keys, this)
                .ShowModal();
        });
        m_entryModule.TakeProjectFromBox();
        m_entryModule.Changed = false;
        const bool cancelled = std::exchange(m_dialogs.Filtered.FilterCancelled, false);
        const bool cleared = std::exchange(m_dialogs.Filtered.FilterCleared, false);
        if (!cancelled || cleared)
            LoadEntryList();
    });
}

void frmEntryList::mnuConfigure_Click()
{
    ShowWhileSuppressed([this] {
        frmConfigure dialog(m_dialogs.Configure, m_messages, m_keys, this);
        dialog.Load();
        dialog.exec();
    });
}

void frmEntryList::mnuSync_Click()
{
    ShowWhileSuppressed([this] {
        frmSyncOptions dialog(m_dialogs.SyncOptions, m_messages, m_keys, this);
        if (dialog.Load())
            dialog.exec();
    });
}

void frmEntryList::LoadEntryList()
{
    const auto drawn = qScopeGuard([this] { Render(); });
    m_listModule.LoadEntryList();
}

void frmEntryList::Handle(const std::function<void()> &action)
{
    try {
        action();
    } catch (const clsRunTimeError &error) {
        Render();
        m_messages.Tell(error.Message());
    }
    Render();
}

void frmEntryList::Render()
{
    m_entryModule.ExplainFields();
    for (size_t i = 0; i < EntryControls; ++i)
        DrawControl(*m_widgets.at(i), m_screen[static_cast<EntryControl>(i)]);
    NameLookUpButtons();
    const QSignalBlocker blocked(ui->dtpDate);
    if (m_screen.Date.isValid())
        ui->dtpDate->setDate(m_screen.Date);
    for (int panel = 1; panel <= EntryScreen::StatusPanels; ++panel)
        ui->StatusBar1->SetPanelText(panel, m_screen.Panels.at(static_cast<size_t>(panel) - 1));
    RenderTitle();
    RenderNotice();
    const QString syncNotice = m_listModule.SyncNotice();
    ui->cmdSync->setToolTip(PlainToolTip(syncNotice));
    ui->cmdSync->setAccessibleDescription(syncNotice);
    MoveFocus();
}

void frmEntryList::RenderTitle()
{
    if (m_entryModule.Changed == isWindowModified())
        return;
    // The placeholder for the platform's mark is in the title only while there is something to
    // mark, so that the title of an unchanged window is the plain one.
    const QString title = u"Worklog Remote"_s;
    if (m_entryModule.Changed)
        setWindowTitle(title + u"[*]"_s);
    setWindowModified(m_entryModule.Changed);
    if (!m_entryModule.Changed)
        setWindowTitle(title);
}

void frmEntryList::RenderNotice()
{
    if (!m_screen.LockedNotice.isEmpty())
        ui->StatusBar1->ShowNotice(m_screen.LockedNotice);
    else
        ui->StatusBar1->ShowNotice(
            m_screen.PutBack ? m_screen.PutBack->Text : m_entryModule.DateNotice());
    setProperty(
        HelpPageProperty, m_screen.LockedNotice.isEmpty() ? QVariant() : u"damaged-files"_s);
}

void frmEntryList::NameLookUpButtons()
{
    const auto name = [this](QPushButton &button, EntryControl label) {
        if (const QString &caption = m_screen[label].Text; !caption.isEmpty())
            button.setAccessibleName(LookUpName(caption));
    };
    name(*ui->cmdCustomer, EntryControl::lblCustomer);
    name(*ui->cmdProject, EntryControl::lblProject);
    name(*ui->cmdActivity, EntryControl::lblActivity);
}

void frmEntryList::MoveFocus()
{
    if (!m_screen.Focus)
        return;
    const EntryScreen::FocusRequest request = *m_screen.Focus;
    m_screen.Focus.reset();
    m_focus.FocusByMouse = false; // the program moves the focus, whatever was pressed before
    FocusTo(request.Control);
    if (auto *box = qobject_cast<QLineEdit *>(&WidgetOf(request.Control));
        box != nullptr && request.SelectText)
        box->selectAll();
    m_fieldEdited = m_fieldEdited || request.CheckDue;
}

void frmEntryList::FocusTo(EntryControl control)
{
    QWidget &widget = WidgetOf(control);
    // After a dialog this window is active only in a while, and the control then learns of its
    // focus, but not as of one entered. A date picker that has the focus is entered again: the
    // entry in it is another one.
    const bool entersUnnoticed
        = focusWidget() == &widget ? &widget == ui->dtpDate : !isActiveWindow();
    widget.setFocus(Qt::OtherFocusReason);
    if (entersUnnoticed && focusWidget() == &widget)
        GotFocus(widget, QFocusEvent(QEvent::FocusIn, Qt::OtherFocusReason));
}

bool frmEntryList::IsCodeBox(const QWidget &control) const
{
    return &control == ui->txtCustomer || &control == ui->txtProject || &control == ui->txtActivity
        || &control == ui->txtMultiplierCode;
}

bool frmEntryList::IsField(const QWidget &control) const
{
    return IsCodeBox(control) || &control == ui->txtHours || &control == ui->txtRate
        || &control == ui->txtAmount || &control == ui->txtDescription || &control == ui->dtpDate
        || ui->dtpDate->isAncestorOf(&control);
}

void frmEntryList::GotFocus(QWidget &control, const QFocusEvent &event)
{
    if (m_screen.PutBack && &WidgetOf(m_screen.PutBack->About) != &control) {
        m_screen.PutBack.reset();
        RenderNotice();
    }
    m_entered = &control;
    m_pressGivesFocus = event.reason() == Qt::MouseFocusReason;
    const bool byMouse = std::exchange(m_focus.FocusByMouse, false) || m_pressGivesFocus;
    if (&control == ui->dtpDate)
        dtpDate_GotFocus(byMouse);
    if (auto *box = qobject_cast<QLineEdit *>(&control)) {
        m_fieldEdited = false;
        if (!m_pressGivesFocus)
            PlaceCaret(*box, byMouse);
    }
    m_entryModule.RememberFocusTexts();
}

bool frmEntryList::FocusLeaves(QWidget &control, QFocusEvent &event)
{
    // A list whose items are open is still the window's control with the focus.
    const bool leavesField = EntersField(event) && focusWidget() != &control;
    if (&event == m_ownFocusOut || !leavesField)
        return false;
    // The control's own handling takes its selection and its caret away, so it comes first: a
    // refused code gets both back.
    const QScopedValueRollback<const QFocusEvent *> handled(m_ownFocusOut, &event);
    QCoreApplication::sendEvent(&control, &event);
    LostFocus(control, event);
    return true;
}

void frmEntryList::LostFocus(QWidget &control, const QFocusEvent &event)
{
    if (&control == ui->dtpDate)
        m_focus.FocusByMouse = false;
    // A press ends the menu bar's focus and leaves the field that it took the focus from.
    const QWidget &left = &control == menuBar() && m_entered != nullptr ? *m_entered : control;
    if (!TakeBox(left))
        m_pressRefused = event.reason() == Qt::MouseFocusReason;
}

void frmEntryList::PlaceCaret(QLineEdit &box, bool byMouse)
{
    if (&box == ui->txtDescription) {
        box.deselect();
        box.end(false); // a key adds to the description and does not replace it
    } else if (byMouse) {
        box.deselect(); // a press that has set the caret counts, also before a Tab
    } else if (!box.text().isEmpty()) {
        box.selectAll();
    }
}

void frmEntryList::dtpDate_GotFocus(bool byMouse)
{
    ui->dtpDate->BeginTyping();
    // Entered with the mouse, the caret stays where it was set, and the picker's changes are not
    // taken over until it is next entered from the keyboard. This asymmetry is intentional.
    m_focus.InFocusFix = byMouse;
    if (byMouse)
        return;
    ui->dtpDate->setSelectedSection(QDateEdit::MonthSection);
    if (m_entryModule.DateIsHeldBack()) {
        m_entryModule.TakeDate();
        Render();
    }
}

void frmEntryList::dtpDate_Change(QDate date)
{
    m_screen.Date = date;
    if (!m_focus.InFocusFix)
        m_entryModule.TakeDate();
    ShowDateNotice();
}

void frmEntryList::dtpDate_Typed()
{
    if (!m_focus.InFocusFix)
        m_entryModule.FieldEdited();
    ShowDateNotice();
}

void frmEntryList::ShowDateNotice()
{
    m_screen.PutBack.reset();
    if (const QString notice = ui->dtpDate->Notice(); !notice.isEmpty())
        m_screen.PutBack = {EntryControl::dtpDate, notice};
    Render();
}

void frmEntryList::txtDescription_Change()
{
    QLineEdit &box = *ui->txtDescription;
    const QString line = OneLine(box.text()); // lines may have been pasted or dropped
    if (line != box.text()) {
        const auto caret = static_cast<int>(OneLine(box.text().left(box.cursorPosition())).size());
        box.setText(line);
        box.setCursorPosition(caret);
    }
    if (m_screen[EntryControl::txtDescription].Text == line)
        return;
    m_screen[EntryControl::txtDescription].Text = line;
    m_entryModule.TakeDescription();
    Render();
}

bool frmEntryList::TakeTypedDate()
{
    if (ui->dtpDate->FinishTyping())
        return true;
    if (focusWidget() != ui->dtpDate)
        m_screen.Focus = {EntryControl::dtpDate};
    ShowDateNotice();
    return false;
}

const QWidget *frmEntryList::EnteredControl() const
{
    return focusWidget() == menuBar() ? m_entered : focusWidget();
}

bool frmEntryList::TakeFocusedBox()
{
    const QWidget *entered = EnteredControl();
    return entered == nullptr || TakeBox(*entered);
}

bool frmEntryList::TakeBox(const QWidget &control)
{
    const bool edited = m_fieldEdited;
    m_fieldEdited = false;
    if (IsCodeBox(control))
        return !edited || CheckCode(control);
    if (&control == ui->dtpDate)
        return TakeTypedDate();
    if (const auto *list = qobject_cast<const QComboBox *>(&control)) {
        LeaveList(*list);
        return true;
    }
    Handle([&] {
        if (&control == ui->txtHours)
            m_entryModule.ApplyHoursText();
        else if (&control == ui->txtRate && edited)
            m_entryModule.ApplyRateText();
        else if (&control == ui->txtAmount && !m_screen[EntryControl::txtAmount].Locked)
            m_entryModule.ApplyAmountText();
    });
    return true;
}

bool frmEntryList::CheckCode(const QWidget &control)
{
    CodeCheck result = CodeCheck::Refused;
    Handle([&] { result = m_entryModule.CheckCode(ControlOf(control)); });
    return result == CodeCheck::Accepted;
}

void frmEntryList::TakeItem(const QComboBox &list)
{
    m_screen[ControlOf(list)].Index = list.currentIndex();
    if (&list == ui->cboCompany)
        m_listModule.CompanyChanged();
    else if (&list == ui->cboBStatus)
        m_entryModule.ApplyBillingStatus();
    else
        m_entryModule.ApplyBillingOption();
}

void frmEntryList::ApplyList(const QComboBox &list)
{
    Handle([&] { TakeItem(list); });
}

void frmEntryList::ListPicked(const QComboBox &list)
{
    if (!std::exchange(m_listTyped, false)) {
        ApplyList(list);
        return;
    }
    // The item is shown from now on, and applied when the list is left.
    if (&list != ui->cboCompany && m_screen[ControlOf(list)].Index != list.currentIndex())
        m_entryModule.FieldEdited();
    m_screen[ControlOf(list)].Index = list.currentIndex();
    Render();
}

void frmEntryList::LeaveList(const QComboBox &list)
{
    m_listTyped = false;
    if (&list == ui->cboCompany && list.currentText() == m_list.LastCompany)
        return;
    Handle([&] {
        TakeItem(list);
        m_screen.Focus.reset(); // it goes where the user goes
    });
}

bool frmEntryList::TakeFocusForEdit(EntryControl control, QLineEdit &box)
{
    if (focusWidget() == &box)
        return true;
    const QString text = box.text();
    const int caret = box.cursorPosition();
    box.setText(m_screen[control].Text); // as it was, while the other box is left
    if (!TakeFocusedBox())
        return false;
    box.setFocus(Qt::MouseFocusReason);
    if (focusWidget() != &box)
        return false; // what the other box held has closed this one
    // In a window that is not active the box learns of its focus later, and not as of one entered.
    m_fieldEdited = false;
    m_entryModule.RememberFocusTexts();
    box.setText(text);
    box.setCursorPosition(caret);
    return true;
}

void frmEntryList::TakeEdit(EntryControl control, const QString &text)
{
    if (m_screen[control].Text == text)
        return;
    m_screen[control].Text = text;
    m_fieldEdited = true;
    m_entryModule.FieldEdited();
}

void frmEntryList::QuantityEdited(EntryControl control, QLineEdit &box)
{
    if (!TakeFocusForEdit(control, box))
        return;
    // The kind of the entry, and with it the mask, can change while the focus stays in the box.
    const QuantityMask mask = m_entryModule.MaskOf(control);
    m_mask.SetMask(mask.IntegerDigits, mask.DecimalDigits);
    m_mask.TakeAsGood(m_screen[control].Text);
    const clsM90Mask::Verified verified = m_mask.gVerify_Change(box.text(), box.cursorPosition());
    const bool putBack = verified.Text != box.text();
    if (putBack) {
        box.setText(verified.Text);
        box.setCursorPosition(verified.Caret);
    }
    TakeEdit(control, verified.Text);
    if (putBack)
        m_screen.PutBack = {control, DigitsTaken(mask.IntegerDigits, mask.DecimalDigits)};
    Render();
}

bool frmEntryList::HandleEnter(QWidget &control)
{
    if (IsCodeBox(control)) {
        if (!TakeBox(control))
            return true;
        if (&control == ui->txtActivity)
            FocusTo(m_entryModule.AfterActivity());
        else
            m_keys.SendKeys(u"{TAB}"_s);
        return true;
    }
    if (&control == ui->txtHours || &control == ui->txtAmount) {
        FocusTo(EntryControl::txtDescription);
        return true;
    }
    if (&control == ui->txtRate)
        TakeBox(control);
    if (qobject_cast<QLineEdit *>(&control) != nullptr
        || qobject_cast<QCheckBox *>(&control) != nullptr || &control == ui->dtpDate) {
        m_keys.SendKeys(u"{TAB}"_s);
        return true;
    }
    return false;
}

bool frmEntryList::HandleTab(QWidget &control)
{
    if (!TakeBox(control))
        return true;
    if (&control == ui->txtActivity)
        FocusTo(m_entryModule.AfterActivity());
    else if (&control == ui->txtHours || &control == ui->txtAmount)
        FocusTo(EntryControl::txtDescription);
    else
        return false;
    return true;
}

bool frmEntryList::HandleListKey(QComboBox &list, const QKeyEvent &event)
{
    if (BelongsToTheWindow(event))
        return false;
    m_listTyped = false;
    if (IsEnter(event)) {
        ApplyList(list);
        return true;
    }
    switch (event.key()) {
    case Qt::Key_Up:
        return false;
    case Qt::Key_Left:
        SendKey(list, Qt::Key_Up); // the list itself knows only Up
        return true;
    case Qt::Key_Right:
    case Qt::Key_Down:
        list.showPopup();
        return true;
    default:
        m_listTyped = true; // the lists cannot be typed into
        return true;
    }
}

bool frmEntryList::HandleOpenListKey(QComboBox &list, const QKeyEvent &event)
{
    if (event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab) {
        LeaveOpenList(list, event);
        return true;
    }
    if (BelongsToTheWindow(event))
        return false;
    m_listTyped = false;
    switch (event.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return false;
    case Qt::Key_Left:
        SendKey(*list.view(), Qt::Key_Up);
        return true;
    case Qt::Key_Right:
        SendKey(*list.view(), Qt::Key_Down);
        return true;
    default:
        m_listTyped = true;
        return true;
    }
}

void frmEntryList::LeaveOpenList(QComboBox &list, const QKeyEvent &event)
{
    const QModelIndex item = list.view()->currentIndex();
    // The first item of an opened list without a choice is current, but the user has not gone to
    // it.
    const bool highlighted = list.view()->selectionModel()->isSelected(item);
    list.hidePopup();
    if (highlighted)
        list.setCurrentIndex(item.row());
    SendKey(list, event.key(), event.modifiers());
}

bool frmEntryList::HandlePopupKey(const QWidget &control, const QKeyEvent &event)
{
    for (QComboBox *list : {ui->cboCompany, ui->cboBStatus, ui->cboBOption}) {
        if (list->view()->window() == control.window())
            return HandleOpenListKey(*list, event);
    }
    return false;
}

bool frmEntryList::HandleKey(QWidget &control, QKeyEvent &event)
{
    if (event.key() == Qt::Key_Escape) {
        EscapePressed();
        return true;
    }
    if (auto *list = qobject_cast<QComboBox *>(&control))
        return HandleListKey(*list, event);
    if (event.key() == Qt::Key_F2 && IsCodeBox(control)) {
        LookUp(control, LookupStart::AtTheText);
        return true;
    }
    if (IsEnter(event))
        return HandleEnter(control);
    if (event.key() == Qt::Key_Tab)
        return HandleTab(control);
    if (event.key() == Qt::Key_Backtab)
        return !TakeBox(control);
    return false;
}

bool frmEntryList::MousePressed(QWidget &control)
{
    const bool gaveFocus = std::exchange(m_pressGivesFocus, false);
    if (std::exchange(m_pressRefused, false))
        return true;
    if (!IsBackground(control)) {
        // A button that takes no focus leaves the box all the same. A code that was refused without
        // a message leaves the way to its own lookup open.
        const QWidget *left = EnteredControl();
        if (&control != left && !TakeFocusedBox())
            return !m_screen.PutBack || &control != LookupButtonOf(left);
        if (!CanBeUsed(control))
            return true;
    }
    if (!gaveFocus && IsField(control))
        m_focus.FocusByMouse = true;
    return false;
}

bool frmEntryList::FocusArrives(QWidget &control, QFocusEvent &event)
{
    if (&event == m_ownFocusIn || !EntersField(event))
        return false;
    // The control's own handling sets its caret and selection, so it comes first.
    const QScopedValueRollback<const QFocusEvent *> handled(m_ownFocusIn, &event);
    QCoreApplication::sendEvent(&control, &event);
    if (focusWidget() == &control)
        GotFocus(control, event);
    return true;
}

bool frmEntryList::eventFilter(QObject *watched, QEvent *event)
{
    auto *control = qobject_cast<QWidget *>(watched);
    if (control == nullptr)
        return false;
    if (control->window() != this)
        return event->type() == QEvent::KeyPress
            && HandlePopupKey(*control, *static_cast<QKeyEvent *>(event));
    switch (event->type()) {
    case QEvent::KeyPress:
        if (control == menuBar())
            return false; // Esc closes it, not the window
        return HandleKey(*control, *static_cast<QKeyEvent *>(event));
    case QEvent::MouseButtonPress:
        // A box whose code is refused keeps the focus, and the button is not pressed.
        return MousePressed(*control);
    case QEvent::Shortcut:
        // A mnemonic presses its button without moving the focus; the box is left all the same.
        return control != menuBar() && (!TakeFocusedBox() || !CanBeUsed(*control));
    case QEvent::Wheel:
        // A wheel that passes over a closed list or the date must not change the entry. It moves
        // the focus there like a press, but no press follows.
        m_pressRefused = false;
        return qobject_cast<QComboBox *>(control) != nullptr || control == ui->dtpDate;
    case QEvent::StatusTip:
        return true; // a menu that the pointer passes over would empty the line of a notice
    case QEvent::FocusIn:
        return FocusArrives(*control, *static_cast<QFocusEvent *>(event));
    case QEvent::FocusOut:
        return FocusLeaves(*control, *static_cast<QFocusEvent *>(event));
    default:
        return false;
    }
}

void frmEntryList::cmdOK_Click()
{
    if (!TakeFocusedBox())
        return;
    Handle([this] { m_entryModule.SaveEntry(); });
}

void frmEntryList::msgEntryList_Click(int row)
{
    Handle([&] {
        // Keys do what a click would: with the pointer on a heading that is sorting. Intentional.
        if (ui->msgEntryList->MouseRow() == 0)
            m_listModule.SortEntryList();
        else
            m_listModule.SelectEntryRow(row);
    });
}

bool frmEntryList::MayLeaveEntry()
{
    bool mayLeave = false;
    Handle([&] { mayLeave = m_entryModule.MayLeaveEntry(); });
    return mayLeave;
}

void frmEntryList::EscapePressed()
{
    if (!MayLeaveEntry())
        return;
    m_entryModule.Changed = false;
    close();
}

void frmEntryList::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    if (height() == 0)
        return;
    // The layout fills what is left between the margins; only the height has to be held back.
    const int margin = PixelsFromTwips(GridMarginTwips / 2, *this);
    ui->layMain->setContentsMargins(margin, ui->layMain->contentsMargins().top(), margin,
        ui->layMain->contentsMargins().bottom());
    // The other controls need their space, so the smallest window is the one in which they and the
    // grid's share fit together.
    clsGrid &grid = *ui->msgEntryList;
    const int others = minimumSizeHint().height() - grid.minimumHeight();
    grid.setMinimumHeight(static_cast<int>(std::ceil(others / (WindowToGridHeight - 1))));
    grid.setMaximumHeight(
        std::max(grid.minimumHeight(), static_cast<int>(height() / WindowToGridHeight)));
}

void frmEntryList::closeEvent(QCloseEvent *event)
{
    if (!MayLeaveEntry()) {
        event->ignore();
        return;
    }
    event->accept();
    emit Terminated();
}
