#include "platform/ProgramIcon.h"

using namespace Qt::StringLiterals;

// The linker leaves out what nobody asks for, and resources of a library count as that.
static void HaveIcons()
{
    Q_INIT_RESOURCE(icons);
}

QIcon ProgramIcon()
{
    HaveIcons();
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256})
        icon.addFile(u":/icons/%1.png"_s.arg(size));
    return icon;
}
