#pragma once

/// To be called first by a program that answers on a command line, if it has windows, too: what it
/// prints shows in the console it was called from, foreign letters as well.
void UseCallersConsole();

/// What is written to standard output from then on arrives byte by byte, line ends too.
void SendOutputAsItIs();
