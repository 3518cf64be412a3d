// Shows a text in a message box, for scripts. It is the only program of its kind that is certain to
// be installed wherever Worklog Remote is.

#include "platform/clsReadableStyle.h"
#include "platform/clsWindowMessageBox.h"
#include "platform/Display.h"
#include "platform/Look.h"
#include "platform/ProgramIcon.h"

#include <QApplication>

#include <cstdlib>

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    if (argc != 2)
        return EXIT_FAILURE;
    const QString text = QString::fromLocal8Bit(argv[1]);
    ChooseDisplay();
    ChooseLook();
    int ownName = 1; // the text is not the toolkit's
    const QApplication application(ownName, argv);
    QApplication::setDesktopFileName(u"org.worklogremote.WorklogRemote"_s);
    QApplication::setWindowIcon(ProgramIcon());
    UseReadableLook();
    // Without a display no one could answer.
    if (QApplication::platformName() == "offscreen"_L1
        || QApplication::platformName() == "minimal"_L1)
        return EXIT_SUCCESS;
    clsWindowMessageBox().Tell(text);
    return EXIT_SUCCESS;
}
