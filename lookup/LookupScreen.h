#pragma once

#include "lookup/LookupArithmetic.h"

#include <QString>
#include <QStringList>

#include <array>
#include <optional>

/// The lookup's window as its module sees it, the grid aside: the module decides here, the form
/// draws it, and what the user types or scrolls to stands here before the module is asked.
struct LookupScreen
{
    static constexpr int StatusPanels = 4;

    enum class Control
    {
        txtLookup,
        msgLookup
    };

    QString SearchText;
    QStringList LookupByItems;
    int LookupByIndex = -1;
    LookupScroll Scroll;
    qint32 ScrollValue = 0;
    bool GridEnabled = true;
    std::array<QString, StatusPanels> Panels;
    std::optional<Control> Focus; ///< taken away by the form when it has moved the focus
    bool Closed = false; ///< the window is to go
};
