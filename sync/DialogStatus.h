#pragma once

#include "platform/clsClock.h"
#include "session/SessionState.h"
#include "store/Tables.h"

#include <QString>

#include <array>

/// The four panels of a dialog's status bar: the company's name, the employee's code, the
/// company's code and today's date. Before a first synchronisation there is the date only.
std::array<QString, 4> DialogStatus(
    const Tables &tables, const SessionState &session, const clsClock &clock);
