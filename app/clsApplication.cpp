#include "app/clsApplication.h"

#include "platform/clsRunTimeError.h"

clsApplication::clsApplication(int &argc, char **argv, clsMessageBox &messages)
    : QApplication(argc, argv)
    , m_messages(messages)
{
}

bool clsApplication::notify(QObject *receiver, QEvent *event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (const clsRunTimeError &error) {
        m_messages.Tell(error.Message());
    }
    return true;
}
