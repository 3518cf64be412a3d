#include "platform/Look.h"

#include <QApplication>

using namespace Qt::StringLiterals;

void ChooseLook()
{
    // Windows draws its own style in light colours only. The widget set's has both, and follows
    // the setting "Choose your mode", with the windows' title bars.
    if (!qEnvironmentVariableIsSet("QT_STYLE_OVERRIDE"))
        QApplication::setStyle(u"fusion"_s);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "windows:darkmode=2");
}
