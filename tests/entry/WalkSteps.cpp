// The steps of a walk in the main window.

#include "platform/clsGrid.h"
#include "tests/entry/WindowWalk.h"
#include "tests/support/Windows.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDateEdit>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>

using namespace Qt::StringLiterals;

namespace {

const QStringList CodeBoxes
    = {u"txtCustomer"_s, u"txtProject"_s, u"txtActivity"_s, u"txtMultiplierCode"_s};
const QStringList Boxes
    = CodeBoxes + QStringList{u"txtHours"_s, u"txtRate"_s, u"txtAmount"_s, u"txtDescription"_s};
const QStringList Lists = {u"cboBStatus"_s, u"cboBOption"_s, u"cboCompany"_s};
const QStringList Controls = Boxes + Lists
    + QStringList{u"dtpDate"_s, u"cmdCustomer"_s, u"cmdProject"_s, u"cmdActivity"_s,
        u"cmdMultiplier"_s, u"txtUser"_s, u"txtMultiplierFactor"_s, u"chkReimburse"_s,
        u"chkApproved"_s, u"chkOnHold"_s, u"cmdOK"_s, u"cmdUndo"_s, u"cmdDel"_s, u"cmdHelp"_s,
        u"StatusBar1"_s, u"lblHours"_s, u"lblCustomer"_s};

/// A key and what is held with it.
struct Stroke
{
    Qt::Key Key;
    Qt::KeyboardModifiers Modifiers = Qt::NoModifier;
};

QString FocusName()
{
    const QWidget *focus = QApplication::focusWidget();
    return focus == nullptr ? QString() : focus->objectName();
}

} // namespace

bool WindowWalk::MenuHasTheKeys()
{
    return QApplication::activePopupWidget() != nullptr
        || qobject_cast<QMenuBar *>(QApplication::focusWidget()) != nullptr;
}

QString WindowWalk::WordFor(const QString &box)
{
    static const QHash<QString, QStringList> words = {
        {u"txtCustomer"_s,
            {u"ACME"_s, u"BETA"_s, u"GAMMA"_s, u"DELTA"_s, u"beta"_s, u"NOPE"_s, u"ACME "_s,
                u""_s}},
        {u"txtProject"_s, {u"P1"_s, u"P2"_s, u"p1"_s, u"P9"_s, u""_s}},
        {u"txtActivity"_s,
            {u"CONS"_s, u"MILE"_s, u"MEAL"_s, u"TRAIN"_s, u"DEV"_s, u"FREE"_s, u"mile"_s, u"GONE"_s,
                u""_s}},
        {u"txtMultiplierCode"_s, {u"05"_s, u"5"_s, u"10"_s, u"A"_s, u"99"_s, u""_s}},
        {u"txtHours"_s,
            {u"1"_s, u"7.5"_s, u"99.99"_s, u"100"_s, u"12345"_s, u".5"_s, u"."_s, u"0"_s,
                u"1.234"_s, u"-3"_s, u"x"_s, u"250"_s, u""_s}},
        {u"txtRate"_s,
            {u"80"_s, u"99999.999"_s, u"1.2345"_s, u"123456"_s, u"0"_s, u"."_s, u"12.5"_s, u"x"_s,
                u""_s}},
        {u"txtAmount"_s, {u"5"_s, u"."_s}},
        {u"txtDescription"_s, {u"some text"_s, u"A & B"_s, u"x"_s, u""_s}},
        {u"dtpDate"_s, {u"111926"_s, u"0"_s, u"3"_s, u"1/5/26"_s, u"02"_s, u"31"_s, u"9-9-25"_s}}};
    return m_chance.Of(words.value(box, {u"N"_s, u"C"_s, u"1"_s, u" "_s}));
}

QPoint WindowWalk::AnyPointIn(const QWidget &control)
{
    return {m_chance.Below(std::max(control.width(), 1)),
        m_chance.Below(std::max(control.height(), 1))};
}

QString WindowWalk::VisibleControl()
{
    for (;;) {
        const QString name = m_chance.Of(Controls);
        if (Any(name).isVisible())
            return name;
    }
}

