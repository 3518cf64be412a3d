// What belongs to the desktop around the program's own windows.

#include "tests/endtoend/driver/ProgramUnderTest.h"

using namespace Qt::StringLiterals;

void ProgramUnderTest::ComeBackTo(const QString &window)
{
    Key(u"alt+Tab"_s);
    WaitUntilActive(window);
}

// The toolkit's own dialog, with a line to type a folder into.
void ProgramUnderTest::ChooseFolder(const QString &folder, const QString &prompt)
{
    WaitUntilActive(u"frmFolderBrowser"_s);
    WaitForText(u"lblPrompt"_s, prompt);
    WaitForFocus(u"fileNameEdit"_s);
    Key(u"ctrl+a"_s);
    Enter(u"fileNameEdit"_s, folder);
    Key(u"Return"_s);
    WaitUntilClosed(u"frmFolderBrowser"_s);
}
