#include "platform/Console.h"

void UseCallersConsole()
{
    // Every program has it already.
}

void SendOutputAsItIs()
{
    // As ever.
}