void WindowWalk::Press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    const bool inMenu = MenuHasTheKeys();
    const bool changed = Window()->isWindowModified();
    const QString before = FocusName();
    const bool byMouse = m_fieldPressed;
    m_hands.Key(key, modifiers);
    if (key == Qt::Key_Escape && inMenu && !IsOpen())
        m_oracle->Find(u"Esc in a menu ends the program"_s);
    if (key == Qt::Key_Escape && inMenu && m_oracle->MessageWasShown())
        m_oracle->Find(u"Esc in a menu asks a question"_s);
    if (key == Qt::Key_Escape && !inMenu && !changed && IsOpen() && before != "dtpDate"_L1)
        m_oracle->Find(u"Esc leaves an unchanged window open"_s);
    if (!IsOpen() || inMenu || QApplication::activePopupWidget() != nullptr)
        return;
    const QString now = FocusName();
    const auto *box = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    const bool arrived = (key == Qt::Key_Tab || key == Qt::Key_Backtab) && now != before
        && !m_oracle->MessageWasShown() && !byMouse;
    if (arrived && box != nullptr && Boxes.contains(now) && now != "txtDescription"_L1
        && box->selectedText() != box->text())
        m_oracle->Find(u"%1 is entered by Tab and its text is not selected"_s.arg(now));
    if (arrived && now == "txtDescription"_L1
        && (box->hasSelectedText() || box->cursorPosition() != box->text().size()))
        m_oracle->Find(u"the caret is not at the end of the description"_s);
    if (arrived && now == "dtpDate"_L1
        && Control<QDateEdit>(*Window(), "dtpDate").currentSection() != QDateEdit::MonthSection)
        m_oracle->Find(u"the caret is not in the month"_s);
}

void WindowWalk::ClickControl(const QString &name)
{
    QWidget &control = Any(name);
    const QString before = m_oracle->EnteredField();
    const bool isFree = QApplication::activePopupWidget() == nullptr;
    const bool couldBeEntered = control.isEnabled() && control.isVisible();
    m_hands.Click(control);
    if (!IsOpen() || !isFree || !couldBeEntered || !Boxes.contains(name) || !control.isEnabled()
        || !control.isVisible() || m_oracle->MessageWasShown())
        return;
    // A code or a date that is refused keeps the focus.
    const bool canRefuse = CodeBoxes.contains(before) || before == "dtpDate"_L1;
    if (FocusName() != name && !(FocusName() == before && canRefuse))
        m_oracle->Find(u"a click into %1 leaves the focus on %2"_s.arg(name, FocusName()));
    const auto &box = static_cast<QLineEdit &>(control);
    if (FocusName() == name && before != name && box.hasSelectedText() && box.text().size() > 1)
        m_oracle->Find(u"a click into %1 selects its text"_s.arg(name));
}

void WindowWalk::TypeAnything()
{
    const QString focus = FocusName();
    if (m_chance.Percent(40))
        m_hands.Type(WordFor(focus));
    else
        m_hands.Type(QString(QLatin1Char("0123456789.-,/ ACEMNPabx"[m_chance.Below(24)])));
}

void WindowWalk::PressAnyKey()
{
    static const std::vector<Stroke> strokes = {{Qt::Key_Tab}, {Qt::Key_Tab}, {Qt::Key_Tab},
        {Qt::Key_Tab}, {Qt::Key_Backtab, Qt::ShiftModifier}, {Qt::Key_Backtab, Qt::ShiftModifier},
        {Qt::Key_Return}, {Qt::Key_Return}, {Qt::Key_Enter, Qt::KeypadModifier}, {Qt::Key_Up},
        {Qt::Key_Down}, {Qt::Key_Down}, {Qt::Key_Left}, {Qt::Key_Right}, {Qt::Key_Home},
        {Qt::Key_End}, {Qt::Key_PageUp}, {Qt::Key_PageDown}, {Qt::Key_Home, Qt::ControlModifier},
        {Qt::Key_End, Qt::ControlModifier}, {Qt::Key_A, Qt::ControlModifier},
        {Qt::Key_Space, Qt::ControlModifier}, {Qt::Key_Space}, {Qt::Key_Delete},
        {Qt::Key_Backspace}, {Qt::Key_Z, Qt::ControlModifier}, {Qt::Key_X, Qt::ControlModifier},
        {Qt::Key_V, Qt::ControlModifier}, {Qt::Key_Left, Qt::ControlModifier},
        {Qt::Key_Right, Qt::ControlModifier}, {Qt::Key_Right, Qt::ShiftModifier},
        {Qt::Key_Down, Qt::ShiftModifier}, {Qt::Key_3, Qt::ControlModifier},
        {Qt::Key_2, Qt::ControlModifier}, {Qt::Key_F1}, {Qt::Key_F4},
        {Qt::Key_Down, Qt::AltModifier}, {Qt::Key_V, Qt::AltModifier}, {Qt::Key_U, Qt::AltModifier},
        {Qt::Key_E, Qt::AltModifier}, {Qt::Key_Insert}};
    const Stroke stroke = m_chance.Of(strokes);
    Press(stroke.Key, stroke.Modifiers);
}

