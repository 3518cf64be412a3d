#pragma once

#include <QStringList>

/// What the program was called with, without its own name. To be asked before the application
/// object, which takes out what it knows.
QStringList ProgramArguments(int argc, char **argv);
