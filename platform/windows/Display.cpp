#include "platform/Display.h"

void ChooseDisplay()
{
    // Whoever is logged on has one, and services have one that nobody sees.
}

void NeedNoDisplay()
{
    // Elsewhere the toolkit would find no fonts.
}