void WindowWalk::ClickAnything()
{
    const QString name = VisibleControl();
    QWidget &control = Any(name);
    if (m_chance.Percent(55)) {
        ClickControl(name);
    } else if (m_chance.Percent(30)) {
        const QString other = VisibleControl();
        QWidget &end = m_chance.Percent(50) ? control : Any(other);
        m_hands.Drag(control, AnyPointIn(control), end, AnyPointIn(end), Qt::LeftButton);
    } else if (m_chance.Percent(20)) {
        m_hands.DoubleClick(control, control.rect().center());
    } else if (m_chance.Percent(20)) {
        m_hands.Wheel(control, control.rect().center(), m_chance.Percent(50) ? 1 : -1);
    } else {
        m_hands.Click(control, AnyPointIn(control),
            m_chance.Of(std::array{Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}));
    }
}

void WindowWalk::ClickRow(int row)
{
    clsGrid &grid = Grid();
    const QModelIndex cell = grid.model()->index(row - 1, 2 + m_chance.Below(8));
    grid.scrollTo(cell);
    const bool free = !Window()->isWindowModified() && !MenuHasTheKeys();
    m_hands.Click(*grid.viewport(), grid.visualRect(cell).center());
    if (!IsOpen() || !free || m_oracle->ErrorWasShown() || m_oracle->MessageWasShown())
        return;
    const ShownEntry now = LookAt(*Window());
    if (!now.IsRecord || now.MarkedRow != row)
        m_oracle->Find(u"a click on row %1 leaves row %2 in the editor"_s.arg(row).arg(
            now.IsRecord ? now.MarkedRow : 0));
}

void WindowWalk::UseGrid()
{
    clsGrid &grid = Grid();
    QWidget &cells = *grid.viewport();
    const int rows = grid.TextMatrix(1, 0).isEmpty() ? 0 : grid.Rows() - 1;
    switch (m_chance.Below(10)) {
    case 0:
        m_hands.Click(
            *grid.horizontalHeader()->viewport(), AnyPointIn(*grid.horizontalHeader()->viewport()));
        break;
    case 1:
        m_hands.Click(
            cells, AnyPointIn(cells), m_chance.Percent(50) ? Qt::RightButton : Qt::MiddleButton);
        break;
    case 2:
        m_hands.Drag(cells, AnyPointIn(cells), cells, AnyPointIn(cells),
            m_chance.Of(std::array{Qt::LeftButton, Qt::RightButton}));
        break;
    case 3:
        m_hands.Wheel(cells, AnyPointIn(cells), m_chance.Percent(50) ? 1 : -1);
        break;
    case 4:
        m_hands.DoubleClick(cells, AnyPointIn(cells));
        break;
    case 5:
        m_hands.Click(cells, AnyPointIn(cells));
        break;
    default:
        if (rows > 0)
            ClickRow(1 + m_chance.Below(rows));
    }
}

void WindowWalk::LeaveField()
{
    if (!IsOpen() || QApplication::activePopupWidget() != nullptr)
        return;
    switch (m_chance.Below(5)) {
    case 0:
    case 1:
        return Press(Qt::Key_Tab);
    case 2:
        return Press(Qt::Key_Return);
    case 3:
        return Press(Qt::Key_Backtab, Qt::ShiftModifier);
    default:
        return ClickControl(VisibleControl());
    }
}

void WindowWalk::EnterInto(const QString &box, const QString &text)
{
    if (!IsOpen() || !Any(box).isVisible() || !Any(box).isEnabled())
        return;
    ClickControl(box);
    if (!IsOpen() || FocusName() != box)
        return;
    if (box != "dtpDate"_L1)
        m_hands.Key(Qt::Key_A, Qt::ControlModifier);
    if (text.isEmpty())
        m_hands.Key(Qt::Key_Delete);
    m_hands.Type(text);
}

void WindowWalk::EnterField()
{
    const QString box = m_chance.Percent(10) ? u"dtpDate"_s : m_chance.Of(Boxes);
    EnterInto(box, WordFor(box));
    if (m_chance.Percent(80))
        LeaveField();
}

void WindowWalk::EnterEntry()
{
    for (const QString &box :
        {u"txtCustomer"_s, u"txtProject"_s, u"txtActivity"_s, u"txtHours"_s, u"txtDescription"_s}) {
        EnterInto(box, WordFor(box));
        if (m_chance.Percent(60) && IsOpen() && QApplication::activePopupWidget() == nullptr)
            Press(Qt::Key_Tab);
    }
    if (IsOpen())
        ClickControl(u"cmdOK"_s);
}

void WindowWalk::PickFromList()
{
    const QString name = m_chance.Of(Lists);
    auto &list = Control<QComboBox>(*Window(), qPrintable(name));
    if (!list.isVisible())
        return;
    m_hands.Click(list, AnyPointIn(list));
    QWidget *popUp = QApplication::activePopupWidget();
    if (popUp == nullptr || !popUp->isAncestorOf(list.view()))
        return;
    QAbstractItemView &items = *list.view();
    const QModelIndex item = items.model()->index(m_chance.Below(list.count()), 0);
    if (m_chance.Percent(80))
        m_hands.Click(*items.viewport(), items.visualRect(item).center());
}

