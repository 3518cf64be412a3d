// What needs a display made for the test, or the probe inside the program.

#include "tests/endtoend/driver/ProgramUnderTest.h"
#include "tests/endtoend/driver/VirtualDisplay.h"
#include "tests/endtoend/driver/WorkPlace.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(LinuxWays, AMessagesButtonHasWordsAlone)
{
    const WorkPlace place;
    const VirtualDisplay display;
    ProgramUnderTest program(place.ProgramFolder(), display);
    program.WaitForMessage(u"Please perform a synchronization first."_s);
    EXPECT_FALSE(program.HasPicture(u"OK"_s)); // as everywhere in the program
}

TEST(LinuxWays, TheMouseWorksOnADisplayAtTwoHundredPercent)
{
    const WorkPlace place;
    place.Synchronise();
    const VirtualDisplay display({2732, 1536});
    ProgramUnderTest program(place.ProgramFolder(), display, {{u"QT_SCALE_FACTOR"_s, u"2"_s}});
    program.WaitForWindow();
    program.Click(u"cmdCustomer"_s);
    program.WaitUntilActive(u"frmLookup"_s);
    program.ClickRow(u"msgLookup"_s, 2);
    program.Click(u"cmdSelect"_s);
    program.WaitUntilClosed(u"frmLookup"_s);
    program.WaitForText(u"txtCustomer"_s, u"0120"_s);
}
