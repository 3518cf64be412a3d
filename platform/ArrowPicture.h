#pragma once

#include "platform/clsGridView.h"

#include <QPixmap>
#include <QWidget>

/// A small triangle that points up for an ascending order and down for a descending one, in the
/// window's text colour and at its resolution: what the picture boxes of a grid's window hold.
QPixmap ArrowPicture(const QWidget &window, SortOrder order);
