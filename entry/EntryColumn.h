#pragma once

/// The columns of the entry list.
namespace EntryColumn {
constexpr int UniqueId = 0; ///< hidden: the record position in the Entries table
constexpr int DateHidden = 1; ///< hidden: yyyymmdd, by which the date column sorts
constexpr int Date = 2;
constexpr int Customer = 3;
constexpr int Project = 4;
constexpr int Activity = 5;
constexpr int TimeOrExpense = 6; ///< "T" or "E"
constexpr int Hours = 7;
constexpr int Rate = 8;
constexpr int Amount = 9;
constexpr int Count = 10;
} // namespace EntryColumn
