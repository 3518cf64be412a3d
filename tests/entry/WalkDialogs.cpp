// What a walk does in the dialogs, whose loops run inside the event that has opened them.

#include "platform/clsGrid.h"
#include "tests/entry/WindowWalk.h"
#include "tests/support/Windows.h"

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>

using namespace Qt::StringLiterals;

namespace {

template <class Window>
bool IsShown(const QPointer<Window> &window)
{
    const Window *still = window.data();
    return still != nullptr && still->isVisible();
}

} // namespace

void WindowWalk::UseContextMenu(const QPointer<QMenu> &menu)
{
    static const std::vector<Qt::Key> keys
        = {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Return, Qt::Key_Escape};
    for (int i = m_chance.Below(5); i > 0 && IsShown(menu); --i)
        m_hands.Key(m_chance.Of(keys));
    if (IsShown(menu))
        m_hands.Key(Qt::Key_Escape);
    if (!IsOpen())
        m_oracle->Find(u"Esc in a context menu ends the program"_s);
    if (IsShown(menu)) {
        m_oracle->Find(u"a menu cannot be closed"_s);
        menu->close();
    }
}

void WindowWalk::UseDialog(const QPointer<QDialog> &dialog)
{
    if (!dialog)
        return;
    // A message that opens while the focus moves may stay inactive here; it is answered all the
    // same.
    static_cast<void>(WaitUntilActive(*dialog));
    if (qobject_cast<QMessageBox *>(dialog) != nullptr)
        return AnswerBox(*dialog);
    for (int i = m_chance.Below(12); i > 0 && IsShown(dialog); --i)
        DialogStep(*dialog);
    if (IsShown(dialog))
        CloseDialog(*dialog);
}

void WindowWalk::AnswerBox(QDialog &box)
{
    const QList<QPushButton *> buttons = box.findChildren<QPushButton *>();
    const QPointer<QDialog> open(&box);
    if (m_chance.Percent(30))
        m_hands.Key(Qt::Key_Escape);
    else
        m_hands.Click(*m_chance.Of(buttons));
    if (IsShown(open))
        m_oracle->Find(u"a message cannot be answered"_s);
}

void WindowWalk::DialogStep(QDialog &dialog)
{
    static const std::vector<Qt::Key> keys = {Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Backtab,
        Qt::Key_Down, Qt::Key_Up, Qt::Key_PageDown, Qt::Key_PageUp, Qt::Key_Return, Qt::Key_F2,
        Qt::Key_Delete, Qt::Key_Space, Qt::Key_Home};
    if (QWidget *popUp = QApplication::activePopupWidget())
        return PopUpStep(*popUp);
    const QWidget *focus = dialog.focusWidget();
    switch (m_chance.Below(4)) {
    case 0:
        if (focus != nullptr)
            m_hands.Type(WordFor(focus->objectName()));
        return;
    case 1:
        return m_hands.Key(m_chance.Of(keys));
    default: {
        QWidget *control = dialog.childAt(AnyPointIn(dialog));
        if (control == nullptr)
            return;
        if (m_chance.Percent(10))
            m_hands.DoubleClick(*control, AnyPointIn(*control));
        else
            m_hands.Click(*control, AnyPointIn(*control),
                m_chance.Percent(85) ? Qt::LeftButton : Qt::RightButton);
    }
    }
}

void WindowWalk::CloseDialog(QDialog &dialog)
{
    const QPointer<QDialog> open(&dialog);
    while (QWidget *popUp = QApplication::activePopupWidget())
        popUp->close();
    const auto buttons = m_chance.Percent(50) ? std::array{"cmdSelect", "cmdOK", "cmdAccept"}
                                              : std::array{"cmdCancel", "cmdCancel", "cmdCancel"};
    for (const char *name : buttons) {
        auto *button = open ? open->findChild<QPushButton *>(QString::fromLatin1(name)) : nullptr;
        if (button != nullptr && IsShown(open) && button->isEnabled())
            m_hands.Click(*button);
    }
    if (IsShown(open))
        m_hands.Key(Qt::Key_Escape);
    if (!IsShown(open))
        return;
    m_oracle->Find(u"%1 cannot be closed"_s.arg(open->objectName()));
    open->close();
}
