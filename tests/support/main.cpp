#include "platform/Display.h"
#include "platform/Look.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    // The build lists each program's tests by running it, also where there is no display.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        NeedNoDisplay();
    testing::InitGoogleTest(&argc, argv);
    ChooseLook();
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
