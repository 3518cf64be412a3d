#pragma once

#include <QIcon>

/// The icon of the program and of what comes with it, in every size that desktops ask for.
QIcon ProgramIcon();
