#pragma once

#include "store/Records.h"

#include <QString>

#include <string>
#include <unordered_map>

/// How entries stand in an upload file.
///
/// Shape:  one line an entry, its nineteen fields in table order, a header before them.
/// Exact:  equal entries give equal lines and different ones different lines, so that an entry is
///         recognised by its line: numbers with four decimals, dates "yyyy-MM-dd HH:mm:ss", texts
///         as they are.

/// Lines, each with the number of entries that it stands for.
using EntryLines = std::unordered_map<std::string, qint64>;

std::string EntryHeader(); ///< with its line end, like the one below
std::string EntryLine(const EntryRecord &entry);

/// The lines of a complete upload file.
/// Errors: those of CsvReader, and a header or a number of cells that is not ours.
EntryLines ReadEntryLines(const QString &fileName);
