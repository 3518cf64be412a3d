#include "platform/Look.h"

void ChooseLook()
{
    // The desktop's theme decides.
}
