#pragma once

#include "platform/clsMessageBox.h"

#include <QObject>
#include <QPointer>
#include <QString>

class QTextBrowser;
class QWidget;

/// Opens the help when F1 is pressed: the page of the active window, or the contents where that
/// window has none.
///
/// File: WL.HLP, a Qt binary resource whose pages are named after the windows. A missing or
///       unusable one is a message when help is asked for.
class clsHelp : public QObject
{
    Q_OBJECT

public:
    /// Listens to the whole application. The messages outlive it.
    clsHelp(const QString &helpFile, clsMessageBox &messages);
    ~clsHelp() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void Show(const QString &windowName);
    bool Load();

    QString m_helpFile;
    clsMessageBox &m_messages;
    bool m_loaded = false;
    QPointer<QTextBrowser> m_viewer;
};
