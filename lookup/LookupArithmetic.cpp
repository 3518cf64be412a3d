#include "lookup/LookupArithmetic.h"

#include <algorithm>

namespace {

constexpr qint32 FullPageRows = 11;

} // namespace

qint32 LookupPageRowsOf(qint32 count)
{
    return std::min(FullPageRows, count);
}

LookupScroll SetupLookupScroll(qint32 count, qint32 pageRows)
{
    if (count < FullPageRows)
        return {};
    return {true, count - pageRows, pageRows - 1};
}

LookupPlace PlaceOfMatch(qint32 position, qint32 count, qint32 pageRows, qint32 maximumScrollValue)
{
    qint32 offset = position;
    if (position >= pageRows) {
        offset = pageRows - (count - position);
        if (offset < 1)
            offset = position;
        // Kept as it is: past the last record of a list longer than a page the offset is the whole
        // page, and the page's first row becomes the current one.
        if (offset >= pageRows)
            offset = offset == count ? offset - 1 : 0;
    }
    LookupPlace place;
    if (position >= pageRows)
        place.ScrollValue = std::min(position, maximumScrollValue);
    place.Row = offset + 1;
    if (place.Row > pageRows)
        place.TopRow = place.Row - pageRows + 1;
    return place;
}

LookupCursor PageBy(LookupPaging key, LookupCursor from, qint32 pageRows, qint32 maximumScrollValue)
{
    // A page holds one record more than its rows; that last row counts as the one before it.
    const qint32 row = std::min(from.Row, pageRows);
    LookupCursor to = from;
    switch (key) {
    case LookupPaging::Up:
        to.Row = std::max(from.Row - 1, 1);
        if (row == 1)
            to.ScrollValue = std::max(from.ScrollValue - 1, 0);
        break;
    case LookupPaging::Down:
        to.Row = std::min(row + 1, pageRows);
        if (row == pageRows)
            to.ScrollValue = std::min(from.ScrollValue + 1, maximumScrollValue);
        break;
    case LookupPaging::PageUp:
        to.Row = 1;
        if (row == 1)
            to.ScrollValue = std::max(from.ScrollValue - (pageRows - 1), 0);
        break;
    case LookupPaging::PageDown:
        to.Row = pageRows;
        if (row == pageRows)
            to.ScrollValue = std::min(from.ScrollValue + pageRows - 1, maximumScrollValue);
        break;
    }
    return to;
}
