#pragma once

#include <QColor>
#include <QPalette>

/// Colours that can be told apart, whatever the desktop's theme chooses.

constexpr double LeastTextContrast = 4.5; ///< of text on what it stands on
constexpr double LeastPartContrast = 3.0; ///< of frames and marks beside what they stand on

/// How much the luminances differ, from 1 (not at all) to 21 (black and white), as the Web Content
/// Accessibility Guidelines compute it. Opaque colours.
double ContrastRatio(const QColor &one, const QColor &other);

/// The roles of the palette that cannot be read, put right, and no others: text as little lighter
/// or darker as it takes, and the selection so that it stands out from the window and its text from
/// it. Disabled controls still look disabled, but what they say can be made out. An entirely
/// readable palette gives an empty one.
QPalette ReadableColours(const QPalette &palette);

/// The colour of the lines around boxes: it stands out from the window and from the boxes.
QColor LineColour(const QPalette &palette);

/// The colour of lines that only order what they stand between: in a grid, around a group. They are
/// faint, and there in every palette.
QColor FaintLineColour(const QPalette &palette, QPalette::ColorRole surface);
