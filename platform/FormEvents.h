#pragma once

#include <QFocusEvent>
#include <QKeyEvent>
#include <QPalette>
#include <QWidget>

/// What every window of the program asks about its events, and how it draws two common things.

inline bool IsEnter(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

/// Keys that move on, close or ask for help; no control swallows them.
inline bool BelongsToTheWindow(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab
        || event.key() == Qt::Key_Escape || event.key() == Qt::Key_F1 || event.key() == Qt::Key_Alt
        || event.modifiers().testFlag(Qt::AltModifier);
}

/// Coming back to the window, or from a menu or list of it, is not entering a field.
inline bool EntersField(const QFocusEvent &event)
{
    return event.reason() != Qt::ActiveWindowFocusReason && event.reason() != Qt::PopupFocusReason
        && event.reason() != Qt::MenuBarFocusReason;
}

/// The colour of a window's background, or of a button's face for what cannot be edited.
void DrawBackground(QWidget &widget, bool buttonFace);

/// A caption for a label that leads to a field, which would read "&" as the sign of a shortcut.
inline QString CaptionText(QString text)
{
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

/// What a screen reader calls the button beside a field of that caption, which shows dots only.
inline QString LookUpName(const QString &caption)
{
    return QLatin1String("Look up ") + caption;
}
