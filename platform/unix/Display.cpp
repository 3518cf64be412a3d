#include "platform/Display.h"

#include <QByteArray>

void ChooseDisplay()
{
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        return;
    // Each is tried in turn: a display that is named but cannot be reached leaves the next choice.
    if (qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "wayland;xcb;offscreen");
    else if (qEnvironmentVariableIsSet("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "xcb;offscreen");
    else
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

void NeedNoDisplay()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
}
