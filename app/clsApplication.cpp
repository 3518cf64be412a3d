#include "app/clsApplication.h"

#include "platform/clsReadableStyle.h"
#include "platform/clsRunTimeError.h"

#include <new>

using namespace Qt::StringLiterals;

clsApplication::clsApplication(int &argc, char **argv, clsMessageBox &messages)
    : QApplication(argc, argv)
    , m_messages(messages)
{
    UseReadableLook();
}

bool clsApplication::event(QEvent *event)
{
    const bool handled = QApplication::event(event);
    if (event->type() == QEvent::ApplicationPaletteChange)
        UseReadableLook();
    return handled;
}

bool clsApplication::notify(QObject *receiver, QEvent *event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (const clsRunTimeError &error) {
        m_messages.Tell(error.Message());
    } catch (const std::bad_alloc &) {
        m_messages.Tell(
            clsRunTimeError(RunTimeErrors::OutOfMemory, {}, u"Out of memory"_s).Message());
    } catch (const std::exception &error) {
        m_messages.Tell(
            clsRunTimeError(RunTimeErrors::Internal, {}, QString::fromUtf8(error.what()))
                .Message());
    }
    return true;
}
