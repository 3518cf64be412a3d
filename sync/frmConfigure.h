#pragma once

#include "platform/clsMessageBox.h"
#include "platform/clsSendKeys.h"
#include "sync/modConfigure.h"

#include <QDialog>

#include <functional>
#include <memory>

namespace Ui {
class frmConfigure;
}

/// The synchronisation settings. modConfigure decides, this draws.
class frmConfigure : public QDialog
{
    Q_OBJECT

public:
    /// All outlive it.
    frmConfigure(modConfigure &module, clsMessageBox &messages, clsSendKeys &keys,
        QWidget *parent = nullptr);
    ~frmConfigure() override;

    /// Reads the settings; to be called before the dialog is shown. What goes wrong is told.
    void Load();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void ConnectFields();
    void ConnectButtons();
    /// Runs what an event asks for, reports its run-time error and draws the dialog.
    void Handle(const std::function<void()> &action);
    void Render(); ///< the one place that writes controls

    void cmdAccept_Click();

    std::unique_ptr<Ui::frmConfigure> ui;
    modConfigure &m_module;
    clsMessageBox &m_messages;
    clsSendKeys &m_keys;
};
