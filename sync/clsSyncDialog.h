#pragma once

#include "platform/clsMessageBox.h"
#include "platform/clsStatusBar.h"

#include <QDialog>
#include <QString>

#include <array>
#include <functional>

/// What the dialogs of this module do alike.
class clsSyncDialog : public QDialog
{
    Q_OBJECT

protected:
    clsSyncDialog(clsMessageBox &messages, QWidget *parent); // the messages outlive it

    /// Runs what an event asks for, reports its run-time error and draws the dialog.
    void Handle(const std::function<void()> &action);
    virtual void Render() = 0; ///< the one place that writes controls

    clsMessageBox &Messages() { return m_messages; }

    static void DrawPanels(
        clsStatusBar &bar, const std::array<QString, clsStatusBar::Panels> &texts);

private:
    clsMessageBox &m_messages;
};
