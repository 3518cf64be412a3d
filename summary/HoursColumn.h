#pragma once

/// The columns of the hours summary.
namespace HoursColumn {
constexpr int DateHidden = 0; ///< hidden: yyyymmdd, by which the date column sorts
constexpr int Date = 1;
constexpr int Billable = 2;
constexpr int NoCharge = 3;
constexpr int DoNotBill = 4;
constexpr int TotalHours = 5;
constexpr int Amount = 6;
constexpr int UniqueId = 7; ///< hidden: the day's record position in the scratch table
constexpr int Count = 8;

// Twips; the hidden columns have none.
constexpr int DateTwips = 960;
constexpr int NumberTwips = 1160;
constexpr int ExtraTwips = 110; ///< comes to every visible column
} // namespace HoursColumn
