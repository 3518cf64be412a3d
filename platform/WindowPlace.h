#pragma once

#include "platform/clsSettings.h"

#include <QList>
#include <QRect>
#include <QWidget>

/// Where a window was when it was last open. Kept in the user's settings, section "Window", key
/// "Place": the frame's left and top, the window's width and height without the frame, how much
/// wider and higher the frame is, and whether it was maximised (1) or not (0), parted by blanks.

/// The rectangle, moved and made smaller as little as needed for all of it to lie on one of the
/// screens: the one on which most of it lies, else the first. Without a screen it is left alone.
QRect PlaceOnScreens(const QRect &wanted, const QList<QRect> &screens);

/// Nothing happens when the settings cannot be saved: the window then opens where it did before.
void SaveWindowPlace(const QWidget &window, clsSettings &settings);

/// Before the window is shown. What is not a place that was saved is passed over.
void RestoreWindowPlace(QWidget &window, const clsSettings &settings);
