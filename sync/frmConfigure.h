#pragma once

#include "platform/clsSendKeys.h"
#include "sync/clsSyncDialog.h"
#include "sync/modConfigure.h"

#include <memory>

namespace Ui {
class frmConfigure;
}

/// The synchronisation settings. modConfigure decides, this draws.
class frmConfigure : public clsSyncDialog
{
    Q_OBJECT

public:
    /// All outlive it.
    frmConfigure(modConfigure &module, clsMessageBox &messages, clsSendKeys &keys,
        QWidget *parent = nullptr);
    ~frmConfigure() override;

    /// Reads the settings; to be called before the dialog is shown. Failures are reported.
    void Load();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void ConnectFields();
    void ConnectButtons();
    void Render() override;

    void cmdAccept_Click();

    std::unique_ptr<Ui::frmConfigure> ui;
    modConfigure &m_module;
    clsSendKeys &m_keys;
};
