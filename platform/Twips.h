#pragma once

#include <QWidget>

/// A length in twips (1,440 to the logical inch) in the pixels of the widget's screen.
inline int PixelsFromTwips(int twips, const QWidget &widget)
{
    return qRound(twips * widget.logicalDpiX() / 1440.0);
}
