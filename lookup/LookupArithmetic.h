#pragma once

#include <QtGlobal>

/// Where a list of any length is scrolled to and which row is current: the lookup's arithmetic,
/// without a window.
///
/// Units: positions count from 0 at the list's first record; rows count from 1, row 0 being the
///        header; a scroll value is the position of the page's first record.

/// Rows of a page: 11, or all records when there are fewer.
qint32 LookupPageRowsOf(qint32 count);

/// How the scroll bar beside the grid is set up.
struct LookupScroll
{
    bool Visible = false;
    qint32 Maximum = 0; ///< the minimum is 0, and so is the maximum of a hidden one
    qint32 LargeChange = 0;
};
LookupScroll SetupLookupScroll(qint32 count, qint32 pageRows);

/// Where the search for a text leaves the grid.
struct LookupPlace
{
    qint32 ScrollValue = 0;
    qint32 Row = 1;
    qint32 TopRow = 1;

    friend bool operator==(const LookupPlace &, const LookupPlace &) = default;
};
/// `position` is that of the match, `count` when there is none. `count` is not 0.
LookupPlace PlaceOfMatch(qint32 position, qint32 count, qint32 pageRows, qint32 maximumScrollValue);

enum class LookupPaging
{
    Up,
    Down,
    PageUp,
    PageDown
};

/// The current row and the scroll value, before or after a key.
struct LookupCursor
{
    qint32 ScrollValue = 0;
    qint32 Row = 1;

    friend bool operator==(const LookupCursor &, const LookupCursor &) = default;
};
/// A key moves the row within the page; at the page's edges the list scrolls under the row.
LookupCursor PageBy(
    LookupPaging key, LookupCursor from, qint32 pageRows, qint32 maximumScrollValue);
