#pragma once

#include <QPoint>
#include <QString>
#include <QWidget>

#include <functional>
#include <random>
#include <vector>

/// Chance that can be repeated: the same number begins the same sequence.
class WalkChance
{
public:
    explicit WalkChance(unsigned number)
        : m_random(number)
    {
    }
    int Below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }
    bool Percent(int percent) { return Below(100) < percent; }
    template <class List>
    const auto &Of(const List &list)
    {
        return list[static_cast<decltype(list.size())>(Below(static_cast<int>(list.size())))];
    }
    unsigned Number() { return static_cast<unsigned>(m_random()); }

private:
    std::mt19937 m_random;
};

/// A user's hands. Every event comes through the window system's side of the toolkit, so that
/// pop-ups, menus, shortcuts and the mouse's grab work as they do for a user.
class WalkHands
{
public:
    /// Called before and after everything that the hands do; the text says what.
    std::function<void(const QString &what)> Before = [](const QString &) {};
    std::function<void()> After = [] {};

    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void Type(const QString &text); ///< key by key
    void Click(QWidget &control, QPoint at, Qt::MouseButton button = Qt::LeftButton);
    void Click(QWidget &control) { Click(control, control.rect().center()); }
    void DoubleClick(QWidget &control, QPoint at);
    void Drag(QWidget &from, QPoint start, QWidget &to, QPoint end, Qt::MouseButton button);
    void Wheel(QWidget &control, QPoint at, int steps);

    /// Until nothing is waiting: no event and no key that the program sends.
    static void LetEverythingHappen();

private:
    void Do(const QString &what, const std::function<void()> &action);
};

/// "txtHours", or what else a user would call it.
QString NameOf(const QWidget &control);