void WindowWalk::PickDate()
{
    QWidget &picker = Any(u"dtpDate"_s);
    m_hands.Click(picker, {picker.width() - 5, picker.height() / 2}); // opens the calendar
    if (QWidget *popUp = QApplication::activePopupWidget())
        m_hands.Click(*popUp, AnyPointIn(*popUp));
}

void WindowWalk::PressCommand()
{
    ClickControl(m_chance.Of(std::array{u"cmdOK"_s, u"cmdOK"_s, u"cmdUndo"_s, u"cmdDel"_s}));
}

void WindowWalk::OpenDialog()
{
    switch (m_chance.Below(4)) {
    case 0:
        return ClickControl(u"cmdHrsSumm"_s);
    case 1:
        return ClickControl(u"cmdTransFilter"_s);
    case 2:
        if (CodeBoxes.contains(FocusName()))
            return Press(Qt::Key_F2);
        [[fallthrough]];
    default:
        const QString name = m_chance.Of(
            std::array{u"cmdCustomer"_s, u"cmdProject"_s, u"cmdActivity"_s, u"cmdMultiplier"_s});
        if (Any(name).isVisible())
            ClickControl(name);
    }
}

void WindowWalk::UseMenu()
{
    switch (m_chance.Below(4)) {
    case 0:
        return Press(Qt::Key_Alt, Qt::AltModifier);
    case 1:
        return Press(Qt::Key_F10);
    default: {
        QMenuBar &bar = *Window()->menuBar();
        m_hands.Click(bar, bar.actionGeometry(m_chance.Of(bar.actions())).center());
    }
    }
}

void WindowWalk::PasteOrDrop()
{
    static const QStringList texts = {u"ACME"_s, u"P1"_s, u"CONS"_s, u"1.5"_s, u"12345"_s,
        u"two\nlines"_s, u"mile"_s, u"99999999999999"_s, u"\t"_s};
    const QString text = m_chance.Of(texts);
    if (m_chance.Percent(60)) {
        QApplication::clipboard()->setText(text);
        return Press(Qt::Key_V, Qt::ControlModifier);
    }
    const QString name = m_chance.Of(Boxes);
    QWidget &box = Any(name);
    if (!box.isVisible() || !box.isEnabled())
        return;
    EventComes(u"drop of '%1' on %2"_s.arg(text, name));
    QMimeData dragged;
    dragged.setText(text);
    const QPoint at = box.rect().center();
    QDragEnterEvent enter(at, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&box, &enter);
    QDropEvent drop(at, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&box, &drop);
    WalkHands::LetEverythingHappen();
    EventIsOver();
}

void WindowWalk::ChangeWindow()
{
    if (m_chance.Percent(50)) {
        const QSize size(800 + m_chance.Below(400), 420 + m_chance.Below(400));
        EventComes(u"the window is made %1 x %2"_s.arg(size.width()).arg(size.height()));
        Window()->resize(size);
        WalkHands::LetEverythingHappen();
        return EventIsOver();
    }
    EventComes(u"another window and back"_s);
    ShowActive(m_otherWindow);
    ShowActive(*Window());
    WalkHands::LetEverythingHappen();
    m_otherWindow.hide();
    EventIsOver();
}

void WindowWalk::LeaveOrClose()
{
    switch (m_chance.Below(3)) {
    case 0:
        EventComes(u"the window is closed"_s);
        Window()->close();
        WalkHands::LetEverythingHappen();
        return EventIsOver();
    case 1:
        m_oracle->MayAskMore();
        return ClickControl(u"cmdSync"_s);
    default:
        return Press(Qt::Key_Escape);
    }
}

void WindowWalk::PopUpStep(QWidget &popUp)
{
    static const std::vector<Qt::Key> keys = {Qt::Key_Up, Qt::Key_Down, Qt::Key_Down,
        Qt::Key_Return, Qt::Key_Return, Qt::Key_Escape, Qt::Key_Tab, Qt::Key_Home, Qt::Key_End,
        Qt::Key_Right, Qt::Key_Left, Qt::Key_N, Qt::Key_D, Qt::Key_Space};
    switch (m_chance.Below(5)) {
    case 0:
        return m_hands.Click(popUp, AnyPointIn(popUp));
    case 1: {
        QWidget &control = Any(VisibleControl());
        return m_hands.Click(control, AnyPointIn(control)); // outside, which closes it
    }
    default:
        return Press(m_chance.Of(keys));
    }
}
