#pragma once

#include <QtGlobal>

/// Which header of a grid last received a sort arrow. One pair serves the entry list and the
/// hours summary, so that a sort in one decides what a click in the other toggles.
struct SortState
{
    qint16 SortColumn = 0;
    qint16 SortDirection = 0; ///< 1 ascending, 2 descending
};
