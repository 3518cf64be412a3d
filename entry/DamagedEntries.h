#pragma once

#include "store/modDBEntr.h"

#include <QString>

#include <vector>

/// What the user is told of entries that are not as they were saved, one line an entry; moves the
/// cursor.
QString DamagedEntriesText(modDBEntr &entries, const std::vector<qint32> &positions);
