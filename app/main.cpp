#include "app/clsApplication.h"
#include "app/clsProgram.h"
#include "help/clsHelp.h"
#include "platform/clsRunTimeError.h"
#include "platform/clsWindowFolderBrowser.h"
#include "platform/clsWindowMessageBox.h"
#include "platform/Look.h"
#include "platform/Paths.h"
#include "platform/ProgramIcon.h"

#include <algorithm>
#include <cstdlib>

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    ChooseLook();
    clsWindowMessageBox messages;
    // There are no command-line options, not even the toolkit's: it gets the program's name alone.
    int ownName = std::min(argc, 1);
    clsApplication application(ownName, argv, messages);
    // A caret that stands still: a window that nobody touches does not wake the computer.
    QApplication::setCursorFlashTime(0);
    // Under this name the desktop knows the program's icon; on others the windows bring it along.
    QApplication::setDesktopFileName(u"org.worklogremote.WorklogRemote"_s);
    QApplication::setWindowIcon(ProgramIcon());
    // Between two main windows, while the accounting client works, no window is open at all.
    QApplication::setQuitOnLastWindowClosed(false);

    clsProgramKeys keys;
    clsSystemProcess process;
    const clsSystemClock clock;
    clsUserSettings settings;
    clsWindowFolderBrowser browser;
    QString folder;
    try {
        folder = ProgramFolder();
    } catch (const clsRunTimeError &error) {
        ShowStartError(error, messages);
        return EXIT_FAILURE;
    }
    clsHelp help(JoinPath(folder, u"WL.HLP"_s), messages);
    clsProgram program(folder, {messages, keys, process, clock, settings, browser});

    QObject::connect(&program, &clsProgram::MainWindowChanged, [&](QWidget *window) {
        messages.SetParent(window);
        if (window == nullptr)
            help.CloseViewer();
    });
    bool ended = false;
    int exitStatus = EXIT_SUCCESS;
    QObject::connect(&program, &clsProgram::Ended, [&](int status) {
        ended = true;
        exitStatus = status;
        QApplication::exit(status);
    });
    program.StartUp();
    // It may have ended in its own message boxes, before this event loop could be told.
    return ended ? exitStatus : QApplication::exec();
}
