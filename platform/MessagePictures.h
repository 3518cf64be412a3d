#pragma once

#include <QIcon>
#include <QStyle>

/// The picture of a message box, drawn as large as it is wanted: the widget set's own are small
/// pictures that blur on a display of high resolution. A null icon for what is none of a message
/// box's.
QIcon MessagePicture(QStyle::StandardPixmap picture);
