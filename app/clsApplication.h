#pragma once

#include "platform/clsMessageBox.h"

#include <QApplication>

/// The application: no exception passes its event loop. What no handler took is told to the user
/// as "Error #<number> (<description>)." and the program goes on.
/// Its colours can be read, whatever the desktop's theme, also after a change of it.
class clsApplication : public QApplication
{
    Q_OBJECT

public:
    clsApplication(int &argc, char **argv, clsMessageBox &messages); // the messages outlive it

    bool notify(QObject *receiver, QEvent *event) override;

protected:
    bool event(QEvent *event) override;

private:
    clsMessageBox &m_messages;
};
