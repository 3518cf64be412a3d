#pragma once

#include "platform/clsMessageBox.h"

#include <QPointer>
#include <QWidget>

/// Boxes on the screen, in front of the window that is in use.
class clsWindowMessageBox : public clsMessageBox
{
public:
    void SetParent(QWidget *parent) { m_parent = parent; }

    MessageAnswer Ask(const QString &text, MessageIcon icon, MessageButtons buttons,
        MessageAnswer preset) override;

private:
    QPointer<QWidget> m_parent;
};
