#pragma once

#include "platform/clsSendKeys.h"
#include "sync/clsSyncDialog.h"
#include "sync/modSyncOptions.h"

#include <array>
#include <memory>

class QRadioButton;

namespace Ui {
class frmSyncOptions;
}

/// The synchronisation options. modSyncOptions decides, this draws.
class frmSyncOptions : public clsSyncDialog
{
    Q_OBJECT

public:
    /// All outlive it.
    frmSyncOptions(modSyncOptions &module, clsMessageBox &messages, clsSendKeys &keys,
        QWidget *parent = nullptr);
    ~frmSyncOptions() override;

    /// Reads the stored option; to be called before the dialog is shown. Failures are reported.
    /// False, and the user knows why, when there is nothing to choose yet: the dialog is then not
    /// to be shown.
    bool Load();

private:
    void ConnectControls();
    void FitDescription();
    void Render() override;

    void cmdAccept_Click();

    std::unique_ptr<Ui::frmSyncOptions> ui;
    modSyncOptions &m_module;
    clsSendKeys &m_keys;
    std::array<QRadioButton *, modSyncOptions::Options> m_options;
};
