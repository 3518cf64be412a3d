// What the desktop's own look could bring into the program's windows.

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
