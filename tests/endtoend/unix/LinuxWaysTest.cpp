// What needs a display made for the test, or the probe inside the program.

#include "tests/endtoend/driver/ProgramUnderTest.h"
#include "tests/endtoend/driver/VirtualDisplay.h"
#include "tests/endtoend/driver/WorkPlace.h"

#include "tests/endtoend/driver/System.h"

#include <QFile>
#include <QImage>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// The main window of the folder's program after it was started with these arguments.
QImage MainWindowOf(
    const WorkPlace &place, const VirtualDisplay &display, const QStringList &arguments)
{
    ProgramUnderTest program({place.InProgramFolder(FileNameOf(u"WorklogRemote"_s)),
                                 UserOf(place.ProgramFolder()), arguments},
        display);
    program.WaitForFocus(u"dtpDate"_s);
    const QString picture = place.InProgramFolder(u"window.png"_s);
    program.Photograph(picture, u"frmEntryList"_s);
    return QImage(picture);
}

/// A client that runs until the file "end" appears in its folder.
void MakeWaitingClient(const WorkPlace &place)
{
    QFile client(place.Client());
    ASSERT_TRUE(client.remove());
    ASSERT_TRUE(client.open(QIODevice::WriteOnly));
    client.write("#!/bin/sh\n>started\nuntil [ -e end ]; do sleep 0.05; done\n");
    ASSERT_TRUE(client.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

} // namespace

TEST(LinuxWays, TheToolkitsCommandLineOptionsAreNotHonored)
{
    const WorkPlace place;
    place.Synchronise();
    const VirtualDisplay display;
    const QString sheet = place.InProgramFolder(u"style.qss"_s);
    QFile file(sheet);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("* { color: red; }");
    file.close();
    const QImage plain = MainWindowOf(place, display, {});
    ASSERT_FALSE(plain.isNull());
    for (const QStringList &arguments : std::vector<QStringList>{{u"-platform"_s, u"minimal"_s},
             {u"-style"_s, u"windows"_s}, {u"-stylesheet"_s, sheet}, {u"-reverse"_s},
             {u"-geometry"_s, u"500x400+7+9"_s}, {u"-qwindowgeometry"_s, u"500x400+7+9"_s},
             {u"-display"_s, u":nowhere"_s}, {u"-qmljsdebugger=port:1,block"_s}, {u"--help"_s}})
        EXPECT_EQ(MainWindowOf(place, display, arguments), plain)
            << qPrintable(arguments.join(u' '));
}

TEST(LinuxWays, TheHelpIsClosedWhileTheClientRuns)
{
    const WorkPlace place;
    place.Synchronise();
    MakeWaitingClient(place);
    const VirtualDisplay display;
    ProgramUnderTest program(place.ProgramFolder(), display);
    program.WaitForFocus(u"dtpDate"_s);
    program.Key(u"F1"_s);
    program.WaitForTitle(u"frmHelp"_s, u"The main window - Worklog Remote Help"_s);
    program.ComeBackTo(u"frmEntryList"_s);
    program.Key(u"alt+s"_s);
    ProgramUnderTest::WaitUntil(
        u"the client to start"_s, [&] { return QFile::exists(place.InRoot(u"Home/started"_s)); });
    EXPECT_FALSE(program.IsOpen(u"frmEntryList"_s));
    EXPECT_FALSE(program.IsOpen(u"frmHelp"_s));
    QFile end(place.InRoot(u"Home/end"_s));
    ASSERT_TRUE(end.open(QIODevice::WriteOnly));
    program.WaitUntilActive();
    EXPECT_FALSE(program.IsOpen(u"frmHelp"_s));
    program.Key(u"F1"_s);
    program.WaitForTitle(u"frmHelp"_s, u"The main window - Worklog Remote Help"_s);
}

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
