#pragma once

#include <QStringList>

/// What the program was called with, without its own name. To be asked before the application
/// object, which takes out what it knows.
QStringList ProgramArguments(int argc, char **argv);

/// The program's own file under the name that it was started by: a link to it is not resolved. Its
/// real name when it was found by a search, as in a command shell. `calledAs` is the first argument
/// of main. To be called in the folder that the program was started in.
QString ProgramFile(const char *calledAs);
