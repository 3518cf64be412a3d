#include "platform/Display.h"

#include <QByteArray>

void ChooseDisplay()
{
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        return;
    const bool isNamed
        = qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    // A display that is named but cannot be reached leaves the second choice.
    qputenv("QT_QPA_PLATFORM", QByteArray(isNamed ? "xcb;offscreen" : "offscreen"));
}
