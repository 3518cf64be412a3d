#pragma once

/// To be called first by a program with windows that also answers on a command line: what it
/// prints shows in the console it was called from, if there is one.
void UseCallersConsole();

/// What is written to standard output from then on arrives byte by byte, line ends too.
void SendOutputAsItIs();
