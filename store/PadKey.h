#pragma once

#include <QString>

/// Widths of the keys by which reference records are found, in characters.
namespace KeyWidth {
constexpr int Customer = 15;
constexpr int Project = 15; ///< after the customer's 15
constexpr int Activity = 15;
constexpr int Division = 2;
constexpr int Employee = 3;
constexpr int Multiplier = 2;
} // namespace KeyWidth

/// The code left-justified in blanks, exactly `width` characters long; a longer one is cut.
inline QString PadKey(const QString &value, int width)
{
    return value.leftJustified(width, QLatin1Char(' '), true);
}

/// Customer and project code together: a project is known under its customer only.
inline QString ProjectKey(const QString &customer, const QString &project)
{
    return PadKey(customer, KeyWidth::Customer) + PadKey(project, KeyWidth::Project);
}
